#include "platform/linux/LinuxFileOperations.h"

#include "foundation/LastError.h"
#include "linux/KernelFileSystems.h"
#include "linux/LongPath.h"
#include "linux/Mounts.h"
#include "platform/linux/OverlayLayers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace brightsweep {

namespace {

constexpr std::size_t blockSize = 32 * 1024;
constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

// The record that getdents64 writes; see getdents(2).
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short length;
    unsigned char type;
    char name[1];
};

EntryType typeOfMode(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return EntryType::File;
    case S_IFDIR:
        return EntryType::Directory;
    case S_IFLNK:
        return EntryType::Link;
    default:
        return EntryType::Other;
    }
}

EntryType typeOfEntry(unsigned char type) {
    switch (type) {
    case DT_REG:
        return EntryType::File;
    case DT_DIR:
        return EntryType::Directory;
    case DT_LNK:
        return EntryType::Link;
    case DT_UNKNOWN:
        return EntryType::Unknown;
    default:
        return EntryType::Other;
    }
}

// A file may be dated farther than the nanoseconds reach.
std::int64_t nanoseconds(const timespec &time) {
    constexpr std::int64_t second = 1'000'000'000;
    constexpr std::int64_t farthest = std::numeric_limits<std::int64_t>::max() / second - 1;
    return std::clamp<std::int64_t>(time.tv_sec, -farthest, farthest) * second + time.tv_nsec;
}

// The unit is the system's own, whatever the blocks of the file system are; see stat(2).
std::uint64_t storedBytes(const struct stat &status) {
    return std::uint64_t(std::max<blkcnt_t>(status.st_blocks, 0)) * 512;
}

Result<FileAttributes> attributesOfPath(const std::filesystem::path &path, int flags) {
    const auto shortened = shortenPath(path.native());
    if (!shortened)
        return shortened.error();
    struct stat status;
    if (::fstatat(shortened->base(), shortened->name.c_str(), &status, flags) != 0)
        return lastError();
    return attributesOf(status);
}

// Takes over the descriptor. A directory on another device than its parent may be one of a file
// system that holds no storage.
Result<OpenDirectory> opened(int descriptor, const OpenDirectory *parent) {
    if (descriptor < 0)
        return lastError();
    OpenDirectory directory;
    directory.descriptor = FileDescriptor(descriptor);
    struct stat status;
    if (::fstat(descriptor, &status) != 0)
        return lastError();
    directory.device = status.st_dev;
    directory.inode = status.st_ino;
    if ((!parent || parent->device != directory.device) && isOnKernelFileSystem(descriptor))
        return std::errc::permission_denied;
    return directory;
}

} // namespace

FileAttributes attributesOf(const struct stat &status) {
    FileAttributes attributes;
    attributes.type = typeOfMode(status.st_mode);
    attributes.mode = status.st_mode & 07777;
    attributes.kind = status.st_mode & S_IFMT;
    attributes.owner = status.st_uid;
    attributes.links = status.st_nlink;
    attributes.size = std::uint64_t(std::max<off_t>(status.st_size, 0));
    attributes.stored = storedBytes(status);
    attributes.device = status.st_dev;
    attributes.inode = status.st_ino;
    attributes.modified = nanoseconds(status.st_mtim);
    attributes.changed = nanoseconds(status.st_ctim);
    return attributes;
}

Result<OpenDirectory> LinuxFileOperations::openDirectory(const std::filesystem::path &path) {
    const auto shortened = shortenPath(path.native());
    if (!shortened)
        return shortened.error();
    return opened(::openat(shortened->base(), shortened->name.c_str(), directoryFlags), nullptr);
}

Result<OpenDirectory> LinuxFileOperations::openDirectoryAt(const OpenDirectory &parent,
                                                           const char *name) {
    return opened(::openat(parent.descriptor.get(), name, directoryFlags | O_NOFOLLOW), &parent);
}

