#include "linux/KernelFileSystems.h"

#include "linux/Mounts.h"
#include "linux/Place.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

constexpr std::array<std::string_view, 24> kernelFileSystems = {
    "proc",        "sysfs",      "cgroup",     "cgroup2",  "devpts",  "debugfs",
    "tracefs",     "securityfs", "selinuxfs",  "smackfs",  "bpf",     "pstore",
    "efivarfs",    "mqueue",     "hugetlbfs",  "configfs", "fusectl", "autofs",
    "binfmt_misc", "nsfs",       "rpc_pipefs", "nfsd",     "resctrl", "devtmpfs",
};

} // namespace

bool isKernelFileSystem(std::string_view type) {
    return std::find(kernelFileSystems.begin(), kernelFileSystems.end(), type) !=
           kernelFileSystems.end();
}

bool isOnKernelFileSystem(int descriptor) {
    const auto place = placeOf(descriptor);
    if (!place)
        return false;
    const auto mounts = ownMounts().currentWith(place->mount);
    const Mount *mount = mounts->find(place->mount);
    // Without a table nothing can be told; what it does not list belongs to another view of the
    // mounts, such as that of a process below /proc.
    return mounts->isKnown() && (!mount || isKernelFileSystem(mount->type));
}

} // namespace brightsweep
