#include "uninstall/FolderNames.h"

#include "platform/MountsBelow.h"
#include "platform/Platform.h"

#include <algorithm>

namespace brightsweep {

std::vector<std::string> namesInFolder(const RemovalRoot &folder) {
    FileOperations &files = *Platform::current().files;
    std::vector<std::string> names;
    const auto directory = files.openRoot(folder);
    if (!directory)
        return names;
    const auto mounts = MountsBelow::of(files, *directory);
    DirectoryBlock block;
    block.setMountPoints(&mounts.direct());
    do {
        if (files.readBlock(*directory, block, WantedAttributes::None))
            break;
        for (const DirectoryEntry &entry : block.entries())
            names.emplace_back(entry.nameView());
    } while (!block.atEnd());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace brightsweep
