#include "support/WrappedPlatform.h"

#include "foundation/Paths.h"
#include "platform/AdministratorRights.h"
#include "platform/DesktopHints.h"
#include "platform/DesktopNotifier.h"
#include "platform/FileHolders.h"
#include "platform/FileOperations.h"
#include "platform/MemorySource.h"
#include "platform/SingleInstance.h"
#include "platform/StandardDirectories.h"
#include "platform/StatusItem.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"

#include <utility>

namespace brightsweep::test {

namespace {

template <typename Interface>
class Wrapped : public Interface {
public:
    Wrapped(std::unique_ptr<Interface> wrapped, PlatformHook hook)
        : m_wrapped(std::move(wrapped)), m_hook(std::move(hook)) {}
    std::string unavailableReason() const override { return m_wrapped->unavailableReason(); }

protected:
    // The call's result, unless the hook has an error: then what `failed` makes of it.
    template <typename Call, typename Failed>
    auto ask(std::string_view name, const std::filesystem::path &argument, Call call,
             Failed failed) const -> decltype(call()) {
        if (const std::error_code error = m_hook(name, argument))
            return failed(error);
        return call();
    }
    template <typename Call>
    auto ask(std::string_view name, const std::filesystem::path &argument, Call call) const {
        return ask(name, argument, std::move(call),
                   [](std::error_code error) -> decltype(call()) { return error; });
    }

    std::unique_ptr<Interface> m_wrapped;
    PlatformHook m_hook;
};

std::filesystem::path pathOf(const FileDescriptor &descriptor) {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor.get()),
                                         ignored);
}
std::filesystem::path pathOf(const OpenDirectory &directory) {
    return pathOf(directory.descriptor);
}

