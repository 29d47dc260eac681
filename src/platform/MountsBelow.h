#pragma once

#include "platform/DirectoryWalk.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// What is mounted below a folder that is walked. None of it is entered or asked: whoever serves it
/// may be dead. A value, constant during a walk.
class MountsBelow {
public:
    MountsBelow() = default;
    /// The points are relative to the folder, as FileOperations::mountPointsBelow() gives them.
    explicit MountsBelow(const std::vector<std::filesystem::path> &points);
    static MountsBelow of(FileOperations &files, const OpenDirectory &folder);

    bool isEmpty() const { return m_points.empty(); }
    /// The names of those directly in the folder.
    const std::vector<std::string> &direct() const { return m_direct; }
    /// True when the entry of the folder is one, or has one somewhere below.
    bool isIn(std::string_view entry) const;
    /// True when the entry of a directory that a walk has reached is one. The walk's root is the
    /// folder itself, added open, or entries of the folder, added by their names.
    bool isAt(const DirectoryWalk::Directory &directory, std::string_view entry) const;

private:
    std::vector<std::string> m_points; // sorted
    std::vector<std::string> m_direct;
};

} // namespace brightsweep