Result<OpenDirectory> LinuxFileOperations::openParentOf(const OpenDirectory &directory,
                                                        std::uint64_t device, std::uint64_t inode) {
    auto parent = opened(::openat(directory.descriptor.get(), "..", directoryFlags), &directory);
    if (parent && (parent->device != device || parent->inode != inode))
        return std::errc::no_such_file_or_directory;
    return parent;
}

std::error_code LinuxFileOperations::readBlock(const OpenDirectory &directory,
                                               DirectoryBlock &block, WantedAttributes wanted) {
    std::vector<char> &buffer = block.buffer();
    buffer.resize(blockSize);
    std::vector<DirectoryEntry> &entries = block.fill();
    entries.clear();
    const int descriptor = directory.descriptor.get();
    const long got = ::syscall(SYS_getdents64, descriptor, buffer.data(), buffer.size());
    block.setAtEnd(got <= 0);
    if (got < 0)
        return lastError();
    for (long position = 0; position < got;) {
        const char *record = buffer.data() + position;
        unsigned short length;
        std::memcpy(&length, record + offsetof(KernelEntry, length), sizeof length);
        position += length;
        const char *name = record + offsetof(KernelEntry, name);
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        DirectoryEntry &entry = entries.emplace_back();
        entry.name = name;
        entry.nameLength = std::uint32_t(std::strlen(name));
        std::memcpy(&entry.inode, record + offsetof(KernelEntry, inode), sizeof entry.inode);
        entry.type = typeOfEntry(static_cast<unsigned char>(record[offsetof(KernelEntry, type)]));
        const bool needed =
            wanted == WantedAttributes::All || entry.type == EntryType::Unknown ||
            (wanted == WantedAttributes::NonDirectories && entry.type != EntryType::Directory);
        const auto *mounted = block.mountPoints();
        if (mounted &&
            std::find(mounted->begin(), mounted->end(), entry.nameView()) != mounted->end()) {
            entry.type = EntryType::Directory;
            continue;
        }
        struct stat status;
        if (needed && ::fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            entry.hasAttributes = true;
            entry.type = typeOfMode(status.st_mode);
            entry.links = status.st_nlink;
            entry.size = std::uint64_t(std::max<off_t>(status.st_size, 0));
            entry.stored = storedBytes(status);
            entry.device = status.st_dev;
            entry.inode = status.st_ino;
            entry.modified = nanoseconds(status.st_mtim);
            entry.changed = nanoseconds(status.st_ctim);
        }
    }
    return {};
}

Result<FileAttributes> LinuxFileOperations::attributes(const std::filesystem::path &path) {
    return attributesOfPath(path, AT_SYMLINK_NOFOLLOW);
}

Result<FileAttributes> LinuxFileOperations::attributesFollowing(const std::filesystem::path &path) {
    return attributesOfPath(path, 0);
}

