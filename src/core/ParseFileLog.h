#pragma once

#include "core/FileLog.h"

#include <cstdint>
#include <filesystem>

namespace brightsweep {

/// Reads and writes the history record: one small text of three fields in the user's library,
/// "logName=SIZE&&date=2011-03-15 10:22:33 +0800&&iSize=1048576". Main thread. Nothing fails
/// visibly: what cannot be read leaves the record as it was.
class ParseFileLog {
public:
    /// The bytes that the last clean recovered. With a pointer its date too, which is the present
    /// where there is no record, and invalid where it does not read.
    std::int64_t getSize(QDateTime *date);
    /// True when the record was written.
    bool setSize(std::int64_t size, const QDateTime &date);
    /// Records what a clean has removed just now. One that freed nothing leaves the record of the
    /// one before.
    void recordClean(std::uint64_t bytes);

    /// The paths and names given are ignored: the place is always that of getLogFilePath().
    void readFileLog(const QString &path, FileLog &item);
    bool writeFileLog(const QString &path, const QString &fileName, const FileLog &item);

    /// Sets the fields that the text holds; the last of equal ones wins. The size is written
    /// unsigned and read signed, so that one of 2 to the 63rd or more does not survive.
    void parseStringToLog(const QString &text, FileLog &item);
    QString parseLogToString(const FileLog &item);

    /// Makes the folder too.
    std::filesystem::path getLogFilePath();
};

} // namespace brightsweep