class WrappedFiles final : public Wrapped<FileOperations> {
public:
    using Wrapped::Wrapped;
    Result<OpenDirectory> openDirectory(const std::filesystem::path &path) override {
        return ask("openDirectory", path, [&] { return m_wrapped->openDirectory(path); });
    }
    Result<OpenDirectory> openDirectoryAt(const OpenDirectory &parent, const char *name) override {
        return ask("openDirectoryAt", paths::join(pathOf(parent), name),
                   [&] { return m_wrapped->openDirectoryAt(parent, name); });
    }
    Result<OpenDirectory> openParentOf(const OpenDirectory &directory, std::uint64_t device,
                                       std::uint64_t inode) override {
        return ask("openParentOf", pathOf(directory),
                   [&] { return m_wrapped->openParentOf(directory, device, inode); });
    }
    std::error_code readBlock(const OpenDirectory &directory, DirectoryBlock &block,
                              WantedAttributes wanted) override {
        return ask(
            "readBlock", pathOf(directory),
            [&] { return m_wrapped->readBlock(directory, block, wanted); },
            [&](std::error_code error) {
                block.fill().clear();
                block.setAtEnd(true);
                return error;
            });
    }
    Result<FileAttributes> attributes(const std::filesystem::path &path) override {
        return ask("attributes", path, [&] { return m_wrapped->attributes(path); });
    }
    Result<FileAttributes> attributesAt(const OpenDirectory &directory, const char *name) override {
        return ask("attributesAt", paths::join(pathOf(directory), name),
                   [&] { return m_wrapped->attributesAt(directory, name); });
    }
    Result<FileAttributes> attributesFollowing(const std::filesystem::path &path) override {
        return ask("attributesFollowing", path,
                   [&] { return m_wrapped->attributesFollowing(path); });
    }
    Result<std::filesystem::path> canonicalPath(const std::filesystem::path &path) override {
        return ask("canonicalPath", path, [&] { return m_wrapped->canonicalPath(path); });
    }
    Result<std::string> linkTarget(const std::filesystem::path &path) override {
        return ask("linkTarget", path, [&] { return m_wrapped->linkTarget(path); });
    }
    bool isMountPoint(const std::filesystem::path &path) override {
        return ask(
            "isMountPoint", path, [&] { return m_wrapped->isMountPoint(path); },
            [](std::error_code) { return true; });
    }
    Result<FileDescriptor> openFile(const std::filesystem::path &path) override {
        return ask("openFile", path, [&] { return m_wrapped->openFile(path); });
    }
    Result<FileDescriptor> openListedFile(const std::string &path) override {
        return ask("openListedFile", path, [&] { return m_wrapped->openListedFile(path); });
    }
    Result<FileAttributes> fileAttributes(const FileDescriptor &file) override {
        return ask("fileAttributes", pathOf(file), [&] { return m_wrapped->fileAttributes(file); });
    }
    Result<std::uint64_t> cachedPages(const FileDescriptor &file, std::uint64_t offset,
                                      std::uint64_t length) override {
        return ask("cachedPages", pathOf(file),
                   [&] { return m_wrapped->cachedPages(file, offset, length); });
    }
    void fetchOnlyWhatIsRead(const FileDescriptor &file) override {
        ask(
            "fetchOnlyWhatIsRead", pathOf(file), [&] { m_wrapped->fetchOnlyWhatIsRead(file); },
            [](std::error_code) {});
    }
    Result<std::size_t> readAt(const FileDescriptor &file, void *data, std::size_t size,
                               std::uint64_t offset) override {
        return ask("readAt", pathOf(file),
                   [&] { return m_wrapped->readAt(file, data, size, offset); });
    }
    Result<std::size_t> readCachedAt(const FileDescriptor &file, void *data, std::size_t size,
                                     std::uint64_t offset) override {
        return ask("readCachedAt", pathOf(file),
                   [&] { return m_wrapped->readCachedAt(file, data, size, offset); });
    }
    void dropCached(const FileDescriptor &file, std::uint64_t offset,
                    std::uint64_t length) override {
        ask(
            "dropCached", pathOf(file), [&] { m_wrapped->dropCached(file, offset, length); },
            [](std::error_code) {});
    }
    Result<std::uint64_t> nextData(const FileDescriptor &file, std::uint64_t offset) override {
        return ask("nextData", pathOf(file), [&] { return m_wrapped->nextData(file, offset); });
    }
    std::error_code keepWritersOut(const FileDescriptor &file) override {
        return ask("keepWritersOut", pathOf(file), [&] { return m_wrapped->keepWritersOut(file); });
    }
    bool isWantedForWriting(const FileDescriptor &file) override {
        return m_wrapped->isWantedForWriting(file);
    }
    Result<std::uint64_t> unsharedBytes(const FileDescriptor &file) override {
        return ask("unsharedBytes", pathOf(file), [&] { return m_wrapped->unsharedBytes(file); });
    }
    Result<SharedRange> shareRange(const FileDescriptor &source, const FileDescriptor &file,
                                   std::uint64_t offset, std::uint64_t length) override {
        return ask("shareRange", pathOf(file),
                   [&] { return m_wrapped->shareRange(source, file, offset, length); });
    }
    std::error_code sharingRefusal(const FileDescriptor &file) override {
        return ask("sharingRefusal", pathOf(file), [&] { return m_wrapped->sharingRefusal(file); });
    }
    bool isNeverCopiedOnWrite(const FileDescriptor &file) override {
        return m_wrapped->isNeverCopiedOnWrite(file);
    }
    Result<RemovalRoot> rememberRoot(const std::filesystem::path &folder) override {
        return ask("rememberRoot", folder, [&] { return m_wrapped->rememberRoot(folder); });
    }
    Result<OpenDirectory> openRoot(const RemovalRoot &root) override {
        return ask("openRoot", root.path, [&] { return m_wrapped->openRoot(root); });
    }
    std::vector<std::filesystem::path> mountPointsBelow(const OpenDirectory &root) override {
        return m_wrapped->mountPointsBelow(root);
    }
    Result<OpenItem> openItem(const RemovalTarget &target, const OpenItem *previous) override {
        return ask("openItem", target.path(),
                   [&] { return m_wrapped->openItem(target, previous); });
    }
    bool isDeletable(const OpenItem &item) override {
        return ask(
            "isDeletable", item.path, [&] { return m_wrapped->isDeletable(item); },
            [](std::error_code) { return false; });
    }
    std::error_code checkRemoval(const OpenItem &item) override {
        return ask("checkRemoval", item.path, [&] { return m_wrapped->checkRemoval(item); });
    }
    std::error_code removeItem(const OpenItem &item, const RemovalOptions &options) override {
        return ask("removeItem", item.path, [&] { return m_wrapped->removeItem(item, options); });
    }
    Result<TrashFolder> trashOf(const HoldingFolder &folder, bool make) override {
        return ask("trashOf", pathOf(folder.directory()),
                   [&] { return m_wrapped->trashOf(folder, make); });
    }
    std::error_code moveItem(const OpenItem &item, const FileDescriptor &directory,
                             const std::string &name) override {
        return ask("moveItem", item.path,
                   [&] { return m_wrapped->moveItem(item, directory, name); });
    }
    bool hasGone(const OpenItem &item) override { return m_wrapped->hasGone(item); }
    std::error_code openModeJournal(const std::filesystem::path &journal) override {
        return ask("openModeJournal", journal, [&] { return m_wrapped->openModeJournal(journal); });
    }
    void closeModeJournal() override { m_wrapped->closeModeJournal(); }
    void putModesBack() override { m_wrapped->putModesBack(); }
};

