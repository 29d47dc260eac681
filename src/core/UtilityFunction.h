#pragma once

#include <QLatin1String>
#include <QString>

#include <cstdint>

namespace brightsweep {

/// A row of the main window's left list is to be shown. "object" of the user info is a list whose
/// second element is the row; the first plays no part.
inline constexpr QLatin1String shouldSelectRowNotification("shouldSelectRow");

/// What the machine says of itself. The texts are cut to their fields and then have no terminator;
/// whoever fills the structure hands it in zeroed.
struct SysInfo {
    char MachineType[20];
    char Model[20];
    char CpuVendor[512];
    char CpuBrandString[512];
    char OSType[20];
    char OSVersion[10];
    char Hostname[512];
    std::uint64_t TotalMem; ///< bytes
};

/// The kernel names of the machine's facts, in the order in which they are read.
inline constexpr const char *sysInfoNames[] = {
    "hw.machine",
    "hw.model",
    "hw.memsize",
    "machdep.cpu.vendor",
    "machdep.cpu.brand_string",
    "kern.ostype",
    "kern.osrelease",
    "kern.hostname",
};

/// Fills the structure. 0, -1 for a null pointer, or the errno of the last name that could not be
/// read; such a name leaves its field as it was.
int getSysInfo(SysInfo *info);

/// The running system's version; a null pointer is skipped. 10.0.0 where it cannot be told.
void getSystemVersionMajor(std::uint32_t *major, std::uint32_t *minor, std::uint32_t *bugFix);

/// The one edition of this program.
inline constexpr const char VERSION_FOR_PROFESSIONAL[] = "VERSION_FOR_PROFESSIONAL";

/// The small services that nearly every page calls. Free of shared state and safe from every
/// thread; independent of the locale.
///
/// Disk sizes are decimal, memory sizes binary, and only the decimal form has a reader: sizes
/// travel as text and are only as exact as their two decimals. All arithmetic is in single
/// precision, so large numbers lose digits before they are printed.
class UtilityFunction {
public:
    static UtilityFunction &getMyFunction();

    /// Decimal: "0.01 KB", "1000.00 KB" just below a million, "2500.00 GB".
    static QString convertVolSpace(std::uint64_t bytes);
    /// Binary, with the same unit names.
    static QString covertCleanMemory(std::uint64_t bytes);
    /// Whole units of the base only: the decimals are always ".00".
    static QString formatValue(std::uint64_t bytes, std::int32_t baseNumber);

    /// The bytes of a size text, always by decimal factors, 0 for an unknown unit. Throws
    /// std::out_of_range for a text of less than two characters.
    static std::uint64_t getVolSpaceFromString(const QString &text);
    /// The gigabytes of a size text; its token for a terabyte is "T". Throws std::out_of_range for
    /// a text without a blank.
    static float returnParserFromVolSpace(const QString &text);
    /// "03/15/2011 10:22:33" for "2011-03-15 10:22:33 +0800": the zone is dropped. Throws
    /// std::out_of_range for a text of fewer than two parts or a date of fewer than three.
    static QString parseDateTime(const QString &text);

    /// True when the running system is older; the version goes to the log at each call.
    static bool isBelowSystemVer(std::uint32_t major, std::uint32_t min, std::uint32_t bugfix);
    /// Always the constant itself, which callers compare by identity.
    static const char *returnVersion();

    /// Posts shouldSelectRowNotification, with an empty list as the first element.
    static void callSelectNotificationForMainWindowLeft(int row);
};

} // namespace brightsweep
