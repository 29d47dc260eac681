#include "foundation/Paths.h"
#include "linux/MountTable.h"
#include "linux/VolumeSelection.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace brightsweep;
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const auto mounts = parseMountTable(text);
    for (const Mount &mount : mounts) {
        require(mount.mountPoint.starts_with('/'));
        require(holdsMountPoint(mounts, mount.mountPoint));
        require(mount.mountPoint.find("//") != std::string::npos ||
                holdsMountPoint(mounts, paths::parent(mount.mountPoint).native()));
    }
    require(holdsMountPoint(mounts, "/") == !mounts.empty());

    // No line but those between two line ends is ever read.
    const auto half = text.substr(0, text.rfind('\n') == text.npos ? 0 : text.rfind('\n') + 1);
    const auto complete = parseMountTable(half);
    require(complete.size() == mounts.size() || complete.size() + 1 == mounts.size());

    std::set<std::string> places;
    const auto volumes = selectVolumes(mounts, {"", "/home/u"});
    require(volumes.size() <= mounts.size());
    for (const SelectedVolume &volume : volumes)
        require(places.insert(volume.mount.mountPoint).second);
    return 0;
}
