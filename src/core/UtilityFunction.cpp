#include "core/UtilityFunction.h"

#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"

#include <QStringList>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace brightsweep {

namespace {

constexpr const char *unitNames[] = {"KB", "MB", "GB"};

QString sizeText(float number, int unit) {
    char buffer[64];
    char *end = std::to_chars(buffer, buffer + sizeof buffer - 4, double(number),
                              std::chars_format::fixed, 2)
                    .ptr;
    *end++ = ' ';
    end = std::copy_n(unitNames[unit], 2, end);
    return QString::fromLatin1(buffer, end - buffer);
}

// The number at the start of a text, 0 where none stands there. Blanks before it do no harm.
float leadingFloat(const QString &text) {
    const std::string bytes = text.toStdString();
    const char *position = bytes.data();
    const char *const end = position + bytes.size();
    while (position != end && std::strchr(" \t\n\r\f\v", *position) && *position)
        ++position;
    if (position != end && *position == '+')
        ++position;
    // Words such as "inf" are no numbers here.
    const char *digits = position != end && *position == '-' ? position + 1 : position;
    if (digits == end || !std::strchr("0123456789.", *digits) || !*digits)
        return 0;
    float number = 0;
    const auto read = std::from_chars(position, end, number);
    if (read.ec == std::errc::result_out_of_range) {
        const std::string_view matched(position, std::size_t(read.ptr - position));
        const auto exponent = matched.find_first_of("eE");
        const bool tiny = exponent == matched.npos ? *digits == '0' || *digits == '.'
                                                   : matched.find('-', exponent) != matched.npos;
        const float limit = std::numeric_limits<float>::infinity();
        return tiny ? 0 : *position == '-' ? -limit : limit;
    }
    return number;
}

// By truncation. A negative number wraps; one that does not fit gives the nearest that does.
std::uint64_t truncated(float number) {
    constexpr float top = 9'223'372'036'854'775'808.0f;
    if (number >= 2 * top)
        return std::numeric_limits<std::uint64_t>::max();
    if (number >= top)
        return std::uint64_t(number - top) | std::uint64_t(1) << 63;
    if (number <= -top)
        return std::uint64_t(1) << 63;
    return std::uint64_t(std::int64_t(number));
}

QStringList splitAt(const QString &text, char separator, qsizetype atLeast) {
    const QStringList parts = text.split(QLatin1Char(separator));
    if (parts.size() < atLeast)
        throw std::out_of_range("the text has too few parts");
    return parts;
}

} // namespace

int getSysInfo(SysInfo *info) {
    if (!info)
        return -1;
    const struct {
        void *data;
        std::size_t width;
    } fields[] = {
        {info->MachineType, sizeof info->MachineType},
        {info->Model, sizeof info->Model},
        {&info->TotalMem, sizeof info->TotalMem},
        {info->CpuVendor, sizeof info->CpuVendor},
        {info->CpuBrandString, sizeof info->CpuBrandString},
        {info->OSType, sizeof info->OSType},
        {info->OSVersion, sizeof info->OSVersion},
        {info->Hostname, sizeof info->Hostname},
    };
    static_assert(std::size(fields) == std::size(sysInfoNames));
    int lastError = 0;
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        const auto value = Platform::current().facts->kernelValue(sysInfoNames[i]);
        if (value)
            std::memcpy(fields[i].data, value->data(), std::min(fields[i].width, value->size()));
        else
            lastError = value.error().value();
    }
    return lastError;
}

void getSystemVersionMajor(std::uint32_t *major, std::uint32_t *minor, std::uint32_t *bugFix) {
    SystemVersion version{10, 0, 0};
    if (const auto running = Platform::current().facts->version())
        version = *running;
    else
        NSLog("Unable to obtain system version: %ld", running.error().value());
    if (major)
        *major = version.major;
    if (minor)
        *minor = version.minor;
    if (bugFix)
        *bugFix = version.bugFix;
}

UtilityFunction &UtilityFunction::getMyFunction() {
    static UtilityFunction instance;
    return instance;
}

