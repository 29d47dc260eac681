#include "platform/linux/AbsentVolumes.h"

#include "foundation/PathBytes.h"
#include "linux/Mounts.h"
#include "linux/VolumeSelection.h"
#include "platform/linux/DesktopEntries.h"

#include <limits.h>
#include <mntent.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

namespace brightsweep {

namespace {

using std::filesystem::path;

constexpr int mostLinks = 40; // as the kernel follows

// Where the path leads, as far as its links are there to be followed.
path placeOf(path rest) {
    path place = "/";
    int links = 0;
    rest = rest.lexically_normal().relative_path();
    while (!rest.empty()) {
        const path name = *rest.begin();
        rest = rest.lexically_relative(name);
        if (rest == ".")
            rest.clear();
        char target[PATH_MAX];
        const ssize_t size = ::readlink((place / name).c_str(), target, sizeof target);
        if (size <= 0 || size == ssize_t(sizeof target) || ++links > mostLinks) {
            place /= name;
            continue;
        }
        // What is absolute leads to the root; ".." is taken as it stands.
        path led = place / path(std::string(target, std::size_t(size))) / rest;
        rest = led.lexically_normal().relative_path();
        place = "/";
    }
    return place;
}

std::vector<path> placesOfTable() {
    struct Close {
        void operator()(FILE *file) const { ::endmntent(file); }
    };
    std::vector<path> places;
    const std::unique_ptr<FILE, Close> table(::setmntent(systemPath("/etc/fstab").c_str(), "re"));
    while (const mntent *entry = table ? ::getmntent(table.get()) : nullptr) {
        const path place = path(entry->mnt_dir).lexically_normal();
        if (place.is_absolute() && place != "/")
            places.push_back(systemPath(place.native()));
    }
    return places;
}

} // namespace

bool mayLieOnAbsentVolume(const path &given) {
    const std::string place = placeOf(given).native();
    const auto mounts = ownMounts().current();
    const auto isMountedBelow = [&](const std::string &folder) {
        return std::any_of(mounts->all().begin(), mounts->all().end(), [&](const Mount &mount) {
            return mount.mountPoint != folder && paths::isSameOrBelow(mount.mountPoint, folder) &&
                   paths::isSameOrBelow(place, mount.mountPoint);
        });
    };
    for (const std::string_view folder : mediaPlaces) {
        const std::string below = systemPath(folder).native();
        if (paths::isSameOrBelow(place, below) && !isMountedBelow(below))
            return true;
    }
    const auto table = placesOfTable();
    return std::any_of(table.begin(), table.end(), [&](const path &point) {
        return paths::isSameOrBelow(place, point.native()) && !mounts->isAt(point.native());
    });
}

} // namespace brightsweep
