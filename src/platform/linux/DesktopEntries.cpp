#include "platform/linux/DesktopEntries.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/linux/OwnPlaces.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <unordered_set>

namespace brightsweep {

namespace {

using std::filesystem::path;

using desktopEntry::fileEnding;
constexpr std::string_view subfolder = "applications";
constexpr std::string_view defaultDataFolders = "/usr/local/share:/usr/share";
constexpr std::string_view defaultProgramFolders = "/usr/local/bin:/usr/bin:/bin";
// Programs there start from a menu, though a shell's PATH may not have them.
constexpr std::string_view furtherProgramFolders = "/usr/local/games:/usr/games:/snap/bin";
constexpr std::array<std::string_view, 2> furtherEntryFolders = {
    "/var/lib/flatpak/exports/share/applications", "/var/lib/snapd/desktop/applications"};
constexpr std::string_view usersFlatpakFolder = "flatpak/exports/share/applications";
// Entries lie one or two folders deep.
constexpr int deepest = 8;

std::string variable(const char *name, std::string_view otherwise) {
    const char *value = std::getenv(name);
    return std::string(value && *value ? value : otherwise);
}

// The absolute paths of a list; others mean nothing there.
std::vector<std::string> absoluteIn(std::string_view list) {
    std::vector<std::string> folders;
    while (!list.empty()) {
        const auto end = std::min(list.find(':'), list.size());
        std::string_view folder = list.substr(0, end);
        list.remove_prefix(std::min(end + 1, list.size()));
        while (folder.size() > 1 && folder.ends_with('/'))
            folder.remove_suffix(1);
        if (folder.starts_with('/'))
            folders.emplace_back(folder);
    }
    return folders;
}

bool isBelow(std::string_view path, std::string_view folder) {
    return !folder.empty() && folder != "/" && path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isProgram(const path &file) {
    struct stat status;
    return ::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(file.c_str(), X_OK) == 0;
}

bool isLauncher(const DesktopEntryFile &file, const std::vector<std::string> &desktops) {
    const DesktopEntry &entry = file.entry;
    if (entry.raw("Type") != "Application" || entry.boolean("NoDisplay") ||
        entry.boolean("Hidden") || !entry.isShownIn(desktops))
        return false;
    if (const std::string wanted = entry.string("TryExec");
        !wanted.empty() && findProgram(wanted).empty())
        return false;
    return !file.program.empty() || (!entry.has("Exec") && entry.boolean("DBusActivatable"));
}

// The paths of the entries below a folder, which is not entered through links.
std::vector<path> entriesBelow(const path &folder) {
    std::vector<path> found;
    std::error_code error;
    std::filesystem::recursive_directory_iterator walk(
        folder, std::filesystem::directory_options::skip_permission_denied, error);
    for (const auto end = std::filesystem::end(walk); !error && walk != end;
         walk.increment(error)) {
        if (walk.depth() >= deepest)
            walk.disable_recursion_pending();
        const std::string &name = walk->path().native();
        if (name.ends_with(fileEnding) && name[name.size() - fileEnding.size() - 1] != '/')
            found.push_back(walk->path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string idOf(const path &folder, const path &file) {
    std::string id = file.native().substr(folder.native().size() + 1);
    id.resize(id.size() - fileEnding.size());
    std::replace(id.begin(), id.end(), '/', '-');
    return id;
}

} // namespace

std::string systemRoot() {
    std::string root = variable("BRIGHTSWEEP_SYSTEM_ROOT", "");
    while (root.ends_with('/'))
        root.pop_back();
    return root;
}

path systemPath(std::string_view path) {
    const std::string root = systemRoot();
    const std::string home = homeFolder().native();
    const std::string data = folderOfRole(FolderRole::Data).native();
    const bool isTaken =
        root.empty() || isBelow(path, root) || isBelow(path, home) || isBelow(path, data);
    return isTaken ? std::string(path) : root + std::string(path);
}

path findProgram(std::string_view name) {
    if (name.starts_with('/')) {
        const path file = systemPath(name);
        return isProgram(file) ? file : path();
    }
    // A path that is neither starts nothing: nobody knows from where.
    if (name.empty() || name.find('/') != name.npos)
        return {};
    for (const std::string &list :
         {variable("PATH", defaultProgramFolders), std::string(furtherProgramFolders)}) {
        for (const std::string &folder : absoluteIn(list)) {
            const path file = paths::join(systemPath(folder), name);
            if (isProgram(file))
                return file;
        }
    }
    return {};
}

std::vector<path> desktopEntryFolders() {
    const path data = folderOfRole(FolderRole::Data);
    std::vector<path> folders = {paths::join(data, subfolder)};
    const auto add = [&](path folder) {
        if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(std::move(folder));
    };
    for (const std::string &folder : absoluteIn(variable("XDG_DATA_DIRS", defaultDataFolders)))
        add(paths::join(systemPath(folder), subfolder));
    add(paths::join(data, usersFlatpakFolder));
    for (const std::string_view folder : furtherEntryFolders)
        add(systemPath(folder));
    return folders;
}

std::vector<DesktopEntryFile> readDesktopEntries() {
    const auto desktops = [] {
        std::vector<std::string> names;
        const std::string list = variable("XDG_CURRENT_DESKTOP", "");
        for (std::size_t begin = 0; begin < list.size();) {
            const auto end = std::min(list.find(':', begin), list.size());
            names.push_back(list.substr(begin, end - begin));
            begin = end + 1;
        }
        return names;
    }();
    const std::string home = homeFolder().native();
    const std::string data = folderOfRole(FolderRole::Data).native();
    std::vector<DesktopEntryFile> files;
    std::unordered_set<std::string> ids;
    for (const path &folder : desktopEntryFolders()) {
        const bool isUsers = isBelow(folder.native(), home) || isBelow(folder.native(), data);
        for (const path &file : entriesBelow(folder)) {
            auto text = readSmallFile(file);
            if (!text || text->size() >= smallFileLimit)
                continue;
            DesktopEntryFile read{
                idOf(folder, file), file, DesktopEntry(*std::move(text)), {}, isUsers};
            // One that is empty or garbage hides those behind it all the same.
            read.isShadowed = !ids.insert(read.id).second;
            if (!read.entry.isValid())
                continue;
            read.program = findProgram(execProgram(read.entry.string("Exec")));
            read.isShown = isLauncher(read, desktops);
            files.push_back(std::move(read));
        }
    }
    return files;
}

} // namespace brightsweep
