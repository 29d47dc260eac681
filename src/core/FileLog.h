#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>

namespace brightsweep {

/// What the last clean recovered, and when.
struct FileLog {
    QString logName = QStringLiteral("");
    std::int64_t iSize = 0; ///< bytes
    /// An invalid date where the record's text does not read as one.
    QDateTime date = QDateTime::currentDateTime();
};

} // namespace brightsweep
