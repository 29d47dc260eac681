#include "uninstall/UninstallApp.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/NvAuthorization.h"
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
    std::vector<fs::path> leftovers;
    if (!item.bundleID.isEmpty())
        leftovers = getFilesByBundle(item.bundleID, leftoverFolders());
    const std::string id = item.bundleID.toStdString();
    std::erase_if(leftovers, [&](const fs::path &leftover) {
        return !LeftoverRules::isTickedForBundle(paths::lastComponent(leftover), id);
    });
    return uninstallApp(item, std::move(leftovers));
}

bool UninstallApp::uninstallApp(const AppItems &item, std::vector<fs::path> leftovers) {
    NSLog("Del App Name:%@  Path:%@", item.bundleID, item.path);
    if (item.bundleID.isEmpty())
        leftovers.clear();
    leftovers.push_back(item.path);
    for (const auto &path : leftovers) {
        const auto target = NvAuthorization::targetOf(path);
        m_outcome = target ? ItemRemoval(m_stop).remove(*target)
                           : RemovalOutcome{false, target.error(), {}, false, false};
        // One that had gone before has gone.
        if (m_outcome.removed || m_outcome.error == std::errc::no_such_file_or_directory)
            continue;
        m_stayed = path;
        return false;
    }
    return true;
}

} // namespace brightsweep
