#include "uninstall/UninstallApp.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/NvAuthorization.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/LeftoverRules.h"

#include <string>
#include <utility>

namespace brightsweep {

namespace fs = std::filesystem;

std::vector<fs::path> UninstallApp::leftoverFolders() {
    StandardDirectories &directories = *Platform::current().directories;
    return {directories.systemPath("/usr/local/share"),
            directories.first(StandardDirectory::Library),
            directories.first(StandardDirectory::Preferences),
            directories.first(StandardDirectory::Caches)};
}

std::vector<fs::path> UninstallApp::getFilesByBundle(const QString &bundleID,
                                                     const std::vector<fs::path> &Paths) {
    FileOperations &files = *Platform::current().files;
    const std::string id = bundleID.toStdString();
    std::vector<fs::path> found;
    for (const auto &folder : Paths) {
        const auto directory = files.openDirectory(folder);
        DirectoryBlock block;
        while (directory && !block.atEnd() &&
               !files.readBlock(*directory, block, WantedAttributes::None)) {
            for (const DirectoryEntry &entry : block.entries()) {
                if (LeftoverRules::isListedForBundle(entry.nameView(), id))
                    found.push_back(paths::join(folder, entry.nameView()));
            }
        }
    }
    return found;
}

bool UninstallApp::uninstallApp(const AppItems &item) {
    std::vector<fs::path> places;
    const std::string id = item.bundleID.toStdString();
    if (!id.empty())
        places = getFilesByBundle(item.bundleID, leftoverFolders());
    std::erase_if(places, [&](const fs::path &leftover) {
        return !LeftoverRules::isTickedForBundle(paths::lastComponent(leftover), id);
    });
    places.push_back(item.path);
    std::vector<Leftover> found;
    for (const auto &path : places) {
        const auto target = NvAuthorization::targetOf(path);
        if (!target) {
            m_stayed = path;
            m_outcome = {false, target.error(), {}, false, false};
            return false;
        }
        Leftover leftover;
        if (auto seen = lookAtLeftover(*target, LeftoverKind::Data, {}, {m_stop}))
            leftover = *std::move(seen);
        leftover.path = path;
        leftover.target = *target;
        found.push_back(std::move(leftover));
    }
    const Leftover bundle = std::move(found.back());
    found.pop_back();
    return uninstallApp(item.bundleID, std::move(found), bundle);
}

bool UninstallApp::uninstallApp(const QString &bundleID, std::vector<Leftover> leftovers,
                                const Leftover &bundle) {
    NSLog("Del App Name:%@  Path:%@", bundleID, bundle.path);
    if (bundleID.isEmpty())
        leftovers.clear();
    leftovers.push_back(bundle);
    for (const Leftover &leftover : leftovers) {
        ItemRemoval removal(m_stop);
        m_outcome = removeAsShown(removal, leftover, m_stop);
        if (m_outcome.removed)
            continue;
        m_stayed = leftover.path;
        return false;
    }
    return true;
}

} // namespace brightsweep
