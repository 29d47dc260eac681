#pragma once

#include "platform/FileOperations.h"

struct stat;

namespace brightsweep {

/// The file system by way of descriptors: getdents64, openat, fstatat, unlinkat.
class LinuxFileOperations final : public FileOperations {
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
    bool isMountPoint(const std::filesystem::path &path) override;
    bool isLockedByAnother(const std::filesystem::path &path) override;

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

    Result<RemovalRoot> rememberRoot(const std::filesystem::path &folder) override;
    Result<OpenDirectory> openHolder(const RemovalTarget &target) override;
    bool isDeletable(const RemovalTarget &target) override;
    std::error_code checkRemoval(const RemovalTarget &target) override;
    std::error_code removeItem(const RemovalTarget &target, const std::atomic<bool> *stop) override;
    Result<std::uint32_t> setPermissions(const RemovalTarget &target, std::uint32_t mode) override;
};

} // namespace brightsweep
