#include "core/UtilityFunction.h"

#include "foundation/Log.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "support/CommaLocale.h"
#include "support/FakeDesktop.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <stdexcept>

namespace brightsweep {
namespace {

using test::FakeFacts;
using U = UtilityFunction;

TEST(SizeText, WorkedValues) {
    const struct {
        std::uint64_t bytes;
        const char *decimal;
        const char *binary;
        const char *whole;
    } rows[] = {
        {0, "0.00 KB", "0.00 KB", "0.00 KB"},
        {5, "0.00 KB", "0.00 KB", "0.00 KB"},
        {6, "0.01 KB", "0.01 KB", "0.00 KB"},
        {12, "0.01 KB", "0.01 KB", "0.00 KB"},
        {128, "0.13 KB", "0.12 KB", "0.00 KB"}, // a tie goes to the even digit
        {999, "1.00 KB", "0.98 KB", "0.00 KB"},
        {1'023, "1.02 KB", "1.00 KB", "0.00 KB"},
        {1'024, "1.02 KB", "1.00 KB", "1.00 KB"},
        {999'999, "1000.00 KB", "976.56 KB", "976.00 KB"},
        {1'000'000, "1.00 MB", "976.56 KB", "976.00 KB"},
        {1'048'575, "1.05 MB", "1024.00 KB", "1023.00 KB"},
        {1'048'576, "1.05 MB", "1.00 MB", "1.00 MB"},
        {999'999'999, "1000.00 MB", "953.67 MB", "953.00 MB"},
        {1'000'000'000, "1.00 GB", "953.67 MB", "953.00 MB"},
        {1'073'741'823, "1.07 GB", "1024.00 MB", "1023.00 MB"},
        {1'073'741'824, "1.07 GB", "1.00 GB", "1.00 GB"},
        {2'500'000'000'000, "2500.00 GB", "2328.31 GB", "2328.00 GB"},
        {18'446'744'073'709'551'615u, "18446743552.00 GB", "17179869184.00 GB",
         "17179869184.00 GB"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(U::convertVolSpace(row.bytes).toStdString(), row.decimal) << row.bytes;
        EXPECT_EQ(U::covertCleanMemory(row.bytes).toStdString(), row.binary) << row.bytes;
        EXPECT_EQ(U::formatValue(row.bytes, 1024).toStdString(), row.whole) << row.bytes;
    }
}

TEST(SizeText, ReadsBack) {
    const struct {
        const char *text;
        std::uint64_t bytes;
    } rows[] = {
        {"0.00 KB", 0},
        {"7.50 MB", 7'500'000},
        {"1.50 GB", 1'500'000'000},
        {"2 TB", 1'999'999'991'808},
        {"-1.00 KB", 18'446'744'073'709'551'615u},
        {"-1.00 MB", 18'446'744'073'708'551'616u},
        {"5 mb", 0},
        {"KB", 0},
        {"inf GB", 0},
        {"nan MB", 0},
        {"9300000000.00 GB", 9'299'999'201'217'740'800u}, // above 2 to the 63rd
        {"18446743552.00 GB", 18'446'744'073'709'551'615u},
        {"1e999 GB", 18'446'744'073'709'551'615u},
        {"1e-999 GB", 0},
        {"-1e30 GB", std::uint64_t(1) << 63},
    };
    for (const auto &row : rows)
        EXPECT_EQ(U::getVolSpaceFromString(QLatin1String(row.text)), row.bytes) << row.text;
    EXPECT_THROW(U::getVolSpaceFromString(QStringLiteral("B")), std::out_of_range);
    EXPECT_THROW(U::getVolSpaceFromString(QString()), std::out_of_range);
}

TEST(Numbers, AreTheSameInEveryLocale) {
    const test::CommaLocale locale;
    EXPECT_EQ(U::convertVolSpace(1'500'000), QStringLiteral("1.50 MB"));
    EXPECT_EQ(U::getVolSpaceFromString(QStringLiteral("1.50 MB")), 1'500'000u);
    const LogArgument logged[] = {1.5};
    EXPECT_EQ(Log::format("%0.2f", logged), "1.50");
    UserDefaults defaults(test::TestEnvironment::current().work() / "settings");
    defaults.setObject(QStringLiteral("Key"), 0.25f);
    EXPECT_EQ(defaults.floatForKey(QStringLiteral("Key")), 0.25f);
    EXPECT_EQ(test::textOf(defaults.file()), "Key=0.25\n");
}

TEST(DateText, DropsTheZone) {
    EXPECT_EQ(U::parseDateTime(QStringLiteral("2011-03-15 10:22:33 +0800")),
              QStringLiteral("03/15/2011 10:22:33"));
    EXPECT_THROW(U::parseDateTime(QStringLiteral("2011-03-15")), std::out_of_range);
    EXPECT_THROW(U::parseDateTime(QStringLiteral("2011-03 10:22:33")), std::out_of_range);
}

TEST(Version, ComparesFromMajorToBugfix) {
    const struct {
        std::uint32_t major, minor, bugfix;
        bool below;
    } rows[] = {
        {10, 7, 1, false}, {10, 7, 2, true}, {10, 7, 0, false}, {10, 8, 0, true},
        {10, 6, 9, false}, {11, 0, 0, true}, {9, 9, 9, false},
    };
    FakeFacts::install();
    for (const auto &row : rows)
        EXPECT_EQ(U::isBelowSystemVer(row.major, row.minor, row.bugfix), row.below)
            << row.major << "." << row.minor << "." << row.bugfix;
}

TEST(Version, FallsBackAndSkipsNullPointers) {
    FakeFacts::install().running = std::errc::invalid_argument;
    std::uint32_t minor = 99;
    getSystemVersionMajor(nullptr, &minor, nullptr);
    EXPECT_EQ(minor, 0u);
    EXPECT_TRUE(U::isBelowSystemVer(10, 6, 0));
}

TEST(Version, OfKernelReleases) {
    const struct {
        const char *release;
        std::uint32_t minor, bugFix;
    } rows[] = {
        {"5.0.0-1-amd64", 6, 0},
        {"6.1.0-18-amd64", 7, 1},
        {"6.18.44", 7, 18},
        {"4.19-rc1", 5, 19},
    };
    for (const auto &row : rows) {
        const auto version = LinuxSystemFacts::versionOfRelease(row.release);
        ASSERT_TRUE(version) << row.release;
        EXPECT_EQ(version->major, 10u);
        EXPECT_EQ(version->minor, row.minor) << row.release;
        EXPECT_EQ(version->bugFix, row.bugFix) << row.release;
    }
    for (const char *release : {"", "6", "6.", "x.1", "-6.1"})
        EXPECT_FALSE(LinuxSystemFacts::versionOfRelease(release)) << release;
}

TEST(Facts, OfTheRunningMachine) {
    LinuxSystemFacts facts;
    EXPECT_TRUE(facts.version());
    for (const char *name : {"hw.memsize", "hw.pagesize"}) {
        const auto value = facts.kernelValue(name);
        ASSERT_TRUE(value) << name;
        ASSERT_EQ(value->size(), 8u);
        std::uint64_t number = 0;
        std::memcpy(&number, value->data(), 8);
        EXPECT_GE(number, 4096u);
        EXPECT_EQ(number % 1024, 0u);
    }
    EXPECT_EQ(*facts.kernelValue("kern.ostype"), "Linux");
    EXPECT_EQ(facts.kernelValue("kern.nothing").error(), std::errc::no_such_file_or_directory);
}

TEST(Facts, AreCutToTheirFields) {
    const std::map<std::string_view, std::string> values = {
        {"hw.machine", std::string(30, 'm')},
        {"hw.memsize", std::string("\0\0\0\x04\0\0\0\0", 8)},
        {"kern.ostype", "Linux"},
        {"kern.osrelease", "6.18.44-fc-v657"},
    };
    FakeFacts::install().value = [&](std::string_view name) -> Result<std::string> {
        if (values.contains(name))
            return values.at(name);
        return name == "kern.hostname" ? std::errc::operation_not_permitted
                                       : std::errc::no_such_file_or_directory;
    };
    SysInfo info{};
    std::strcpy(info.Model, "before");
    EXPECT_EQ(getSysInfo(&info), EPERM); // of the last one that failed
    EXPECT_EQ(std::string(info.MachineType, 20), std::string(20, 'm'));
    EXPECT_STREQ(info.Model, "before");
    EXPECT_EQ(info.TotalMem, 0x4000000u);
    EXPECT_STREQ(info.OSType, "Linux");
    EXPECT_EQ(std::string(info.OSVersion, 10), "6.18.44-fc");
    EXPECT_EQ(getSysInfo(nullptr), -1);
}

} // namespace
} // namespace brightsweep
