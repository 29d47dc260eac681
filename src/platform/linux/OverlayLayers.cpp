#include "platform/linux/OverlayLayers.h"

#include "foundation/PathBytes.h"
#include "linux/Place.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <filesystem>
#include <optional>

namespace brightsweep {

namespace {

// The options of which each value is one folder; "lowerdir" has a list of them.
constexpr std::string_view folderOptions[] = {"lowerdir+", "datadir+", "upperdir", "workdir"};

// Takes a backslash for what makes the next character plain, as the mount option does.
std::string plain(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        bytes += text[i];
    }
    return bytes;
}

void addLowerFolders(std::string_view list, std::vector<std::string> &layers) {
    while (!list.empty()) {
        std::size_t end = 0;
        while (end < list.size() && list[end] != ':')
            end += list[end] == '\\' ? 2 : 1;
        end = std::min(end, list.size());
        // Two colons stand before a folder that holds data only.
        if (end > 0)
            layers.push_back(plain(list.substr(0, end)));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

std::optional<struct stat> directoryAt(const std::string &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return status;
}

std::string canonical(const std::string &path) {
    std::error_code ignored;
    return std::filesystem::canonical(path, ignored).native();
}

// A layer was often given relative to a folder that the mount point lies in.
std::string absolute(const std::string &layer, std::string_view mountPoint) {
    if (layer.starts_with('/'))
        return layer;
    while (!mountPoint.empty()) {
        mountPoint = mountPoint.substr(0, mountPoint.rfind('/'));
        std::string path = std::string(mountPoint) + "/" + layer;
        if (directoryAt(path))
            return path;
    }
    return layer;
}

} // namespace

std::vector<std::string> overlayLayers(std::string_view superOptions) {
    std::vector<std::string> layers;
    while (!superOptions.empty()) {
        const auto end = std::min(superOptions.find(','), superOptions.size());
        const std::string option = unescapeMountText(superOptions.substr(0, end));
        superOptions.remove_prefix(std::min(end + 1, superOptions.size()));
        const auto equals = option.find('=');
        if (equals == option.npos)
            continue;
        const std::string_view name = std::string_view(option).substr(0, equals);
        const std::string value = option.substr(equals + 1);
        if (name == "lowerdir") {
            addLowerFolders(value, layers);
        } else if (std::find(std::begin(folderOptions), std::end(folderOptions), name) !=
                   std::end(folderOptions)) {
            layers.push_back(value);
            if (value.find('\\') != value.npos)
                layers.push_back(plain(value));
        }
    }
    return layers;
}

std::vector<FileIdentity> repeatedByOverlays(const std::vector<Mount> &mounts,
                                             const std::string &root) {
    std::vector<FileIdentity> repeated;
    const auto directory = openPlace(root);
    const auto place = directory ? placeOf(directory->get()) : Result<Place>(directory.error());
    if (!place)
        return repeated;
    for (const Mount &mount : mounts) {
        const bool isBelow = paths::isSameOrBelow(mount.mountPoint, root);
        if (mount.type != "overlay" || (!isBelow && std::uint64_t(mount.id) != place->mount))
            continue;
        const auto device = makedev(mount.deviceMajor, mount.deviceMinor);
        const auto top = directoryAt(mount.mountPoint);
        // Something else may be mounted over it.
        if (!top || top->st_dev != device)
            continue;
        for (const std::string &layer : overlayLayers(mount.superOptions)) {
            // Of a bind mount of a part, that part of the layers.
            const std::string path =
                absolute(layer, mount.mountPoint) + (mount.root == "/" ? "" : mount.root);
            const auto folder = directoryAt(path);
            // A layer may lie hidden below the overlay itself.
            if (!folder || folder->st_dev == device)
                continue;
            if (!paths::isSameOrBelow(root, canonical(path)))
                repeated.push_back({folder->st_dev, folder->st_ino});
            else if (isBelow && mount.mountPoint != root)
                repeated.push_back({top->st_dev, top->st_ino});
        }
    }
    std::sort(repeated.begin(), repeated.end());
    return repeated;
}

} // namespace brightsweep
