#include "core/ParseFileLog.h"

#include "core/DateText.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"

#include <QStringList>

#include <algorithm>
#include <limits>

namespace brightsweep {

namespace {

constexpr const char recordName[] = ".norvex.log.bin";

} // namespace

std::int64_t ParseFileLog::getSize(QDateTime *date) {
    NSLog("Get Size Log begin");
    FileLog item;
    readFileLog(QString(), item);
    if (date) {
        *date = item.date;
        NSLog("get Date:%@", dateText(item.date));
    }
    NSLog("Get Size Log End SIZE:%llu", std::uint64_t(item.iSize));
    return item.iSize;
}

void ParseFileLog::recordClean(std::uint64_t bytes) {
    constexpr auto most = std::uint64_t(std::numeric_limits<std::int64_t>::max());
    if (bytes > 0)
        setSize(std::int64_t(std::min(bytes, most)), QDateTime::currentDateTime());
}

bool ParseFileLog::setSize(std::int64_t size, const QDateTime &date) {
    NSLog("Set Size Log begin SIZE:%llu date:%@", std::uint64_t(size), dateText(date));
    FileLog item;
    item.iSize = size;
    item.date = date;
    item.logName = QStringLiteral("SIZE");
    const bool written = writeFileLog(QStringLiteral("path"), QStringLiteral("filename"), item);
    NSLog("Set Size Log End");
    return written;
}

void ParseFileLog::readFileLog(const QString &, FileLog &item) {
    const auto text = readSmallFile(getLogFilePath());
    if (text.error() == std::errc::no_such_file_or_directory) {
        item.iSize = 0;
        item.date = QDateTime::currentDateTime();
        item.logName = QStringLiteral("FILE SIZE");
    } else if (text && paths::isValidUtf8(*text)) {
        parseStringToLog(paths::text(*text), item);
    }
}

bool ParseFileLog::writeFileLog(const QString &, const QString &, const FileLog &item) {
    const auto path = getLogFilePath();
    const auto error = writeSmallFile(path, parseLogToString(item).toStdString());
    if (error)
        NSLog("The history could not be written to %@: %@", path, error);
    return !error;
}

void ParseFileLog::parseStringToLog(const QString &text, FileLog &item) {
    for (const QString &piece : text.split(QStringLiteral("&&"))) {
        const QStringList parts = piece.split(QLatin1Char('='));
        if (parts.size() != 2)
            continue;
        if (parts[0] == QLatin1String("logName"))
            item.logName = parts[1];
        else if (parts[0] == QLatin1String("date"))
            item.date = dateFromText(parts[1]);
        else if (parts[0] == QLatin1String("iSize"))
            item.iSize = integerFromText(parts[1]);
    }
}

QString ParseFileLog::parseLogToString(const FileLog &item) {
    return QStringLiteral("logName=") + item.logName + QStringLiteral("&&date=") +
           dateText(item.date) + QStringLiteral("&&iSize=") +
           QString::number(std::uint64_t(item.iSize));
}

std::filesystem::path ParseFileLog::getLogFilePath() {
    auto library = Platform::current().directories->first(StandardDirectory::Library);
    if (library.empty())
        library = environmentFolder("XDG_DATA_HOME", ".local/share");
    const auto folder = paths::join(library, bundleIdentifier);
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return paths::join(folder, recordName);
}

} // namespace brightsweep
