#pragma once

#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"

#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep::test {

/// An item below a folder, which is taken as it is now.
inline RemovalTarget targetIn(const std::filesystem::path &folder, const std::string &relative) {
    return {*Platform::current().files->rememberRoot(folder), relative};
}

/// Folders as a category has them.
inline std::vector<RemovalRoot> rootsOf(const std::vector<std::filesystem::path> &folders) {
    std::vector<RemovalRoot> roots;
    for (const auto &folder : folders) {
        if (auto root = Platform::current().files->rememberRoot(folder)) {
            root->path = folder;
            roots.push_back(*std::move(root));
        }
    }
    return roots;
}

/// Reaches an item and removes it by the normal way.
inline std::error_code removeItem(const RemovalTarget &target,
                                  const std::atomic<bool> *stop = nullptr) {
    FileOperations &files = *Platform::current().files;
    const auto item = files.openItem(target);
    return item ? files.removeItem(*item, {stop, nullptr}) : item.error();
}

/// Both ways, told in full.
inline RemovalOutcome removeWithOutcome(const std::filesystem::path &path) {
    const auto target = NvAuthorization::targetOf(path);
    return target ? ItemRemoval().remove(*target)
                  : RemovalOutcome{false, target.error(), {}, false, false};
}

} // namespace brightsweep::test
