#include "platform/LinuxPlatform.h"

#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"
#include "platform/linux/LinuxFileOperations.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxVolumeSource.h"

namespace brightsweep {

Platform makeLinuxPlatform() {
    Platform platform = makeNullPlatform("not built yet");
    platform.files = std::make_unique<LinuxFileOperations>();
    platform.facts = std::make_unique<LinuxSystemFacts>();
    platform.volumes = std::make_unique<LinuxVolumeSource>();
    return platform;
}

} // namespace brightsweep
