#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace brightsweep::cli {

/// A document that `usage --json` wrote: its folders, however deep they lie in one another.
struct UsageDocument {
    std::string folder;                                   ///< what it is about, with a trailing "/"
    std::unordered_map<std::string, std::uint64_t> bytes; ///< of every folder in it, by path
    std::size_t depth = 0;                                ///< of the deepest one, 0 is the top

    /// Reads the text. Gives the words that say what is wrong with it, none where it is a whole
    /// document of this schema.
    std::string read(std::string_view text);
};

} // namespace brightsweep::cli
