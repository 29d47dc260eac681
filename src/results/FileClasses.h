#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace brightsweep {

/// A class of files that the duplicates page lists by itself.
struct FileClass {
    std::int32_t fileType;
    std::span<const std::string_view> extensions; ///< lower case; empty: whatever is left
};

/// In the order in which a group is tried against them.
std::span<const FileClass> fileClasses();

/// The class of a group by its extension, compared in lower case: 1 to 6. A group without an
/// extension is in no class, 0.
std::int32_t fileTypeOfExtension(std::string_view extension);

} // namespace brightsweep