Result<FileAttributes> LinuxFileOperations::attributesAt(const OpenDirectory &directory,
                                                         const char *name) {
    struct stat status;
    if (::fstatat(directory.descriptor.get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return lastError();
    return attributesOf(status);
}

Result<std::filesystem::path>
LinuxFileOperations::canonicalPath(const std::filesystem::path &path) {
    if (char *resolved = ::realpath(path.c_str(), nullptr)) {
        std::filesystem::path canonical = resolved;
        std::free(resolved);
        return canonical;
    }
    if (errno != ENAMETOOLONG)
        return lastError();
    auto canonical = canonicalLongPath(path.native());
    if (!canonical)
        return canonical.error();
    return std::filesystem::path(*std::move(canonical));
}

Result<std::string> LinuxFileOperations::linkTarget(const std::filesystem::path &path) {
    const auto shortened = shortenPath(path.native());
    if (!shortened)
        return shortened.error();
    std::string target(PATH_MAX, '\0'); // no link holds more
    const ssize_t size =
        ::readlinkat(shortened->base(), shortened->name.c_str(), target.data(), target.size());
    if (size < 0)
        return lastError();
    target.resize(std::size_t(size));
    return target;
}

bool LinuxFileOperations::isMountPoint(const std::filesystem::path &path) {
    const auto shortened = shortenPath(path.native());
    struct statx status;
    return shortened &&
           ::statx(shortened->base(), shortened->name.c_str(),
                   AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, 0, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

std::vector<FileIdentity>
LinuxFileOperations::repeatedByOverlays(const std::filesystem::path &root) {
    const auto canonical = canonicalPath(root);
    if (!canonical)
        return {};
    return brightsweep::repeatedByOverlays(ownMounts().current()->all(), canonical->native());
}

Result<FileDescriptor> LinuxFileOperations::openFile(const std::filesystem::path &path) {
    const auto shortened = shortenPath(path.native());
    if (!shortened)
        return shortened.error();
    // With O_PATH first: opening a device or a FIFO for reading can have side effects.
    const FileDescriptor place(
        ::openat(shortened->base(), shortened->name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status;
    if (!place || ::fstat(place.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::errc::invalid_argument;
    FileDescriptor file(::openat(shortened->base(), shortened->name.c_str(),
                                 O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return lastError();
    struct stat after;
    if (::fstat(file.get(), &after) != 0 || !S_ISREG(after.st_mode))
        return std::errc::invalid_argument;
    return file;
}

Result<FileDescriptor> LinuxFileOperations::openListedFile(const std::string &path) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    FileDescriptor file;
    if (path.size() < PATH_MAX) {
        file = FileDescriptor(::open(path.c_str(), flags));
    } else {
        const auto shortened = shortenPath(path);
        if (!shortened)
            return shortened.error();
        file = FileDescriptor(::openat(shortened->base(), shortened->name.c_str(), flags));
    }
    if (!file)
        return lastError();
    return file;
}

Result<FileAttributes> LinuxFileOperations::fileAttributes(const FileDescriptor &file) {
    struct stat status;
    if (::fstat(file.get(), &status) != 0)
        return lastError();
    return attributesOf(status);
}

// By cachestat(2), which is younger than the oldest kernel that is served and than many headers.
Result<std::uint64_t> LinuxFileOperations::cachedPages(const FileDescriptor &file,
                                                       std::uint64_t offset, std::uint64_t length) {
    constexpr long cachestatCall = 451;
    struct Range {
        std::uint64_t offset;
        std::uint64_t length;
    } range = {offset, length};
    struct Counts {
        std::uint64_t cached, dirty, writeback, evicted, recentlyEvicted;
    } counts = {};
    if (::syscall(cachestatCall, file.get(), &range, &counts, 0) != 0)
        return lastError();
    return counts.cached;
}

void LinuxFileOperations::fetchOnlyWhatIsRead(const FileDescriptor &file) {
    ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_RANDOM);
}

Result<std::size_t> LinuxFileOperations::readAt(const FileDescriptor &file, void *data,
                                                std::size_t size, std::uint64_t offset) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = ::pread(file.get(), static_cast<char *>(data) + done, size - done,
                                    off_t(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return lastError();
        if (got == 0)
            break;
        done += std::size_t(got);
    }
    return done;
}

Result<std::size_t> LinuxFileOperations::readCachedAt(const FileDescriptor &file, void *data,
                                                      std::size_t size, std::uint64_t offset) {
    iovec part{data, size};
    ssize_t got;
    do {
        got = ::preadv2(file.get(), &part, 1, off_t(offset), RWF_NOWAIT);
    } while (got < 0 && errno == EINTR);
    if (got < 0)
        return lastError();
    return std::size_t(got);
}

void LinuxFileOperations::dropCached(const FileDescriptor &file, std::uint64_t offset,
                                     std::uint64_t length) {
    ::posix_fadvise(file.get(), off_t(offset), off_t(length), POSIX_FADV_DONTNEED);
}

Result<std::uint64_t> LinuxFileOperations::nextData(const FileDescriptor &file,
                                                    std::uint64_t offset) {
    const off_t data = ::lseek(file.get(), off_t(offset), SEEK_DATA);
    if (data >= 0)
        return std::uint64_t(data);
    if (errno != ENXIO)
        return offset;
    struct stat status;
    if (::fstat(file.get(), &status) != 0)
        return lastError();
    return std::uint64_t(status.st_size);
}

} // namespace brightsweep
