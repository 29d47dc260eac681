#include "platform/linux/LinuxStandardDirectories.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/LongPath.h"
#include "linux/Mounts.h"
#include "platform/linux/OwnPlaces.h"
#include "platform/linux/TrashFolders.h"

#include <dirent.h>
#include <fcntl.h>
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

constexpr std::array logFolderNames = {"logs", "Logs", "log"};
constexpr std::array logFileEndings = {".log", ".log.gz", ".log.xz"};

// File systems that keep no owners: whoever mounted them may write, or nobody.
constexpr std::array<std::string_view, 7> ownerlessTypes = {"vfat",    "msdos", "exfat", "ntfs",
                                                            "fuseblk", "cifs",  "smb3"};

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

// Every folder of logs two levels below a base folder, in the order of names. What has a mount in
// it is passed over unasked.
void addLogFolders(std::vector<path> &folders, const path &base) {
    const auto place = openPlace(base.native());
    const std::string reached = place ? currentPath(place->get()) : std::string();
    if (reached.empty())
        return;
    const auto mounts = ownMounts().current();
    const auto isAsked = [&](const std::string &below) {
        return !mounts->holdsMountPoint(reached + '/' + below);
    };
    auto programs = namesIn(base).value_or(std::vector<std::string>());
    std::sort(programs.begin(), programs.end());
    for (const std::string &program : programs) {
        const path programFolder = paths::join(base, program);
        if (mounts->isAt(reached + '/' + program) || !isRealDirectory(programFolder))
            continue;
        for (const char *name : logFolderNames) {
            const path folder = paths::join(programFolder, name);
            if (isAsked(program + '/' + name) && isRealDirectory(folder) && holdsOnlyLogs(folder))
                folders.push_back(folder);
        }
    }
}

std::vector<path> userLogs() {
    const path data = folderOfRole(FolderRole::Data);
    const path state = folderOfRole(FolderRole::State);
    std::vector<path> folders = {paths::join(state, "log"), paths::join(data, "xorg"),
                                 paths::join(homeFolder(), ".npm/_logs"),
                                 paths::join(data, "sddm")};
    for (const path &base : {folderOfRole(FolderRole::Config), data, state})
        addLogFolders(folders, base);
    return folders;
}

