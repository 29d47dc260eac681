#include "linux/KernelFileSystems.h"

#include "linux/MountTable.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace brightsweep {

namespace {

struct KernelFileSystem {
    std::string_view name;
    std::uint32_t magic; // statfs(2), linux/magic.h; 0 where it shares another row's number
};

constexpr std::array kernelFileSystems = {
    KernelFileSystem{"proc", 0x9fa0},
    KernelFileSystem{"sysfs", 0x62656572},
    KernelFileSystem{"cgroup", 0x27e0eb},
    KernelFileSystem{"cgroup2", 0x63677270},
    KernelFileSystem{"devpts", 0x1cd1},
    KernelFileSystem{"debugfs", 0x64626720},
    KernelFileSystem{"tracefs", 0x74726163},
    KernelFileSystem{"securityfs", 0x73636673},
    KernelFileSystem{"selinuxfs", 0xf97cff8c},
    KernelFileSystem{"smackfs", 0x43415d53},
    KernelFileSystem{"bpf", 0xcafe4a11},
    KernelFileSystem{"pstore", 0x6165676c},
    KernelFileSystem{"efivarfs", 0xde5e81e4},
    KernelFileSystem{"mqueue", 0x19800202},
    KernelFileSystem{"hugetlbfs", 0x958458f6},
    KernelFileSystem{"configfs", 0x62656570},
    KernelFileSystem{"fusectl", 0x65735543},
    KernelFileSystem{"autofs", 0x0187},
    KernelFileSystem{"binfmt_misc", 0x42494e4d},
    KernelFileSystem{"nsfs", 0x6e736673},
    KernelFileSystem{"rpc_pipefs", 0x67596969},
    KernelFileSystem{"nfsd", 0x6e667364},
    KernelFileSystem{"resctrl", 0x7655821},
    KernelFileSystem{"devtmpfs", 0}, // a tmpfs to statfs; told by its device, see below
};

// statfs shows devtmpfs as a tmpfs, and the two must be told apart: people keep files in a tmpfs.
// There is one devtmpfs for the whole system, so its device number stays what it is.
constexpr std::uint32_t tmpfsMagic = 0x01021994;

bool isDevtmpfs(int descriptor) {
    static const dev_t device = [] {
        for (const Mount &mount : currentMounts()) {
            if (mount.type == "devtmpfs")
                return ::makedev(mount.deviceMajor, mount.deviceMinor);
        }
        return dev_t(0);
    }();
    struct stat status;
    return device != 0 && ::fstat(descriptor, &status) == 0 && status.st_dev == device;
}

} // namespace

bool isKernelFileSystem(std::string_view type) {
    return std::any_of(kernelFileSystems.begin(), kernelFileSystems.end(),
                       [&](const KernelFileSystem &row) { return row.name == type; });
}

bool isOnKernelFileSystem(int descriptor) {
    struct statfs status;
    if (::fstatfs(descriptor, &status) != 0)
        return false;
    const auto magic = std::uint32_t(status.f_type);
    if (magic == tmpfsMagic)
        return isDevtmpfs(descriptor);
    return std::any_of(kernelFileSystems.begin(), kernelFileSystems.end(),
                       [&](const KernelFileSystem &row) { return row.magic == magic; });
}

} // namespace brightsweep
