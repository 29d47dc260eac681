#pragma once

#include "platform/FileOperations.h"

#include <QMetaType>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace brightsweep {

/// One found item: a direct child of the folder that was listed, never a file deeper down. A value.
struct CleanFileInfo {
    CleanFileInfo() = default;
    CleanFileInfo(QString itemIcon, std::string itemName, std::filesystem::path itemPath,
                  QString itemSize, std::uint64_t bytes);

    /// Below 0 when this item is the larger one. It compares the sizes in words, so that items that
    /// show the same size are equal.
    int compareBySize(const CleanFileInfo &other) const;
    /// A copy that is not ticked and counts nothing, whatever this one is.
    CleanFileInfo copyWithZone() const;
    /// The item as removals take it; only of an item with a root.
    RemovalTarget target() const { return {*root, name}; }

    QString icon; ///< its name, for the screen to load; the path itself stands for its own icon
    std::string name;
    std::filesystem::path path;
    std::uint64_t count = 0;
    QString size; ///< in words
    std::uint64_t fileSizeNum = 0;
    std::uint64_t stored = 0; ///< bytes on disk, where a page asks for them
    std::int8_t bIsSelected = 0;
    bool isDirectory = false; ///< never true for a link
    /// The bytes that the words in `size` read as, which is what pages add up.
    std::uint64_t shownSize = 0;
    /// Nanoseconds since the epoch; none where it could not be read.
    std::optional<std::int64_t> modified;

    /// The folder as it was when it was listed.
    std::shared_ptr<const RemovalRoot> root;
    /// Why the last attempt to remove the item failed, or the next one will, for its row; else
    /// empty.
    QString failure;
    /// The key of the same in two or three words.
    const char *reasonKey = "";
};

} // namespace brightsweep

Q_DECLARE_METATYPE(brightsweep::CleanFileInfo)