class WrappedDirectories final : public Wrapped<StandardDirectories> {
public:
    using Wrapped::Wrapped;
    std::vector<std::filesystem::path> paths(StandardDirectory directory) override {
        return ask(
            "paths", std::to_string(int(directory)), [&] { return m_wrapped->paths(directory); },
            none);
    }
    CleanFolders cleanFolders(CleanPlace place) override {
        return ask(
            "cleanFolders", std::to_string(int(place)),
            [&] { return m_wrapped->cleanFolders(place); },
            [](std::error_code) { return CleanFolders(); });
    }
    CleanFolders trashesOfVolume(const std::filesystem::path &top) override {
        return ask(
            "trashesOfVolume", top, [&] { return m_wrapped->trashesOfVolume(top); },
            [](std::error_code) { return CleanFolders(); });
    }
    std::filesystem::path systemPath(const std::filesystem::path &path) override {
        return ask(
            "systemPath", path, [&] { return m_wrapped->systemPath(path); },
            [&](std::error_code) { return path; });
    }

private:
    static std::vector<std::filesystem::path> none(std::error_code) { return {}; }
};

class WrappedFacts final : public Wrapped<SystemFacts> {
public:
    using Wrapped::Wrapped;
    Result<SystemVersion> version() override {
        return ask("version", {}, [&] { return m_wrapped->version(); });
    }
    Result<std::string> kernelValue(std::string_view name) override {
        return ask("kernelValue", name, [&] { return m_wrapped->kernelValue(name); });
    }
};

class WrappedVolumes final : public Wrapped<VolumeSource> {
public:
    using Wrapped::Wrapped;
    std::vector<VolumeFacts> volumes() override {
        return ask(
            "volumes", {}, [&] { return m_wrapped->volumes(); },
            [](std::error_code) { return std::vector<VolumeFacts>(); });
    }
    void settle(int milliseconds) override {
        ask(
            "settle", std::to_string(milliseconds), [&] { m_wrapped->settle(milliseconds); },
            [](std::error_code) {});
    }
    EjectResult eject(std::int16_t refNumber) override {
        return ask(
            "eject", std::to_string(refNumber), [&] { return m_wrapped->eject(refNumber); },
            [](std::error_code error) {
                return EjectResult{error.value(), error.message(), {}};
            });
    }
    void setMountHandler(std::function<void(const MountEvent &)> handler) override {
        m_wrapped->setMountHandler(std::move(handler));
    }
    void setFactsHandler(std::function<void()> handler) override {
        m_wrapped->setFactsHandler(std::move(handler));
    }
};

