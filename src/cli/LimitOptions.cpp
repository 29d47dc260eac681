#include "cli/LimitOptions.h"

#include "core/SizeLimit.h"
#include "foundation/UserDefaults.h"

#include <iterator>

namespace brightsweep::cli {

namespace {

constexpr QLatin1String limitOption("limit");
constexpr QLatin1String unitOption("unit");

} // namespace

void addLimitOptions(QCommandLineParser &parser, const QString &meaning) {
    parser.addOption({limitOption, meaning, QStringLiteral("N")});
    parser.addOption({unitOption,
                      QStringLiteral("What the limit counts: 0 bytes, 1 KB, 2 MB, 3 GB, 4 TB."),
                      QStringLiteral("T")});
}

std::optional<std::uint64_t> numberOf(const QCommandLineParser &parser, QLatin1String option) {
    bool isNumber = false;
    const qulonglong number = parser.value(option).toULongLong(&isNumber);
    return isNumber ? std::optional<std::uint64_t>(number) : std::nullopt;
}

std::optional<std::uint64_t> limitOf(const QCommandLineParser &parser, Output &output,
                                     QLatin1String limitKey, QLatin1String unitKey) {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    std::uint64_t limit = defaults.unsignedForKey(limitKey);
    std::int64_t unit = defaults.integerForKey(unitKey);
    if (parser.isSet(limitOption)) {
        const auto given = numberOf(parser, limitOption);
        if (!given) {
            output.usage("Write a whole number behind --limit.");
            return std::nullopt;
        }
        limit = *given;
    }
    if (parser.isSet(unitOption)) {
        const auto given = numberOf(parser, unitOption);
        if (!given || *given >= std::size(sizeUnits)) {
            output.usage("Write 0 bytes, 1 KB, 2 MB, 3 GB or 4 TB behind --unit.");
            return std::nullopt;
        }
        unit = std::int64_t(*given);
    }
    return limitInBytes(limit, unit);
}

} // namespace brightsweep::cli
