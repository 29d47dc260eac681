#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// The directories that a scan could not read. A value, without a thread of its own.
struct UnreadFolders {
    static constexpr std::size_t mostNamed = 500;

    std::size_t count = 0;
    std::vector<std::string> first; ///< their paths, no more than are named

    /// `path` makes the path of one.
    template <typename Path>
    void add(const Path &path) {
        if (count++ < mostNamed)
            first.push_back(path());
    }
};

} // namespace brightsweep