class WrappedRights final : public Wrapped<AdministratorRights> {
public:
    using Wrapped::Wrapped;
    RightsResult request() override {
        return ask(
            "request", {}, [&] { return m_wrapped->request(); },
            [](std::error_code error) {
                return RightsResult{RightsOutcome::Failed, error.value(), error.message()};
            });
    }
    int release() override {
        return ask(
            "release", {}, [&] { return m_wrapped->release(); },
            [](std::error_code error) { return error.value(); });
    }
    RightsToken token() const override { return m_wrapped->token(); }
    bool accepts(const RightsToken &token) override {
        return ask(
            "accepts", {}, [&] { return m_wrapped->accepts(token); },
            [](std::error_code) { return false; });
    }
    std::vector<PrivilegedReply> removeItems(const RightsToken &token,
                                             const PrivilegedRemoval &removal,
                                             const std::atomic<bool> *stop) override {
        const auto folder = paths::join(removal.root.path, removal.way.native());
        return ask(
            "rights.removeItems", folder,
            [&] { return m_wrapped->removeItems(token, removal, stop); },
            [&](std::error_code error) {
                return std::vector<PrivilegedReply>(removal.items.size(), refused(error));
            });
    }
    PrivilegedReply dropCaches(const RightsToken &token) override {
        return ask(
            "dropCaches", {}, [&] { return m_wrapped->dropCaches(token); }, refused);
    }

private:
    static PrivilegedReply refused(std::error_code error) {
        return {false, false, error.message()};
    }
};

class WrappedWorkspace final : public Wrapped<Workspace> {
public:
    using Wrapped::Wrapped;
    QString displayName(const std::filesystem::path &path) override {
        return ask(
            "displayName", path, [&] { return m_wrapped->displayName(path); }, noText);
    }
    bool isPackage(const std::filesystem::path &path) override {
        return ask(
            "isPackage", path, [&] { return m_wrapped->isPackage(path); },
            [](std::error_code) { return false; });
    }
    QString typeOf(const std::filesystem::path &path) override {
        return ask(
            "typeOf", path, [&] { return m_wrapped->typeOf(path); }, noText);
    }
    bool open(const std::filesystem::path &path) override {
        return ask(
            "open", path, [&] { return m_wrapped->open(path); },
            [](std::error_code) { return false; });
    }
    bool reveal(const std::filesystem::path &path) override {
        return ask(
            "reveal", path, [&] { return m_wrapped->reveal(path); },
            [](std::error_code) { return false; });
    }

private:
    static QString noText(std::error_code) { return {}; }
};

class WrappedMemory final : public Wrapped<MemorySource> {
public:
    using Wrapped::Wrapped;
    Result<MemoryCounts> counts() override {
        return ask("memory.counts", {}, [&] { return m_wrapped->counts(); });
    }
    Result<std::uint64_t> availableBytes() override {
        return ask("memory.availableBytes", {}, [&] { return m_wrapped->availableBytes(); });
    }
};

class WrappedHolders final : public Wrapped<FileHolders> {
public:
    using Wrapped::Wrapped;
    std::vector<HeldFile> heldFiles() override {
        return ask(
            "heldFiles", {}, [&] { return m_wrapped->heldFiles(); },
            [](std::error_code) { return std::vector<HeldFile>(); });
    }
    std::vector<WrittenFile> writtenFiles() override { return m_wrapped->writtenFiles(); }
};

