#pragma once

#include <QDateTime>
#include <QString>

namespace brightsweep {

/// The default text form of a date, "2011-03-15 10:22:33 +0800" in the date's own zone; a null
/// text for an invalid date.
QString dateText(const QDateTime &date);

/// The date of such a text, invalid for any other.
QDateTime dateFromText(const QString &text);

} // namespace brightsweep
