#include "uninstall/LeftoverSearch.h"

#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "uninstall/FolderNames.h"

namespace brightsweep {

namespace {

constexpr SearchedFolder namedFolders[] = {
    {LeftoverPlace::Config, StandardDirectory::Preferences, LeftoverKind::Config},
    {LeftoverPlace::Cache, StandardDirectory::Caches, LeftoverKind::Cache},
    {LeftoverPlace::State, StandardDirectory::State, LeftoverKind::State},
    {LeftoverPlace::Data, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Home, StandardDirectory::Home, LeftoverKind::Data},
};
// The first one is the system's.
constexpr SearchedFolder libraryFolders[] = {
    {LeftoverPlace::Shared, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Data, StandardDirectory::Library, LeftoverKind::Data},
    {LeftoverPlace::Config, StandardDirectory::Preferences, LeftoverKind::Config},
    {LeftoverPlace::Cache, StandardDirectory::Caches, LeftoverKind::Cache},
};
constexpr const char *sharedFolder = "/usr/local/share";

} // namespace

std::filesystem::path SearchedFolder::path() const {
    StandardDirectories &directories = *Platform::current().directories;
    return place == LeftoverPlace::Shared ? directories.systemPath(sharedFolder)
                                          : directories.first(directory);
}

std::span<const SearchedFolder> searchedFolders() {
    return namedFolders;
}

std::span<const SearchedFolder> bundleFolders() {
    return libraryFolders;
}

Leftover *LeftoverSearch::add(const RemovalTarget &target, LeftoverKind kind, std::string reason,
                              bool ticksData) {
    const std::filesystem::path place = target.path();
    const bool isApplication =
        !m_application.empty() && (paths::isSameOrBelow(place.native(), m_application.native()) ||
                                   paths::isSameOrBelow(m_application.native(), place.native()));
    if ((m_stop && *m_stop) || isApplication)
        return nullptr;
    return add(lookAtLeftover(target, kind, std::move(reason), {m_stop, ticksData}));
}

Leftover *LeftoverSearch::add(std::optional<Leftover> leftover) {
    if (!leftover)
        return nullptr;
    const FileAttributes &seen = leftover->seen;
    // Nothing is asked of what holds a volume: its path stands for it.
    const auto name = seen.inode != 0 ? leftover->path.filename() : leftover->path;
    if (!m_seen.emplace(seen.device, seen.inode, name.native()).second)
        return nullptr;
    m_leftovers.push_back(*std::move(leftover));
    return &m_leftovers.back();
}

void LeftoverSearch::addIfThere(const std::filesystem::path &folder,
                                const std::filesystem::path &way, LeftoverKind kind,
                                std::string reason) {
    const auto root = Platform::current().files->rememberRoot(folder);
    if (root)
        add({*root, way}, kind, std::move(reason));
}

void LeftoverSearch::addNamed(const LeftoverNames &names, const LeftoverNames &claimed,
                              const std::string &reason) {
    for (const SearchedFolder &folder : searchedFolders()) {
        forEachName(folder.path(), [&](const RemovalRoot &root, const std::string &name) {
            if (names.matches(folder.place, name) && !claimed.matches(folder.place, name))
                add({root, name}, folder.kind, reason);
        });
    }
}

void forEachName(
    const std::filesystem::path &folder,
    const std::function<void(const RemovalRoot &root, const std::string &name)> &call) {
    const auto root = Platform::current().files->rememberRoot(folder);
    if (!root)
        return;
    for (const std::string &name : namesInFolder(*root))
        call(*root, name);
}

} // namespace brightsweep
