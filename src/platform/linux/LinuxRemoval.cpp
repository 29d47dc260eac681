#include "platform/linux/LinuxFileOperations.h"

#include "foundation/LastError.h"
#include "foundation/Paths.h"
#include "linux/LongPath.h"
#include "linux/ModeJournal.h"
#include "linux/RemovalError.h"
#include "linux/RemovalWay.h"
#include "platform/linux/OwnPlaces.h"
#include "platform/linux/TrashFolders.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <string>
#include <vector>

namespace brightsweep {

namespace {

// So many directories on the way down are kept open; those above are found again by "..".
constexpr std::size_t maximumOpen = 64;

// Some file systems have no such call. Then the free name is looked for first, which will do in a
// folder of the user's own.
std::error_code renameIfFree(int from, const std::string &name, int to, const std::string &called) {
    if (::renameat2(from, name.c_str(), to, called.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return lastError();
    struct stat status;
    if (::fstatat(to, called.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return std::make_error_code(std::errc::file_exists);
    return ::renameat(from, name.c_str(), to, called.c_str()) == 0 ? std::error_code()
                                                                   : lastError();
}

const auto canceled = std::make_error_code(std::errc::operation_canceled);
const auto busy = std::make_error_code(std::errc::device_or_resource_busy);

class LinuxHoldingFolder final : public HoldingFolder {
public:
    const OpenDirectory &directory() const override { return m_directory; }
    int descriptor() const { return m_directory.descriptor.get(); }

    RemovalRoot root;
    std::string way; ///< from the root
    HoldingPlace place;
    std::shared_ptr<const SystemPlaces> places;
    std::string aptArchives; ///< where this lies in apt's folder of packages
    OpenDirectory m_directory;
};

// By the flags that chattr(1) sets; an empty name means the folder itself.
std::error_code keptByFlag(int folder, const char *name) {
    struct statx status;
    if (::statx(folder, name,
                AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC, 0,
                &status) != 0)
        return {};
    if (status.stx_attributes & STATX_ATTR_IMMUTABLE)
        return RemovalError::Immutable;
    return status.stx_attributes & STATX_ATTR_APPEND ? make_error_code(RemovalError::AppendOnly)
                                                     : std::error_code();
}

const LinuxHoldingFolder &linuxFolder(const OpenItem &item) {
    return static_cast<const LinuxHoldingFolder &>(*item.folder);
}

// Removes what lies in one directory, depth first, and the directory itself last.
class TreeRemoval {
public:
    TreeRemoval(LinuxFileOperations &files, ModeJournal &modes, const OpenItem &item,
                const RemovalOptions &options)
        : m_files(files),
          m_modes(modes),
          m_item(item),
          m_mount(linuxFolder(item).place.place().mount),
          m_options(options) {}
    // What was opened up and still stands.
    ~TreeRemoval() {
        while (!m_levels.empty()) {
            if (m_levels.back().opened != 0)
                m_modes.putBack(m_levels.back().opened);
            m_levels.pop_back();
        }
    }
    TreeRemoval(const TreeRemoval &) = delete;
    TreeRemoval &operator=(const TreeRemoval &) = delete;

    std::error_code run() {
        const OpenDirectory &holder = m_item.folder->directory();
        if (const auto error = enter(holder, m_item.name))
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
        std::uint64_t opened = 0;          // the journal's number of its mode
    };

    // Removes everything in the directory that is not a directory, and notes those.
    std::error_code enter(const OpenDirectory &parent, const std::string &name) {
        auto directory = m_files.openDirectoryAt(parent, name.c_str());
        std::uint64_t opened = 0;
        if (!directory && directory.error() != std::errc::permission_denied)
            return directory.error();
        if (const auto error = openUp(parent, name, directory, opened))
            return error;
        m_levels.push_back({*std::move(directory), name, {}, opened});
        Level &level = m_levels.back();
        const auto place = placeOf(level.open.descriptor.get());
        if (!place)
            return place.error();
        const bool isFirst = m_levels.size() == 1;
        if (isFirst &&
            (place->device != m_item.attributes.device || place->inode != m_item.attributes.inode))
            return RemovalError::Changed;
        if (place->mount != m_mount)
            return RemovalError::HoldsVolume;
        if (linuxFolder(m_item).places->isProtected(place->device, place->inode))
            return RemovalError::ProtectedPlace;
        if (const auto error = removeEntries(level))
            return error;
        if (m_levels.size() > maximumOpen)
            m_levels[m_levels.size() - 1 - maximumOpen].open.descriptor.reset();
        return {};
    }

    std::error_code removeEntries(Level &level) {
        do {
            const auto error = m_files.readBlock(level.open, m_block, WantedAttributes::None);
            // One that somebody else removed meanwhile holds nothing.
            if (error)
                return error == std::errc::no_such_file_or_directory ? std::error_code() : error;
            for (const DirectoryEntry &entry : m_block.entries()) {
                if (isStopped())
                    return canceled;
                m_modes.beat();
                if (entry.type == EntryType::Directory)
                    level.children.emplace_back(entry.nameView());
                else if (::unlinkat(level.open.descriptor.get(), entry.name, 0) != 0 &&
                         errno != ENOENT)
                    return lastError();
            }
        } while (!m_block.atEnd());
        return {};
    }

    // Opens the mode up where the owner lacks bits, and the directory again where that was why it
    // could not be opened.
    std::error_code openUp(const OpenDirectory &parent, const std::string &name,
                           Result<OpenDirectory> &directory, std::uint64_t &opened) {
        FileDescriptor place;
        if (!directory) {
            auto reached = openPlaceAt(parent.descriptor.get(), name.c_str());
            if (!reached)
                return reached.error();
            place = *std::move(reached);
        }
        const int descriptor = directory ? directory->descriptor.get() : place.get();
        const auto number = m_modes.openUp(descriptor, [&] { return pathOf(name); });
        if (!number) {
            if (m_options.modeStays)
                *m_options.modeStays = true;
            return directory ? number.error() : directory.error();
        }
        opened = *number;
        if (!directory && opened != 0) {
            directory = m_files.openDirectoryAt(parent, name.c_str());
            const auto one = placeOf(place.get());
            const bool isSame = directory && one && directory->device == one->device &&
                                directory->inode == one->inode;
            if (!isSame) {
                m_modes.putBack(std::exchange(opened, 0));
                return directory ? make_error_code(RemovalError::Changed) : directory.error();
            }
        }
        return directory ? std::error_code() : directory.error();
    }

    std::string pathOf(const std::string &name) const {
        std::string path = m_item.path.native();
        for (std::size_t i = 1; i < m_levels.size(); ++i)
            path += '/' + m_levels[i].name;
        return m_levels.empty() ? path : path + '/' + name;
    }

    std::error_code descend(Level &level) {
        const std::string name = std::move(level.children.back());
        level.children.pop_back();
        const std::size_t depth = m_levels.size();
        const auto error = enter(level.open, name);
        if (!error || m_levels.size() > depth)
            return error;
        // Gone, or made into something else meanwhile: then it goes as what it is now.
        const OpenDirectory &above = m_levels.back().open;
        if (error == std::errc::no_such_file_or_directory)
            return {};
        const bool isOther = error == std::errc::not_a_directory ||
                             error == std::errc::too_many_symbolic_link_levels;
        // A directory that may not be read can still go when it is empty.
        const int flags = isOther ? 0 : AT_REMOVEDIR;
        if (::unlinkat(above.descriptor.get(), name.c_str(), flags) == 0 ||
            (isOther && errno == ENOENT))
            return {};
        return isOther ? lastError() : error;
    }

    // The last level is empty: removes it from the one above, which is opened again if need be.
    std::error_code ascend(const OpenDirectory &holder) {
        const OpenDirectory *above = &holder;
        Level &done = m_levels.back();
        if (m_levels.size() > 1) {
            Level &level = m_levels[m_levels.size() - 2];
            if (!level.open.descriptor) {
                auto parent = m_files.openParentOf(done.open, level.open.device, level.open.inode);
                if (!parent)
                    return parent.error();
                level.open = std::move(*parent);
            }
            above = &level.open;
        }
        m_modes.beat();
        if (::unlinkat(above->descriptor.get(), done.name.c_str(), AT_REMOVEDIR) != 0 &&
            errno != ENOENT)
            return lastError();
        if (done.opened != 0)
            m_modes.forget(done.opened);
        m_levels.pop_back();
        return {};
    }

    bool isStopped() const {
        return m_options.stop && m_options.stop->load(std::memory_order_relaxed);
    }

    LinuxFileOperations &m_files;
    ModeJournal &m_modes;
    const OpenItem &m_item;
    std::uint64_t m_mount;
    const RemovalOptions &m_options;
    DirectoryBlock m_block;
    std::vector<Level> m_levels;
};

std::error_code keptByFlag(const OpenItem &item) {
    const int folder = linuxFolder(item).descriptor();
    const auto error = keptByFlag(folder, "");
    return error ? error : keptByFlag(folder, item.name.c_str());
}

// Why a name may not be taken out of its folder, by flags, the folder's rights and its sticky rule.
std::error_code keptInFolder(const OpenItem &item) {
    if (const auto error = keptByFlag(item))
        return error;
    const int descriptor = linuxFolder(item).descriptor();
    struct stat folder;
    if (::fstat(descriptor, &folder) != 0 ||
        ::faccessat(descriptor, ".", W_OK | X_OK, AT_EACCESS) != 0)
        return lastError();
    const uid_t user = ::geteuid();
    if ((folder.st_mode & S_ISVTX) && user != 0 && user != item.attributes.owner &&
        user != folder.st_uid)
        return std::make_error_code(std::errc::operation_not_permitted);
    return {};
}

bool isSameFolder(const LinuxHoldingFolder &folder, const RemovalTarget &target,
                  std::string_view way) {
    return folder.root == target.root && folder.way == way &&
           folder.place.mounts == ownMounts().current();
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

Result<OpenDirectory> LinuxFileOperations::openRoot(const RemovalRoot &root) {
    auto descriptor = openPlace(root.path.native());
    if (!descriptor)
        return descriptor.error();
    const auto place = placeOf(descriptor->get());
    if (!place)
        return place.error();
    if (place->device != root.device || place->inode != root.inode)
        return RemovalError::Changed;
    OpenDirectory reached;
    reached.descriptor = *std::move(descriptor);
    return openDirectoryAt(reached, ".");
}

std::vector<std::filesystem::path>
LinuxFileOperations::mountPointsBelow(const OpenDirectory &root) {
    std::vector<std::filesystem::path> found;
    const std::string path = currentPath(root.descriptor.get());
    if (path.empty())
        return found;
    const auto mounts = ownMounts().current();
    for (const std::string_view point : mounts->below(path))
        found.emplace_back(point);
    return found;
}

Result<OpenItem> LinuxFileOperations::openItem(const RemovalTarget &target,
                                               const OpenItem *previous) {
    const std::string_view relative = target.relative.native();
    const auto slash = relative.rfind('/');
    const std::string_view way =
        slash == relative.npos ? std::string_view() : relative.substr(0, slash);
    OpenItem item;
    item.name = relative.substr(slash + 1);
    item.path = target.path();
    if (!isPlainName(item.name) || slash == 0)
        return std::errc::invalid_argument;
    std::shared_ptr<const LinuxHoldingFolder> folder;
    if (previous && previous->folder && isSameFolder(linuxFolder(*previous), target, way)) {
        folder = std::static_pointer_cast<const LinuxHoldingFolder>(previous->folder);
    } else {
        auto made = std::make_shared<LinuxHoldingFolder>();
        auto descriptor = openHoldingPlace(target.root.path.native(), target.root.device,
                                           target.root.inode, way, made->place);
        if (!descriptor)
            return descriptor.error();
        made->m_directory.descriptor = *std::move(descriptor);
        made->m_directory.device = made->place.place().device;
        made->m_directory.inode = made->place.place().inode;
        made->root = target.root;
        made->way = way;
        made->places = ownPlaces();
        made->aptArchives = made->places->aptArchivesOf(made->place.chain);
        folder = std::move(made);
    }
    struct stat status {};
    item.refusal = lookAt(folder->descriptor(), folder->place, item.name, status);
    if (item.refusal && item.refusal != RemovalError::HoldsVolume)
        return item.refusal;
    item.attributes = attributesOf(status);
    const SystemPlaces &places = *folder->places;
    if (!item.refusal && places.isProtected(status.st_dev, status.st_ino))
        item.refusal = RemovalError::ProtectedPlace;
    if (!item.refusal && ::geteuid() == 0)
        item.refusal = places.refusalForRoot(folder->place.chain, item.name, status);
    if (!item.refusal && isAptAtWork(folder->aptArchives))
        item.refusal = busy;
    item.folder = std::move(folder);
    return item;
}

bool LinuxFileOperations::isDeletable(const OpenItem &item) {
    return !keptInFolder(item) && (item.attributes.type == EntryType::Link ||
                                   ::faccessat(linuxFolder(item).descriptor(), item.name.c_str(),
                                               W_OK, AT_EACCESS | AT_SYMLINK_NOFOLLOW) == 0);
}

std::error_code LinuxFileOperations::checkRemoval(const OpenItem &item) {
    return item.refusal ? item.refusal : keptInFolder(item);
}

std::error_code LinuxFileOperations::checkEntries(const OpenDirectory &directory,
                                                  const DirectoryBlock &block) {
    const int descriptor = directory.descriptor.get();
    if (const auto error = keptByFlag(descriptor, ""))
        return error;
    const auto entries = block.entries();
    for (const DirectoryEntry &entry : entries) {
        if (const auto error = keptByFlag(descriptor, entry.name))
            return error;
    }
    const uid_t user = ::geteuid();
    if (user == 0 || entries.empty())
        return {};
    struct stat folder;
    if (::fstat(descriptor, &folder) != 0)
        return lastError();
    const bool isOwn = folder.st_uid == user;
    if (::faccessat(descriptor, ".", W_OK | X_OK, AT_EACCESS) != 0 && !(isOwn && errno == EACCES))
        return lastError();
    const bool isSticky = (folder.st_mode & S_ISVTX) != 0 && !isOwn;
    for (const DirectoryEntry &entry : block.entries()) {
        const bool isClosed = entry.type == EntryType::Directory &&
                              ::faccessat(descriptor, entry.name, R_OK | X_OK,
                                          AT_EACCESS | AT_SYMLINK_NOFOLLOW) != 0 &&
                              errno == EACCES;
        struct stat status;
        if ((isSticky || isClosed) &&
            ::fstatat(descriptor, entry.name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            status.st_uid != user)
            return std::make_error_code(std::errc::operation_not_permitted);
    }
    return {};
}

std::error_code LinuxFileOperations::refusalWithRights(const OpenItem &item) {
    if (item.refusal)
        return item.refusal;
    struct stat status {};
    status.st_mode = item.attributes.kind | item.attributes.mode;
    status.st_uid = item.attributes.owner;
    status.st_dev = item.attributes.device;
    status.st_ino = item.attributes.inode;
    const LinuxHoldingFolder &folder = linuxFolder(item);
    return folder.places->refusalForRoot(folder.place.chain, item.name, status);
}

std::error_code LinuxFileOperations::removeItem(const OpenItem &item,
                                                const RemovalOptions &options) {
    if (item.refusal)
        return item.refusal;
    if (item.attributes.type != EntryType::Directory) {
        if (::unlinkat(linuxFolder(item).descriptor(), item.name.c_str(), 0) == 0)
            return {};
        const auto error = lastError();
        const auto kept =
            error == std::errc::operation_not_permitted ? keptByFlag(item) : std::error_code();
        return kept ? kept : error;
    }
    // What may not leave its folder is not emptied either.
    if (const auto error = keptInFolder(item))
        return error;
    const auto error = TreeRemoval(*this, m_modes, item, options).run();
    // What was missing may be something within it.
    const bool isLess = error == std::errc::no_such_file_or_directory && !hasGone(item);
    return isLess ? make_error_code(RemovalError::Changed) : error;
}

Result<TrashFolder> LinuxFileOperations::trashOf(const HoldingFolder &folder, bool make) {
    return trashOfPlace(static_cast<const LinuxHoldingFolder &>(folder).place, make);
}

std::error_code LinuxFileOperations::moveItem(const OpenItem &item, const FileDescriptor &directory,
                                              const std::string &name) {
    if (item.refusal)
        return item.refusal;
    const int from = linuxFolder(item).descriptor();
    const auto isItem = [&item](int folder, const std::string &called) {
        struct stat status;
        return ::fstatat(folder, called.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
               status.st_dev == item.attributes.device && status.st_ino == item.attributes.inode;
    };
    if (!isItem(from, item.name))
        return RemovalError::Changed;
    if (const auto error = renameIfFree(from, item.name, directory.get(), name))
        return error;
    if (isItem(directory.get(), name))
        return {};
    // Exchanged at the last moment: what was not looked at goes back.
    renameIfFree(directory.get(), name, from, item.name);
    return RemovalError::Changed;
}

bool LinuxFileOperations::hasGone(const OpenItem &item) {
    struct stat status;
    return ::fstatat(linuxFolder(item).descriptor(), item.name.c_str(), &status,
                     AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0 &&
           errno == ENOENT;
}

std::error_code LinuxFileOperations::openModeJournal(const std::filesystem::path &journal) {
    return m_modes.open(journal.native());
}

void LinuxFileOperations::closeModeJournal() {
    m_modes.close();
}

void LinuxFileOperations::putModesBack() {
    m_modes.putAllBack();
}

} // namespace brightsweep
