#include "uninstall/Leftovers.h"

#include "foundation/DesktopEntry.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "uninstall/FolderNames.h"
#include "uninstall/LeftoverLook.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <set>
#include <tuple>

namespace brightsweep {

namespace {

using std::filesystem::path;

// The folders that are searched by name, in this order.
struct SearchedFolder {
    LeftoverPlace place;
    StandardDirectory directory;
    LeftoverKind kind;
};
constexpr SearchedFolder searchedFolders[] = {
    {LeftoverPlace::Config, StandardDirectory::Preferences, LeftoverKind::Config},
    {LeftoverPlace::Cache, StandardDirectory::Caches, LeftoverKind::Cache},
    {LeftoverPlace::State, StandardDirectory::State, LeftoverKind::State},
    {LeftoverPlace::Data, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Home, StandardDirectory::Home, LeftoverKind::Data},
};
// Those of a bundle; the first one is the system's.
constexpr SearchedFolder bundleFolders[] = {
    {LeftoverPlace::Shared, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Data, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Config, StandardDirectory::Preferences, LeftoverKind::Config},
    {LeftoverPlace::Cache, StandardDirectory::Caches, LeftoverKind::Cache},
};
constexpr const char *sharedFolder = "/usr/local/share";

// What stands where by its making, with the application's id or name for "%".
struct MadePlace {
    StandardDirectory directory;
    const char *way;
    LeftoverKind kind;
    const char *reason;
};
constexpr MadePlace madeByFlatpak[] = {
    {StandardDirectory::Home, ".var/app/%", LeftoverKind::Data, "its own folder, from Flatpak"},
    {StandardDirectory::Library, "flatpak/overrides/%", LeftoverKind::Config,
     "what it was allowed, for Flatpak"},
};
constexpr MadePlace madeBySnap[] = {
    {StandardDirectory::Home, "snap/%", LeftoverKind::Data, "its own folder, from snapd"},
};
constexpr MadePlace madeForEntries[] = {
    {StandardDirectory::Preferences, "autostart/%.desktop", LeftoverKind::Entry,
     "starts it at login"},
    {StandardDirectory::Library, "applications/%.desktop", LeftoverKind::Entry,
     "your own menu entry of it"},
};
// Folders of files that start a program by the value of a key.
struct StarterFolder {
    StandardDirectory directory;
    const char *way;
    std::string_view ending;
    std::string_view key;
    const char *reason;
};
constexpr StarterFolder starterFolders[] = {
    {StandardDirectory::Preferences, "systemd/user", ".service",
     "ExecStart=", "a service of yours that starts it"},
    {StandardDirectory::Library, "systemd/user", ".service",
     "ExecStart=", "a service of yours that starts it"},
    {StandardDirectory::Library, "dbus-1/services", ".service",
     "Exec=", "a service of yours that starts it"},
};
// For what is nothing but its files.
constexpr StarterFolder entryFolders[] = {
    {StandardDirectory::Library, "applications", ".desktop",
     "Exec=", "a menu entry that starts it"},
    {StandardDirectory::Preferences, "autostart", ".desktop", "Exec=", "starts it at login"},
};
// What is written later than that after the folder was made is no longer the installation.
constexpr std::chrono::nanoseconds installing = std::chrono::minutes(2);

path folderOf(const SearchedFolder &folder) {
    StandardDirectories &directories = *Platform::current().directories;
    return folder.place == LeftoverPlace::Shared ? directories.systemPath(sharedFolder)
                                                 : directories.first(folder.directory);
}

// What is found once, however many ways lead to it.
class Found {
public:
    /// What holds the application itself, or lies in it, is no leftover of it.
    Found(const std::atomic<bool> *stop, const path &application)
        : m_stop(stop), m_application(application) {}

