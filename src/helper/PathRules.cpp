#include "helper/PathRules.h"

#include "foundation/PathBytes.h"
#include "helper/Frame.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace brightsweep::helper {

namespace {

enum class Children { MayGo, Stay };

struct SystemPlace {
    std::string_view path;
    Children children = Children::MayGo;
};

constexpr std::string_view aptArchivesPlace = "/var/cache/apt/archives";

constexpr std::array systemPlaces = {
    // The clean categories.
    SystemPlace{aptArchivesPlace},
    SystemPlace{"/var/cache/apt/archives/lock"},
    SystemPlace{"/var/cache/apt/archives/partial"},
    SystemPlace{"/var/cache/dnf"},
    SystemPlace{"/var/cache/libdnf5"},
    SystemPlace{"/var/cache/yum"},
    SystemPlace{"/var/cache/pacman/pkg"},
    SystemPlace{"/var/cache/zypp/packages"},
    SystemPlace{"/var/cache/PackageKit"},
    SystemPlace{"/var/cache/fontconfig"},
    SystemPlace{"/var/cache/man"},
    SystemPlace{"/var/cache/swcatalog"},
    SystemPlace{"/var/cache/app-info"},
    SystemPlace{"/var/lib/snapd/cache"},
    SystemPlace{"/var/log/apt"},
    SystemPlace{"/var/log/unattended-upgrades"},
    SystemPlace{"/var/log/dist-upgrade"},
    SystemPlace{"/var/crash"},
    SystemPlace{"/var/lib/systemd/coredump"},
    // What a system cannot do without.
    SystemPlace{"/bin"},
    SystemPlace{"/boot", Children::Stay},
    SystemPlace{"/dev"},
    SystemPlace{"/etc"},
    SystemPlace{"/etc/pam.d"},
    SystemPlace{"/etc/passwd"},
    SystemPlace{"/etc/polkit-1"},
    SystemPlace{"/etc/shadow"},
    SystemPlace{"/etc/ssh"},
    SystemPlace{"/etc/systemd"},
    SystemPlace{"/home"},
    SystemPlace{"/lib"},
    SystemPlace{"/lib32"},
    SystemPlace{"/lib64"},
    SystemPlace{"/libx32"},
    SystemPlace{"/media"},
    SystemPlace{"/mnt"},
    SystemPlace{"/nix/store"},
    SystemPlace{"/opt"},
    SystemPlace{"/proc"},
    SystemPlace{"/root"},
    SystemPlace{"/run"},
    SystemPlace{"/sbin"},
    SystemPlace{"/snap"},
    SystemPlace{"/srv"},
    SystemPlace{"/sys"},
    SystemPlace{"/tmp"},
    SystemPlace{"/usr", Children::Stay},
    SystemPlace{"/usr/lib/aarch64-linux-gnu"},
    SystemPlace{"/usr/lib/firmware"},
    SystemPlace{"/usr/lib/modules"},
    SystemPlace{"/usr/lib/polkit-1"},
    SystemPlace{"/usr/lib/systemd"},
    SystemPlace{"/usr/lib/x86_64-linux-gnu"},
    SystemPlace{"/usr/local/bin"},
    SystemPlace{"/usr/local/etc"},
    SystemPlace{"/usr/local/include"},
    SystemPlace{"/usr/local/lib"},
    SystemPlace{"/usr/local/sbin"},
    SystemPlace{"/usr/local/share"},
    SystemPlace{"/usr/local/src"},
    SystemPlace{"/usr/share/applications"},
    SystemPlace{"/usr/share/dbus-1"},
    SystemPlace{"/usr/share/icons"},
    SystemPlace{"/usr/share/polkit-1"},
    SystemPlace{"/var", Children::Stay},
    SystemPlace{"/var/lib/apt"},
    SystemPlace{"/var/lib/dbus"},
    SystemPlace{"/var/lib/dpkg"},
    SystemPlace{"/var/lib/flatpak"},
    SystemPlace{"/var/lib/pacman"},
    SystemPlace{"/var/lib/rpm"},
    SystemPlace{"/var/lib/snapd"},
};

// Below a home. The user's own variables may put them elsewhere; then they are not told apart from
// the rest of what the user owns.
constexpr std::array<std::string_view, 18> homePlaces = {
    ".cache",
    ".config",
    ".local/bin",
    ".local/share",
    ".local/share/Trash/files",
    ".local/share/Trash/info",
    ".local/share/applications",
    ".local/state",
    ".ssh",
    "Applications",
    "Desktop",
    "Documents",
    "Downloads",
    "Music",
    "Pictures",
    "Public",
    "Templates",
    "Videos",
};

} // namespace

std::size_t componentCount(std::string_view path) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < path.size(); ++i)
        count += path[i] != '/' && (i == 0 || path[i - 1] == '/');
    return count;
}

std::string_view refusalOfWords(const RemovePath &removal) {
    if (!removal.root.starts_with('/'))
        return "the path is not absolute";
    if (removal.relative.empty())
        return "the path names no item";
    const std::string path = removal.path();
    if (path.find('\0') != path.npos)
        return "the path holds a NUL";
    std::size_t components = 0;
    for (std::size_t start = 1; start <= path.size();) {
        const auto end = std::min(path.find('/', start), path.size());
        const std::string_view name = std::string_view(path).substr(start, end - start);
        if (name.empty() || name == "." || name == "..")
            return "the path has an empty, \".\" or \"..\" component";
        ++components;
        start = end + 1;
    }
    return components < 2 ? "the path has fewer than two components" : std::string_view();
}

ProtectedPlaces::ProtectedPlaces(std::string_view systemRoot,
                                 const std::vector<std::string> &homes) {
    std::vector<std::string> prefixes = {""};
    if (systemRoot.starts_with('/') && componentCount(systemRoot) > 0)
        prefixes.emplace_back(paths::withoutTrailingSlashes(systemRoot));
    for (const std::string &prefix : prefixes) {
        for (const SystemPlace &place : systemPlaces) {
            add(prefix + std::string(place.path));
            if (place.children == Children::Stay)
                m_withChildren.push_back(prefix + std::string(place.path));
        }
        m_aptArchives.push_back(prefix + std::string(aptArchivesPlace));
    }
    for (const std::string &home : homes) {
        if (componentCount(home) == 0 || !home.starts_with('/'))
            continue;
        add(home);
        for (const std::string_view place : homePlaces)
            add(std::string(paths::withoutTrailingSlashes(home)) + '/' + std::string(place));
    }
}

// A place that is reached by a link is guarded under both its names.
void ProtectedPlaces::add(std::string place) {
    if (char *resolved = ::realpath(place.c_str(), nullptr)) {
        if (place != resolved)
            m_places.emplace_back(resolved);
        ::free(resolved);
    }
    m_places.push_back(std::move(place));
}

bool ProtectedPlaces::holds(std::string_view path) const {
    const auto isChild = [&](const std::string &place) {
        return paths::isSameOrBelow(path, place) &&
               componentCount(path) <= componentCount(place) + 1;
    };
    return std::any_of(
               m_places.begin(), m_places.end(),
               [&](const std::string &place) { return paths::isSameOrBelow(place, path); }) ||
           std::any_of(m_withChildren.begin(), m_withChildren.end(), isChild);
}

bool ProtectedPlaces::isOne(std::uint64_t device, std::uint64_t inode) const {
    return std::any_of(m_places.begin(), m_places.end(), [&](const std::string &place) {
        struct stat status;
        return ::lstat(place.c_str(), &status) == 0 && status.st_dev == device &&
               status.st_ino == inode;
    });
}

} // namespace brightsweep::helper
