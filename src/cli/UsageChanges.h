#pragma once

#include "cli/Command.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>

namespace brightsweep {
class AllDir;
}

namespace brightsweep::cli {

/// What `usage` wrote of a folder before, to be compared with what is there now.
class UsageChanges {
public:
    /// Reads a document of `usage` about that folder, given with a trailing "/". False after the
    /// line that says what is wrong with it.
    bool read(const std::filesystem::path &file, const std::string &folder, Output &output);
    /// Shows what became larger or smaller, largest growth first, as deep as the document goes.
    bool show(const AllDir &root, Output &output) const;

private:
    std::unordered_map<std::string, std::uint64_t> m_before; ///< bytes by path
    std::size_t m_depth = 0;                                 ///< of the deepest folder in it
};

} // namespace brightsweep::cli
