#include "platform/linux/FolderSource.h"

#include "foundation/Identity.h"
#include "foundation/LowerCase.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "linux/DesktopFolders.h"
#include "platform/linux/AppImageSource.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/FolderNames.h"
#include "platform/linux/FolderUsers.h"
#include "platform/linux/GivesMemoryBack.h"
#include "platform/linux/OwnPlaces.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>

namespace brightsweep {

namespace {

using std::filesystem::path;

// Folders that have a meaning where they lie, and so are no application's; in lower case.
constexpr std::array<std::string_view, 22> systemNames = {
    "applications", "bin",   "doc",   "etc",     "flatpak", "games", "include", "info",
    "lib",          "lib32", "lib64", "libexec", "libx32",  "local", "man",     "sbin",
    "share",        "snap",  "src",   "tmp",     "trash",   "var"};
// And among data, besides those of desktops.
constexpr std::array<std::string_view, 4> dataNames = {"dolphin", "pixmaps", "vulkan", "wine"};

// This program's own data is nobody's application either.
bool isNobodys(const std::string &name, bool isInDataFolder) {
    const std::string lower = lowerCase(name);
    const auto isOneOf = [&](const auto &names) {
        return std::find(names.begin(), names.end(), lower) != names.end();
    };
    return isOneOf(systemNames) ||
           (isInDataFolder && (isDesktopFolder(lower) || isOneOf(dataNames) ||
                               lower == lowerCase(supportFolderName)));
}

struct Root {
    path folder;
    bool isDataFolder = false; ///< other programs keep their data there, too
};

std::vector<Root> roots() {
    const path home = homeFolder();
    std::vector<Root> all = {{systemPath("/opt")},
                             {systemPath("/usr/local")},
                             {paths::join(home, ".local/opt")},
                             {paths::join(home, "opt")},
                             {paths::join(home, "Applications")},
                             {folderOfRole(FolderRole::Data), true}};
    for (Root &root : all)
        root.folder = realPath(root.folder);
    std::erase_if(all, [](const Root &root) { return root.folder.empty(); });
    return all;
}

constexpr int mostAsked = 200; // of what lies in a folder, whether a package owns it

struct Candidate {
    bool isInDataFolder = false;
    std::vector<NamedEntry> entries;
};

// The folder X of its own in which a program lies, if there is one.
std::optional<std::pair<path, bool>> folderOf(const path &program, const std::vector<Root> &roots) {
    for (const Root &root : roots) {
        const std::string top = root.folder.native() + "/";
        if (!program.native().starts_with(top))
            continue;
        const auto end = program.native().find('/', top.size());
        if (end == std::string::npos)
            return {};
        const path folder = program.native().substr(0, end);
        const std::string name = folder.filename().native();
        if (name.starts_with('.') || folder.extension() == ".app" ||
            isNobodys(name, root.isDataFolder))
            return {};
        const path place = program.parent_path();
        if (root.isDataFolder && place != folder && place != folder / "bin")
            return {};
        return {{folder, root.isDataFolder}};
    }
    return {};
}

bool isProgramOf(const Candidate &candidate, const path &file) {
    return std::any_of(candidate.entries.begin(), candidate.entries.end(),
                       [&](const NamedEntry &entry) { return entry.program == file.native(); });
}

// The subfolder in which a program of the folder lies; empty for those of the whole, as a wrapper
// may lie above the programs.
std::string subfolderOf(const path &folder, const path &program) {
    const path way = program.lexically_relative(folder);
    const bool isOfWhole = !way.has_parent_path() || *way.begin() == "bin";
    return isOfWhole ? std::string() : way.begin()->native();
}

// True where its entries start programs of different subfolders: it is a place where several
// applications lie.
bool holdsSeveral(const path &folder, const Candidate &candidate) {
    const auto subfolder = subfolderOf(folder, candidate.entries.front().program);
    return std::any_of(
        candidate.entries.begin(), candidate.entries.end(),
        [&](const NamedEntry &entry) { return subfolderOf(folder, entry.program) != subfolder; });
}

// Among data another program in the folder may be somebody else's.
bool isOwn(const path &folder, const Candidate &candidate, const path &program) {
    return isProgramOf(candidate, program) ||
           (!candidate.isInDataFolder && paths::isSameOrBelow(program.native(), folder.native()) &&
            subfolderOf(folder, program) == subfolderOf(folder, candidate.entries.front().program));
}

FolderUsers::Standing standingOf(const path &folder, const Candidate &candidate) {
    using enum FolderUsers::Standing;
    if (candidate.isInDataFolder)
        return Data;
    return subfolderOf(folder, candidate.entries.front().program).empty() ? Programs
                                                                          : ProgramsInSubfolder;
}

// Of each folder, the entries whose commands name it.
std::vector<std::vector<const DesktopEntryFile *>>
entriesNaming(const std::vector<path> &folders, const std::vector<DesktopEntryFile> &entries) {
    std::vector<std::vector<const DesktopEntryFile *>> naming(folders.size());
    const FolderNames names(folders);
    for (const DesktopEntryFile &file : entries) {
        const auto note = [&](std::size_t folder, std::string_view) {
            naming[folder].push_back(&file);
        };
        names.find(file.entry.string("Exec"), note);
        names.find(file.entry.string("Path"), note);
    }
    return naming;
}

// The first entry that is none of its own and starts something else by the folder.
path entryUsing(const path &folder, const Candidate &candidate, const FolderUsers &users,
                const std::vector<const DesktopEntryFile *> &naming) {
    const auto isOwnProgram = [&](const path &program) {
        return isOwn(folder, candidate, program);
    };
    for (const DesktopEntryFile *file : naming) {
        const auto isIt = [&](const NamedEntry &own) { return own.entry == &file->entry; };
        const path program = realPath(file->program);
        if (std::any_of(candidate.entries.begin(), candidate.entries.end(), isIt) ||
            isOwnProgram(program) || users.isLauncher(program, folder, isOwnProgram) ||
            (!candidate.isInDataFolder && FolderUsers::isNamedAfter(file->id, folder)))
            continue;
        return file->path;
    }
    return {};
}

// True where an application bundle lies in the folder: it is listed, and goes, by itself.
bool holdsBundle(const path &folder) {
    constexpr int mostLookedAt = 20'000;
    std::error_code error;
    int looked = 0;
    for (std::filesystem::recursive_directory_iterator i(folder, error), end;
         !error && i != end && looked < mostLookedAt; i.increment(error), ++looked) {
        std::error_code unknown;
        if (i->path().extension() == ".app" && i->is_directory(unknown))
            return true;
    }
    return false;
}

// True where a program of that name lies elsewhere: it is the folder of that one's data.
bool hasNamesake(const path &folder) {
    const std::string name = folder.filename().native();
    for (const std::string &called : {name, lowerCase(name)}) {
        const path program = realPath(findProgram(called));
        if (!program.empty() && !paths::isSameOrBelow(program.native(), folder.native()))
            return true;
    }
    return false;
}

} // namespace

Result<std::vector<InstalledApplication>> FolderSource::applications() {
    const GivesMemoryBack givesBack;
    const auto entries = readDesktopEntries();
    const auto places = roots();
    std::map<path, Candidate> candidates;
    std::unordered_set<std::string> asked;
    std::set<path> shared;
    std::multimap<path, std::string> owners; // paths by which a package would own the folder
    for (const DesktopEntryFile &file : entries) {
        const path program = file.program.empty() ? path() : realPath(file.program);
        const auto folder = folderOf(program, places);
        if (!folder || file.entry.has("X-Flatpak") || file.entry.has("X-SnapInstanceName"))
            continue;
        if (isAppImage(program)) {
            shared.insert(folder->first); // an application of its own lies in it
            continue;
        }
        for (const path &path : {file.path, program, folder->first}) {
            owners.emplace(folder->first, path.native());
            asked.insert(path.native());
        }
        if (!file.isShown || file.isShadowed)
            continue;
        Candidate &candidate = candidates[folder->first];
        candidate.isInDataFolder = folder->second;
        candidate.entries.push_back({file.id, &file.entry, program.native()});
    }
    // A package may own what lies in a folder without owning that.
    for (const auto &[folder, candidate] : candidates) {
        std::error_code error;
        int looked = 0;
        for (std::filesystem::directory_iterator i(folder, error), end;
             !error && i != end && looked < mostAsked; i.increment(error), ++looked) {
            owners.emplace(folder, i->path().native());
            asked.insert(i->path().native());
        }
    }
    const auto packaged = owned(asked);
    std::erase_if(candidates, [&](const auto &each) {
        const auto &[folder, candidate] = each;
        const auto range = owners.equal_range(folder);
        return std::any_of(range.first, range.second,
                           [&](const auto &own) { return packaged.contains(own.second); }) ||
               shared.contains(folder) || holdsSeveral(folder, candidate) || holdsBundle(folder);
    });
    std::vector<InstalledApplication> found;
    if (candidates.empty())
        return found;
    std::vector<path> folders;
    for (const auto &[folder, candidate] : candidates)
        folders.push_back(folder);
    const FolderUsers users(folders);
    const auto naming = entriesNaming(folders, entries);
    for (auto named = naming.begin(); const auto &[folder, candidate] : candidates) {
        path user = entryUsing(folder, candidate, users, *named++);
        if (user.empty())
            user = users.userOf(folder, standingOf(folder, candidate),
                                [&top = folder, &own = candidate](const path &program) {
                                    return isOwn(top, own, program);
                                });
        // Among data it is taken for another program's, otherwise listed with the reason.
        if (candidate.isInDataFolder && (!user.empty() || hasNamesake(folder)))
            continue;
        InstalledApplication application;
        application.kind = ApplicationKind::Folder;
        application.key = folder.native();
        application.userOwned = isUsersOwn(folder);
        application.name = folder.filename().native();
        application.path = folder;
        application.installed = madeAt(folder);
        application.usedBy = std::move(user);
        describeByEntries(application, candidate.entries, application.name);
        found.push_back(std::move(application));
    }
    return found;
}

} // namespace brightsweep
