#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// One line of /proc/self/mountinfo; see proc(5). Texts are bytes with their escapes undone, but
/// for the two lists of options, whose commas would be lost.
struct Mount {
    std::int32_t id = 0;
    std::int32_t parentId = 0;
    std::uint32_t deviceMajor = 0;
    std::uint32_t deviceMinor = 0;
    std::string root; ///< what of the file system is mounted
    std::string mountPoint;
    std::string options;
    std::string type;
    std::string source;
    std::string superOptions;
};

/// Undoes the kernel's escapes, a backslash and three octal digits for each blank, tab, line end
/// and backslash, and in an option for its commas.
std::string unescapeMountText(std::string_view text);

/// The well-formed lines of a mount table, in its order; others are passed over.
std::vector<Mount> parseMountTable(std::string_view text);

/// This process's mounts now; empty when they cannot be read.
std::vector<Mount> currentMounts();

/// True when the path is a mount point or has one below it. The path is absolute and canonical.
bool holdsMountPoint(const std::vector<Mount> &mounts, std::string_view path);

} // namespace brightsweep
