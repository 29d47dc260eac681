#include "platform/linux/LinuxFileOperations.h"

#include "foundation/Paths.h"
#include "linux/LongPath.h"
#include "linux/MountTable.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <string>
#include <vector>

namespace brightsweep {

namespace {

// So many directories on the way down are kept open; those above are found again by "..".
constexpr std::size_t maximumOpen = 64;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

const auto canceled = std::make_error_code(std::errc::operation_canceled);
const auto busy = std::make_error_code(std::errc::device_or_resource_busy);

bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('\0') == name.npos;
}

// The number of the mount that a descriptor lies on: two directories with different numbers have a
// mount between them, also one of the same file system.
Result<std::uint64_t> mountOf(int descriptor) {
    struct statx status;
    if (::statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC,
                STATX_BASIC_STATS | STATX_MNT_ID, &status) != 0)
        return lastError();
    if (!(status.stx_mask & STATX_MNT_ID))
        return (std::uint64_t(status.stx_dev_major) << 32) | status.stx_dev_minor;
    return std::uint64_t(status.stx_mnt_id);
}

// Removes what lies in one directory, depth first, and the directory itself last.
class TreeRemoval {
public:
    TreeRemoval(LinuxFileOperations &files, std::uint64_t mount, const std::atomic<bool> *stop)
        : m_files(files), m_mount(mount), m_stop(stop) {}

    std::error_code run(const OpenDirectory &holder, const char *name) {
        auto top = m_files.openDirectoryAt(holder, name);
        if (!top)
            return top.error();
        if (const auto error = enter(std::move(*top), name))
            return error;
        while (!m_levels.empty()) {
            if (isStopped())
                return canceled;
            Level &level = m_levels.back();
            if (!level.children.empty()) {
                if (const auto error = descend(level))
                    return error;
                continue;
            }
            if (const auto error = ascend(holder))
                return error;
        }
        return {};
    }

private:
    struct Level {
        OpenDirectory open; // without descriptor while closed
        std::string name;
        std::vector<std::string> children; // directories still to be removed
    };

    // Removes everything in the directory that is not a directory, and notes those.
    std::error_code enter(OpenDirectory directory, std::string name) {
        const auto mount = mountOf(directory.descriptor.get());
        if (!mount)
            return mount.error();
        if (*mount != m_mount)
            return busy;
        Level level{std::move(directory), std::move(name), {}};
        do {
            if (const auto error = m_files.readBlock(level.open, m_block, WantedAttributes::None))
                return error;
            if (isStopped())
                return canceled;
            for (const DirectoryEntry &entry : m_block.entries()) {
                if (entry.type == EntryType::Directory)
                    level.children.emplace_back(entry.nameView());
                else if (::unlinkat(level.open.descriptor.get(), entry.name, 0) != 0 &&
                         errno != ENOENT)
                    return lastError();
            }
        } while (!m_block.atEnd());
        m_levels.push_back(std::move(level));
        if (m_levels.size() > maximumOpen)
            m_levels[m_levels.size() - 1 - maximumOpen].open.descriptor.reset();
        return {};
    }

    std::error_code descend(Level &level) {
        std::string name = std::move(level.children.back());
        level.children.pop_back();
        auto child = m_files.openDirectoryAt(level.open, name.c_str());
        if (!child) {
            // Gone, or made into something else meanwhile: then it goes as what it is now.
            if (child.error() == std::errc::no_such_file_or_directory)
                return {};
            if (child.error() == std::errc::not_a_directory ||
                child.error() == std::errc::too_many_symbolic_link_levels) {
                return ::unlinkat(level.open.descriptor.get(), name.c_str(), 0) == 0 ||
                               errno == ENOENT
                           ? std::error_code()
                           : lastError();
            }
            // A directory that may not be read can still go when it is empty.
            if (::unlinkat(level.open.descriptor.get(), name.c_str(), AT_REMOVEDIR) == 0)
                return {};
            return child.error();
        }
        return enter(std::move(*child), std::move(name));
    }

    // The last level is empty: removes it from the one above, which is opened again if need be.
    std::error_code ascend(const OpenDirectory &holder) {
        Level done = std::move(m_levels.back());
        m_levels.pop_back();
        const OpenDirectory *above = &holder;
        if (!m_levels.empty()) {
            Level &level = m_levels.back();
            if (!level.open.descriptor) {
                auto parent = m_files.openParentOf(done.open, level.open.device, level.open.inode);
                if (!parent)
                    return parent.error();
                level.open = std::move(*parent);
            }
            above = &level.open;
        }
        if (::unlinkat(above->descriptor.get(), done.name.c_str(), AT_REMOVEDIR) != 0 &&
            errno != ENOENT)
            return lastError();
        return {};
    }

    bool isStopped() const { return m_stop && m_stop->load(std::memory_order_relaxed); }

    LinuxFileOperations &m_files;
    std::uint64_t m_mount;
    const std::atomic<bool> *m_stop;
    DirectoryBlock m_block;
    std::vector<Level> m_levels;
};

