#include "core/SettingsWatch.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "platform/Platform.h"
#include "preferences/PreferenceViewController.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/WaitUntil.h"
#include "volumes/FakeVolumeSource.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileSystemWatcher>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace brightsweep::test {
namespace {

// What the file holds, as another process reads it.
QString inFile(QLatin1String key) {
    const UserDefaults other(UserDefaults::standardUserDefaults().file());
    return other.hasUserValue(key) ? other.stringForKey(key) : QStringLiteral("-");
}

class PreferencePage : public testing::Test {
protected:
    PreferencePage() {
        Platform::current().volumes.reset(volumes);
        QObject::connect(&page, &PreferenceViewController::settingsChanged, [this] { ++changes; });
        NotificationCenter::defaultCenter().addObserver(
            &page, changeCheckBoxNotification, [this](const Notification &notification) {
                const auto tag = notification.userInfo.value(QStringLiteral("tag")).toInt();
                const bool flag = notification.userInfo.value(QStringLiteral("flag")).toBool();
                clicks.emplace_back(tag, flag);
            });
    }

    FakeVolumeSource *volumes = new FakeVolumeSource;
    bool areFree = true;
    PreferenceViewController page{{[this] { return areFree; }, {}, {}}};
    int changes = 0;
    std::vector<std::pair<int, bool>> clicks;
};

TEST_F(PreferencePage, EveryActionIsInTheFileAtOnce) {
    const struct {
        std::function<void()> act;
        QLatin1String key;
        const char *value;
    } rows[] = {
        {[&] { page.changeArlarmSliderValue(0.25F); }, DSSpaceAlarmKey, "0.25"},
        {[&] { page.changeMemorySliderVaule(0.5F); }, DSMemoryAlarmKey, "0.5"},
        {[&] { page.changeLimitUnit(3); }, DSDuplicatesUnit, "3"},
        {[&] { page.changeDiskUsageUnit(4); }, DSDiskUsageUnit, "4"},
        {[&] { page.changeCheckInterval(604'800); }, SUScheduledCheckInterval, "604800"},
        {[&] { page.changeAutoUpdate(1); }, SUEnableAutomaticChecks, "1"},
        {[&] { page.changeSysDuplicates(2); }, DSSystemDuplication, "1"},
        {[&] { page.changeHiddenDuplicates(0); }, DSHidenDuplication, "0"},
        {[&] { page.changeCleanMayAskForRights(0); }, cleanMayAskForRightsKey, "0"},
        {[&] { page.changeLanguage(QStringLiteral("de")); }, languageKey, "de"},
    };
    for (const auto &row : rows) {
        changes = 0;
        row.act();
        EXPECT_EQ(inFile(row.key), QLatin1String(row.value)) << row.key.data();
        EXPECT_GE(changes, 1) << row.key.data();
    }
    EXPECT_TRUE(page.needsRestart());
}

TEST_F(PreferencePage, ALimitHasFourCharactersAndDigitsAlone) {
    const struct {
        int tag;
        const char *typed;
        const char *kept;
        QLatin1String key;
        const char *stored;
    } rows[] = {
        {1024, "12345", "1234", DSDuplicationLimit, "1234"},
        {1024, "", "", DSDuplicationLimit, "0"},
        {2048, "0042", "0042", DSDiskUsageLimit, "42"},
        {2048, "1e9x", "1E9X", DSDiskUsageLimit, "1"},
        {7, "99", "99", DSDiskUsageLimit, "1"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(PreferenceViewController::controlTextDidChange(row.tag, QLatin1String(row.typed)),
                  QLatin1String(row.kept));
        EXPECT_EQ(inFile(row.key), QLatin1String(row.stored)) << row.typed;
    }
    const auto isValid = [](const char *text, int to, int from, QString *why = nullptr) {
        return PreferenceViewController::isPartialStringValid(QString::fromUtf8(text), to, from,
                                                              why);
    };
    QString why;
    EXPECT_TRUE(isValid("12", 2, 1));
    EXPECT_TRUE(isValid("a12", 3, 1)) << "only what was put in counts";
    EXPECT_TRUE(isValid("1", 1, 2)) << "something was taken away";
    for (const char *text : {"1-", "1 ", "1a", "1٣"})
        EXPECT_FALSE(isValid(text, 2, 1, &why)) << text;
    EXPECT_EQ(why, QStringLiteral("不是数字"));
}

TEST_F(PreferencePage, ACategoryIsTurnedOverUnlessItIsInUse) {
    for (int tag = 1; tag <= int(categoryCount); ++tag) {
        const QLatin1String key(cleanCategories[std::size_t(tag - 1)].key);
        for (const auto &[before, after] : {std::pair(0, "1"), {1, "0"}, {2, "0"}}) {
            PreferenceViewController::setCategoryClicked(unsigned(tag - 1), before);
            clicks.clear();
            page.changeCategory(tag);
            EXPECT_EQ(inFile(key), QLatin1String(after)) << tag;
            EXPECT_EQ(clicks, (std::vector<std::pair<int, bool>>{{tag, before != 0}}));
        }
    }
    areFree = false;
    clicks.clear();
    page.changeUserDownloads();
    EXPECT_EQ(inFile(DSUserDownloadsKey), QStringLiteral("0"));
    EXPECT_TRUE(clicks.empty());
}

TEST_F(PreferencePage, WhatAnotherProcessSetsIsToldByItsKey) {
    const SettingsWatch watch;
    std::vector<QString> keys;
    NotificationCenter::defaultCenter().addObserver(
        &page, UserDefaultsDidChangeNotification, [&](const Notification &notification) {
            if (notification.userInfo.value(QStringLiteral("elsewhere")).toBool())
                keys.push_back(notification.userInfo.value(QStringLiteral("key")).toString());
        });
    // The two write in turns, and a file is replaced each time.
    UserDefaults other(UserDefaults::standardUserDefaults().file());
    for (int turn = 1; turn <= 3; ++turn) {
        other.setObject(DSDuplicationLimit, 10 * turn);
        waitUntil(
            [&] { return page.limit(PreferenceViewController::limitFields[0]) == 10 * turn; });
        PreferenceViewController::controlTextDidChange(1024, QString::number(turn));
        EXPECT_EQ(inFile(DSDuplicationLimit), QString::number(turn));
    }
    EXPECT_EQ(keys, std::vector<QString>(3, QLatin1String(DSDuplicationLimit)));
    other.removeObject(DSDuplicationLimit);
    waitUntil([&] { return page.limit(PreferenceViewController::limitFields[0]) == 1; });
    // The folder goes, and comes again with another setting; nothing stands in its place meanwhile.
    const auto folder = other.file().parent_path();
    const std::filesystem::path away = folder.native() + ".moved";
    other.setObject(DSDuplicationLimit, 7);
    waitUntil([&] { return page.limit(PreferenceViewController::limitFields[0]) == 7; });
    std::filesystem::rename(folder, away);
    waitUntil([&] { return page.limit(PreferenceViewController::limitFields[0]) == 1; });
    EXPECT_FALSE(std::filesystem::exists(folder));
    UserDefaults(away / other.file().filename()).setObject(DSDuplicationLimit, 5);
    std::filesystem::rename(away, folder);
    waitUntil([&] { return page.limit(PreferenceViewController::limitFields[0]) == 5; });
}

TEST_F(PreferencePage, AClosedFolderIsToldBeforeAChangeFails) {
    needRoot();
    const auto folder = UserDefaults::standardUserDefaults().file().parent_path();
    std::filesystem::create_directories(folder);
    EXPECT_EQ(page.settingsProblem(), QString());
    const int result = runInChild([&] {
        return becomeUnprivileged() && page.settingsProblem().contains(QLatin1String("denied")) ? 0
                                                                                                : 1;
    });
    EXPECT_EQ(result, 0);
}

TEST_F(PreferencePage, AFullDiskIsNotTriedOverAndOver) {
    needRoot();
    const auto folder = UserDefaults::standardUserDefaults().file().parent_path();
    std::filesystem::create_directories(folder);
    const int result = runInChild([&] {
        if (!mountSmallFileSystem(folder, 8 * 1024))
            return -1;
        std::ofstream(folder / "full") << std::string(64 * 1024, 'x');
        const SettingsWatch watch;
        QFileSystemWatcher events({QString::fromStdString(folder.native())});
        int count = 0;
        QObject::connect(&events, &QFileSystemWatcher::directoryChanged, [&] { ++count; });
        UserDefaults::standardUserDefaults().setObject(DSDuplicationLimit, 7);
        QElapsedTimer time;
        time.start();
        waitUntil([&] { return time.elapsed() > 500; });
        return count;
    });
    EXPECT_TRUE(result > 0 && result < 4) << result;
}

TEST_F(PreferencePage, AnAlarmShowsWhatItWouldShow) {
    EXPECT_EQ(page.spacePreview(0.5F).image, QString());
    volumes->add("/").name = "root";
    const AlarmPreview quiet = page.spacePreview(0);
    ASSERT_TRUE(quiet.image.endsWith(QLatin1String("%.png")));
    EXPECT_FALSE(quiet.warns);
    const AlarmPreview loud = page.spacePreview(1);
    EXPECT_TRUE(loud.image.endsWith(QLatin1String("%-1.png")));
    EXPECT_TRUE(loud.warns);
}

} // namespace
} // namespace brightsweep::test
