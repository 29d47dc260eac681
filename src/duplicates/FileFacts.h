#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// What a look at one file tells beyond what the search knows.
struct FileFacts {
    bool isFile = false;  ///< a regular file that could be opened
    bool isLocal = false; ///< on a block device of this machine, so that reading it cannot hang
    std::uint64_t size = 0;
    std::uint64_t stored = 0;  ///< bytes that it takes in its file system
    std::uint64_t links = 0;   ///< its names, in whatever folder
    std::int64_t modified = 0; ///< nanoseconds since the epoch
    /// Of what is stored, the bytes that no other file shares; empty where the system does not
    /// tell.
    std::optional<std::uint64_t> unshared;
    /// The first lines of a text, to be shown; empty for anything else.
    std::vector<std::string> lines;
};

/// Reads the beginning of a file of this machine; of any other, nothing more is told. It may block
/// for as long as the file system does: for workers.
FileFacts factsOf(const std::filesystem::path &path);

/// How paths differ, component by component: where all begin alike and where all end alike.
struct PathDifference {
    std::string common; ///< the folder that all share, with its slash
    struct Path {
        std::string differs; ///< empty for a single path
        std::string tail;    ///< what all end with, with its slash in front
    };
    std::vector<Path> paths; ///< in the order given
};

/// Of absolute paths, at least one.
PathDifference differenceOf(const std::vector<std::string> &paths);

} // namespace brightsweep
