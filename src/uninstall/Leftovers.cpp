#include "uninstall/Leftovers.h"

#include "foundation/DesktopEntry.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/NvAuthorization.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/LeftoverSearch.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace brightsweep {

namespace {

using std::filesystem::path;

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
// What is written later than that after the folder was made is no longer the installation, nor what
// comes after a pause of that length, however old it is.
constexpr std::chrono::nanoseconds installing = std::chrono::minutes(2);

template <std::size_t Size>
void addMade(LeftoverSearch &found, const MadePlace (&places)[Size], const std::string &name) {
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

void addStarters(LeftoverSearch &found, const InstalledApplication &application,
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
        forEachName(paths::join(base, starter.way), [&](const auto &root, const auto &name) {
            if (!name.ends_with(starter.ending))
                return;
            const auto text = readSmallFile(paths::join(root.path, name));
            if (text && startsOneOf(*text, starter.key, programs, folder))
                found.add({root, name}, LeftoverKind::Entry, starter.reason);
        });
    };
    std::for_each(std::begin(starterFolders), std::end(starterFolders), addFrom);
    if (isOwnFiles)
        std::for_each(std::begin(entryFolders), std::end(entryFolders), addFrom);
}

struct OwnEntry {
    std::optional<Leftover> leftover;
    std::vector<FileTimes> files;
};

std::vector<OwnEntry> entriesOf(const InstalledApplication &application, LeftoverLook look) {
    std::vector<OwnEntry> entries;
    forEachName(application.path, [&](const RemovalRoot &root, const std::string &name) {
        OwnEntry &entry = entries.emplace_back();
        look.times = &entry.files;
        entry.leftover = lookAtLeftover({root, name}, LeftoverKind::Data,
                                        "written since the installation", look);
    });
    return entries;
}

template <typename Test>
bool anyFile(const std::vector<OwnEntry> &entries, Test test) {
    return std::any_of(entries.begin(), entries.end(), [&](const OwnEntry &entry) {
        return std::any_of(entry.files.begin(), entry.files.end(), test);
    });
}

// What a program that lies in a folder of its own has written there since.
void addChanged(LeftoverSearch &found, const InstalledApplication &application) {
    if (application.installed == 0)
        return;
    LeftoverLook look{found.stop()};
    for (const std::string &program : application.programs) {
        if (const auto file = Platform::current().files->attributesFollowing(program))
            look.programs.push_back({file->device, file->inode});
    }
    auto entries = entriesOf(application, look);
    const std::chrono::nanoseconds made = std::chrono::seconds(application.installed);
    const std::int64_t changedAfter = (made + installing).count();
    std::int64_t cameBefore = 0;
    // Where nothing is as it was installed, somebody has given the whole to another owner or mode.
    if (!anyFile(entries, [&](const FileTimes &file) { return file.came <= changedAfter; })) {
        look.cameWhenMade = true;
        entries = entriesOf(application, look);
        cameBefore = (made - installing).count();
    }
    std::vector<std::int64_t> arrivals;
    for (const OwnEntry &entry : entries) {
        for (const FileTimes &file : entry.files) {
            if (file.written <= changedAfter)
                arrivals.push_back(file.came);
        }
    }
    const std::int64_t cameAfter =
        LeftoverRules::endOfInstallation(made.count(), std::move(arrivals), installing.count()) +
        installing.count();
    for (OwnEntry &entry : entries) {
        if (std::any_of(entry.files.begin(), entry.files.end(), [&](const FileTimes &file) {
                return file.written > changedAfter || file.came > cameAfter ||
                       file.came < cameBefore;
            }))
            found.add(std::move(entry.leftover));
    }
}

// What the integration of an AppImage has put beside its entry, by the number in the entry's name.
void addIntegration(LeftoverSearch &found, const std::string &id) {
    constexpr std::string_view mark = "appimagekit_";
    constexpr std::size_t digits = 32;
    if (!id.starts_with(mark) || id.size() < mark.size() + digits ||
        id.find_first_not_of("0123456789abcdef", mark.size()) < mark.size() + digits)
        return;
    const std::string beginning = id.substr(0, mark.size() + digits);
    const path data = Platform::current().directories->first(StandardDirectory::Library);
    const auto addFrom = [&](const path &folder, const char *reason) {
        forEachName(folder, [&](const RemovalRoot &root, const std::string &name) {
            if (name.starts_with(beginning))
                found.add({root, name}, LeftoverKind::Entry, reason);
        });
    };
    const path icons = paths::join(data, "icons/hicolor");
    forEachName(icons, [&](const RemovalRoot &, const std::string &size) {
        for (const char *kind : {"/apps", "/mimetypes"})
            addFrom(paths::join(icons, size + kind), "an icon of it");
    });
    addFrom(paths::join(data, "mime/packages"), "a file type of it");
}

// Links among the programs of the user and of the machine that lead into the application.
void addLinks(LeftoverSearch &found, const path &application) {
    FileOperations &files = *Platform::current().files;
    StandardDirectories &directories = *Platform::current().directories;
    const path home = directories.first(StandardDirectory::Home);
    for (const path &folder : {paths::join(home, ".local/bin"), paths::join(home, "bin"),
                               directories.systemPath("/usr/local/bin")}) {
        forEachName(folder, [&](const RemovalRoot &root, const std::string &name) {
            const auto target = files.linkTarget(paths::join(root.path, name));
            if (!target || target->empty())
                return;
            const path full = target->front() == '/' ? path(*target) : root.path / *target;
            if (paths::isSameOrBelow(full.lexically_normal().native(), application.native()))
                found.add({root, name}, LeftoverKind::Entry, "a command that leads to it");
        });
    }
}

void addOfBundle(LeftoverSearch &found, const std::string &id, const LeftoverNames &claimed) {
    for (const SearchedFolder &folder : bundleFolders()) {
        forEachName(folder.path(), [&](const RemovalRoot &root, const std::string &name) {
            if (!LeftoverRules::isListedForBundle(name, id))
                return;
            Leftover *leftover = found.add({root, name}, folder.kind,
                                           "its name begins with the application's id", true);
            if (!leftover)
                return;
            leftover->isDoubtful =
                !LeftoverRules::isTickedForBundle(name, id) || claimed.matches(folder.place, name);
            leftover->ticked = leftover->ticked && !leftover->isDoubtful;
        });
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

std::vector<std::string> namesOfDesktop() {
    const char *value = std::getenv("XDG_CURRENT_DESKTOP");
    std::string_view desktops = value ? value : "";
    std::vector<std::string> names;
    while (!desktops.empty()) {
        const auto end = std::min(desktops.find(':'), desktops.size());
        names.emplace_back(desktops.substr(0, end));
        desktops.remove_prefix(std::min(end + 1, desktops.size()));
    }
    return names;
}

void addNames(std::vector<std::string> &names, const InstalledApplication &application) {
    ApplicationNames more = namesOf(application);
    names.push_back(std::move(more.package));
    names.insert(names.end(), more.programs.begin(), more.programs.end());
    names.insert(names.end(), more.desktopIds.begin(), more.desktopIds.end());
}

std::vector<ClaimedName> claimsOfSources() {
    std::vector<ClaimedName> all;
    for (const auto &source : Platform::current().applications) {
        auto claims = source->claims();
        all.insert(all.end(), std::make_move_iterator(claims.begin()),
                   std::make_move_iterator(claims.end()));
    }
    return all;
}

Leftovers::Leftovers(std::vector<InstalledApplication> installed)
    : m_installed(std::move(installed)), m_claims(claimsOfSources()) {}

LeftoverNames Leftovers::claimedBesides(const RemovalPlan &plan) const {
    const InstalledApplication &going = plan.application;
    const auto goes = [&](const std::string &key) {
        return key == going.key ||
               std::find(plan.also.begin(), plan.also.end(), key) != plan.also.end();
    };
    std::vector<std::string> names = namesOfDesktop();
    for (const InstalledApplication &other : m_installed) {
        if (other.kind != going.kind || other.userOwned != going.userOwned || !goes(other.key))
            addNames(names, other);
    }
    for (const ClaimedName &claim : m_claims) {
        if (!goes(claim.key))
            names.push_back(claim.name);
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
    LeftoverSearch found(stop, application.path);
    if (application.kind == ApplicationKind::Bundle) {
        if (!application.ids.empty())
            addOfBundle(found, application.ids.front(), claimed);
        return found.take();
    }
    if (application.kind == ApplicationKind::Flatpak && hasTwin(application))
        return {};
    found.addNamed(LeftoverNames::of(namesOf(application)), claimed, "has its name");
    for (const InstalledApplication &other : m_installed) {
        if (other.kind == application.kind &&
            std::find(plan.also.begin(), plan.also.end(), other.key) != plan.also.end())
            found.addNamed(LeftoverNames::of(namesOf(other)), claimed,
                           "has the name of \"" + other.name + "\", which goes along");
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
        addChanged(found, application);
    return found.take();
}

} // namespace brightsweep
