#include "app/LaunchAtLogin.h"
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
    const struct {
        QLatin1String key;
        float value;
    } rows[] = {
        {DSSystemCachesKey, 1},  {DSUserCachesKey, 1},     {DSSystemLogsKey, 1},
        {DSUserLogsKey, 1},      {DSUserTrashKey, 0},      {DSUserDownloadsKey, 0},
        {DSSpaceAlarmKey, 0.1f}, {DSMemoryAlarmKey, 0.1f}, {DSDuplicationLimit, 1},
        {DSDuplicatesUnit, 2},   {DSDiskUsageLimit, 0},    {DSDisplayTypeKey, 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(defaults().floatForKey(row.key), row.value) << row.key.data();
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

TEST(Settings, AccessorsWriteTheirOwnKeys) {
    using P = PreferenceViewController;
    const struct {
        void (*set)(int);
        QVariant (*get)();
        QLatin1String key;
    } categories[] = {
        {P::setSystemCashesClicked, P::getSystemCashesClicked, DSSystemCachesKey},
        {P::setUserCashesClicked, P::getUserCashesClicked, DSUserCachesKey},
        {P::setSystemLogsClicked, P::getSystemLogsClickedClicked, DSSystemLogsKey},
        {P::setUserLogsClicked, P::getUserLogsClicked, DSUserLogsKey},
        {P::setUserTrashClicked, P::getUserTrashClicked, DSUserTrashKey},
        {P::setUserDownLoadsFolderClicked, P::getUserDownLoadsFoldeClicked, DSUserDownloadsKey},
    };
    for (const auto &category : categories) {
        EXPECT_TRUE(category.get().isValid()); // also for a flag of 0
        category.set(2);
        EXPECT_EQ(category.get().toInt(), 2);
        EXPECT_EQ(UserDefaults(defaults().file()).integerForKey(category.key), 2);
        category.set(0);
        EXPECT_TRUE(category.get().isValid());
        EXPECT_EQ(defaults().integerForKey(category.key), 0);
    }
    const struct {
        void (*set)(int);
        bool (*get)();
        const char *key;
    } flags[] = {
        {P::setUninstallClicked, P::getUninstallClicked, "DSUninstall"},
        {P::setFreeSpaceClicked, P::getFreeSpaceClicked, "DSFreeSpace"},
        {P::setLoginItemIsHide, P::getLoginItemIsHide, "DSLoginItemIsHide"},
    };
    for (const auto &flag : flags) {
        EXPECT_FALSE(flag.get());
        flag.set(1);
        EXPECT_TRUE(flag.get());
        EXPECT_EQ(defaults().integerForKey(QLatin1String(flag.key)), 1);
    }
    EXPECT_EQ(P::getLastClickRow(), 0);
    P::setLastClickRow(9);
    EXPECT_EQ(P::getLastClickRow(), 9);
    P::setHiddenStatusItem(true);
    EXPECT_TRUE(P::getHiddenStatusItem());
    EXPECT_TRUE(defaults().boolForKey(QStringLiteral("DSShowStatusItem")));
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
    EXPECT_EQ(items.systemCaches, QStringLiteral("1"));
    EXPECT_EQ(items.downloads, QStringLiteral("0"));
    EXPECT_TRUE(items.graphic.isNull());

    QVariantMap coded;
    items.encodeWithCoder(coded);
    EXPECT_EQ(coded.size(), 9);
    EXPECT_EQ(coded.value(QStringLiteral("SystemCache")), items.systemCaches);
    EXPECT_EQ(coded.value(QStringLiteral("SystemLog")), items.systemLogs);
    EXPECT_EQ(SettingItems(coded).errorValue, items.errorValue);
}

TEST(Settings, FormBody) {
    const auto parse = [](const QString &text) {
        return UtilityFunctionOfData::getMyData().parseFormBodyWith(text);
    };
    EXPECT_FALSE(parse(QString()));
    EXPECT_TRUE(parse(QStringLiteral(""))->isEmpty());
    const QMap<QString, QString> wanted = {{QStringLiteral("a"), QStringLiteral("1")},
                                           {QStringLiteral("d"), QStringLiteral("4")}};
    EXPECT_EQ(parse(QStringLiteral("a=1&b&c=2=3&d=4")), wanted);
    const auto odd = *parse(QStringLiteral("a=1&a=%20+&=x&y="));
    EXPECT_EQ(odd.value(QStringLiteral("a")), QStringLiteral("%20+"));
    EXPECT_EQ(odd.size(), 3);
}

class ListedItems final : public LoginItemRegistry {
public:
    int indexForLoginItemWithPath(const std::filesystem::path &path) override {
        const auto found = std::find(items.begin(), items.end(), path);
        return found == items.end() ? -1 : int(found - items.begin());
    }
    bool removeLoginItemAtIndex(int index) override {
        items.erase(items.begin() + index);
        return true;
    }
    bool addLoginItemWithPath(const std::filesystem::path &path, bool hideIt) override {
        if (hideIt || refuses)
            return false;
        items.push_back(path);
        return true;
    }
    std::vector<std::filesystem::path> items = {"/other"};
    bool refuses = false;
};

TEST(LaunchAtLogin, RenewsAndRemovesItsOneEntry) {
    using Items = std::vector<std::filesystem::path>;
    ListedItems registry;
    LaunchAtLogin::launchAppWhenLogin(1, "/program", registry);
    registry.items.push_back("/later");
    LaunchAtLogin::launchAppWhenLogin(1, "/program", registry);
    EXPECT_EQ(registry.items, (Items{"/other", "/later", "/program"})); // fresh, and only once
    EXPECT_EQ(LaunchAtLogin::readeFileOfLaunchAppWhenLogin(), QStringLiteral("1"));
    LaunchAtLogin::launchAppWhenLogin(0, "/program", registry);
    EXPECT_EQ(registry.items, (Items{"/other", "/later"}));
    EXPECT_EQ(LaunchAtLogin::readeFileOfLaunchAppWhenLogin(), QStringLiteral("0"));
}

TEST(LaunchAtLogin, FlagStaysWhereTheEntryCannotBeHad) {
    NullLoginItemRegistry registry("no session");
    LaunchAtLogin::launchAppWhenLogin(1, "/program", registry);
    EXPECT_EQ(defaults().integerForKey(DSLoginCheckKey), 1);
    LaunchAtLogin::writeFileOfLaunchAppWhenLogin(QStringLiteral("0 and words"));
    EXPECT_EQ(defaults().integerForKey(DSLoginCheckKey), 0);
}

} // namespace
} // namespace brightsweep