    /// Null where it is no leftover, or is listed already.
    Leftover *add(const RemovalTarget &target, LeftoverKind kind, std::string reason,
                  bool ticksData = false) {
        const path place = target.path();
        if ((m_stop && *m_stop) || (!m_application.empty() &&
                                    (paths::isSameOrBelow(place.native(), m_application.native()) ||
                                     paths::isSameOrBelow(m_application.native(), place.native()))))
            return nullptr;
        return add(lookAtLeftover(target, kind, std::move(reason), {m_stop, ticksData}));
    }
    Leftover *add(std::optional<Leftover> leftover) {
        if (!leftover || !m_seen
                              .emplace(leftover->seen.device, leftover->seen.inode,
                                       leftover->path.filename().native())
                              .second)
            return nullptr;
        m_leftovers.push_back(*std::move(leftover));
        return &m_leftovers.back();
    }
    void addIfThere(const path &folder, const path &way, LeftoverKind kind, const char *reason) {
        const auto root = Platform::current().files->rememberRoot(folder);
        if (root)
            add({*root, way}, kind, reason);
    }
    std::vector<Leftover> take() { return std::move(m_leftovers); }

private:
    const std::atomic<bool> *m_stop;
    const path m_application;
    std::set<std::tuple<std::uint64_t, std::uint64_t, std::string>> m_seen;
    std::vector<Leftover> m_leftovers;
};

template <std::size_t Size>
void addMade(Found &found, const MadePlace (&places)[Size], const std::string &name) {
    if (name.empty() || name.front() == '.' || name.find('/') != name.npos)
        return;
    for (const MadePlace &place : places) {
        std::string way = place.way;
        way.replace(way.find('%'), 1, name);
        found.addIfThere(Platform::current().directories->first(place.directory), way, place.kind,
                         place.reason);
    }
}

// The program in a unit's or a service's value, which may have marks before it and quotes around.
std::string programIn(std::string_view value) {
    value.remove_prefix(std::min(value.find_first_not_of("@-:+! \t"), value.size()));
    return execProgram(value);
}

bool startsOneOf(std::string_view text, std::string_view key,
                 const std::vector<std::string> &programs, const path &folder) {
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.starts_with(key))
            continue;
        const std::string program = programIn(line.substr(key.size()));
        if (std::find(programs.begin(), programs.end(), program) != programs.end() ||
            (!folder.empty() && program.starts_with('/') &&
             paths::isSameOrBelow(path(program).lexically_normal().native(), folder.native())))
            return true;
    }
    return false;
}

void addStarters(Found &found, const InstalledApplication &application,
                 const LeftoverNames &claimed) {
    const bool isOwnFiles = application.kind == ApplicationKind::AppImage ||
                            application.kind == ApplicationKind::Folder;
    const path folder = isOwnFiles ? application.path : path();
    std::vector<std::string> programs;
    for (const std::string &program : application.programs) {
        const std::string name = path(program).filename().native();
        if (program.starts_with('/') && !LeftoverRules::isCommonName(name) &&
            !claimed.matches(LeftoverPlace::Data, name))
            programs.push_back(program);
    }
    if (programs.empty() && folder.empty())
        return;
    const auto addFrom = [&](const StarterFolder &starter) {
        const path base = Platform::current().directories->first(starter.directory);
        const auto root = Platform::current().files->rememberRoot(paths::join(base, starter.way));
        if (!root)
            return;
        for (const std::string &name : namesInFolder(*root)) {
            if (!name.ends_with(starter.ending))
                continue;
            const auto text = readSmallFile(paths::join(root->path, name));
            if (text && startsOneOf(*text, starter.key, programs, folder))
                found.add({*root, name}, LeftoverKind::Entry, starter.reason);
        }
    };
    std::for_each(std::begin(starterFolders), std::end(starterFolders), addFrom);
    if (isOwnFiles)
        std::for_each(std::begin(entryFolders), std::end(entryFolders), addFrom);
}

