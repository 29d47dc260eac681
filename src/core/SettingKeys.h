#pragma once

#include "linux/CategoryTable.h"

#include <QLatin1String>
#include <QVariant>

#include <cstdint>
#include <limits>

namespace brightsweep {

inline constexpr QLatin1String DSDisplayTypeKey("DisplayType");
inline constexpr QLatin1String DSSpaceAlarmKey("SpaceAlarm");
inline constexpr QLatin1String DSMemoryAlarmKey("MemoryAlarm");
inline constexpr QLatin1String DSSystemCachesKey(categoryOf(CleanPlace::LocalCaches).key);
inline constexpr QLatin1String DSUserCachesKey(categoryOf(CleanPlace::UserCaches).key);
inline constexpr QLatin1String DSSystemLogsKey(categoryOf(CleanPlace::LocalLogs).key);
inline constexpr QLatin1String DSUserLogsKey(categoryOf(CleanPlace::UserLogs).key);
inline constexpr QLatin1String DSUserTrashKey(categoryOf(CleanPlace::HomeTrash).key);
inline constexpr QLatin1String DSUserDownloadsKey(categoryOf(CleanPlace::Downloads).key);
inline constexpr QLatin1String DSLoginCheckKey("LoginCheck");
inline constexpr QLatin1String DSLoginItemIsHide("DSLoginItemIsHide");
inline constexpr QLatin1String DSToobarItem("DSToolbarItem");
inline constexpr QLatin1String DSToobarItem_app("DSToolbarItem_app");
inline constexpr QLatin1String DSDuplicationLimit("DSDuplicationLimit");
inline constexpr QLatin1String DSDuplicatesUnit("DSDuplicatesUnit");
inline constexpr QLatin1String DSHidenDuplication("DSHidenDuplication");
inline constexpr QLatin1String DSSystemDuplication("DSSystemDuplication");
inline constexpr QLatin1String DSDiskUsageLimit("DSDiskUsageLimit");
inline constexpr QLatin1String DSDiskUsageUnit("DSDiskUsageUnit");
inline constexpr QLatin1String DSDiskUsageShowStyle("DSDiskUsageShowStyle");
/// True hides the status item, in spite of the name.
inline constexpr QLatin1String DSShowStatusItem("DSShowStatusItem");
inline constexpr QLatin1String SUEnableAutomaticChecks("SUEnableAutomaticChecks");
inline constexpr QLatin1String SUScheduledCheckInterval("SUScheduledCheckInterval");
/// The language of the window as Qt names locales, "de"; empty for the desktop's.
inline constexpr QLatin1String languageKey("Language");
/// A clean that leaves items for want of rights may ask for them.
inline constexpr QLatin1String cleanMayAskForRightsKey("CleanMayAskForRights");
/// The size of the content that the user gave the window, as "880x500".
inline constexpr QLatin1String mainWindowSizeKey("MainWindowSize");

enum class SettingType { Integer, Float, Bool, Text };

/// Who registers the default of a setting.
enum class SettingOwner { PreferenceViewController, AppController, Nobody };

/// One setting: its key, what it holds, and what it is without a value of the user's.
struct SettingKey {
    QLatin1String key;
    SettingType type = SettingType::Integer;
    SettingOwner owner = SettingOwner::PreferenceViewController;
    /// Written as the store writes it; null where no default is registered, so that it reads 0.
    const char *defaultText = nullptr;
    /// The range of a number.
    std::int64_t least = 0;
    std::int64_t most = std::numeric_limits<std::int64_t>::max();

    /// The registered default, invalid where there is none.
    QVariant defaultValue() const;
};

/// The state of a category: 0 none, 1 all, 2 part.
inline constexpr SettingKey categorySetting(const CleanCategory &category) {
    return {QLatin1String(category.key),
            SettingType::Integer,
            SettingOwner::PreferenceViewController,
            category.selectedAtFirst,
            0,
            2};
}

/// The complete vocabulary of the store.
inline constexpr SettingKey settingKeys[] = {
    {DSDisplayTypeKey, SettingType::Integer, SettingOwner::Nobody},
    {DSSpaceAlarmKey, SettingType::Float, SettingOwner::PreferenceViewController, "0.1", 0, 1},
    {DSMemoryAlarmKey, SettingType::Float, SettingOwner::PreferenceViewController, "0.1", 0, 1},
    categorySetting(cleanCategories[0]),
    categorySetting(cleanCategories[1]),
    categorySetting(cleanCategories[2]),
    categorySetting(cleanCategories[3]),
    categorySetting(cleanCategories[4]),
    categorySetting(cleanCategories[5]),
    {DSLoginCheckKey, SettingType::Integer, SettingOwner::PreferenceViewController, "0", 0, 1},
    {DSLoginItemIsHide, SettingType::Integer, SettingOwner::PreferenceViewController, "0", 0, 1},
    {QLatin1String("DSMyMacClicked"), SettingType::Integer, SettingOwner::PreferenceViewController,
     "1", 0, 1},
    {QLatin1String("DSLastClickRow"), SettingType::Integer, SettingOwner::PreferenceViewController,
     "0"},
    {QLatin1String("DSUninstall"), SettingType::Integer, SettingOwner::Nobody, nullptr, 0, 1},
    {QLatin1String("DSFreeSpace"), SettingType::Integer, SettingOwner::Nobody, nullptr, 0, 1},
    {DSToobarItem, SettingType::Integer, SettingOwner::PreferenceViewController, "0"},
    {DSToobarItem_app, SettingType::Integer, SettingOwner::PreferenceViewController, "0"},
    {DSDuplicationLimit, SettingType::Integer, SettingOwner::PreferenceViewController, "1"},
    {DSDuplicatesUnit, SettingType::Integer, SettingOwner::PreferenceViewController, "2", 0, 4},
    {DSHidenDuplication, SettingType::Bool, SettingOwner::PreferenceViewController, "0"},
    {DSSystemDuplication, SettingType::Bool, SettingOwner::PreferenceViewController, "0"},
    {DSShowStatusItem, SettingType::Bool, SettingOwner::PreferenceViewController, "0"},
    {DSDiskUsageLimit, SettingType::Integer, SettingOwner::PreferenceViewController, "0"},
    {DSDiskUsageUnit, SettingType::Integer, SettingOwner::PreferenceViewController, "0", 0, 4},
    {DSDiskUsageShowStyle, SettingType::Bool, SettingOwner::PreferenceViewController, "0"},
    {SUEnableAutomaticChecks, SettingType::Bool, SettingOwner::Nobody},
    {SUScheduledCheckInterval, SettingType::Integer, SettingOwner::Nobody},
    {languageKey, SettingType::Text, SettingOwner::Nobody},
    {cleanMayAskForRightsKey, SettingType::Bool, SettingOwner::PreferenceViewController, "1"},
    {mainWindowSizeKey, SettingType::Text, SettingOwner::Nobody},
    {QLatin1String("openAtStartup"), SettingType::Text, SettingOwner::AppController, "YES"},
    {QLatin1String("fade"), SettingType::Text, SettingOwner::AppController, "YES"},
    {QLatin1String("shiftSlowsAnimation"), SettingType::Text, SettingOwner::AppController, "YES"},
};

/// The entry of a key, or null.
const SettingKey *findSettingKey(const QString &key);

/// The defaults that one owner registers.
QVariantMap defaultsOf(SettingOwner owner);

} // namespace brightsweep
