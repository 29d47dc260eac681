#include "app/AppController.h"
#include "app/AppPrefsWindowController.h"
#include "core/SettingKeys.h"
#include "foundation/UserDefaults.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

class PrefsWindow : public testing::Test {
protected:
    PrefsWindow() {
        QObject::connect(&window, &DBPrefsWindowController::displayPanel,
                         [this](const QString &identifier, bool animate) {
                             shown += identifier + (animate ? QStringLiteral("~") : QString());
                         });
        QObject::connect(&window, &AppPrefsWindowController::beginSearchApps,
                         [this] { ++searches; });
    }
    static int storedPage() {
        return int(UserDefaults::standardUserDefaults().integerForKey(DSToobarItem));
    }

    AppPrefsWindowController window;
    QStringList shown;
    int searches = 0;
};

TEST_F(PrefsWindow, AnItemStandsForItsFeaturesState) {
    const struct {
        const char *item;
        void (DBPrefsWindowController::*setState)(std::int64_t);
        const char *panels[3];
        int stored;
    } rows[] = {
        {"Scan",
         &DBPrefsWindowController::setView4FastClean,
         {"Scan", "QC_FastClean", "DATA_FastClean"},
         0},
        {"duplicates_file",
         &DBPrefsWindowController::setView4Duplicates,
         {"duplicates_file", "QC_Duplicates", "DATA_Duplicates"},
         1},
        {"disk_usage",
         &DBPrefsWindowController::setView4DiskUsage,
         {"disk_usage", "QC_DiskUsage", "DATA_DiskUsage"},
         2},
        {"login_items", nullptr, {"login_items"}, 5},
        {"memory", nullptr, {"memory"}, 4},
        {"delete", nullptr, {"delete"}, 3},
        // Looked at in passing, so that the one before stays.
        {"preferences", nullptr, {"preferences"}, 3},
    };
    window.showWindow();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.item);
        const QString item = QString::fromLatin1(row.item);
        for (int state = 0; state < (row.setState ? 3 : 1); ++state) {
            if (row.setState)
                (window.*row.setState)(state);
            window.toggleActivePreferenceView(item);
            EXPECT_EQ(window.currentPanel(), QLatin1String(row.panels[state]));
            EXPECT_EQ(window.selectedItem(), item);
            EXPECT_EQ(storedPage(), row.stored);
        }
        if (row.setState)
            (window.*row.setState)(9);
        EXPECT_EQ(window.panelForIdentifier(item), item) << "no such state";
    }
    window.toggleActivePreferenceView(QStringLiteral("Help"));
    EXPECT_EQ(window.selectedItem(), QStringLiteral("preferences"));
    EXPECT_EQ(storedPage(), 3);
    // A state set while another item is selected shows when the user returns.
    window.setView4DiskUsage(2);
    EXPECT_EQ(window.currentPanel(), QStringLiteral("preferences"));
    window.toggleActivePreferenceView(QStringLiteral("disk_usage"));
    EXPECT_EQ(window.currentPanel(), QStringLiteral("DATA_DiskUsage"));
}

TEST_F(PrefsWindow, ShowsTheStoredPage) {
    const struct {
        const char *stored;
        const char *panel;
    } rows[] = {
        {"0", "Scan"},        {"2", "disk_usage"},
        {"5", "login_items"}, {"6", "QC_FastClean"},
        {"12", "Scan"},       {"14", "preferences"},
        {"15", "Scan"},       {"16", "Scan"},
        {"-1", "Scan"},       {"18446744073709551615", "Scan"},
        {"x", "Scan"},
    };
    for (const auto &row : rows) {
        UserDefaults::standardUserDefaults().setObject(DSToobarItem,
                                                       QString::fromLatin1(row.stored));
        window.showWindow();
        EXPECT_EQ(window.currentPanel(), QLatin1String(row.panel)) << row.stored;
    }
    for (const QString &panel : std::as_const(shown))
        EXPECT_FALSE(panel.endsWith(QLatin1Char('~'))) << "no animation at a showing";
}

TEST_F(PrefsWindow, SamePageChangesOnlyTitleAndSearch) {
    window.showWindow();
    int titles = 0;
    QObject::connect(&window, &DBPrefsWindowController::titleChanged, [&] { ++titles; });
    window.toggleActivePreferenceView(QStringLiteral("delete"));
    window.toggleActivePreferenceView(QStringLiteral("delete"));
    EXPECT_EQ(shown, (QStringList{QStringLiteral("Scan"), QStringLiteral("delete~")}));
    EXPECT_EQ(titles, 2);
    EXPECT_EQ(searches, 2);
    window.displayViewForIdentifier(QStringLiteral("nowhere"), true);
    window.displayViewForIdentifier(QStringLiteral("space"), true);
    EXPECT_EQ(window.currentPanel(), QStringLiteral("delete"));
}

TEST_F(PrefsWindow, TheAnimationFollowsItsSettings) {
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    AppController controller;
    controller.awakeFromNib();
    auto &shared = AppPrefsWindowController::sharedPrefsWindowController();
    shared.showWindow();
    EXPECT_TRUE(shared.crossFade());
    EXPECT_EQ(shared.crossFadeDuration(true).count(), 1250);
    EXPECT_EQ(shared.crossFadeDuration(false).count(), 250);
    defaults.setObject(QStringLiteral("fade"), QStringLiteral("NO"));
    EXPECT_FALSE(shared.crossFade());
    defaults.setObject(QStringLiteral("shiftSlowsAnimation"), false);
    EXPECT_EQ(shared.crossFadeDuration(true).count(), 250);
    defaults.removeObject(QStringLiteral("fade"));
    EXPECT_TRUE(shared.crossFade());
    AppPrefsWindowController::resetSharedPrefsWindowController();
}

} // namespace
} // namespace brightsweep::test