// What a program that lies in a folder of its own has written there since.
void addChanged(Found &found, const InstalledApplication &application,
                const std::atomic<bool> *stop) {
    const auto root = Platform::current().files->rememberRoot(application.path);
    if (!root || application.installed == 0)
        return;
    const std::chrono::nanoseconds made = std::chrono::seconds(application.installed);
    LeftoverLook look{stop};
    look.changedAfter = (made + installing).count();
    for (const std::string &name : namesInFolder(*root))
        found.add(lookAtLeftover({*root, name}, LeftoverKind::Data,
                                 "written since the installation", look));
}

// What the integration of an AppImage has put beside its entry, by the number in the entry's name.
void addIntegration(Found &found, const std::string &id) {
    constexpr std::string_view mark = "appimagekit_";
    constexpr std::size_t digits = 32;
    if (!id.starts_with(mark) || id.size() < mark.size() + digits ||
        id.find_first_not_of("0123456789abcdef", mark.size()) < mark.size() + digits)
        return;
    const std::string beginning = id.substr(0, mark.size() + digits);
    FileOperations &files = *Platform::current().files;
    const path data = Platform::current().directories->first(StandardDirectory::Library);
    const auto addFrom = [&](const path &folder, const char *reason) {
        const auto root = files.rememberRoot(folder);
        if (!root)
            return;
        for (const std::string &name : namesInFolder(*root)) {
            if (name.starts_with(beginning))
                found.add({*root, name}, LeftoverKind::Entry, reason);
        }
    };
    const path icons = paths::join(data, "icons/hicolor");
    if (const auto root = files.rememberRoot(icons)) {
        for (const std::string &size : namesInFolder(*root)) {
            for (const char *kind : {"/apps", "/mimetypes"})
                addFrom(paths::join(icons, size + kind), "an icon of it");
        }
    }
    addFrom(paths::join(data, "mime/packages"), "a file type of it");
}

// Links among the programs of the user and of the machine that lead into the application.
void addLinks(Found &found, const path &application) {
    FileOperations &files = *Platform::current().files;
    StandardDirectories &directories = *Platform::current().directories;
    const path home = directories.first(StandardDirectory::Home);
    for (const path &folder : {paths::join(home, ".local/bin"), paths::join(home, "bin"),
                               directories.systemPath("/usr/local/bin")}) {
        const auto root = files.rememberRoot(folder);
        if (!root)
            continue;
        for (const std::string &name : namesInFolder(*root)) {
            const auto target = files.linkTarget(paths::join(root->path, name));
            if (!target || target->empty())
                continue;
            const path full = target->front() == '/' ? path(*target) : root->path / *target;
            if (paths::isSameOrBelow(full.lexically_normal().native(), application.native()))
                found.add({*root, name}, LeftoverKind::Entry, "a command that leads to it");
        }
    }
}

void addOfBundle(Found &found, const std::string &id, const LeftoverNames &claimed) {
    for (const SearchedFolder &folder : bundleFolders) {
        const auto root = Platform::current().files->rememberRoot(folderOf(folder));
        if (!root)
            continue;
        for (const std::string &name : namesInFolder(*root)) {
            if (!LeftoverRules::isListedForBundle(name, id))
                continue;
            Leftover *leftover = found.add({*root, name}, folder.kind,
                                           "its name begins with the application's id", true);
            if (leftover)
                leftover->ticked = leftover->ticked && LeftoverRules::isTickedForBundle(name, id) &&
                                   !claimed.matches(folder.place, name);
        }
    }
}

} // namespace

std::string flatpakIdOf(const std::string &ref) {
    constexpr std::string_view beginning = "app/";
    const auto end = ref.find('/', beginning.size());
    return ref.starts_with(beginning) && end != ref.npos
               ? ref.substr(beginning.size(), end - beginning.size())
               : std::string();
}

ApplicationNames namesOf(const InstalledApplication &application) {
    ApplicationNames names{{}, application.programs, application.ids};
    switch (application.kind) {
    case ApplicationKind::Package:
    case ApplicationKind::Snap:
        names.package = application.key;
        break;
    case ApplicationKind::Flatpak:
        names.desktopIds.push_back(flatpakIdOf(application.key));
        break;
    case ApplicationKind::Folder:
        names.package = application.path.filename().native();
        break;
    case ApplicationKind::AppImage:
        names.package = application.name;
        break;
    case ApplicationKind::Bundle:
        break;
    }
    return names;
}

