#include "core/SettingKeys.h"
#include "foundation/FileDescriptor.h"
#include "foundation/UserDefaults.h"
#include "support/CommandLine.h"
#include "support/TestEnvironment.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <fstream>

namespace brightsweep {
namespace {

test::ChildResult settings(const test::Words &words) {
    return test::cli(test::together({"settings"}, words));
}

TEST(SettingsCommand, ListsEveryKeyWithValueDefaultAndType) {
    EXPECT_EQ(settings({"set", "DSDiskUsageShowStyle", "YES"}).status, 0);
    const auto result = settings({"--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const auto list = test::documentOf(result.output, "settings")["settings"];
    ASSERT_EQ(list.size(), std::size(settingKeys));
    for (const char *entry :
         {R"({"key":"DisplayType","value":0,"default":null,"type":"integer"})",
          R"({"key":"SpaceAlarm","value":0.1,"default":0.1,"type":"float"})",
          R"({"key":"SystemCaches","value":1,"default":1,"type":"integer"})",
          R"({"key":"DSDiskUsageShowStyle","value":true,"default":false,"type":"bool"})",
          R"({"key":"SUEnableAutomaticChecks","value":false,"default":null,"type":"bool"})",
          R"({"key":"fade","value":"YES","default":"YES","type":"string"})"})
        EXPECT_NE(std::find(list.begin(), list.end(), nlohmann::json::parse(entry)), list.end())
            << entry;
    const std::string table = settings({}).output;
    EXPECT_EQ(std::size_t(std::count(table.begin(), table.end(), '\n')),
              1 + std::size(settingKeys));
}

TEST(SettingsCommand, SetsGetsAndResets) {
    const struct {
        const char *key;
        const char *set;
        const char *shown;
        const char *standard;
    } rows[] = {
        {"MemoryAlarm", "0.35", "0.35\n", "0.1\n"},
        {"DSDuplicationLimit", "9223372036854775807", "9223372036854775807\n", "1\n"},
        {"DSHidenDuplication", "true", "YES\n", "NO\n"},
        {"UserTrash", "1", "1\n", "0\n"},
        {"fade", "a = b\\n", "a = b\\n\n", "YES\n"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(settings({"set", row.key, row.set}).status, 0) << row.key;
        EXPECT_EQ(settings({"get", row.key}).output, row.shown);
        EXPECT_TRUE(UserDefaults::standardUserDefaults().synchronize());
        EXPECT_TRUE(UserDefaults::standardUserDefaults().hasUserValue(QLatin1String(row.key)));
        EXPECT_EQ(settings({"reset", row.key}).status, 0);
        EXPECT_EQ(settings({"get", row.key}).output, row.standard);
    }
    EXPECT_TRUE(settings({"--json", "get", "MemoryAlarm"})
                    .output.starts_with(
                        R"({"schema":1,"command":"settings","key":"MemoryAlarm","value":0.1,)"));
}

TEST(SettingsCommand, WrongUsageSaysWhatToWriteAndChangesNothing) {
    const test::Words rows[] = {
        {"set", "SystemCaches", "5"},
        {"set", "SystemCaches", ""},
        {"set", "SpaceAlarm", "nan"},
        {"set", "SpaceAlarm", "0,5"},
        {"set", "SpaceAlarm", "-3", "--quiet"},
        {"set", "-0", "SpaceAlarm"},
        {"set", "SpaceAlarm", "1.01"},
        {"set", "DSDiskUsageUnit", "-.5"},
        {"set", "Language", "xx"},
        {"set", "DSHidenDuplication", "maybe"},
        {"set", "DSDuplicationLimit", "1 MB"},
        {"set", "--", "DSDuplicationLimit", "-1"},
        {"set", "DSDuplicationLimit", "9223372036854775808"},
        {"set", "SpaceAlarm"},
        {"get"},
        {"get", "NoSuchKey"},
        {"list"},
        {"--unknown"},
    };
    for (const auto &row : rows) {
        const auto result = settings(row);
        const std::string name = testing::PrintToString(row);
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_EQ(result.output, "") << name;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << name;
        EXPECT_EQ(result.errors.find("nknown option") != std::string::npos,
                  row.back() == "--unknown");
    }
    EXPECT_FALSE(std::filesystem::exists(UserDefaults::standardUserDefaults().file()));
}

TEST(SettingsCommand, LaunchAtLoginMakesTheEntryAndTakesItAway) {
    const auto folder = test::TestEnvironment::current().home() / ".config/autostart";
    const auto entry = folder / "com.norvmac.DeskSweeperPro.desktop";
    for (const auto &words : std::vector<test::Words>{
             {"set", "LoginCheck", "1"}, {"set", "LoginCheck", "0"}, {"reset", "LoginCheck"}}) {
        EXPECT_EQ(settings(words).status, 0);
        EXPECT_EQ(std::filesystem::exists(entry), words.back() == "1");
    }
    std::filesystem::remove(folder);
    std::ofstream(folder) << "in its place";
    EXPECT_EQ(settings({"set", "LoginCheck", "1"}).status, 1);
}

TEST(SettingsCommand, AStoreThatCannotBeWrittenFails) {
    const auto file = UserDefaults::standardUserDefaults().file();
    std::filesystem::create_directories(file); // a folder in its place
    const auto result = settings({"set", "SpaceAlarm", "0.5"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find(file.native()), std::string::npos);
    // The defaults are not shown as if they were the user's.
    for (const auto &words : std::vector<test::Words>{{}, {"get", "UserCaches"}}) {
        EXPECT_EQ(settings(words).status, 1);
        EXPECT_EQ(settings(words).output, "");
    }
}

TEST(SettingsCommand, AFolderThatStaysLockedIsTold) {
    const auto file = UserDefaults::standardUserDefaults().file();
    std::filesystem::create_directories(file.parent_path());
    const FileDescriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(folder.get(), LOCK_EX), 0);
    const auto result = settings({"set", "SpaceAlarm", "0.5"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("locked"), std::string::npos);
    // What was waited for in vain is only looked at, until it is let go.
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    for (int i = 0; i < 200; ++i)
        defaults.setObject(DSSpaceAlarmKey, 0.01f * float(i));
    EXPECT_FALSE(std::filesystem::exists(file));
    ASSERT_EQ(::flock(folder.get(), LOCK_UN), 0);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.problem(), "");
    EXPECT_EQ(settings({"get", "SpaceAlarm"}).output, "1.99\n");
}

} // namespace
} // namespace brightsweep
