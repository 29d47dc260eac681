#pragma once

#include "linux/ModeJournal.h"
#include "platform/FileOperations.h"

struct stat;

namespace brightsweep {

/// The file system by way of descriptors: getdents64, openat, fstatat, unlinkat.
class LinuxFileOperations : public FileOperations {
public:
    Result<OpenDirectory> openDirectory(const std::filesystem::path &path) override;
    Result<OpenDirectory> openDirectoryAt(const OpenDirectory &parent, const char *name) override;
    Result<OpenDirectory> openParentOf(const OpenDirectory &directory, std::uint64_t device,
                                       std::uint64_t inode) override;
    std::error_code readBlock(const OpenDirectory &directory, DirectoryBlock &block,
                              WantedAttributes wanted) override;

    Result<FileAttributes> attributes(const std::filesystem::path &path) override;
    Result<FileAttributes> attributesAt(const OpenDirectory &directory, const char *name) override;
    Result<FileAttributes> attributesFollowing(const std::filesystem::path &path) override;
    Result<std::filesystem::path> canonicalPath(const std::filesystem::path &path) override;
    Result<std::string> linkTarget(const std::filesystem::path &path) override;
    bool isMountPoint(const std::filesystem::path &path) override;
    std::vector<FileIdentity> repeatedByOverlays(const std::filesystem::path &root) override;

    Result<FileDescriptor> openFile(const std::filesystem::path &path) override;
    Result<FileDescriptor> openListedFile(const std::string &path) override;
    Result<FileAttributes> fileAttributes(const FileDescriptor &file) override;
    Result<std::uint64_t> cachedPages(const FileDescriptor &file, std::uint64_t offset,
                                      std::uint64_t length) override;
    void fetchOnlyWhatIsRead(const FileDescriptor &file) override;
    Result<std::size_t> readAt(const FileDescriptor &file, void *data, std::size_t size,
                               std::uint64_t offset) override;
    Result<std::size_t> readCachedAt(const FileDescriptor &file, void *data, std::size_t size,
                                     std::uint64_t offset) override;
    void dropCached(const FileDescriptor &file, std::uint64_t offset,
                    std::uint64_t length) override;
    Result<std::uint64_t> nextData(const FileDescriptor &file, std::uint64_t offset) override;

    std::error_code keepWritersOut(const FileDescriptor &file) override;
    bool isWantedForWriting(const FileDescriptor &file) override;
    Result<std::uint64_t> unsharedBytes(const FileDescriptor &file) override;
    Result<SharedRange> shareRange(const FileDescriptor &source, const FileDescriptor &file,
                                   std::uint64_t offset, std::uint64_t length) override;
    std::error_code sharingRefusal(const FileDescriptor &file) override;
    bool isNeverCopiedOnWrite(const FileDescriptor &file) override;

    Result<RemovalRoot> rememberRoot(const std::filesystem::path &folder) override;
    Result<OpenDirectory> openRoot(const RemovalRoot &root) override;
    std::vector<std::filesystem::path> mountPointsBelow(const OpenDirectory &root) override;
    Result<OpenItem> openItem(const RemovalTarget &target, const OpenItem *previous) override;
    bool isDeletable(const OpenItem &item) override;
    std::error_code checkRemoval(const OpenItem &item) override;
    std::error_code checkEntries(const OpenDirectory &directory,
                                 const DirectoryBlock &block) override;
    std::error_code refusalWithRights(const OpenItem &item) override;
    std::error_code removeItem(const OpenItem &item, const RemovalOptions &options) override;
    Result<TrashFolder> trashOf(const HoldingFolder &folder, bool make) override;
    std::error_code moveItem(const OpenItem &item, const FileDescriptor &directory,
                             const std::string &name) override;
    bool hasGone(const OpenItem &item) override;
    std::error_code openModeJournal(const std::filesystem::path &journal) override;
    void closeModeJournal() override;
    void putModesBack() override;

private:
    ModeJournal m_modes;
};

/// What stat(2) tells, in the seam's terms.
FileAttributes attributesOf(const struct stat &status);

} // namespace brightsweep
