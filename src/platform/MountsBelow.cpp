#include "platform/MountsBelow.h"

#include "foundation/PathBytes.h"
#include "platform/FileOperations.h"

#include <algorithm>

namespace brightsweep {

MountsBelow::MountsBelow(const std::vector<std::filesystem::path> &points) {
    for (const std::filesystem::path &point : points) {
        m_points.push_back(point.native());
        if (point.native().find('/') == std::string::npos)
            m_direct.push_back(point.native());
    }
    std::sort(m_points.begin(), m_points.end());
}

MountsBelow MountsBelow::of(FileOperations &files, const OpenDirectory &folder) {
    return MountsBelow(files.mountPointsBelow(folder));
}

bool MountsBelow::isIn(std::string_view entry) const {
    return std::any_of(m_points.begin(), m_points.end(), [&](const std::string &point) {
        return paths::isSameOrBelow(point, entry);
    });
}

bool MountsBelow::isAt(const DirectoryWalk::Directory &directory, std::string_view entry) const {
    return !m_points.empty() &&
           std::binary_search(m_points.begin(), m_points.end(), directory.wayTo(entry));
}

} // namespace brightsweep
