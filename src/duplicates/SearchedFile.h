#pragma once

#include "platform/FileOperations.h"
#include "results/SimpleNodeData.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

namespace brightsweep {

/// What a member of a group was when the search met it. It is acted on only while it still is.
struct SearchedFile {
    enum class Kind : std::uint8_t {
        File,
        Link,   ///< to a file: size and times are the link's own, device and inode its target's
        Bundle, ///< device and inode of the directory, all else of what it holds
    };

    Kind kind = Kind::File;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since the epoch; of a bundle 0
    std::int64_t changed = 0;  ///< likewise; of a bundle the latest of its files, 0 when not known
    std::uint64_t stored = 0;  ///< bytes that it takes in its file system
    std::uint32_t links = 1;   ///< its names, in whatever folder; of a bundle 1
};

/// Where a search began: the folder by the path that its finds begin with, and what it is.
struct SearchRoot {
    std::filesystem::path searched;
    RemovalRoot root;
};

/// The leaf of a search's tree.
class DuplicateLeaf : public SimpleNodeData {
public:
    DuplicateLeaf(std::string path, const SearchedFile &searched)
        : SimpleNodeData(std::move(path), true), m_searched(searched), m_freed(searched.stored) {}

    const SearchedFile &searched() const { return m_searched; }
    /// Its place in the group as the search made it, whatever order is shown; the file that was
    /// found first has the last.
    std::uint32_t place() const { return m_place; }
    void setPlace(std::uint32_t place) { m_place = place; }
    /// How many leaves of its group are names of the same file, itself included.
    std::uint32_t names() const { return m_names; }
    void setNames(std::uint32_t names) { m_names = names; }
    /// Bytes that go back to the file system with its last name: what is stored, but for blocks
    /// that are known to be shared. Snapshots may hold them all the same.
    std::uint64_t freed() const { return m_freed; }
    void setFreed(std::uint64_t bytes) { m_freed = bytes; }
    bool sharesBlocks() const { return m_freed < m_searched.stored; }
    /// Where the selection keeps it, if it does.
    std::size_t selectionPlace() const { return m_selectionPlace; }
    void setSelectionPlace(std::size_t place) { m_selectionPlace = std::uint32_t(place); }

private:
    SearchedFile m_searched;
    std::uint64_t m_freed;
    std::uint32_t m_place = 0;
    std::uint32_t m_selectionPlace = 0;
    std::uint32_t m_names = 1;
};

} // namespace brightsweep
