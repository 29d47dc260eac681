#include "platform/linux/OwnPlaces.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/UserDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>

namespace brightsweep {

namespace {

struct RoleRow {
    FolderRole role;
    const char *variable; ///< of the environment, or of user-dirs.dirs
    const char *belowHome;
    bool isUserDirectory;
};

constexpr std::array roles = {
    RoleRow{FolderRole::Config, "XDG_CONFIG_HOME", ".config", false},
    RoleRow{FolderRole::Data, "XDG_DATA_HOME", ".local/share", false},
    RoleRow{FolderRole::State, "XDG_STATE_HOME", ".local/state", false},
    RoleRow{FolderRole::Cache, "XDG_CACHE_HOME", ".cache", false},
    RoleRow{FolderRole::Desktop, "XDG_DESKTOP_DIR", "Desktop", true},
    RoleRow{FolderRole::Documents, "XDG_DOCUMENTS_DIR", "Documents", true},
    RoleRow{FolderRole::Downloads, "XDG_DOWNLOAD_DIR", "Downloads", true},
    RoleRow{FolderRole::Music, "XDG_MUSIC_DIR", "Music", true},
    RoleRow{FolderRole::Pictures, "XDG_PICTURES_DIR", "Pictures", true},
    RoleRow{FolderRole::Public, "XDG_PUBLICSHARE_DIR", "Public", true},
    RoleRow{FolderRole::Templates, "XDG_TEMPLATES_DIR", "Templates", true},
    RoleRow{FolderRole::Videos, "XDG_VIDEOS_DIR", "Videos", true},
};

using Directories = std::map<std::string, std::string>;

// None where the user's choice cannot be read.
std::optional<Directories> userDirectories() {
    const auto text = readWholeFile(
        paths::join(environmentFolder("XDG_CONFIG_HOME", ".config"), "user-dirs.dirs"));
    if (text)
        return parseUserDirectories(*text, homeFolder().native());
    if (text.error() == std::errc::no_such_file_or_directory)
        return Directories();
    return {};
}

// Where the session's sockets are; no category's folder.
std::string runtimeFolder() {
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && folder[0] == '/' ? folder : "";
}

std::filesystem::path placeOfRow(const RoleRow &row, const Directories &named) {
    if (!row.isUserDirectory)
        return environmentFolder(row.variable, row.belowHome);
    const auto found = named.find(row.variable);
    return found == named.end() ? paths::join(homeFolder(), row.belowHome)
                                : std::filesystem::path(found->second);
}

RemovalCaller ownCaller() {
    RemovalCaller caller;
    caller.user = ::geteuid();
    caller.homes.push_back(homeFolder().native());
    std::array<char, 16 * 1024> buffer;
    passwd entry{};
    passwd *found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        caller.homes.emplace_back(found->pw_dir);
    const Directories named = userDirectories().value_or(Directories());
    for (const RoleRow &row : roles) {
        // A user directory that is the home itself is switched off.
        if (const auto place = placeOfRow(row, named);
            !row.isUserDirectory || place != homeFolder())
            caller.standardFolders.push_back({int(row.role), place.native()});
    }
    if (const auto runtime = runtimeFolder(); !runtime.empty())
        caller.furtherFolders.push_back({systemRole, runtime});
    for (const FolderRole role : {FolderRole::Trash, FolderRole::TrashItems})
        caller.standardFolders.push_back({int(role), folderOfRole(role).native()});
    caller.ownsAllHomes = caller.user == 0;
    if (const char *prefix = std::getenv("BRIGHTSWEEP_SYSTEM_ROOT"))
        caller.systemRoot = prefix;
    return caller;
}

// What the answer depends on besides the mounts and the disk.
std::string surroundings() {
    std::string text = std::to_string(::geteuid());
    for (const char *name : {"HOME", "BRIGHTSWEEP_SYSTEM_ROOT", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                             "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const char *value = std::getenv(name);
        text.append("\n").append(value ? value : "");
    }
    return text;
}

} // namespace

std::filesystem::path folderOfRole(FolderRole role) {
    if (role == FolderRole::Trash)
        return paths::join(folderOfRole(FolderRole::Data), "Trash");
    if (role == FolderRole::TrashItems)
        return paths::join(folderOfRole(FolderRole::Trash), "files");
    for (const RoleRow &row : roles) {
        if (row.role != role)
            continue;
        if (!row.isUserDirectory)
            return placeOfRow(row, {});
        if (const auto named = userDirectories())
            return placeOfRow(row, *named);
        NSLog("Where the user's folders are cannot be read");
    }
    return {};
}

std::shared_ptr<const SystemPlaces> ownPlaces() {
    static std::mutex mutex;
    static RecentPlaces places;
    static std::string madeFor;
    const std::lock_guard lock(mutex);
    if (std::string now = surroundings(); now != madeFor) {
        places = {};
        madeFor = std::move(now);
    }
    return places.get(ownCaller, ownMounts().current());
}

} // namespace brightsweep
