#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"
#include "platform/FileIdentity.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace brightsweep {

enum class EntryType : std::uint8_t { Unknown, File, Directory, Link, Other };

/// What one name stands for, never what a link in its place leads to.
struct FileAttributes {
    EntryType type = EntryType::Unknown;
    std::uint32_t mode = 0;   ///< permission bits only
    std::uint32_t kind = 0;   ///< the system's own bits for the type
    std::uint32_t owner = 0;  ///< user number
    std::uint64_t links = 0;  ///< names of the file
    std::uint64_t size = 0;   ///< logical bytes; of a link its own
    std::uint64_t stored = 0; ///< bytes that it takes in its file system
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modified = 0; ///< nanoseconds since the epoch
    std::int64_t changed = 0;  ///< likewise: contents, mode, names or owner
};

/// An open directory and what it is. The descriptor closes with it.
struct OpenDirectory {
    FileDescriptor descriptor;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    explicit operator bool() const { return bool(descriptor); }
};

/// One entry of a block. The name is NUL-terminated and lives until the block is filled again.
struct DirectoryEntry {
    const char *name = nullptr;
    std::uint32_t nameLength = 0;
    EntryType type = EntryType::Unknown;
    /// True where attributes were asked for and could be read.
    bool hasAttributes = false;
    std::uint64_t inode = 0;
    // Only with attributes, as FileAttributes has them:
    std::uint64_t links = 0;
    std::uint64_t size = 0;
    std::uint64_t stored = 0;
    std::uint64_t device = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    std::string_view nameView() const { return {name, nameLength}; }
};

/// A block of entries, in system order, without "." and "..". Reused from call to call; holds a
/// buffer of its own and belongs to one thread.
class DirectoryBlock {
public:
    std::span<const DirectoryEntry> entries() const { return m_entries; }
    /// True when the directory has no further block.
    bool atEnd() const { return m_atEnd; }

    /// Names that are not looked at: something is mounted on them, and whoever serves it may be
    /// dead. They come as directories without attributes. The list outlives the reading.
    void setMountPoints(const std::vector<std::string> *names) { m_mountPoints = names; }

    // For those who fill blocks.
    const std::vector<std::string> *mountPoints() const { return m_mountPoints; }
    std::vector<char> &buffer() { return m_buffer; }
    std::vector<DirectoryEntry> &fill() { return m_entries; }
    void setAtEnd(bool atEnd) { m_atEnd = atEnd; }

private:
    std::vector<char> m_buffer;
    std::vector<DirectoryEntry> m_entries;
    const std::vector<std::string> *m_mountPoints = nullptr;
    bool m_atEnd = false;
};

/// Which entries of a block are to have their attributes read along with the names. An entry whose
/// type the directory itself does not tell has them read in any case.
enum class WantedAttributes { None, NonDirectories, All };

/// A folder that removals start from: its path as it was found, and what it is. It is recognised
/// later by the latter.
struct RemovalRoot {
    std::filesystem::path path; ///< absolute
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// The folder that holds the items of a trash.
    bool isTrash = false;

    bool operator==(const RemovalRoot &) const = default;
};

/// One item to remove: a root and the way down from it. A value; it opens nothing by itself.
struct RemovalTarget {
    RemovalRoot root;
    /// Relative to the root, at least one component, none of them "." or "..".
    std::filesystem::path relative;

    std::filesystem::path path() const;
};

/// The directory that holds items to be removed, open, and what is known of it. Items of one
/// directory share it.
class HoldingFolder {
public:
    virtual ~HoldingFolder();
    /// Opened with O_PATH: for calls such as openat(), not to be read.
    virtual const OpenDirectory &directory() const = 0;
};

/// An item to remove, reached: what was looked at is what is removed. Everything that is done with
/// it is relative to the descriptor of its folder.
struct OpenItem {
    std::shared_ptr<const HoldingFolder> folder;
    std::filesystem::path path; ///< for messages
    std::string name;           ///< in the folder
    FileAttributes attributes;
    /// Why the item stays whatever its rights are: a protected place, something mounted at or below
    /// it, a lock of the program that owns it; see RemovalError.
    std::error_code refusal;
};

/// The user's trash for what lies in one folder, by the freedesktop Trash document: the home trash,
/// or the volume's own. Its folders are open, so that one exchanged meanwhile is not used.
struct TrashFolder {
    FileDescriptor trash; ///< holds `files`, `info` and `directorysizes`
    FileDescriptor files;
    FileDescriptor info;
    /// What the record of an item puts before its name: the folder's path, absolute in the home
    /// trash, from the volume's top in another, where it is empty for the top itself.
    std::string original;
};

/// How far two files came to share their blocks.
struct SharedRange {
    std::uint64_t bytes = 0;
    bool isEqual = true; ///< false where the system found the contents to differ
};

