#include "support/WrappedPlatform.h"

#include "foundation/Paths.h"
#include "platform/AdministratorRights.h"
#include "platform/FileOperations.h"

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
        return m_wrapped->openDirectory(path);
    }
    Result<OpenDirectory> openDirectoryAt(const OpenDirectory &parent, const char *name) override {
        return ask("openDirectoryAt", paths::join(pathOf(parent), name),
                   [&] { return m_wrapped->openDirectoryAt(parent, name); });
    }
    Result<OpenDirectory> openParentOf(const OpenDirectory &directory, std::uint64_t device,
                                       std::uint64_t inode) override {
        return m_wrapped->openParentOf(directory, device, inode);
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
        return m_wrapped->attributes(path);
    }
    Result<FileAttributes> attributesAt(const OpenDirectory &directory, const char *name) override {
        return m_wrapped->attributesAt(directory, name);
    }
    Result<FileAttributes> attributesFollowing(const std::filesystem::path &path) override {
        return m_wrapped->attributesFollowing(path);
    }
    Result<std::filesystem::path> canonicalPath(const std::filesystem::path &path) override {
        return m_wrapped->canonicalPath(path);
    }
    Result<std::string> linkTarget(const std::filesystem::path &path) override {
        return ask("linkTarget", path, [&] { return m_wrapped->linkTarget(path); });
    }
    bool isMountPoint(const std::filesystem::path &path) override {
        return ask(
            "isMountPoint", path, [&] { return m_wrapped->isMountPoint(path); },
            [](std::error_code) { return true; });
    }
    std::vector<FileIdentity> repeatedByOverlays(const std::filesystem::path &root) override {
        return m_wrapped->repeatedByOverlays(root);
    }
    Result<FileDescriptor> openFile(const std::filesystem::path &path) override {
        return m_wrapped->openFile(path);
    }
    Result<FileDescriptor> openListedFile(const std::string &path) override {
        return ask("openListedFile", path, [&] { return m_wrapped->openListedFile(path); });
    }
    Result<FileAttributes> fileAttributes(const FileDescriptor &file) override {
        return m_wrapped->fileAttributes(file);
    }
    Result<std::uint64_t> cachedPages(const FileDescriptor &file, std::uint64_t offset,
                                      std::uint64_t length) override {
        return ask("cachedPages", pathOf(file),
                   [&] { return m_wrapped->cachedPages(file, offset, length); });
    }
    void fetchOnlyWhatIsRead(const FileDescriptor &file) override {
        m_wrapped->fetchOnlyWhatIsRead(file);
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
        return m_wrapped->rememberRoot(folder);
    }
    Result<OpenDirectory> openRoot(const RemovalRoot &root) override {
        return m_wrapped->openRoot(root);
    }
    std::vector<std::filesystem::path> mountPointsBelow(const OpenDirectory &root) override {
        return m_wrapped->mountPointsBelow(root);
    }
    Result<OpenItem> openItem(const RemovalTarget &target, const OpenItem *previous) override {
        return m_wrapped->openItem(target, previous);
    }
    bool isDeletable(const OpenItem &item) override {
        return ask(
            "isDeletable", item.path, [&] { return m_wrapped->isDeletable(item); },
            [](std::error_code) { return false; });
    }
    std::error_code checkRemoval(const OpenItem &item) override {
        return m_wrapped->checkRemoval(item);
    }
    std::error_code refusalWithRights(const OpenItem &item) override {
        return m_wrapped->refusalWithRights(item);
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
        return m_wrapped->openModeJournal(journal);
    }
    void closeModeJournal() override { m_wrapped->closeModeJournal(); }
    void putModesBack() override { m_wrapped->putModesBack(); }
};

class WrappedRights final : public Wrapped<AdministratorRights> {
public:
    using Wrapped::Wrapped;
    RightsResult request() override { return m_wrapped->request(); }
    int release() override { return m_wrapped->release(); }
    RightsToken token() const override { return m_wrapped->token(); }
    bool accepts(const RightsToken &token) override { return m_wrapped->accepts(token); }
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
        return m_wrapped->dropCaches(token);
    }

private:
    static PrivilegedReply refused(std::error_code error) {
        return {false, false, error.message()};
    }
};

} // namespace

Platform wrapPlatform(Platform wrapped, PlatformHook hook) {
    wrapped.files = std::make_unique<WrappedFiles>(std::move(wrapped.files), hook);
    wrapped.rights = std::make_unique<WrappedRights>(std::move(wrapped.rights), hook);
    return wrapped;
}

} // namespace brightsweep::test
