#include "platform/linux/FolderUsers.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/LowerCase.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/DesktopFolders.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/OwnPlaces.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <fcntl.h>
#include <sys/stat.h>

namespace brightsweep {

namespace {

using std::filesystem::path;

enum class Base { Home, Config, Data, Desktop, System };
enum class Holds {
    Units,     ///< each file, and each link, starts something
    Launchers, ///< each file does; links are a person's
    Commands,  ///< scripts do; links are a person's
    Scripts,   ///< scripts do, and each link
    Shells,    ///< what shells read when they start, a person's
};

constexpr std::string_view entryEnding = ".desktop";
constexpr std::string_view scriptMark = "#!";
// How far a folder is searched for links.
constexpr int deepestLink = 3;
constexpr int mostEntriesOfFolder = 2000;

path folderOf(Base base) {
    switch (base) {
    case Base::Config:
        return folderOfRole(FolderRole::Config);
    case Base::Data:
        return folderOfRole(FolderRole::Data);
    case Base::Desktop:
        return folderOfRole(FolderRole::Desktop);
    case Base::System:
        return systemPath("/");
    case Base::Home:
        break;
    }
    return homeFolder();
}

} // namespace

struct FolderUsers::Place {
    Base base;
    const char *way;
    Holds holds;
    int depth = 0; ///< of folders in it that are read as well
};

namespace {

// A script's first bytes, or all of it where it is one; at most smallFileLimit.
std::string readWholeText(const path &file, bool isScriptOnly) {
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

bool isWordCharacter(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

// A path without links as far as it exists; what is missing is taken as it is written.
path reachedBy(const path &target) {
    std::error_code error;
    return std::filesystem::weakly_canonical(target, error);
}

} // namespace

FolderUsers::FolderUsers(std::vector<path> folders) : m_names(std::move(folders)) {
    static constexpr Place places[] = {
        {Base::Home, "", Holds::Commands},
        {Base::Home, "bin", Holds::Commands},
        {Base::Home, "opt", Holds::Commands},
        {Base::Home, "Applications", Holds::Commands},
        {Base::Home, ".local", Holds::Commands},
        {Base::Home, ".local/bin", Holds::Commands},
        {Base::Home, ".local/opt", Holds::Commands},
        {Base::Home, ".mozilla/native-messaging-hosts", Holds::Units},
        {Base::Config, "", Holds::Scripts},
        {Base::Config, "autostart", Holds::Launchers},
        {Base::Config, "environment.d", Holds::Shells},
        {Base::Config, "fish", Holds::Shells, 1},
        {Base::Config, "systemd/user", Holds::Units, 1},
        {Base::Config, "BraveSoftware/Brave-Browser/NativeMessagingHosts", Holds::Units},
        {Base::Config, "chromium/NativeMessagingHosts", Holds::Units},
        {Base::Config, "google-chrome/NativeMessagingHosts", Holds::Units},
        {Base::Config, "microsoft-edge/NativeMessagingHosts", Holds::Units},
        {Base::Config, "vivaldi/NativeMessagingHosts", Holds::Units},
        {Base::Data, "", Holds::Scripts},
        {Base::Data, "applications", Holds::Launchers},
        {Base::Data, "dbus-1/services", Holds::Units},
        {Base::Data, "systemd/user", Holds::Units, 1},
        {Base::Desktop, "", Holds::Launchers},
        {Base::System, "etc/chromium/native-messaging-hosts", Holds::Units},
        {Base::System, "etc/cron.d", Holds::Units},
        {Base::System, "etc/ld.so.conf.d", Holds::Units},
        {Base::System, "etc/systemd/system", Holds::Units, 1},
        {Base::System, "etc/systemd/user", Holds::Units, 1},
        {Base::System, "etc/xdg/autostart", Holds::Launchers},
        {Base::System, "usr/local/bin", Holds::Commands},
    };
    static constexpr const char *shellFiles[] = {".bashrc",       ".bash_profile", ".bash_login",
                                                 ".bash_aliases", ".profile",      ".zshrc",
                                                 ".zprofile",     ".zlogin",       ".zshenv"};
    // They start the programs of a session.
    static constexpr const char *sessionFiles[] = {".xinitrc", ".xprofile", ".xsessionrc"};
    // Programs and their data lie here, each in a folder of its own.
    static constexpr const char *programPlaces[] = {"opt", ".local/opt", "Applications"};
    for (const path &folder : m_names.folders())
        m_uses[folder.native()];
    const path home = homeFolder();
    nameAliases();
    for (const Place &place : places)
        readFolder(place, paths::join(folderOf(place.base), place.way), place.depth);
    for (const char *const name : shellFiles)
        readText(paths::join(home, name), false, true);
    for (const char *const name : sessionFiles)
        readText(paths::join(home, name), false, false);
    for (const FolderRole role : {FolderRole::Data, FolderRole::Config})
        readLinksOfFolders(folderOfRole(role));
    for (const char *const way : programPlaces)
        readLinksOfFolders(paths::join(home, way));
}

// Links in the home to where the folders lie: "~/share" for "~/.local/share".
void FolderUsers::nameAliases() {
    std::error_code error;
    for (std::filesystem::directory_iterator i(homeFolder(), error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (!i->is_symlink(unknown))
            continue;
        const path target =
            (homeFolder() / std::filesystem::read_symlink(i->path(), unknown)).lexically_normal();
        if (paths::isSameOrBelow(target.native(), homeFolder().native()))
            m_names.addAlias(i->path().filename().native(), realPath(target));
    }
}

// What leads from one program's folder into another's.
void FolderUsers::readLinksOfFolders(const path &parent) {
    FileOperations &files = *Platform::current().files;
    const auto opened = files.openDirectory(parent);
    if (!opened)
        return;
    const auto mounts = MountsBelow::of(files, *opened);
    std::error_code error;
    for (std::filesystem::directory_iterator i(parent, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (!i->is_symlink(unknown) && !mounts.isIn(i->path().filename().native()) &&
            !isDesktopFolder(lowerCase(i->path().filename().native())) && i->is_directory(unknown))
            readLinksBelow(i->path());
    }
}

// The nearest first, as it is cut off where a folder holds very much.
void FolderUsers::readLinksBelow(const path &owner) {
    std::vector<std::pair<path, int>> folders = {{owner, 1}};
    int looked = 0;
    for (std::size_t next = 0; next < folders.size(); ++next) {
        const auto [folder, depth] = folders[next];
        std::error_code error;
        for (std::filesystem::directory_iterator i(folder, error), end;
             !error && i != end && looked < mostEntriesOfFolder; i.increment(error), ++looked) {
            std::error_code unknown;
            if (i->is_symlink(unknown))
                readLink(i->path(), owner, false);
            else if (depth < deepestLink && i->is_directory(unknown))
                folders.emplace_back(i->path(), depth + 1);
        }
    }
}

void FolderUsers::readFolder(const Place &place, const path &folder, int depth) {
    const bool holdsScripts = place.holds == Holds::Commands || place.holds == Holds::Scripts;
    const bool isShells = place.holds == Holds::Shells;
    const bool linksArePersonal = place.holds != Holds::Units && place.holds != Holds::Scripts;
    std::error_code error;
    for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (i->is_symlink(unknown) && !readLink(i->path(), {}, linksArePersonal))
            continue;
        if (i->is_regular_file(unknown))
            readText(i->path(), holdsScripts, isShells);
        else if (depth > 0 && i->is_directory(unknown) && !i->is_symlink(unknown))
            readFolder(place, i->path(), depth - 1);
    }
}

// What it names, and what that leads to. True where the text behind it is to be read as well: not
// that of a folder's own file, nor what lies out of the home, of which nothing is asked: it may be
// a server that does not answer.
bool FolderUsers::readLink(const path &link, const path &owner, bool isPersonal) {
    std::error_code error;
    const path target = std::filesystem::read_symlink(link, error);
    const path named = (link.parent_path() / target).lexically_normal();
    const bool isInHome = paths::isSameOrBelow(named.native(), homeFolder().native());
    if (!isInHome) {
        addTarget({link, systemPath(named.native()), false, isPersonal}, owner);
        return false;
    }
    // Dangling, too: a unit that is not there yet, or lies on a volume that is not.
    addTarget({link, paths::join(reachedBy(named.parent_path()), named.filename().native()), false,
               isPersonal},
              owner);
    return !addTarget({link, reachedBy(named), false, isPersonal}, owner);
}

// True where it leads into one of the folders. Links in a folder to itself are its own affair.
bool FolderUsers::addTarget(Use use, const path &owner) {
    for (path folder = use.reached; folder.has_relative_path(); folder = folder.parent_path()) {
        const auto found = m_uses.find(folder.native());
        if (found == m_uses.end())
            continue;
        use.isNamedAfter = isNamedAfter(use.file, folder) || isNamedAfter(owner, folder);
        if (owner.empty() || reachedBy(owner) != folder)
            found->second.push_back(std::move(use));
        return true;
    }
    return false;
}

void FolderUsers::readText(const path &file, bool isScriptOnly, bool isPersonal) {
    const std::string text = readWholeText(file, isScriptOnly);
    const bool isEntry = file.extension() == entryEnding;
    path program;
    m_names.find(text, [&](std::size_t folder, std::string_view behind) {
        if (isEntry && program.empty())
            program = realPath(findProgram(execProgram(DesktopEntry(text).string("Exec"))));
        const path &top = m_names.folders()[folder];
        path reached = isEntry ? program : startedBy(file, folder, behind);
        auto &uses = m_uses[top.native()];
        if (uses.empty() || uses.back().file != file || uses.back().reached != reached)
            uses.push_back(
                {file, std::move(reached), isNamedAfter(file, top), isPersonal, !isEntry});
    });
}

// Of a script that is called as the folder or the program: a launcher.
path FolderUsers::startedBy(const path &file, std::size_t folder, std::string_view behind) const {
    const auto end = std::min(behind.find_first_of(" \t\n\"'"), behind.size());
    const path &top = m_names.folders()[folder];
    const path program = (top.native() + std::string(behind.substr(0, end)));
    const bool isLauncher = isNamedAfter(file, top) ||
                            lowerCase(file.stem().native()) == lowerCase(program.stem().native());
    return isLauncher && program != top ? realPath(program) : path();
}

bool FolderUsers::isNamedAfter(const path &file, const path &folder) {
    const std::string name = lowerCase(file.filename().native());
    const std::string wanted = lowerCase(folder.filename().native());
    for (auto at = name.find(wanted); at != name.npos; at = name.find(wanted, at + 1)) {
        const auto end = at + wanted.size();
        if ((at == 0 || name[at - 1] == '.') && (end == name.size() || !isWordCharacter(name[end])))
            return true;
    }
    return false;
}

bool FolderUsers::isLauncher(const path &program, const path &folder, const IsOwn &isOwn) const {
    const auto &uses = m_uses.at(folder.native());
    return std::any_of(uses.begin(), uses.end(), [&](const Use &use) {
        return use.isScript && !use.reached.empty() && (use.isNamedAfter || isOwn(use.reached)) &&
               realPath(use.file) == program;
    });
}

path FolderUsers::userOf(const path &folder, Standing standing, const IsOwn &isOwn) const {
    const auto isOwnUse = [&](const Use &use) {
        const bool leadsAside = standing == Standing::ProgramsInSubfolder && !use.isScript &&
                                paths::isSameOrBelow(use.reached.native(), folder.native()) &&
                                !isOwn(use.reached);
        if (standing != Standing::Data && (use.isPersonal || use.isNamedAfter) && !leadsAside)
            return true;
        if (use.reached.empty())
            return false;
        const bool isOwnEntry = use.isNamedAfter && use.file.extension() == entryEnding &&
                                paths::isSameOrBelow(use.reached.native(), folder.native());
        return isOwnEntry || isOwn(use.reached) || isLauncher(use.reached, folder, isOwn);
    };
    const auto &uses = m_uses.at(folder.native());
    const auto user = std::find_if_not(uses.begin(), uses.end(), isOwnUse);
    return user == uses.end() ? path() : user->file;
}

} // namespace brightsweep