Leftovers::Leftovers(std::vector<InstalledApplication> installed)
    : m_installed(std::move(installed)) {
    for (const auto &source : Platform::current().applications) {
        auto claims = source->claims();
        m_claims.insert(m_claims.end(), std::make_move_iterator(claims.begin()),
                        std::make_move_iterator(claims.end()));
    }
}

LeftoverNames Leftovers::claimedBesides(const RemovalPlan &plan) const {
    const InstalledApplication &going = plan.application;
    const auto goes = [&](const std::string &key) {
        return key == going.key ||
               std::find(plan.also.begin(), plan.also.end(), key) != plan.also.end();
    };
    std::vector<std::string> names;
    for (const InstalledApplication &other : m_installed) {
        if (other.kind == going.kind && other.userOwned == going.userOwned && goes(other.key))
            continue;
        ApplicationNames more = namesOf(other);
        names.push_back(std::move(more.package));
        names.insert(names.end(), more.programs.begin(), more.programs.end());
        names.insert(names.end(), more.desktopIds.begin(), more.desktopIds.end());
    }
    for (const ClaimedName &claim : m_claims) {
        if (!goes(claim.key))
            names.push_back(claim.name);
    }
    const char *value = std::getenv("XDG_CURRENT_DESKTOP");
    std::string_view desktops = value ? value : "";
    while (!desktops.empty()) {
        const auto end = std::min(desktops.find(':'), desktops.size());
        names.emplace_back(desktops.substr(0, end));
        desktops.remove_prefix(std::min(end + 1, desktops.size()));
    }
    return LeftoverNames::claimedBy(names);
}

// Another branch, or the other installation's, which uses the same data.
bool Leftovers::hasTwin(const InstalledApplication &application) const {
    const std::string id = flatpakIdOf(application.key);
    return std::any_of(m_installed.begin(), m_installed.end(), [&](const auto &other) {
        return other.kind == ApplicationKind::Flatpak && flatpakIdOf(other.key) == id &&
               (other.key != application.key || other.userOwned != application.userOwned);
    });
}

std::vector<Leftover> Leftovers::of(const RemovalPlan &plan, const std::atomic<bool> *stop) const {
    const InstalledApplication &application = plan.application;
    const LeftoverNames claimed = claimedBesides(plan);
    Found found(stop, application.path);
    if (application.kind == ApplicationKind::Bundle) {
        if (!application.ids.empty())
            addOfBundle(found, application.ids.front(), claimed);
        return found.take();
    }
    if (application.kind == ApplicationKind::Flatpak && hasTwin(application))
        return {};
    const LeftoverNames names = LeftoverNames::of(namesOf(application));
    for (const SearchedFolder &folder : searchedFolders) {
        const auto root = Platform::current().files->rememberRoot(folderOf(folder));
        if (!root)
            continue;
        for (const std::string &name : namesInFolder(*root)) {
            if (names.matches(folder.place, name) && !claimed.matches(folder.place, name))
                found.add({*root, name}, folder.kind, "has its name");
        }
    }
    if (application.kind == ApplicationKind::Flatpak)
        addMade(found, madeByFlatpak, flatpakIdOf(application.key));
    if (application.kind == ApplicationKind::Snap)
        addMade(found, madeBySnap, application.key);
    for (const std::string &id : application.ids) {
        addMade(found, madeForEntries, id);
        if (application.kind == ApplicationKind::AppImage)
            addIntegration(found, id);
    }
    addStarters(found, application, claimed);
    if (application.kind == ApplicationKind::AppImage ||
        application.kind == ApplicationKind::Folder)
        addLinks(found, application.path);
    if (application.kind == ApplicationKind::Folder)
        addChanged(found, application, stop);
    return found.take();
}

} // namespace brightsweep
