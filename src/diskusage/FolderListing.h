#pragma once

#include "results/CleanFileInfo.h"

#include <QMetaType>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// What a folder holds, largest first once it is sorted. Items are made when they are asked for: a
/// folder of a million files costs some 60 bytes for each. A value: one thread fills it,
/// and any may read it then.
class FolderListing {
public:
    using Pointer = std::shared_ptr<const FolderListing>;

    explicit FolderListing(std::filesystem::path folder = {}) : m_folder(std::move(folder)) {}

    void add(std::string_view name, std::uint64_t bytes, std::uint64_t stored, bool isDirectory);
    /// By the sizes in words, as CleanFileInfo::compareBySize() does; equals by their names.
    void sort();

    const std::filesystem::path &folder() const { return m_folder; }
    std::size_t size() const { return m_items.size(); }
    CleanFileInfo operator[](std::size_t index) const;
    std::string_view name(std::size_t index) const { return name(m_items[index]); }
    std::uint64_t bytes(std::size_t index) const { return m_items[index].bytes; }
    std::uint64_t stored(std::size_t index) const { return m_items[index].stored; }
    /// What the size in words reads as.
    std::uint64_t shownSize(std::size_t index) const { return m_items[index].shownSize; }
    bool isDirectory(std::size_t index) const { return m_items[index].isDirectory; }

private:
    struct Item {
        std::uint64_t bytes;
        std::uint64_t stored;
        std::uint64_t shownSize;
        std::size_t nameAt; ///< in m_names
        std::uint8_t nameLength;
        bool isDirectory;
    };

    std::string_view name(const Item &item) const;

    std::filesystem::path m_folder;
    std::vector<Item> m_items;
    std::string m_names;
};

} // namespace brightsweep

Q_DECLARE_METATYPE(brightsweep::FolderListing::Pointer)
