#include "platform/LinuxPlatform.h"

#include "platform/Platform.h"
#include "platform/linux/LinuxAdministratorRights.h"
#include "platform/linux/LinuxFileOperations.h"
#include "platform/linux/LinuxMemorySource.h"
#include "platform/linux/LinuxStandardDirectories.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxVolumeSource.h"
#include "platform/linux/LinuxWorkspace.h"

#include <QThread>

namespace brightsweep {

Platform makeLinuxPlatform() {
    // Qt takes the first thread that it meets for the main one. That must not be the watch of the
    // volumes, which starts with the first log, before there is an application object.
    QThread::currentThread();
    Platform platform = makeNullPlatform("not on this desktop");
    platform.files = std::make_unique<LinuxFileOperations>();
    platform.directories = std::make_unique<LinuxStandardDirectories>();
    platform.facts = std::make_unique<LinuxSystemFacts>();
    platform.volumes = std::make_unique<LinuxVolumeSource>();
    platform.rights = std::make_unique<LinuxAdministratorRights>();
    platform.workspace = std::make_unique<LinuxWorkspace>();
    platform.memory = std::make_unique<LinuxMemorySource>();
    return platform;
}

} // namespace brightsweep
