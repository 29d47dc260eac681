#include "uninstall/LeftBehind.h"

#include "foundation/DesktopEntry.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"
#include "removal/NvAuthorization.h"
#include "uninstall/KeptFolders.h"
#include "uninstall/LeftoverSearch.h"
#include "uninstall/Leftovers.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace brightsweep {

namespace {

constexpr std::string_view entryEnding = ".desktop";

// Folders with one entry for each application of a kind, named by its id or name.
struct KindFolder {
    ApplicationKind kind;
    StandardDirectory directory;
    const char *way;
    LeftoverKind leftover;
    const char *words;
};
constexpr KindFolder kindFolders[] = {
    {ApplicationKind::Flatpak, StandardDirectory::Home, ".var/app", LeftoverKind::Data,
     "the Flatpak is not installed"},
    {ApplicationKind::Flatpak, StandardDirectory::Library, "flatpak/overrides",
     LeftoverKind::Config, "the Flatpak is not installed"},
    {ApplicationKind::Snap, StandardDirectory::Home, "snap", LeftoverKind::Data,
     "the snap is not installed"},
};
// Flatpak's own name in its folder of overrides, for all applications.
constexpr std::string_view everyFlatpak = "global";

// Folders of the user's own with entries that start something.
struct EntryFolder {
    StandardDirectory directory;
    const char *way;
};
constexpr EntryFolder entryFolders[] = {
    {StandardDirectory::Preferences, "autostart"},
    {StandardDirectory::Library, "applications"},
};

std::filesystem::path folderOf(StandardDirectory directory, const char *way) {
    return paths::join(Platform::current().directories->first(directory), way);
}

bool isNameOfKind(ApplicationKind kind, const std::string &name) {
    if (kind == ApplicationKind::Flatpak)
        return LeftoverRules::isReverseDns(name) && name != everyFlatpak;
    return !name.empty() &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_") == name.npos &&
           name != "common" && name != "current";
}

// The item, where nothing has come into it since.
std::optional<Leftover> keptSince(const RemovalTarget &target, const KeptFolder &folder,
                                  const std::atomic<bool> *stop) {
    std::vector<FileTimes> times;
    LeftoverLook look{stop};
    look.times = &times;
    look.timesFolders = true;
    auto leftover = lookAtLeftover(target, LeftoverKind::Data,
                                   "what an application wrote that was removed", look);
    const auto isLater = [&](const FileTimes &each) { return each.came > folder.lastCame; };
    return std::any_of(times.begin(), times.end(), isLater) ? std::nullopt : std::move(leftover);
}

// As a whole, or where somebody uses it by now, what is as it was kept.
void addKept(LeftoverSearch &found, const KeptFolder &folder) {
    const auto target = NvAuthorization::targetOf(folder.path);
    if (!target)
        return;
    if (auto whole = keptSince(*target, folder, found.stop())) {
        found.add(std::move(whole));
        return;
    }
    forEachName(folder.path, [&](const RemovalRoot &root, const std::string &name) {
        auto part = keptSince({root, name}, folder, found.stop());
        if (part && part->seen.changed <= folder.lastCame)
            found.add(std::move(part));
    });
}

} // namespace

LeftBehind::LeftBehind(std::vector<InstalledApplication> installed,
                       std::vector<ApplicationKind> unknown)
    : m_installed(std::move(installed)),
      m_unknown(std::move(unknown)),
      m_claims(claimsOfSources()) {}

bool LeftBehind::isKnown(ApplicationKind kind) const {
    return std::find(m_unknown.begin(), m_unknown.end(), kind) == m_unknown.end();
}

std::vector<Leftover> LeftBehind::find(const std::atomic<bool> *stop) const {
    std::vector<std::string> claims = namesOfDesktop();
    std::set<std::string> ids; // of Flatpaks, and names of snaps
    for (const InstalledApplication &application : m_installed) {
        addNames(claims, application);
        if (application.kind == ApplicationKind::Flatpak)
            ids.insert(flatpakIdOf(application.key));
        else if (application.kind == ApplicationKind::Snap)
            ids.insert(application.key);
    }
    for (const ClaimedName &claim : m_claims) {
        claims.push_back(claim.name);
        ids.insert(claim.name);
    }
    const LeftoverNames claimed = LeftoverNames::claimedBy(claims);
    LeftoverSearch found(stop);
    for (const auto &source : Platform::current().applications) {
        if (!isKnown(source->kind()))
            continue;
        for (const std::string &name : source->formerNames())
            found.addNamed(LeftoverNames::of({name, {}, {}}), claimed,
                           "has the name of \"" + name + "\", which was removed");
    }
    for (const KindFolder &folder : kindFolders) {
        if (!isKnown(folder.kind))
            continue;
        forEachName(folderOf(folder.directory, folder.way),
                    [&](const RemovalRoot &root, const std::string &name) {
                        if (isNameOfKind(folder.kind, name) && !ids.contains(name))
                            found.add({root, name}, folder.leftover, folder.words);
                    });
    }
    for (const KeptFolder &folder : keptFolders()) {
        const bool isInstalled = std::any_of(m_installed.begin(), m_installed.end(),
                                             [&](const InstalledApplication &application) {
                                                 return application.path == folder.path;
                                             });
        if (!isInstalled && isKnown(ApplicationKind::Folder))
            addKept(found, folder);
    }
    for (const EntryFolder &folder : entryFolders) {
        forEachName(folderOf(folder.directory, folder.way), [&](const RemovalRoot &root,
                                                                const std::string &name) {
            auto text = name.ends_with(entryEnding) ? readSmallFile(paths::join(root.path, name))
                                                    : std::errc::invalid_argument;
            if (!text)
                return;
            const DesktopEntry entry(*std::move(text));
            const std::string program = execProgram(entry.string("Exec"));
            if (!entry.isValid() || entry.raw("Type") != "Application" ||
                entry.boolean("DBusActivatable") || entry.boolean("Hidden"))
                return;
            const std::string flatpak = entry.string("X-Flatpak");
            if (!flatpak.empty() && isKnown(ApplicationKind::Flatpak) && !ids.contains(flatpak))
                found.add({root, name}, LeftoverKind::Entry,
                          "starts a Flatpak that is not installed");
            else if (!program.empty() && Platform::current().workspace->isMissing(program))
                found.add({root, name}, LeftoverKind::Entry,
                          "starts \"" + program + "\", which is not there");
        });
    }
    auto leftovers = found.take();
    for (Leftover &leftover : leftovers)
        leftover.ticked = false;
    return leftovers;
}

std::vector<Uninstallation::Item>
LeftBehind::remove(RemovalRun &run, const std::vector<Leftover> &leftovers,
                   const std::function<void(const Leftover &)> &told) {
    const RemovalRun::Busy busy(run);
    std::vector<Uninstallation::Item> items;
    for (const Leftover &leftover : leftovers) {
        if (run.stopFlag())
            break;
        if (!leftover.ticked)
            continue;
        if (told)
            told(leftover);
        items.push_back(Uninstallation::removeItem(leftover, run.stopFlag()));
    }
    return items;
}

} // namespace brightsweep