struct RemovalOptions {
    /// When set, ends a removal within the item.
    const std::atomic<bool> *stop = nullptr;
    /// Set where a mode that stood in the way could not be opened up.
    bool *modeStays = nullptr;
};

/// Access to the file system, a whole directory block or a whole removal per call.
///
/// All calls are safe from every thread, and none follows a link unless it says so. Directories of
/// file systems that hold no storage (those of the kernel itself) cannot be opened. Paths have no
/// length limit. Errors are the system's own codes and those of RemovalError;
/// `errc::device_or_resource_busy` equals every one of an item that is a mount point, has one
/// below, or is locked by the program that owns it.
class FileOperations {
public:
    virtual ~FileOperations();

    /// Empty when the operations work, else the reason why they do not.
    virtual std::string unavailableReason() const { return {}; }

    // -- Directories

    /// Opens a directory by path. Links on the way, and in the last place, are followed.
    virtual Result<OpenDirectory> openDirectory(const std::filesystem::path &path) = 0;
    /// Opens a child directory; never through a link.
    virtual Result<OpenDirectory> openDirectoryAt(const OpenDirectory &parent,
                                                  const char *name) = 0;
    /// Opens the directory that holds this one, which must be the one of the given identity.
    virtual Result<OpenDirectory> openParentOf(const OpenDirectory &directory, std::uint64_t device,
                                               std::uint64_t inode) = 0;
    /// Fills the block with the next entries. An entry that vanishes meanwhile has no attributes.
    virtual std::error_code readBlock(const OpenDirectory &directory, DirectoryBlock &block,
                                      WantedAttributes wanted) = 0;

    // -- Single items

    /// Does not follow a link in the last place.
    virtual Result<FileAttributes> attributes(const std::filesystem::path &path) = 0;
    virtual Result<FileAttributes> attributesAt(const OpenDirectory &directory,
                                                const char *name) = 0;
    /// Follows links; errors as of the system call.
    virtual Result<FileAttributes> attributesFollowing(const std::filesystem::path &path) = 0;
    /// What a link leads to, as it stands there.
    virtual Result<std::string> linkTarget(const std::filesystem::path &path) = 0;
    /// Absolute, without links; of what exists only.
    virtual Result<std::filesystem::path> canonicalPath(const std::filesystem::path &path) = 0;
    /// True where something is mounted on the very item, a single file included.
    virtual bool isMountPoint(const std::filesystem::path &path) = 0;
    /// The directories of which a search of the root would meet the files a second time, as an
    /// overlay mount in it shows them too: that overlay's layers; or its top, where a layer of it
    /// holds the root itself. Sorted, and most often empty.
    virtual std::vector<FileIdentity> repeatedByOverlays(const std::filesystem::path &root) = 0;

    // -- File contents

    /// Opens a regular file for reading, never waiting for a writer and never through a link in
    /// the last place; anything but a regular file is refused unread.
    virtual Result<FileDescriptor> openFile(const std::filesystem::path &path) = 0;
    /// The same for a file that a listing has just shown to be regular, without a look before or
    /// after the opening, so that it may be anything by now. Until fileAttributes() says that it is
    /// a regular file, it is read by readCachedAt() alone, and only where cachedPages() counted
    /// every page; a pipe or a terminal has none. It is called for every file of a search, hence
    /// the plain bytes.
    virtual Result<FileDescriptor> openListedFile(const std::string &path) = 0;
    virtual Result<FileAttributes> fileAttributes(const FileDescriptor &file) = 0;
    /// How many pages of a range of the file are in memory; an error where the system does not
    /// tell.
    virtual Result<std::uint64_t> cachedPages(const FileDescriptor &file, std::uint64_t offset,
                                              std::uint64_t length) = 0;
    /// Has the system fetch no more of the file than what is asked for.
    virtual void fetchOnlyWhatIsRead(const FileDescriptor &file) = 0;
    /// Reads up to `size` bytes at `offset`; fewer only at the end of the file.
    virtual Result<std::size_t> readAt(const FileDescriptor &file, void *data, std::size_t size,
                                       std::uint64_t offset) = 0;
    /// The same, but only as far as the bytes are in memory already: fewer where the next byte
    /// would have to be fetched. `errc::operation_would_block` when none is there.
    virtual Result<std::size_t> readCachedAt(const FileDescriptor &file, void *data,
                                             std::size_t size, std::uint64_t offset) = 0;
    /// Gives up the cached copy of a range of the file; a length of 0 reaches to its end.
    virtual void dropCached(const FileDescriptor &file, std::uint64_t offset,
                            std::uint64_t length) = 0;
    /// The first byte of data at or behind `offset`, past any hole; the file's size where only a
    /// hole follows. Where the file system cannot tell, `offset` itself.
    virtual Result<std::uint64_t> nextData(const FileDescriptor &file, std::uint64_t offset) = 0;

