#pragma once

#include "linux/MountTable.h"
#include "linux/MountTableReader.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// The mounts of this process at one moment. Constant, so that threads share it.
class MountSnapshot {
public:
    explicit MountSnapshot(std::vector<Mount> mounts);

    /// Empty when the table could not be read; then nothing is known, and nothing may be removed.
    bool isKnown() const { return !m_mounts.empty(); }
    /// In the table's order.
    const std::vector<Mount> &all() const { return m_mounts; }
    /// The mount of that number; null where this process has none.
    const Mount *find(std::uint64_t id) const;
    /// True when the very path is a mount point. It is absolute and canonical.
    bool isAt(std::string_view path) const;
    /// True when the path is a mount point or has one below it. The path is absolute and canonical.
    bool holdsMountPoint(std::string_view path) const;
    /// The mount points below a directory, relative to it. The path is absolute and canonical.
    std::vector<std::string_view> below(std::string_view directory) const;

private:
    std::vector<Mount> m_mounts;
    std::vector<std::uint32_t> m_byId;      // places in m_mounts
    std::vector<std::string_view> m_points; // by component, so that what lies below follows
};

/// Gives the present mounts, which it reads again when the kernel says that they changed, and once
/// a second at most because it does not say so when a folder above a mount point is renamed.
/// Safe from every thread.
class Mounts {
public:
    std::shared_ptr<const MountSnapshot> current();
    /// The same, read anew where it lacks a mount that was just met: the process may have got
    /// mounts of its own since the table was opened.
    std::shared_ptr<const MountSnapshot> currentWith(std::uint64_t mount);

private:
    std::mutex m_mutex;
    MountTableReader m_reader;
    std::chrono::steady_clock::time_point m_readAt;
    std::shared_ptr<const MountSnapshot> m_snapshot;
};

/// The one of this process.
Mounts &ownMounts();

} // namespace brightsweep
