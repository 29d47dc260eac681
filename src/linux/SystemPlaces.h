#pragma once

#include "linux/CategoryTable.h"
#include "linux/Mounts.h"
#include "linux/Place.h"

#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

struct stat;

namespace brightsweep {

/// A folder of a user's that keeps its place, such as the one for downloads, and a number that
/// tells it apart from others that may be the same folder.
struct StandardFolder {
    int role = 0;
    std::string path; ///< absolute
};

/// For whom removals are made.
struct RemovalCaller {
    uid_t user = 0;
    /// The user's own homes, absolute; the first one is at home in standardFolders.
    std::vector<std::string> homes;
    /// Where the user's settings put them; empty where the settings are not known.
    std::vector<StandardFolder> standardFolders;
    /// What is kept besides, wherever the standard folders are.
    std::vector<StandardFolder> furtherFolders;
    /// An administrator from the start: every user's home counts as the caller's.
    bool ownsAllHomes = false;
    /// When not empty, system-wide paths count below it as well.
    std::string systemRoot;
};

/// Roles of protected places that are no user's standard folders.
inline constexpr int systemRole = -1;
inline constexpr int childOfSystemRole = -2;
/// The role of a row of systemFolders, which may also be a child of a place of the system.
inline constexpr int roleOfSystemFolder(std::size_t row) {
    return 1000 + int(row);
}

/// Which folders outlive every removal, and what an administrator's removal may touch at all.
///
/// Everything is compared by what it is (Place), never by text, so that no link and no bind mount
/// gives a place another name. It looks at the disk when it is made and is constant afterwards.
class SystemPlaces {
public:
    SystemPlaces(const RemovalCaller &caller, std::shared_ptr<const MountSnapshot> mounts);

    const std::shared_ptr<const MountSnapshot> &mounts() const { return m_mounts; }

    /// True for a folder that no removal takes, with rights or without: "/" and what lies directly
    /// in it, the system's own folders, homes and their standard folders, the clean categories'
    /// folders, and whatever holds one of these. A place of the role `except` alone does not count.
    bool isProtected(std::uint64_t device, std::uint64_t inode, int except = 0) const;

    /// Empty, or why an administrator's removal leaves this item of a directory alone. `chain` is
    /// the directory's, as climb() gives it.
    std::error_code refusalForRoot(const std::vector<Place> &chain, std::string_view name,
                                   const struct stat &item) const;

    /// Where apt's folder of packages is, if the directory is it or lies in it; else empty.
    std::string aptArchivesOf(const std::vector<Place> &chain) const;
    /// True for a name in that folder that is apt's own.
    bool isAptReserved(const Place &directory, std::string_view name) const;

private:
    enum class Reach { Everything, OwnedByCaller, RegularFiles };
    struct Region {
        Place place;
        Reach reach = Reach::Everything;
    };
    struct Protected {
        Place place;
        int role = systemRole;
    };
    using Chain = std::vector<Place>;

    void addSystem(const std::string &prefix);
    void addHomes(const RemovalCaller &caller);
    void addRegion(const std::string &path, Reach reach);
    void protect(const std::string &path, int role);
    void protectChildren(const std::string &path);
    /// Empty for a place that is not there.
    Chain chainOf(const std::string &path) const;
    bool isAlias(const Chain &chain) const;
    bool isOpenHome(const Chain &home) const;
    bool isOnFurtherVolume(const Chain &chain) const;

    std::shared_ptr<const MountSnapshot> m_mounts;
    uid_t m_user;
    std::vector<Protected> m_protected; // sorted by device and inode
    std::vector<Place> m_system;        // the system's own folders
    std::vector<Place> m_holdsSystem;   // what holds one of them
    std::vector<Place> m_homeParents;
    std::vector<Place> m_rootHomes;
    std::vector<Place> m_mediaParents;
    std::vector<Place> m_kept; // nothing in them goes
    std::vector<Place> m_othersHomes;
    std::vector<Region> m_regions;
    std::vector<std::pair<Place, std::string>> m_aptArchives;
    std::vector<std::uint64_t> m_volumes; // numbers of mounts
};

/// Keeps the places for a caller, and looks at them again when mounts changed or after a moment.
/// One thread at a time.
class RecentPlaces {
public:
    std::shared_ptr<const SystemPlaces> get(const std::function<RemovalCaller()> &caller,
                                            const std::shared_ptr<const MountSnapshot> &mounts);

private:
    std::shared_ptr<const SystemPlaces> m_places;
    std::chrono::steady_clock::time_point m_madeAt;
};

/// True while another process holds the lock in apt's folder of packages. A lock that may not be
/// opened cannot be asked about; the packages may then not be removed either.
bool isAptAtWork(const std::string &archives);

/// The homes of the machine's users, as /etc/passwd lists them: those of people and of root.
std::vector<std::string> homesOfUsers();

} // namespace brightsweep
