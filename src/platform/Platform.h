#pragma once

#include <memory>
#include <vector>

namespace brightsweep {

class AdministratorRights;
class ApplicationSource;
class DesktopHints;
class DesktopNotifier;
class FileHolders;
class FileOperations;
class LoginItemSource;
class MemorySource;
class SingleInstance;
class StandardDirectories;
class StatusItem;
class SystemFacts;
class VolumeSource;
class Workspace;

/// One of each of the system's facilities. Set once, before any thread starts, and left alone until
/// the process ends; a test sets its own in between.
struct Platform {
    std::unique_ptr<FileOperations> files;
    std::unique_ptr<StandardDirectories> directories;
    std::unique_ptr<SystemFacts> facts;
    std::unique_ptr<VolumeSource> volumes;
    std::unique_ptr<AdministratorRights> rights;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<MemorySource> memory;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<DesktopNotifier> notifier;
    std::unique_ptr<SingleInstance> instance;
    std::unique_ptr<DesktopHints> hints;
    std::unique_ptr<FileHolders> holders;
    std::unique_ptr<LoginItemSource> loginItems;
    /// One of each kind but the bundles, which are found by their folders.
    std::vector<std::unique_ptr<ApplicationSource>> applications;

    Platform();
    Platform(Platform &&) noexcept;
    Platform &operator=(Platform &&) noexcept;
    ~Platform();

    /// The platform in use; one of Null forms until another is set.
    static Platform &current();
    static void setCurrent(Platform platform);
};

/// Every facility in its Null form: each call fails, and each says why it is not available.
Platform makeNullPlatform(const char *reason);

} // namespace brightsweep