// Why a name may not be taken out of its folder, by the folder's rights and its sticky rule; also
// fills in what the name stands for.
std::error_code keptInFolder(const OpenDirectory &holder, const std::string &name,
                             struct stat &item) {
    const int descriptor = holder.descriptor.get();
    struct stat folder;
    if (::fstatat(descriptor, name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0 ||
        ::fstat(descriptor, &folder) != 0 ||
        ::faccessat(descriptor, ".", W_OK | X_OK, AT_EACCESS) != 0)
        return lastError();
    const uid_t user = ::geteuid();
    if ((folder.st_mode & S_ISVTX) && user != 0 && user != item.st_uid && user != folder.st_uid)
        return std::make_error_code(std::errc::operation_not_permitted);
    return {};
}

bool holdsMount(const RemovalTarget &target, const OpenDirectory &holder, const std::string &name) {
    std::string path = currentPath(holder.descriptor.get());
    if (path.empty())
        path = paths::parent(target.path()).native();
    return holdsMountPoint(currentMounts(), paths::join(path, name).native());
}

} // namespace

Result<RemovalRoot> LinuxFileOperations::rememberRoot(const std::filesystem::path &folder) {
    const auto canonical = canonicalPath(folder);
    if (!canonical)
        return canonical.error();
    const auto directory = attributes(*canonical);
    if (!directory)
        return directory.error();
    if (directory->type != EntryType::Directory)
        return std::errc::not_a_directory;
    return RemovalRoot{*canonical, directory->device, directory->inode};
}

Result<OpenDirectory> LinuxFileOperations::openHolder(const RemovalTarget &target) {
    auto directory = openDirectory(target.root.path);
    if (!directory)
        return directory;
    if (directory->device != target.root.device || directory->inode != target.root.inode)
        return std::errc::no_such_file_or_directory;
    const std::string_view relative = target.relative.native();
    if (!isPlainName(paths::lastComponent(target.relative)) || relative.starts_with('/') ||
        relative.ends_with('/'))
        return std::errc::invalid_argument;
    std::size_t start = 0;
    for (auto slash = relative.find('/'); slash != relative.npos;
         slash = relative.find('/', start)) {
        const std::string name(relative.substr(start, slash - start));
        if (!isPlainName(name))
            return std::errc::invalid_argument;
        auto next = openDirectoryAt(*directory, name.c_str());
        if (!next)
            return next;
        directory = std::move(next);
        start = slash + 1;
    }
    return directory;
}

bool LinuxFileOperations::isDeletable(const RemovalTarget &target) {
    const auto holder = openHolder(target);
    if (!holder)
        return false;
    const std::string name = paths::lastComponent(target.relative);
    struct stat item;
    return !keptInFolder(*holder, name, item) &&
           (S_ISLNK(item.st_mode) || ::faccessat(holder->descriptor.get(), name.c_str(), W_OK,
                                                 AT_EACCESS | AT_SYMLINK_NOFOLLOW) == 0);
}

std::error_code LinuxFileOperations::checkRemoval(const RemovalTarget &target) {
    const auto holder = openHolder(target);
    if (!holder)
        return holder.error();
    const std::string name = paths::lastComponent(target.relative);
    struct stat item;
    if (const auto error = keptInFolder(*holder, name, item))
        return error;
    return holdsMount(target, *holder, name) ? busy : std::error_code();
}

std::error_code LinuxFileOperations::removeItem(const RemovalTarget &target,
                                                const std::atomic<bool> *stop) {
    const auto holder = openHolder(target);
    if (!holder)
        return holder.error();
    const std::string name = paths::lastComponent(target.relative);
    struct stat item;
    if (::fstatat(holder->descriptor.get(), name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0)
        return lastError();
    if (holdsMount(target, *holder, name))
        return busy;
    if (!S_ISDIR(item.st_mode)) {
        return ::unlinkat(holder->descriptor.get(), name.c_str(), 0) == 0 ? std::error_code()
                                                                          : lastError();
    }
    // What may not leave its folder is not emptied either.
    if (const auto error = keptInFolder(*holder, name, item))
        return error;
    const auto mount = mountOf(holder->descriptor.get());
    if (!mount)
        return mount.error();
    return TreeRemoval(*this, *mount, stop).run(*holder, name.c_str());
}

Result<std::uint32_t> LinuxFileOperations::setPermissions(const RemovalTarget &target,
                                                          std::uint32_t mode) {
    const auto holder = openHolder(target);
    if (!holder)
        return holder.error();
    const std::string name = paths::lastComponent(target.relative);
    const FileDescriptor item(
        ::openat(holder->descriptor.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status;
    if (!item || ::fstat(item.get(), &status) != 0)
        return lastError();
    const bool allowed =
        S_ISDIR(status.st_mode) || (S_ISREG(status.st_mode) && status.st_nlink == 1);
    if (!allowed)
        return std::errc::operation_not_permitted;
    // A descriptor opened as a place takes no fchmod; its link in /proc leads to that very item.
    const std::string link = "/proc/self/fd/" + std::to_string(item.get());
    if (::chmod(link.c_str(), mode) != 0)
        return lastError();
    return std::uint32_t(status.st_mode & 07777);
}

} // namespace brightsweep
