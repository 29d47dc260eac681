#pragma once

#include "core/SettingKeys.h"
#include "preferences/PreferenceViewController.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace brightsweep {

/// How much of a category is selected, as its setting holds it.
enum class CategorySelection { None = 0, All = 1, Part = 2 };

/// One of the six fixed categories; its place in the table is the index used everywhere.
struct CleanCategory {
    const char *name;
    QLatin1String key;
    void (*setClicked)(int);
    /// Tells the observers of "filesSize" apart.
    const char *context;
};

inline constexpr std::array cleanCategories = {
    CleanCategory{"System Caches", DSSystemCachesKey,
                  &PreferenceViewController::setSystemCashesClicked, "KVO_CONTEXT_SYS_CACHES"},
    CleanCategory{"User Caches", DSUserCachesKey, &PreferenceViewController::setUserCashesClicked,
                  "KVO_CONTEXT_USER_CACHES"},
    CleanCategory{"System Logs", DSSystemLogsKey, &PreferenceViewController::setSystemLogsClicked,
                  "KVO_CONTEXT_SYS_LOGS"},
    CleanCategory{"User Logs", DSUserLogsKey, &PreferenceViewController::setUserLogsClicked,
                  "KVO_CONTEXT_USER_LOGS"},
    CleanCategory{"User Trash", DSUserTrashKey, &PreferenceViewController::setUserTrashClicked,
                  "KVO_CONTEXT_USER_TRASH"},
    CleanCategory{"User Downloads", DSUserDownloadsKey,
                  &PreferenceViewController::setUserDownLoadsFolderClicked,
                  "KVO_CONTEXT_USER_DOWNLOADS"},
};

inline constexpr char KVO_CONTEXT_SCAN_FINISH[] = "KVO_CONTEXT_SCAN_FINISH";
inline constexpr char KVO_CONTEXT_CLEAN_FINISH[] = "KVO_CONTEXT_CLEAN_FINISH";

inline constexpr unsigned categoryCount = unsigned(cleanCategories.size());

/// Row of the left list that shows a category; row 0 is the overview.
inline constexpr int rowOfCategory(unsigned category) {
    return int(category) + 1;
}

/// The stored selection of all six in words, "0", "1" or "2", in their order.
QStringList getDefaultsValue();

} // namespace brightsweep
