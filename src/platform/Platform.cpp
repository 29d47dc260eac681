#include "platform/Platform.h"

#include "foundation/Paths.h"
#include "platform/AdministratorRights.h"
#include "platform/ApplicationSource.h"
#include "platform/DesktopHints.h"
#include "platform/DesktopNotifier.h"
#include "platform/FileHolders.h"
#include "platform/FileOperations.h"
#include "platform/LoginItemSource.h"
#include "platform/MemorySource.h"
#include "platform/SingleInstance.h"
#include "platform/StandardDirectories.h"
#include "platform/StatusItem.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"

namespace brightsweep {

AdministratorRights::~AdministratorRights() = default;
ApplicationSource::~ApplicationSource() = default;
DesktopHints::~DesktopHints() = default;
DesktopNotifier::~DesktopNotifier() = default;
FileHolders::~FileHolders() = default;
FileOperations::~FileOperations() = default;
HoldingFolder::~HoldingFolder() = default;
LoginItemSource::~LoginItemSource() = default;
MemorySource::~MemorySource() = default;
SingleInstance::~SingleInstance() = default;
StandardDirectories::~StandardDirectories() = default;
StatusItem::~StatusItem() = default;
SystemFacts::~SystemFacts() = default;
VolumeSource::~VolumeSource() = default;
Workspace::~Workspace() = default;

std::filesystem::path RemovalTarget::path() const {
    return paths::join(root.path, relative.native());
}

std::filesystem::path StandardDirectories::first(StandardDirectory directory) {
    const auto all = paths(directory);
    return all.empty() ? std::filesystem::path() : all.front();
}

Platform::Platform() = default;
Platform::Platform(Platform &&) noexcept = default;
Platform &Platform::operator=(Platform &&) noexcept = default;
Platform::~Platform() = default;

Platform &Platform::current() {
    // Never destroyed: workers may still use it when the process ends.
    static auto *platform = new Platform(makeNullPlatform("no platform has been set up"));
    return *platform;
}

void Platform::setCurrent(Platform platform) {
    current() = std::move(platform);
}

} // namespace brightsweep
