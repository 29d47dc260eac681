#pragma once

#include <array>
#include <cstdint>

namespace brightsweep {

/// What files are beyond their sizes: what they take in their file system, when one of them changed
/// last, and how their bytes share out among the classes of files. Of a directory's own files or of
/// all that lies below it.
struct ContentFacts {
    static constexpr std::size_t classes = 7; ///< by fileType; 0 for files of no class

    std::uint64_t stored = 0;  ///< bytes on disk
    std::uint32_t changed = 0; ///< seconds since the epoch; 0 without files
    /// Bytes, as closely as a comparison needs them.
    std::array<float, classes> byClass{};

    ContentFacts &operator+=(const ContentFacts &other);
    /// Takes away what has gone. The last change stays.
    ContentFacts &operator-=(const ContentFacts &other);
    /// The class with most of the bytes.
    std::int32_t largestClass() const;
};

} // namespace brightsweep
