#include "platform/LinuxPlatform.h"

#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"
#include "platform/linux/LinuxAdministratorRights.h"
#include "platform/linux/LinuxFileOperations.h"
#include "platform/linux/LinuxStandardDirectories.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxWorkspace.h"

namespace brightsweep {

Platform makeLinuxPlatform() {
    Platform platform = makeNullPlatform("not built yet");
    platform.files = std::make_unique<LinuxFileOperations>();
    platform.facts = std::make_unique<LinuxSystemFacts>();
    platform.rights = std::make_unique<LinuxAdministratorRights>();
    platform.directories = std::make_unique<LinuxStandardDirectories>();
    platform.workspace = std::make_unique<LinuxWorkspace>();
    return platform;
}

} // namespace brightsweep
