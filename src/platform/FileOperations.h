#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
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
    std::uint32_t mode = 0;  ///< permission bits only
    std::uint32_t owner = 0; ///< user number
    std::uint64_t links = 0; ///< names of the file
    std::uint64_t size = 0;  ///< logical bytes; of a link its own
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modified = 0; ///< nanoseconds since the epoch
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
    std::uint64_t size = 0;    ///< only with attributes
    std::uint64_t device = 0;  ///< only with attributes
    std::int64_t modified = 0; ///< nanoseconds since the epoch; only with attributes

    std::string_view nameView() const { return {name, nameLength}; }
};

/// A block of entries, in system order, without "." and "..". Reused from call to call; holds a
/// buffer of its own and belongs to one thread.
class DirectoryBlock {
public:
    std::span<const DirectoryEntry> entries() const { return m_entries; }
    /// True when the directory has no further block.
    bool atEnd() const { return m_atEnd; }

    // For those who fill blocks.
    std::vector<char> &buffer() { return m_buffer; }
    std::vector<DirectoryEntry> &fill() { return m_entries; }
    void setAtEnd(bool atEnd) { m_atEnd = atEnd; }

private:
    std::vector<char> m_buffer;
    std::vector<DirectoryEntry> m_entries;
    bool m_atEnd = false;
};

/// Which entries of a block are to have their attributes read along with the names. An entry whose
/// type the directory itself does not tell has them read in any case.
enum class WantedAttributes { None, NonDirectories, All };

/// A folder that removals start from: canonicalised once, and recognised later by what it is.
struct RemovalRoot {
    std::filesystem::path path; ///< absolute, without links
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
};

/// One item to remove: a root and the way down from it. A value; it opens nothing by itself.
struct RemovalTarget {
    RemovalRoot root;
    /// Relative to the root, at least one component, none of them "." or "..".
    std::filesystem::path relative;

    std::filesystem::path path() const;
};

/// Access to the file system, a whole directory block or a whole removal per call.
///
/// All calls are safe from every thread, and none follows a link unless it says so. Directories of
/// file systems that hold no storage (those of the kernel itself) cannot be opened. Paths have no
/// length limit. Errors are the system's own codes; `errc::device_or_resource_busy` stands for an
/// item that is a mount point, has one below, or is locked by the program that owns it.
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
    /// Absolute, without links; of what exists only.
    virtual Result<std::filesystem::path> canonicalPath(const std::filesystem::path &path) = 0;
    /// True where something is mounted on the very item, a single file included.
    virtual bool isMountPoint(const std::filesystem::path &path) = 0;
    /// True while another process holds a record lock on the file.
    virtual bool isLockedByAnother(const std::filesystem::path &path) = 0;

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

    // -- Removal

    /// Canonicalises the folder and notes what it is. It must be a directory.
    virtual Result<RemovalRoot> rememberRoot(const std::filesystem::path &folder) = 0;
    /// Opens the root again, compares, and walks down to the directory that holds the item.
    virtual Result<OpenDirectory> openHolder(const RemovalTarget &target) = 0;
    /// The parent is writable and searchable, its sticky rule allows it, and the item itself is
    /// writable or a link.
    virtual bool isDeletable(const RemovalTarget &target) = 0;
    /// The error that a removal would meet before anything of the item goes: what keeps its name in
    /// its folder, or a mount at or below it. Empty when nothing does.
    virtual std::error_code checkRemoval(const RemovalTarget &target) = 0;
    /// Removes the item with all below it. Nothing is removed across a mount, and an item with a
    /// mount anywhere below is left whole. Ends at the first error: what was removed before it
    /// stays removed, the item itself is then still there.
    /// `stop`, when given, ends it so too, as `errc::operation_canceled`.
    virtual std::error_code removeItem(const RemovalTarget &target,
                                       const std::atomic<bool> *stop = nullptr) = 0;
    /// Sets the permission bits of a directory, or of a file that has no other name; of anything
    /// else it refuses to. Gives the bits that were set before.
    virtual Result<std::uint32_t> setPermissions(const RemovalTarget &target,
                                                 std::uint32_t mode) = 0;
};

} // namespace brightsweep
