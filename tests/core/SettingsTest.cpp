#include "app/RegisterDefaults.h"
#include "core/SettingKeys.h"
#include "core/SizeLimit.h"
#include "core/UtilityFunctionOfData.h"
#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace brightsweep {
namespace {

UserDefaults &defaults() {
    return UserDefaults::standardUserDefaults();
}

TEST(Settings, FirstRun) {
    EXPECT_TRUE(defaults().boolForKey(QStringLiteral("openAtStartup")));
    EXPECT_EQ(storedLimitInBytes(DSDuplicationLimit, DSDuplicatesUnit), 1'000'000u);
    std::set<std::string> keys;
    for (const SettingKey &setting : settingKeys) {
        EXPECT_TRUE(keys.insert(setting.key.data()).second) << setting.key.data();
        EXPECT_FALSE(defaults().hasUserValue(setting.key));
        EXPECT_EQ(setting.defaultText == nullptr, !defaults().objectForKey(setting.key).isValid());
    }
    EXPECT_FALSE(std::filesystem::exists(defaults().file())); // registering writes nothing
}

TEST(Settings, TheLaterShowStyleHolds) {
    EXPECT_FALSE(defaults().boolForKey(DSDiskUsageShowStyle));
    PreferenceViewController::initialize();
    EXPECT_TRUE(defaults().boolForKey(DSDiskUsageShowStyle));
    registerAllDefaults();
    EXPECT_FALSE(defaults().boolForKey(DSDiskUsageShowStyle));
}

TEST(Settings, LimitsWrap) {
    const struct {
        std::uint64_t limit;
        int tag;
        std::uint64_t bytes;
    } rows[] = {
        {12, 0, 12},
        {12, 1, 12'000},
        {1, 2, 1'000'000},
        {9'999, 3, 9'999'000'000'000},
        {1, 4, 18'446'744'072'982'171'648u},
        {2, 4, 18'446'744'072'254'791'680u},
        {0, 4, 0},
        {12, 7, 12},
        {12, -1, 12},
    };
    for (const auto &row : rows)
        EXPECT_EQ(limitInBytes(row.limit, row.tag), row.bytes) << row.limit << " " << row.tag;
}

TEST(Settings, SnapshotIsText) {
    defaults().setObject(DSSpaceAlarmKey, 0.25f);
    const SettingItems items = UtilityFunctionOfData::getMyData().readerTxtForSettingValue();
    EXPECT_EQ(items.errorValue, QStringLiteral("0.250000"));
    EXPECT_EQ(items.digital, QStringLiteral("0"));
    EXPECT_TRUE(items.graphic.isNull());
    QString SettingItems::*const fields[] = {
        &SettingItems::systemCaches, &SettingItems::userCaches, &SettingItems::systemLogs,
        &SettingItems::userLogs,     &SettingItems::userTrash,  &SettingItems::downloads,
    };
    for (unsigned category = 0; category < std::size(fields); ++category) {
        PreferenceViewController::setCategoryClicked(category, 2);
        SettingItems now = UtilityFunctionOfData::getMyData().readerTxtForSettingValue();
        EXPECT_EQ(std::exchange(now.*fields[category], QString()), QStringLiteral("2"));
        for (const auto field : fields)
            EXPECT_NE(now.*field, QStringLiteral("2"));
        PreferenceViewController::setCategoryClicked(category, 1);
    }
}

} // namespace
} // namespace brightsweep
