#pragma once

#include "linux/TextKey.h"

#include <array>
#include <string_view>

namespace brightsweep {

/// What each standard folder of the user is for, as StandardFolder::role. The same folder in two
/// roles is in another one than its own, whichever is asked for.
enum class FolderRole {
    None = 0,
    Config,
    Data,
    State,
    Cache,
    Trash,
    TrashItems,
    Desktop,
    Documents,
    Downloads,
    Music,
    Pictures,
    Public,
    Templates,
    Videos,
};

/// The clean categories by what their folders are. The value is the category's index, which rows,
/// settings and the command line count by.
enum class CleanPlace : unsigned {
    LocalCaches,
    UserCaches,
    LocalLogs,
    UserLogs,
    HomeTrash, ///< the folder that holds the trashed items themselves
    Downloads,
};

/// One of the six fixed categories: all that tells it from the others.
struct CleanCategory {
    CleanPlace place = CleanPlace::LocalCaches;
    const char *name;            ///< in the program's own words, which are the key of the reader's
    const char *key;             ///< of the setting that keeps how much of it is selected
    const char *selectedAtFirst; ///< that setting's default
    const char *context;         ///< tells the observers of "filesSize" apart
    const char *titleKey;        ///< of the text that heads its page
    const char *descriptionKey;
    const char *headingImage;
    const char *rowImage;
    const char *groupIcon; ///< the icon theme's name: the trash full, the downloads their own
    /// The user's folder whose children are its items. None where systemFolders or a search name
    /// the folders.
    FolderRole userFolder = FolderRole::None;
};

inline constexpr std::array cleanCategories = {
    CleanCategory{CleanPlace::LocalCaches, textKey("System Caches"), "SystemCaches", "1",
                  "KVO_CONTEXT_SYS_CACHES", textKey("TITLE_CLEAN_SYS_CACHES"),
                  textKey("DESC_CLEAN_SYS_CACHES"), "system_caches_b.png", "system_caches_b.png",
                  "folder"},
    CleanCategory{CleanPlace::UserCaches, textKey("User Caches"), "UserCaches", "1",
                  "KVO_CONTEXT_USER_CACHES", textKey("TITLE_CLEAN_USR_CACHES"),
                  textKey("DESC_CLEAN_USR_CACHES"), "user_caches_b.png", "user_caches_b.png",
                  "folder", FolderRole::Cache},
    CleanCategory{CleanPlace::LocalLogs, textKey("System Logs"), "SystemLogs", "1",
                  "KVO_CONTEXT_SYS_LOGS", textKey("TITLE_CLEAN_SYS_LOGS"),
                  textKey("DESC_CLEAN_SYS_LOGS"), "system_logs_b.png", "system_logs_b.png",
                  "folder"},
    CleanCategory{CleanPlace::UserLogs, textKey("User Logs"), "UserLogs", "1",
                  "KVO_CONTEXT_USER_LOGS", textKey("TITLE_CLEAN_USR_LOGS"),
                  textKey("DESC_CLEAN_USR_LOGS"), "user_logs_b.png", "user_logs_b.png", "folder"},
    CleanCategory{CleanPlace::HomeTrash, textKey("User Trash"), "UserTrash", "0",
                  "KVO_CONTEXT_USER_TRASH", textKey("TITLE_CLEAN_TRASH"),
                  textKey("DESC_CLEAN_TRASH"), "user_trash_b.png", "user_trash_b.png",
                  "user-trash-full", FolderRole::TrashItems},
    CleanCategory{CleanPlace::Downloads, textKey("User Downloads"), "UserDownloads", "0",
                  "KVO_CONTEXT_USER_DOWNLOADS", textKey("TITLE_CLEAN_DOWNLOADS"),
                  textKey("DESC_CLEAN_DOWNLOADS"), "download_b.png", "download_folder_b.png",
                  "folder-download", FolderRole::Downloads},
};

inline constexpr unsigned categoryCount = unsigned(cleanCategories.size());

inline constexpr const CleanCategory &categoryOf(CleanPlace place) {
    return cleanCategories[unsigned(place)];
}

/// A folder of the system whose every direct child can go without harm, while it stays itself.
struct SystemFolder {
    CleanPlace category = CleanPlace::LocalCaches;
    std::string_view path;
};

inline constexpr std::string_view aptArchives = "/var/cache/apt/archives";
/// What belongs to apt in that folder and is no item.
inline constexpr std::array<std::string_view, 2> aptReserved = {"lock", "partial"};

inline constexpr std::array systemFolders = {
    SystemFolder{CleanPlace::LocalCaches, aptArchives},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/dnf"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/libdnf5"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/yum"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/pacman/pkg"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/zypp/packages"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/PackageKit"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/fontconfig"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/man"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/swcatalog"},
    SystemFolder{CleanPlace::LocalCaches, "/var/cache/app-info"},
    SystemFolder{CleanPlace::LocalCaches, "/var/lib/snapd/cache"},
    SystemFolder{CleanPlace::LocalLogs, "/var/log/apt"},
    SystemFolder{CleanPlace::LocalLogs, "/var/log/unattended-upgrades"},
    SystemFolder{CleanPlace::LocalLogs, "/var/log/dist-upgrade"},
    SystemFolder{CleanPlace::LocalLogs, "/var/crash"},
    SystemFolder{CleanPlace::LocalLogs, "/var/lib/systemd/coredump"},
};

} // namespace brightsweep
