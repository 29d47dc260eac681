#include "platform/linux/FolderUsers.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/OwnPlaces.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace brightsweep {

namespace {

using std::filesystem::path;

struct UserPlace {
    FolderRole role;
    const char *way;
    bool holdsScripts; ///< of its files only scripts say where they lead
    int depth;         ///< of folders in it that are read as well
};
constexpr std::array userPlaces = {
    UserPlace{FolderRole::Config, "systemd/user", false, 1},
    UserPlace{FolderRole::Config, "autostart", false, 0},
    UserPlace{FolderRole::Config, "environment.d", false, 0},
    UserPlace{FolderRole::Config, "fish", false, 1},
    UserPlace{FolderRole::Config, "", true, 0},
    UserPlace{FolderRole::Data, "systemd/user", false, 1},
    UserPlace{FolderRole::Data, "dbus-1/services", false, 0},
    UserPlace{FolderRole::Data, "applications", false, 0},
    UserPlace{FolderRole::Data, "", true, 0},
    UserPlace{FolderRole::Desktop, "", false, 0},
};
constexpr std::array homePlaces = {"",           ".local/bin", "bin",         ".local",
                                   ".local/opt", "opt",        "Applications"};
// What a shell reads when it starts.
constexpr std::array shellFiles = {".bashrc",  ".bash_profile", ".bash_login", ".bash_aliases",
                                   ".profile", ".xprofile",     ".xinitrc",    ".xsessionrc",
                                   ".zshrc",   ".zprofile",     ".zlogin",     ".zshenv"};
// Programs and their data lie here, each in a folder of its own.
constexpr std::array programPlaces = {"opt", ".local/opt", "Applications"};
constexpr std::string_view scriptMark = "#!";

// A script's first bytes, or all of it where it is one; at most smallFileLimit.
std::string readText(const path &file, bool isScriptOnly) {
    std::string text;
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!opened || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    constexpr std::size_t blockSize = std::size_t(16) << 10;
    while (text.size() < smallFileLimit) {
        const auto before = text.size();
        text.resize(before + blockSize);
        const auto count = ::read(opened.get(), text.data() + before, blockSize);
        text.resize(before + std::size_t(std::max<ssize_t>(count, 0)));
        if (count <= 0 || (isScriptOnly && !text.starts_with(scriptMark)))
            break;
    }
    return isScriptOnly && !text.starts_with(scriptMark) ? std::string() : text;
}

// In lower case, without what stands behind a dot.
std::string plainName(const path &file) {
    std::string name = file.stem().native();
    for (char &letter : name)
        letter = letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    return name;
}

} // namespace

FolderUsers::FolderUsers(std::vector<path> folders) : m_names(std::move(folders)) {
    const path home = homeFolder();
    for (const char *const way : homePlaces)
        readFolder(paths::join(home, way), true, 0);
    for (const UserPlace &place : userPlaces)
        readFolder(paths::join(folderOfRole(place.role), place.way), place.holdsScripts,
                   place.depth);
    for (const char *const name : shellFiles)
        readText(paths::join(home, name), false);
    for (const FolderRole role : {FolderRole::Data, FolderRole::Config})
        readLinksOfFolders(folderOfRole(role));
    for (const char *const way : programPlaces)
        readLinksOfFolders(paths::join(home, way));
}

// What leads from one program's folder into another's.
void FolderUsers::readLinksOfFolders(const path &parent) {
    std::error_code error;
    for (std::filesystem::directory_iterator i(parent, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (i->is_symlink(unknown) || !i->is_directory(unknown))
            continue;
        for (std::filesystem::directory_iterator inner(i->path(), unknown);
             !unknown && inner != end; inner.increment(unknown)) {
            std::error_code none;
            if (!inner->is_symlink(none))
                continue;
            const path target =
                (i->path() / std::filesystem::read_symlink(inner->path(), none)).lexically_normal();
            if (!paths::isSameOrBelow(target.native(), i->path().native()))
                readLink(target);
        }
    }
}

void FolderUsers::readFolder(const path &folder, bool holdsScripts, int depth) {
    std::error_code error;
    for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (i->is_symlink(unknown) &&
            !readLink(folder / std::filesystem::read_symlink(i->path(), unknown)))
            continue;
        if (i->is_regular_file(unknown))
            readText(i->path(), holdsScripts);
        else if (depth > 0 && i->is_directory(unknown) && !i->is_symlink(unknown))
            readFolder(i->path(), holdsScripts, depth - 1);
    }
}

// What it names, and what that leads to. False for what lies out of the home, of which nothing is
// asked: it may be a server that does not answer.
bool FolderUsers::readLink(const path &target) {
    const path named = target.lexically_normal();
    if (!paths::isSameOrBelow(named.native(), homeFolder().native()))
        return false;
    m_targets.push_back(paths::join(realPath(named.parent_path()), named.filename().native()));
    m_targets.push_back(realPath(named));
    return true;
}

void FolderUsers::readText(const path &file, bool isScriptOnly) {
    const std::string text = brightsweep::readText(file, isScriptOnly);
    path program;
    m_names.find(text, [&](std::size_t folder, std::string_view behind) {
        if (file.extension() != ".desktop") {
            m_uses.push_back({folder, file, startedBy(file, folder, behind)});
            return;
        }
        if (program.empty())
            program = realPath(findProgram(execProgram(DesktopEntry(text).string("Exec"))));
        m_uses.push_back({folder, file, program});
    });
}

// Of a script that is called as the folder or the program: a launcher.
path FolderUsers::startedBy(const path &file, std::size_t folder, std::string_view behind) const {
    const auto end = std::min(behind.find_first_of(" \t\n\"'"), behind.size());
    const path &top = m_names.folders()[folder];
    const path program = (top.native() + std::string(behind.substr(0, end)));
    const std::string name = plainName(file);
    const bool isLauncher = name == plainName(top) || name == plainName(program);
    return isLauncher && program != top ? realPath(program) : path();
}

bool FolderUsers::anyUses(const path &folder, const IsOwn &isOwn) const {
    return std::any_of(m_targets.begin(), m_targets.end(),
                       [&](const path &target) {
                           return paths::isSameOrBelow(target.native(), folder.native()) &&
                                  !isOwn(target);
                       }) ||
           std::any_of(m_uses.begin(), m_uses.end(), [&](const Use &use) {
               return m_names.folders()[use.folder] == folder &&
                      (use.program.empty() || !isOwn(use.program));
           });
}

} // namespace brightsweep
