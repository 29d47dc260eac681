#include "linux/Mounts.h"

#include "foundation/PathBytes.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::chrono::seconds freshness(1);

// Orders paths so that what lies below a directory follows it at once: "/a", "/a/b", "/a-b".
struct BeforeByComponent {
    static int weight(char character) {
        return character == '/' ? 0 : static_cast<unsigned char>(character) + 1;
    }
    bool operator()(std::string_view one, std::string_view other) const {
        return std::lexicographical_compare(
            one.begin(), one.end(), other.begin(), other.end(),
            [](char left, char right) { return weight(left) < weight(right); });
    }
};

} // namespace

MountSnapshot::MountSnapshot(std::vector<Mount> mounts) : m_mounts(std::move(mounts)) {
    m_byId.resize(m_mounts.size());
    for (std::uint32_t i = 0; i < m_byId.size(); ++i)
        m_byId[i] = i;
    std::sort(m_byId.begin(), m_byId.end(), [this](std::uint32_t one, std::uint32_t other) {
        return m_mounts[one].id < m_mounts[other].id;
    });
    m_points.reserve(m_mounts.size());
    for (const Mount &mount : m_mounts)
        m_points.push_back(mount.mountPoint);
    std::sort(m_points.begin(), m_points.end(), BeforeByComponent());
    m_points.erase(std::unique(m_points.begin(), m_points.end()), m_points.end());
}

const Mount *MountSnapshot::find(std::uint64_t id) const {
    const auto found = std::lower_bound(m_byId.begin(), m_byId.end(), id,
                                        [this](std::uint32_t place, auto wanted) {
                                            return std::uint64_t(m_mounts[place].id) < wanted;
                                        });
    if (found == m_byId.end() || std::uint64_t(m_mounts[*found].id) != id)
        return nullptr;
    return &m_mounts[*found];
}

bool MountSnapshot::isAt(std::string_view path) const {
    return std::binary_search(m_points.begin(), m_points.end(), paths::withoutTrailingSlashes(path),
                              BeforeByComponent());
}

bool MountSnapshot::holdsMountPoint(std::string_view path) const {
    path = paths::withoutTrailingSlashes(path);
    const auto first =
        std::lower_bound(m_points.begin(), m_points.end(), path, BeforeByComponent());
    return first != m_points.end() && paths::isSameOrBelow(*first, path);
}

std::vector<std::string_view> MountSnapshot::below(std::string_view directory) const {
    directory = paths::withoutTrailingSlashes(directory);
    const std::size_t skipped = directory == "/" ? 1 : directory.size() + 1;
    std::vector<std::string_view> found;
    for (auto point =
             std::lower_bound(m_points.begin(), m_points.end(), directory, BeforeByComponent());
         point != m_points.end() && paths::isSameOrBelow(*point, directory); ++point) {
        if (point->size() > skipped)
            found.push_back(point->substr(skipped));
    }
    return found;
}

std::shared_ptr<const MountSnapshot> Mounts::current() {
    const std::lock_guard lock(m_mutex);
    const auto now = std::chrono::steady_clock::now();
    if (now - m_readAt > freshness) {
        m_reader = MountTableReader();
        m_readAt = now;
    }
    if (auto mounts = m_reader.changedMounts(); mounts || !m_snapshot)
        m_snapshot = std::make_shared<const MountSnapshot>(mounts ? *std::move(mounts)
                                                                  : std::vector<Mount>());
    return m_snapshot;
}

std::shared_ptr<const MountSnapshot> Mounts::currentWith(std::uint64_t mount) {
    auto mounts = current();
    if (mounts->find(mount))
        return mounts;
    const std::lock_guard lock(m_mutex);
    m_reader = MountTableReader();
    m_snapshot = std::make_shared<const MountSnapshot>(
        m_reader.changedMounts().value_or(std::vector<Mount>()));
    return m_snapshot;
}

Mounts &ownMounts() {
    // Never destroyed: workers may still ask when the process ends.
    static auto *mounts = new Mounts;
    return *mounts;
}

} // namespace brightsweep