    // -- Equal files

    /// Keeps all others from opening the file for writing, until the descriptor is closed. A
    /// program that wants to waits meanwhile, so that isWantedForWriting() is to be asked several
    /// times a second, and the file closed when it says so. `errc::text_file_busy` where the file
    /// is open for writing already; any other error where the system cannot keep writers out.
    virtual std::error_code keepWritersOut(const FileDescriptor &file) = 0;
    virtual bool isWantedForWriting(const FileDescriptor &file) = 0;
    /// How many of the file's stored bytes no other file shares: what goes back to the file system
    /// with its last name. Snapshots may hold them all the same.
    virtual Result<std::uint64_t> unsharedBytes(const FileDescriptor &file) = 0;
    /// Makes a range of `file` share the blocks of the same range of `source`, if and as far as
    /// the system itself finds the bytes equal; the file's times and mode stay. Fewer bytes than
    /// asked for are no error. `file` is the user's own or opened for writing.
    virtual Result<SharedRange> shareRange(const FileDescriptor &source, const FileDescriptor &file,
                                           std::uint64_t offset, std::uint64_t length) = 0;
    /// Why files of this file's file system cannot share blocks at all; empty where they can.
    virtual std::error_code sharingRefusal(const FileDescriptor &file) = 0;
    /// True for a file whose blocks are always written in place.
    virtual bool isNeverCopiedOnWrite(const FileDescriptor &file) = 0;

    // -- Removal

    /// Canonicalises the folder and notes what it is. It must be a directory.
    virtual Result<RemovalRoot> rememberRoot(const std::filesystem::path &folder) = 0;
    /// Opens a remembered folder for reading, through no link in the last place. An error when it
    /// is no longer the one that it was.
    virtual Result<OpenDirectory> openRoot(const RemovalRoot &root) = 0;
    /// The mount points below a remembered folder, relative to it; nothing of them is asked.
    virtual std::vector<std::filesystem::path> mountPointsBelow(const OpenDirectory &root) = 0;
    /// Opens the root again, compares, walks down to the directory that holds the item, through no
    /// link and across no mount, and looks at the item. An item that must stay is given with the
    /// reason; an error is given where it cannot be reached or has gone. `previous`, when given, is
    /// the item before: one of the same folder need not be walked to again.
    virtual Result<OpenItem> openItem(const RemovalTarget &target,
                                      const OpenItem *previous = nullptr) = 0;
    /// The parent is writable and searchable, its sticky rule and both's flags allow it, and the
    /// item itself is writable or a link.
    virtual bool isDeletable(const OpenItem &item) = 0;
    /// The error that a removal would meet before anything of the item goes: its refusal, or what
    /// keeps its name in its folder (isKeptByFlag() for a flag). Empty when nothing does.
    virtual std::error_code checkRemoval(const OpenItem &item) = 0;
    /// The error that a removal would meet at the entries of a block of that directory: what keeps
    /// one of them in it, or from being looked into. Modes that it would open up are no obstacle.
    virtual std::error_code checkEntries(const OpenDirectory &directory,
                                         const DirectoryBlock &block) = 0;
    /// Why a removal with administrator rights would leave the item alone. Empty when it would not.
    virtual std::error_code refusalWithRights(const OpenItem &item) = 0;
    /// Removes the item with all below it. Nothing is removed across a mount, and an item that is
    /// refused is left whole. Ends at the first error: what was removed before it stays removed,
    /// the item itself is then still there. A stop ends it as `errc::operation_canceled`.
    ///
    /// Directories that their owner may not read, enter or write have their modes opened up on the
    /// way, where a journal is open; those that survive get their own back.
    virtual std::error_code removeItem(const OpenItem &item, const RemovalOptions &options) = 0;
    /// The trash for what lies in that folder, on the folder's own mount. RemovalError::NoTrash
    /// where there is none and none can be had, InTrash for what lies in it already. With `make` it
    /// is made where it is missing; without, its descriptors are then empty.
    virtual Result<TrashFolder> trashOf(const HoldingFolder &folder, bool make) = 0;
    /// Renames the item into a directory of the same mount, never over something else
    /// (`errc::file_exists`), with the refusals of removeItem().
    virtual std::error_code moveItem(const OpenItem &item, const FileDescriptor &directory,
                                     const std::string &name) = 0;
    /// True when the name is no longer there.
    virtual bool hasGone(const OpenItem &item) = 0;
    /// Begins to note modes that removals open up, after putting back what a killed process left.
    /// The caller holds the lock of the run.
    virtual std::error_code openModeJournal(const std::filesystem::path &journal) = 0;
    /// Puts all back and removes the journal. Not while a removal runs.
    virtual void closeModeJournal() = 0;
    /// Puts back what is open now, while removals may still run: the program is about to end.
    virtual void putModesBack() = 0;
};

} // namespace brightsweep