QString UtilityFunction::convertVolSpace(std::uint64_t bytes) {
    const auto value = float(bytes);
    // The strict limits are meant: 999,999 bytes show as "1000.00 KB".
    if (bytes < 1'000'000)
        return sizeText(value / 1000.0f, 0);
    if (bytes < 1'000'000'000)
        return sizeText(value / 1'000'000.0f, 1);
    return sizeText(value / 1'000'000'000.0f, 2);
}

QString UtilityFunction::covertCleanMemory(std::uint64_t bytes) {
    const auto value = float(bytes);
    if (bytes < 1'048'576)
        return sizeText(value * 0x1p-10f, 0);
    if (bytes < 1'073'741'824)
        return sizeText(value * 0x1p-20f, 1);
    return sizeText(value * 0x1p-30f, 2);
}

QString UtilityFunction::formatValue(std::uint64_t bytes, std::int32_t baseNumber) {
    if (bytes == 0)
        return sizeText(0, 0);
    // The square wraps in 32 bits and counts as unsigned, the cube wraps and is sign-extended.
    const auto base = std::uint32_t(baseNumber);
    const std::uint64_t square = base * base;
    const auto cube = std::uint64_t(std::int64_t(std::int32_t(base * base * base)));
    const std::uint64_t divisors[] = {std::uint64_t(std::int64_t(baseNumber)), square, cube};
    const int unit = bytes < square ? 0 : bytes < cube ? 1 : 2;
    if (divisors[unit] == 0)
        return sizeText(0, unit);
    return sizeText(float(bytes / divisors[unit]), unit);
}

std::uint64_t UtilityFunction::getVolSpaceFromString(const QString &text) {
    if (text.size() < 2)
        throw std::out_of_range("a size text has a unit of two characters");
    constexpr struct {
        const char *suffix;
        float factor;
    } units[] = {
        {"KB", 1000.0f},
        {"MB", 1'000'000.0f},
        {"GB", 1'000'000'000.0f},
        {"TB", 999'999'995'904.0f}, // 10 to the 12th in single precision
    };
    const float number = leadingFloat(text.chopped(2));
    for (const auto &unit : units) {
        if (!text.endsWith(QLatin1String(unit.suffix)))
            continue;
        // Of the four only KB leaves a number that is not above 0 as it stands.
        if (&unit == &units[0] && !(number > 0))
            return truncated(number);
        return truncated(number * unit.factor);
    }
    return 0;
}

float UtilityFunction::returnParserFromVolSpace(const QString &text) {
    const QString token = splitAt(text, ' ', 2).at(1);
    const float number = leadingFloat(text);
    if (token == QLatin1String("KB"))
        return number / 1000.0f / 1000.0f;
    if (token == QLatin1String("MB"))
        return number / 1000.0f;
    if (token == QLatin1String("GB"))
        return number;
    if (token == QLatin1String("T"))
        return number * 1000.0f;
    return 0;
}

QString UtilityFunction::parseDateTime(const QString &text) {
    const QStringList parts = splitAt(text, ' ', 2);
    const QStringList date = splitAt(parts[0], '-', 3);
    return date[1] + QLatin1Char('/') + date[2] + QLatin1Char('/') + date[0] + QLatin1Char(' ') +
           parts[1];
}

bool UtilityFunction::isBelowSystemVer(std::uint32_t major, std::uint32_t min,
                                       std::uint32_t bugfix) {
    SystemVersion running;
    getSystemVersionMajor(&running.major, &running.minor, &running.bugFix);
    NSLog("%u.%u.%u", running.major, running.minor, running.bugFix);
    if (running.major != major)
        return running.major < major;
    if (running.minor != min)
        return running.minor < min;
    return running.bugFix < bugfix;
}

const char *UtilityFunction::returnVersion() {
    return VERSION_FOR_PROFESSIONAL;
}

void UtilityFunction::callSelectNotificationForMainWindowLeft(int row) {
    const QVariantList object{QVariant(QVariantList()), row};
    NotificationCenter::defaultCenter().post(shouldSelectRowNotification, nullptr,
                                             {{QStringLiteral("object"), object}});
}

} // namespace brightsweep