class WrappedStatusItem final : public Wrapped<StatusItem> {
public:
    using Wrapped::Wrapped;
    bool hostPresent() const override { return m_wrapped->hostPresent(); }
    void setShown(bool shown) override {
        ask(
            "statusItem.setShown", shown ? "1" : "0", [&] { m_wrapped->setShown(shown); }, nothing);
    }
    void setImages(std::vector<StatusImage> images) override {
        ask(
            "statusItem.setImages", std::to_string(images.size()),
            [&] { m_wrapped->setImages(std::move(images)); }, nothing);
    }
    void setTitle(const QString &title) override {
        ask(
            "statusItem.setTitle", title.toStdString(), [&] { m_wrapped->setTitle(title); },
            nothing);
    }
    void setToolTip(const QString &title, const QString &text) override {
        ask(
            "statusItem.setToolTip", text.toStdString(),
            [&] { m_wrapped->setToolTip(title, text); }, nothing);
    }
    void setActivatedHandler(std::function<void(const StatusActivation &)> handler) override {
        m_wrapped->setActivatedHandler(std::move(handler));
    }
    void setHostHandler(std::function<void(bool)> handler) override {
        m_wrapped->setHostHandler(std::move(handler));
    }

private:
    static void nothing(std::error_code) {}
};

class WrappedNotifier final : public Wrapped<DesktopNotifier> {
public:
    using Wrapped::Wrapped;
    bool available() override {
        return ask(
            "notifier.available", {}, [&] { return m_wrapped->available(); },
            [](std::error_code) { return false; });
    }
    void show(const DesktopNotification &notification) override {
        ask(
            "notifier.show", notification.body.toStdString(),
            [&] { m_wrapped->show(notification); }, [](std::error_code) {});
    }
};

class WrappedInstance final : public Wrapped<SingleInstance> {
public:
    using Wrapped::Wrapped;
    InstanceOutcome claim(bool activate, const std::string &activationToken) override {
        return ask(
            "instance.claim", activationToken,
            [&] { return m_wrapped->claim(activate, activationToken); },
            [](std::error_code) { return InstanceOutcome::Failed; });
    }
    void setActivateHandler(std::function<void(const std::string &)> handler) override {
        m_wrapped->setActivateHandler(std::move(handler));
    }
};

class WrappedHints final : public Wrapped<DesktopHints> {
public:
    using Wrapped::Wrapped;
    Hints hints() const override {
        return ask(
            "hints", {}, [&] { return m_wrapped->hints(); },
            [](std::error_code) { return Hints(); });
    }
    void setChangedHandler(std::function<void()> handler) override {
        m_wrapped->setChangedHandler(std::move(handler));
    }
};

} // namespace

Platform wrapPlatform(Platform wrapped, PlatformHook hook) {
    Platform platform;
    platform.files = std::make_unique<WrappedFiles>(std::move(wrapped.files), hook);
    platform.directories =
        std::make_unique<WrappedDirectories>(std::move(wrapped.directories), hook);
    platform.facts = std::make_unique<WrappedFacts>(std::move(wrapped.facts), hook);
    platform.volumes = std::make_unique<WrappedVolumes>(std::move(wrapped.volumes), hook);
    platform.rights = std::make_unique<WrappedRights>(std::move(wrapped.rights), hook);
    platform.workspace = std::make_unique<WrappedWorkspace>(std::move(wrapped.workspace), hook);
    platform.memory = std::make_unique<WrappedMemory>(std::move(wrapped.memory), hook);
    platform.statusItem = std::make_unique<WrappedStatusItem>(std::move(wrapped.statusItem), hook);
    platform.notifier = std::make_unique<WrappedNotifier>(std::move(wrapped.notifier), hook);
    platform.instance = std::make_unique<WrappedInstance>(std::move(wrapped.instance), hook);
    platform.hints = std::make_unique<WrappedHints>(std::move(wrapped.hints), hook);
    platform.holders = std::make_unique<WrappedHolders>(std::move(wrapped.holders), hook);
    return platform;
}

} // namespace brightsweep::test
