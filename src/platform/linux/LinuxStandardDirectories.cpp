#include "platform/linux/LinuxStandardDirectories.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/MountTable.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

namespace brightsweep {

namespace {

using std::filesystem::path;

// Packages' own folders below /var/cache and /var/log whose contents come again by themselves.
constexpr std::array localCaches = {
    "/var/cache/apt/archives", "/var/cache/dnf",        "/var/cache/libdnf5",
    "/var/cache/yum",          "/var/cache/pacman/pkg", "/var/cache/zypp/packages",
    "/var/cache/PackageKit",   "/var/cache/fontconfig", "/var/cache/man",
    "/var/cache/swcatalog",    "/var/cache/app-info",   "/var/lib/snapd/cache",
};
constexpr std::array localLogs = {
    "/var/log/apt", "/var/log/unattended-upgrades", "/var/log/dist-upgrade",
    "/var/crash",   "/var/lib/systemd/coredump",
};
constexpr std::array logFolderNames = {"logs", "Logs", "log"};
constexpr std::array logFileEndings = {".log", ".log.gz", ".log.xz"};

path configHome() {
    return environmentFolder("XDG_CONFIG_HOME", ".config");
}
path dataHome() {
    return environmentFolder("XDG_DATA_HOME", ".local/share");
}
path stateHome() {
    return environmentFolder("XDG_STATE_HOME", ".local/state");
}
path cacheHome() {
    return environmentFolder("XDG_CACHE_HOME", ".cache");
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::optional<struct stat> statusOf(const path &item) {
    struct stat status;
    if (::lstat(item.c_str(), &status) != 0)
        return {};
    return status;
}

bool isRealDirectory(const path &folder) {
    const auto status = statusOf(folder);
    return status && S_ISDIR(status->st_mode);
}

std::string resolvedPath(const path &folder) {
    struct Free {
        void operator()(char *text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> resolved(::realpath(folder.c_str(), nullptr));
    return resolved ? std::string(resolved.get()) : std::string();
}

bool isDirectory(const path &folder) {
    struct stat status;
    return ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The names in a directory; nothing where it cannot be read.
std::optional<std::vector<std::string>> namesIn(const path &folder) {
    struct Close {
        void operator()(DIR *stream) const { ::closedir(stream); }
    };
    const std::unique_ptr<DIR, Close> directory(::opendir(folder.c_str()));
    if (!directory)
        return {};
    std::vector<std::string> names;
    while (const dirent *entry = ::readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

// "x.log", "x.log.3", "x.log.gz", "x.log.xz".
bool isLogFileName(std::string_view name) {
    const auto endsIn = [&](std::string_view ending) {
        return name.size() > ending.size() && name.ends_with(ending);
    };
    if (std::any_of(logFileEndings.begin(), logFileEndings.end(), endsIn))
        return true;
    const auto point = name.rfind('.');
    return point != name.npos && point + 1 < name.size() &&
           std::all_of(name.begin() + std::ptrdiff_t(point) + 1, name.end(), isDigit) &&
           name.substr(0, point).ends_with(".log") && point > 4;
}

// "2026-01-31", "20260131", "2026_01_31" and such, with a time behind if there is one.
bool isDateName(std::string_view name) {
    constexpr std::array<std::string_view, 4> forms = {"0000-00-00", "00000000", "0000_00_00",
                                                       "0000.00.00"};
    const auto begins = [&](std::string_view form) {
        if (name.size() < form.size())
            return false;
        for (std::size_t i = 0; i < form.size(); ++i) {
            if (form[i] == '0' ? !isDigit(name[i]) : name[i] != form[i])
                return false;
        }
        const std::string_view rest = name.substr(form.size());
        return rest.find_first_not_of("0123456789-_.:T") == rest.npos;
    };
    return std::any_of(forms.begin(), forms.end(), begins);
}

// A folder of logs holds nothing else; a chat program's "logs" is history.
bool holdsOnlyLogs(const path &folder) {
    const auto names = namesIn(folder);
    if (!names)
        return false;
    return std::all_of(names->begin(), names->end(), [&](const std::string &name) {
        const auto status = statusOf(paths::join(folder, name));
        if (!status)
            return false;
        return S_ISREG(status->st_mode) ? isLogFileName(name)
                                        : S_ISDIR(status->st_mode) && isDateName(name);
    });
}

// Every folder of logs two levels below a base folder, in the order of names.
void addLogFolders(std::vector<path> &folders, const path &base) {
    auto programs = namesIn(base).value_or(std::vector<std::string>());
    std::sort(programs.begin(), programs.end());
    for (const std::string &program : programs) {
        const path programFolder = paths::join(base, program);
        if (!isRealDirectory(programFolder))
            continue;
        for (const char *name : logFolderNames) {
            const path folder = paths::join(programFolder, name);
            if (isRealDirectory(folder) && holdsOnlyLogs(folder))
                folders.push_back(folder);
        }
    }
}

std::vector<path> userLogs() {
    std::vector<path> folders = {paths::join(stateHome(), "log"), paths::join(dataHome(), "xorg"),
                                 paths::join(homeFolder(), ".npm/_logs"),
                                 paths::join(dataHome(), "sddm")};
    for (const path &base : {configHome(), dataHome(), stateHome()})
        addLogFolders(folders, base);
    return folders;
}

// The value of XDG_DOWNLOAD_DIR in user-dirs.dirs: "$HOME/…" or an absolute path in double quotes,
// with backslash escapes. Relative values count as not configured.
path downloads() {
    const auto text = readSmallFile(paths::join(configHome(), "user-dirs.dirs"));
    path folder;
    std::string_view rest = text ? std::string_view(*text) : std::string_view();
    constexpr std::string_view key = "XDG_DOWNLOAD_DIR=\"";
    while (!rest.empty()) {
        const auto end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(key))
            continue;
        line.remove_prefix(key.size());
        std::string value;
        for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size())
                ++i;
            value += line[i];
        }
        constexpr std::string_view home = "$HOME";
        if (value == home || value.starts_with("$HOME/"))
            folder = homeFolder().native() + value.substr(home.size());
        else if (value.starts_with('/'))
            folder = value;
    }
    return folder.empty() ? paths::join(homeFolder(), "Downloads") : folder;
}

// Owned by root and not open to others, unless a sticky bit keeps them from one another's files.
bool isSoundSystemFolder(const path &folder) {
    const auto status = statusOf(folder);
    return status && S_ISDIR(status->st_mode) && status->st_uid == 0 &&
           (!(status->st_mode & S_IWOTH) || (status->st_mode & S_ISVTX));
}

// True when removing every child of the folder could take more than what the folder is for.
bool holdsTooMuch(const path &folder) {
    const std::string place = resolvedPath(folder);
    for (const path &kept : {homeFolder(), configHome(), dataHome(), stateHome(), path("/")}) {
        const std::string keptPlace = resolvedPath(kept);
        if (!keptPlace.empty() && paths::isSameOrBelow(keptPlace, place))
            return true;
    }
    const auto mounts = currentMounts();
    return std::any_of(mounts.begin(), mounts.end(),
                       [&](const Mount &mount) { return mount.mountPoint == place; });
}

std::vector<path> cleanFolders(std::vector<path> candidates) {
    std::vector<path> folders;
    for (path &folder : candidates) {
        if (!isDirectory(folder))
            continue;
        if (holdsTooMuch(folder))
            NSLog("Folder is not cleaned, since it holds more than its category: %@", folder);
        else if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(std::move(folder));
    }
    return folders;
}

template <std::size_t Size>
std::vector<path> systemFolders(LinuxStandardDirectories &directories,
                                const std::array<const char *, Size> &table) {
    std::vector<path> folders;
    for (const char *folder : table) {
        const path place = directories.systemPath(folder);
        if (isSoundSystemFolder(place))
            folders.push_back(place);
    }
    return cleanFolders(std::move(folders));
}

bool isOwnPrivateDirectory(const path &folder) {
    const auto status = statusOf(folder);
    return status && S_ISDIR(status->st_mode) && status->st_uid == ::getuid() &&
           (status->st_mode & 07777) == 0700;
}

} // namespace

path LinuxStandardDirectories::systemPath(const path &place) {
    const char *prefix = std::getenv("BRIGHTSWEEP_SYSTEM_ROOT");
    if (!prefix || prefix[0] != '/' || !place.native().starts_with('/'))
        return place;
    return paths::join(prefix, place.native().substr(1));
}

std::vector<path> LinuxStandardDirectories::paths(StandardDirectory directory) {
    switch (directory) {
    case StandardDirectory::ApplicationSupport:
    case StandardDirectory::Library:
        return {dataHome()};
    case StandardDirectory::Preferences:
        return {configHome()};
    case StandardDirectory::UserCaches:
        return cleanFolders({cacheHome()});
    case StandardDirectory::LocalCaches:
        return systemFolders(*this, localCaches);
    case StandardDirectory::UserLogs:
        return cleanFolders(userLogs());
    case StandardDirectory::LocalLogs:
        return systemFolders(*this, localLogs);
    case StandardDirectory::Downloads:
        return cleanFolders({downloads()});
    case StandardDirectory::HomeTrash:
        return cleanFolders({paths::join(dataHome(), "Trash/files")});
    case StandardDirectory::Applications:
        return {"/Applications", "/Network/Applications", "/Developer/Applications",
                paths::join(homeFolder(), "Applications")};
    case StandardDirectory::Home:
        return {homeFolder()};
    case StandardDirectory::Temporary: {
        const char *folder = std::getenv("TMPDIR");
        return {folder && folder[0] == '/' ? path(folder) : path("/tmp")};
    }
    }
    return {};
}

std::vector<path> LinuxStandardDirectories::trashesOfVolume(const path &top) {
    const std::string user = std::to_string(::getuid());
    std::vector<path> folders;
    const path shared = paths::join(top, ".Trash");
    const auto sharedStatus = statusOf(shared);
    if (sharedStatus && S_ISDIR(sharedStatus->st_mode) && (sharedStatus->st_mode & S_ISVTX) &&
        isOwnPrivateDirectory(paths::join(shared, user)))
        folders.push_back(paths::join(shared, user + "/files"));
    const path own = paths::join(top, ".Trash-" + user);
    if (isOwnPrivateDirectory(own))
        folders.push_back(paths::join(own, "files"));
    std::erase_if(folders, [](const path &folder) { return !isRealDirectory(folder); });
    return cleanFolders(std::move(folders));
}

} // namespace brightsweep