bool isOwnedByUser(int directory, const Place &place) {
    struct stat status;
    if (::fstat(directory, &status) != 0)
        return false;
    if (status.st_uid == ::geteuid())
        return true;
    const auto mounts = ownMounts().current();
    const Mount *mount = mounts->find(place.mount);
    return mount &&
           std::find(ownerlessTypes.begin(), ownerlessTypes.end(), mount->type) !=
               ownerlessTypes.end() &&
           ::faccessat(directory, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

// Owned by root and not open to others, unless a sticky bit keeps them from one another's files.
bool isSoundSystemFolder(int directory) {
    struct stat status;
    return ::fstat(directory, &status) == 0 && status.st_uid == 0 &&
           (!(status.st_mode & S_IWOTH) || (status.st_mode & S_ISVTX));
}

// Takes an open folder in, if removing every child of it takes no more than what it is for. Whose
// it is comes last: what is mounted may have nobody to answer that.
template <typename IsOwned>
void add(CleanFolders &folders, const path &folder, int directory, int role, IsOwned isOwned) {
    const auto chain = climb(directory);
    if (!chain)
        return;
    const Place &own = chain->front();
    const auto leaveOut = [&](LeftOutReason reason, const char *words) {
        NSLog("Folder is not cleaned, since it %s: %@", words, folder);
        folders.leftOut.push_back({folder, reason});
    };
    if (chain->size() == 1 || (*chain)[1].mount != own.mount)
        return leaveOut(LeftOutReason::TopOfVolume, "is the top of a volume");
    if (!isOwned(own))
        return leaveOut(LeftOutReason::NotOwned, "belongs to somebody else");
    if (ownPlaces()->isProtected(own.device, own.inode, role))
        return leaveOut(LeftOutReason::KeptPlace, "holds more than its category");
    const auto isThere = [&](const RemovalRoot &other) {
        return other.device == own.device && other.inode == own.inode;
    };
    if (std::none_of(folders.folders.begin(), folders.folders.end(), isThere))
        folders.folders.push_back({folder, own.device, own.inode});
}

void addUserFolder(CleanFolders &folders, const path &folder, FolderRole role) {
    if (folder.empty())
        return;
    const auto directory = openPlace(folder.native());
    if (directory)
        add(folders, folder, directory->get(), int(role),
            [&](const Place &own) { return isOwnedByUser(directory->get(), own); });
}

CleanFolders systemFoldersOf(LinuxStandardDirectories &directories, CleanPlace category) {
    CleanFolders folders;
    for (std::size_t row = 0; row < systemFolders.size(); ++row) {
        if (systemFolders[row].category != category)
            continue;
        const path folder = directories.systemPath(systemFolders[row].path);
        const auto holder = openPlace(paths::parent(folder).native());
        const auto directory =
            holder ? openPlaceAt(holder->get(), paths::lastComponent(folder).c_str())
                   : Result<FileDescriptor>(holder.error());
        if (directory)
            add(folders, folder, directory->get(), roleOfSystemFolder(row),
                [&](const Place &) { return isSoundSystemFolder(directory->get()); });
    }
    return folders;
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
        return {folderOfRole(FolderRole::Data)};
    case StandardDirectory::Preferences:
        return {folderOfRole(FolderRole::Config)};
    case StandardDirectory::Caches:
        return {folderOfRole(FolderRole::Cache)};
    case StandardDirectory::State:
        return {folderOfRole(FolderRole::State)};
    case StandardDirectory::Applications:
        return {systemPath("/Applications"), systemPath("/Network/Applications"),
                systemPath("/Developer/Applications"), paths::join(homeFolder(), "Applications")};
    case StandardDirectory::Home:
        return {homeFolder()};
    case StandardDirectory::Temporary: {
        const char *folder = std::getenv("TMPDIR");
        return {folder && folder[0] == '/' ? path(folder) : path("/tmp")};
    }
    }
    return {};
}

CleanFolders LinuxStandardDirectories::cleanFolders(CleanPlace place) {
    if (place == CleanPlace::LocalCaches || place == CleanPlace::LocalLogs)
        return systemFoldersOf(*this, place);
    CleanFolders folders;
    if (place == CleanPlace::UserLogs) {
        for (const path &folder : userLogs())
            addUserFolder(folders, folder, FolderRole::None);
    }
    if (const FolderRole role = categoryOf(place).userFolder; role != FolderRole::None)
        addUserFolder(folders, folderOfRole(role), role);
    for (RemovalRoot &folder : folders.folders)
        folder.isTrash = place == CleanPlace::HomeTrash;
    return folders;
}

CleanFolders LinuxStandardDirectories::trashesOfVolume(const path &top) {
    const std::string user = std::to_string(::geteuid());
    CleanFolders folders;
    const auto volume = openPlace(top.native());
    if (!volume)
        return folders;
    const auto addTrash = [&](const FileDescriptor &trash, const path &folder) {
        const auto files = trash ? folderOfTrash(trash.get(), "files") : FileDescriptor();
        if (files)
            add(folders, paths::join(folder, "files"), files.get(), int(FolderRole::TrashItems),
                [](const Place &) { return true; });
    };
    addTrash(sharedVolumeTrash(volume->get()), paths::join(top, ".Trash/" + user));
    addTrash(singleVolumeTrash(volume->get()), paths::join(top, ".Trash-" + user));
    for (RemovalRoot &folder : folders.folders)
        folder.isTrash = true;
    return folders;
}

} // namespace brightsweep
