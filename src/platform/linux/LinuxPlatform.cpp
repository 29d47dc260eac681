#include "platform/LinuxPlatform.h"

#include "platform/Platform.h"
#include "platform/linux/AppImageSource.h"
#include "platform/linux/FlatpakSource.h"
#include "platform/linux/FolderSource.h"
#include "platform/linux/LinuxAdministratorRights.h"
#include "platform/linux/LinuxDesktopHints.h"
#include "platform/linux/LinuxDesktopNotifier.h"
#include "platform/linux/LinuxFileHolders.h"
#include "platform/linux/LinuxFileOperations.h"
#include "platform/linux/LinuxLoginItemSource.h"
#include "platform/linux/LinuxMemorySource.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "platform/linux/LinuxStandardDirectories.h"
#include "platform/linux/LinuxStatusItem.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxVolumeSource.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/PackageSource.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/SnapSource.h"

#include <QThread>

namespace brightsweep {

Platform makeLinuxPlatform() {
    // Qt takes the first thread that it meets for the main one. That must not be the watch of the
    // volumes, which starts with the first log, before there is an application object.
    QThread::currentThread();
    const auto bus = std::make_shared<SessionBus>();
    Platform platform;
    platform.files = std::make_unique<LinuxFileOperations>();
    platform.directories = std::make_unique<LinuxStandardDirectories>();
    platform.facts = std::make_unique<LinuxSystemFacts>();
    platform.volumes = std::make_unique<LinuxVolumeSource>();
    platform.rights = std::make_unique<LinuxAdministratorRights>();
    platform.workspace = std::make_unique<LinuxWorkspace>(bus);
    platform.holders = std::make_unique<LinuxFileHolders>();
    platform.loginItems = std::make_unique<LinuxLoginItemSource>();
    platform.memory = std::make_unique<LinuxMemorySource>();
    platform.statusItem = std::make_unique<LinuxStatusItem>(bus);
    platform.notifier = std::make_unique<LinuxDesktopNotifier>(bus);
    platform.instance = std::make_unique<LinuxSingleInstance>(bus);
    platform.hints = std::make_unique<LinuxDesktopHints>(bus);
    auto packages = std::make_unique<PackageSource>();
    // The platform keeps the sources together.
    const OwnedPaths owned = [source = packages.get()](const PathSet &paths) {
        PathSet found;
        for (const auto &[path, name] : source->owners(paths))
            found.insert(path);
        return found;
    };
    platform.applications.push_back(std::move(packages));
    platform.applications.push_back(std::make_unique<FlatpakSource>());
    platform.applications.push_back(std::make_unique<SnapSource>());
    platform.applications.push_back(std::make_unique<AppImageSource>(owned));
    platform.applications.push_back(std::make_unique<FolderSource>(owned));
    return platform;
}

} // namespace brightsweep
