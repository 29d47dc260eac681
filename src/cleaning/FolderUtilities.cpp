#include "cleaning/FolderUtilities.h"

#include "cleaning/ItemSizes.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"
#include "volumes/VolumesInfo.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

constexpr std::uint32_t trashCategory = 4;

// The source of each category but the trash, whose folders come from the volumes.
constexpr std::array categoryDirectories = {
    StandardDirectory::LocalCaches, StandardDirectory::UserCaches, StandardDirectory::LocalLogs,
    StandardDirectory::UserLogs,    StandardDirectory::HomeTrash,  StandardDirectory::Downloads,
};

constexpr char packageCache[] = "/var/cache/apt/archives";
constexpr std::array<std::string_view, 2> packageCacheReserved = {"lock", "partial"};

void addVolumeTrashes(std::vector<std::filesystem::path> &folders) {
    StandardDirectories &directories = *Platform::current().directories;
    VolumesInfo volumes;
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (volume.volType != LocalStorage || volume.bIsDefaultVol)
            continue;
        for (auto &folder : directories.trashesOfVolume(volume.volRootDir)) {
            if (std::find(folders.begin(), folders.end(), folder) == folders.end())
                folders.push_back(std::move(folder));
        }
    }
}

} // namespace

std::vector<std::filesystem::path> FolderUtilities::getFolderPath(std::uint32_t index) {
    if (index >= categoryDirectories.size())
        return {};
    auto folders = Platform::current().directories->paths(categoryDirectories[index]);
    if (index == trashCategory)
        addVolumeTrashes(folders);
    return folders;
}

std::uint64_t FolderUtilities::sizeOfItemAtPath(const std::filesystem::path &path) {
    FileOperations &files = *Platform::current().files;
    const auto item = files.attributes(path);
    if (!item)
        return 0;
    if (item->type != EntryType::Directory)
        return sizeOfOneFile(*item);
    auto folder = files.openDirectory(path);
    if (!folder)
        return 0;
    return sizeOfOpenDirectory(std::move(*folder), nullptr).value_or(0);
}

std::filesystem::path FolderUtilities::getFolderFromFile(const std::filesystem::path &path) {
    const auto item = Platform::current().files->attributesFollowing(path);
    const bool isPlainFolder = item && item->type == EntryType::Directory &&
                               Platform::current().workspace->typeOf(path).isEmpty();
    return isPlainFolder ? path : paths::parent(path);
}

bool FolderUtilities::isReserved(const std::filesystem::path &folder, std::string_view name) {
    const auto cache = Platform::current().files->canonicalPath(
        Platform::current().directories->systemPath(packageCache));
    return cache && *cache == folder &&
           std::find(packageCacheReserved.begin(), packageCacheReserved.end(), name) !=
               packageCacheReserved.end();
}

bool FolderUtilities::CreateAuthoration(AuthorizationReference *reference) {
    const RightsResult result = Platform::current().rights->request();
    if (result.outcome != RightsOutcome::Granted) {
        NSLog("Copy Rights Unsuccessful: %d", result.status);
        return false;
    }
    reference->token = Platform::current().rights->token();
    return true;
}

bool FolderUtilities::DeleteAuthoration(const AuthorizationReference &) {
    const int status = Platform::current().rights->release();
    if (status != 0)
        NSLog("Free Rights Unsuccessful: %d", status);
    return status == 0;
}

} // namespace brightsweep
