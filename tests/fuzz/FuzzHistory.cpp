#include "core/DateText.h"
#include "core/ParseFileLog.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using brightsweep::FileLog;
using brightsweep::ParseFileLog;

// Any text parses. What it gave is written and read back the same, but for what the format cannot
// hold: a negative size, a name with one of its separators, an invalid date.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ParseFileLog history;
    FileLog item;
    history.parseStringToLog(
        QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size)), item);

    FileLog again;
    history.parseStringToLog(history.parseLogToString(item), again);
    if (item.iSize >= 0 && again.iSize != item.iSize)
        std::abort();
    const bool plainName =
        !item.logName.contains(QLatin1Char('&')) && !item.logName.contains(QLatin1Char('='));
    if (plainName && again.logName != item.logName)
        std::abort();
    if (brightsweep::dateText(again.date) != brightsweep::dateText(item.date))
        std::abort();
    return 0;
}
