#include "platform/AdministratorRights.h"
#include "platform/ApplicationSource.h"
#include "platform/DesktopHints.h"
#include "platform/DesktopNotifier.h"
#include "platform/FileHolders.h"
#include "platform/LoginItemSource.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "platform/SingleInstance.h"
#include "platform/StandardDirectories.h"
#include "platform/StatusItem.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"

namespace brightsweep {

namespace {

constexpr auto unsupported = std::errc::function_not_supported;

// A facility that is not there, and why.
template <typename Interface>
class Null : public Interface {
public:
    explicit Null(const char *reason) : m_reason(reason) {}
    std::string unavailableReason() const override { return m_reason; }

protected:
    const std::string m_reason;
};

class NullFileOperations final : public Null<FileOperations> {
public:
    using Null::Null;
    Result<OpenDirectory> openDirectory(const std::filesystem::path &) override {
        return unsupported;
    }
    Result<OpenDirectory> openDirectoryAt(const OpenDirectory &, const char *) override {
        return unsupported;
    }
    Result<OpenDirectory> openParentOf(const OpenDirectory &, std::uint64_t,
                                       std::uint64_t) override {
        return unsupported;
    }
    std::error_code readBlock(const OpenDirectory &, DirectoryBlock &block,
                              WantedAttributes) override {
        block.fill().clear();
        block.setAtEnd(true);
        return std::make_error_code(unsupported);
    }
    Result<FileAttributes> attributes(const std::filesystem::path &) override {
        return unsupported;
    }
    Result<FileAttributes> attributesAt(const OpenDirectory &, const char *) override {
        return unsupported;
    }
    Result<FileAttributes> attributesFollowing(const std::filesystem::path &) override {
        return unsupported;
    }
    Result<std::filesystem::path> canonicalPath(const std::filesystem::path &) override {
        return unsupported;
    }
    Result<std::string> linkTarget(const std::filesystem::path &) override { return unsupported; }
    bool isMountPoint(const std::filesystem::path &) override { return false; }
    std::vector<FileIdentity> repeatedByOverlays(const std::filesystem::path &) override {
        return {};
    }
    Result<FileDescriptor> openFile(const std::filesystem::path &) override { return unsupported; }
    Result<FileDescriptor> openListedFile(const std::string &) override { return unsupported; }
    Result<FileAttributes> fileAttributes(const FileDescriptor &) override { return unsupported; }
    Result<std::uint64_t> cachedPages(const FileDescriptor &, std::uint64_t,
                                      std::uint64_t) override {
        return unsupported;
    }
    void fetchOnlyWhatIsRead(const FileDescriptor &) override {}
    Result<std::size_t> readAt(const FileDescriptor &, void *, std::size_t,
                               std::uint64_t) override {
        return unsupported;
    }
    Result<std::size_t> readCachedAt(const FileDescriptor &, void *, std::size_t,
                                     std::uint64_t) override {
        return unsupported;
    }
    void dropCached(const FileDescriptor &, std::uint64_t, std::uint64_t) override {}
    Result<std::uint64_t> nextData(const FileDescriptor &, std::uint64_t) override {
        return unsupported;
    }
    std::error_code keepWritersOut(const FileDescriptor &) override {
        return std::make_error_code(unsupported);
    }
    bool isWantedForWriting(const FileDescriptor &) override { return false; }
    Result<std::uint64_t> unsharedBytes(const FileDescriptor &) override { return unsupported; }
    Result<SharedRange> shareRange(const FileDescriptor &, const FileDescriptor &, std::uint64_t,
                                   std::uint64_t) override {
        return unsupported;
    }
    std::error_code sharingRefusal(const FileDescriptor &) override {
        return std::make_error_code(unsupported);
    }
    bool isNeverCopiedOnWrite(const FileDescriptor &) override { return false; }
    Result<RemovalRoot> rememberRoot(const std::filesystem::path &) override { return unsupported; }
    Result<OpenDirectory> openRoot(const RemovalRoot &) override { return unsupported; }
    std::vector<std::filesystem::path> mountPointsBelow(const OpenDirectory &) override {
        return {};
    }
    Result<OpenItem> openItem(const RemovalTarget &, const OpenItem *) override {
        return unsupported;
    }
    bool isDeletable(const OpenItem &) override { return false; }
    std::error_code checkRemoval(const OpenItem &) override {
        return std::make_error_code(unsupported);
    }
    std::error_code checkEntries(const OpenDirectory &, const DirectoryBlock &) override {
        return std::make_error_code(unsupported);
    }
    std::error_code refusalWithRights(const OpenItem &) override {
        return std::make_error_code(unsupported);
    }
    std::error_code removeItem(const OpenItem &, const RemovalOptions &) override {
        return std::make_error_code(unsupported);
    }
    Result<TrashFolder> trashOf(const HoldingFolder &, bool) override { return unsupported; }
    std::error_code moveItem(const OpenItem &, const FileDescriptor &,
                             const std::string &) override {
        return std::make_error_code(unsupported);
    }
    bool hasGone(const OpenItem &) override { return false; }
    std::error_code openModeJournal(const std::filesystem::path &) override {
        return std::make_error_code(unsupported);
    }
    void closeModeJournal() override {}
    void putModesBack() override {}
};

class NullStandardDirectories final : public Null<StandardDirectories> {
public:
    using Null::Null;
    std::vector<std::filesystem::path> paths(StandardDirectory) override { return {}; }
    CleanFolders cleanFolders(CleanPlace) override { return {}; }
    CleanFolders trashesOfVolume(const std::filesystem::path &) override { return {}; }
    std::filesystem::path systemPath(const std::filesystem::path &path) override { return path; }
};

class NullSystemFacts final : public Null<SystemFacts> {
public:
    using Null::Null;
    Result<SystemVersion> version() override { return unsupported; }
    Result<std::string> kernelValue(std::string_view) override { return unsupported; }
};

class NullVolumeSource final : public Null<VolumeSource> {
public:
    using Null::Null;
    std::vector<VolumeFacts> volumes() override { return {}; }
    void settle(int) override {}
    EjectResult eject(std::int16_t) override { return {int(unsupported), m_reason, {}}; }
    void setMountHandler(std::function<void(const MountEvent &)>) override {}
    void setFactsHandler(std::function<void()>) override {}
};

class NullAdministratorRights final : public Null<AdministratorRights> {
public:
    using Null::Null;
    RightsResult request(RightsPurpose) override {
        return {RightsOutcome::Failed, int(unsupported), m_reason};
    }
    int release() override { return 0; }
    RightsToken token() const override { return {}; }
    bool accepts(const RightsToken &) override { return false; }
    std::vector<PrivilegedReply> removeItems(const RightsToken &, const PrivilegedRemoval &removal,
                                             const std::atomic<bool> *) override {
        return std::vector<PrivilegedReply>(removal.items.size(), {false, false, m_reason});
    }
    PrivilegedReply dropCaches(const RightsToken &) override { return {false, false, m_reason}; }
    PackagesReply removePackages(const RightsToken &, const PackageRemoval &) override {
        return {PackagesOutcome::Refused, {}, m_reason};
    }
};

class NullApplicationSource final : public Null<ApplicationSource> {
public:
    NullApplicationSource(ApplicationKind kind, const char *reason) : Null(reason), m_kind(kind) {}
    ApplicationKind kind() const override { return m_kind; }
    Result<std::vector<InstalledApplication>> applications() override { return unsupported; }
    std::vector<std::string> runningOf(const std::vector<InstalledApplication> &) override {
        return {};
    }
    RemovalPlan plan(const InstalledApplication &application) override {
        RemovalPlan plan;
        plan.application = application;
        plan.blocker = Blocker::Unsupported;
        plan.reason = m_reason;
        return plan;
    }
    RemovalResult remove(const RemovalPlan &, const RightsToken *) override {
        return {UninstallOutcome::Failed, m_reason, {}};
    }
    std::uint64_t sizeOf(const InstalledApplication &) override { return 0; }

private:
    const ApplicationKind m_kind;
};

class NullWorkspace final : public Null<Workspace> {
public:
    using Null::Null;
    QString displayName(const std::filesystem::path &) override { return {}; }
    bool isPackage(const std::filesystem::path &) override { return false; }
    QString typeOf(const std::filesystem::path &) override { return {}; }
    Result<FileTime> created(const std::filesystem::path &) override { return unsupported; }
    bool isMissing(const std::string &) override { return false; }
    bool mayLieOnAbsentVolume(const std::filesystem::path &) override { return false; }
    bool open(const std::filesystem::path &) override { return false; }
    bool reveal(const std::filesystem::path &) override { return false; }
};

class NullMemorySource final : public Null<MemorySource> {
public:
    using Null::Null;
    Result<MemoryCounts> counts() override { return unsupported; }
    Result<std::uint64_t> availableBytes() override { return unsupported; }
    Result<MemoryDetails> details() override { return unsupported; }
    std::vector<ProcessMemory> processes(ProcessReading, const std::atomic<bool> *) override {
        return {};
    }
};

class NullFileHolders final : public Null<FileHolders> {
public:
    using Null::Null;
    std::vector<HeldFile> heldFiles() override { return {}; }
    std::vector<FileIdentity> writtenFiles() override { return {}; }
};

class NullLoginItemSource final : public Null<LoginItemSource> {
public:
    using Null::Null;
    Result<std::vector<LoginItemEntry>> items() override { return unsupported; }
    Result<std::vector<LoginItemEntry>> systemItems() override { return unsupported; }
    Result<std::string> add(const std::filesystem::path &, bool) override { return unsupported; }
    std::error_code remove(const std::string &) override { return fail(); }
    std::error_code setHidden(const std::string &, bool) override { return fail(); }
    std::error_code setSystemItemStarted(const std::string &, bool) override { return fail(); }
    std::error_code start(const std::string &) override { return fail(); }
    std::filesystem::path pathOf(const std::string &) override { return {}; }
    std::shared_ptr<void> watch(std::function<void()>) override { return {}; }

private:
    static std::error_code fail() { return std::make_error_code(unsupported); }
};

class NullStatusItem final : public Null<StatusItem> {
public:
    using Null::Null;
    bool hostPresent() const override { return false; }
    void setShown(bool) override {}
    void setImages(std::vector<StatusImage>) override {}
    void setTitle(const QString &) override {}
    void setToolTip(const QString &, const QString &) override {}
    void setActivatedHandler(std::function<void(const StatusActivation &)>) override {}
    void setHostHandler(std::function<void(bool)>) override {}
};

class NullDesktopNotifier final : public Null<DesktopNotifier> {
public:
    using Null::Null;
    bool available() override { return false; }
    void show(const DesktopNotification &) override {}
};

class NullSingleInstance final : public Null<SingleInstance> {
public:
    using Null::Null;
    InstanceOutcome claim(bool, const InstanceRequest &) override {
        return InstanceOutcome::Failed;
    }
    void setActivateHandler(std::function<void(const InstanceRequest &)>) override {}
};

class NullDesktopHints final : public Null<DesktopHints> {
public:
    using Null::Null;
    Hints hints() const override { return {}; }
    void setChangedHandler(std::function<void()>) override {}
};

} // namespace

Platform makeNullPlatform(const char *reason) {
    Platform platform;
    platform.files = std::make_unique<NullFileOperations>(reason);
    platform.directories = std::make_unique<NullStandardDirectories>(reason);
    platform.facts = std::make_unique<NullSystemFacts>(reason);
    platform.volumes = std::make_unique<NullVolumeSource>(reason);
    platform.rights = std::make_unique<NullAdministratorRights>(reason);
    platform.workspace = std::make_unique<NullWorkspace>(reason);
    platform.memory = std::make_unique<NullMemorySource>(reason);
    platform.statusItem = std::make_unique<NullStatusItem>(reason);
    platform.notifier = std::make_unique<NullDesktopNotifier>(reason);
    platform.instance = std::make_unique<NullSingleInstance>(reason);
    platform.hints = std::make_unique<NullDesktopHints>(reason);
    platform.loginItems = std::make_unique<NullLoginItemSource>(reason);
    platform.holders = std::make_unique<NullFileHolders>(reason);
    for (const ApplicationKind kind :
         {ApplicationKind::Package, ApplicationKind::Flatpak, ApplicationKind::Snap,
          ApplicationKind::AppImage, ApplicationKind::Folder})
        platform.applications.push_back(std::make_unique<NullApplicationSource>(kind, reason));
    return platform;
}

} // namespace brightsweep
