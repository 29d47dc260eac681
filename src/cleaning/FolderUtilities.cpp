#include "cleaning/FolderUtilities.h"

#include "cleaning/ItemSizes.h"
#include "core/Texts.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/WordTable.h"
#include "linux/SystemPlaces.h"
#include "platform/AdministratorRights.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "volumes/VolumesInfo.h"

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::array reasons = {
    WordRow{LeftOutReason::TopOfVolume, QT_TRID_NOOP("LEFT_OUT_TOP")},
    WordRow{LeftOutReason::NotOwned, QT_TRID_NOOP("LEFT_OUT_FOREIGN")},
    WordRow{LeftOutReason::KeptPlace, QT_TRID_NOOP("LEFT_OUT_KEPT")},
};

void addVolumeTrashes(CleanFolders &folders) {
    StandardDirectories &directories = *Platform::current().directories;
    VolumesInfo volumes;
    for (const DSVolumeInfo &volume : volumes.getAllVolsInfo()) {
        if (volume.volType != LocalStorage || volume.bIsDefaultVol)
            continue;
        CleanFolders further = directories.trashesOfVolume(volume.volRootDir);
        for (RemovalRoot &folder : further.folders) {
            const auto isSame = [&](const RemovalRoot &other) {
                return other.device == folder.device && other.inode == folder.inode;
            };
            if (std::none_of(folders.folders.begin(), folders.folders.end(), isSame))
                folders.folders.push_back(std::move(folder));
        }
        folders.leftOut.insert(folders.leftOut.end(), further.leftOut.begin(),
                               further.leftOut.end());
    }
}

} // namespace

std::vector<RemovalRoot> FolderUtilities::getFolderPath(std::uint32_t index,
                                                        std::vector<LeftOutFolder> *leftOut) {
    if (index >= categoryCount)
        return {};
    const auto place = CleanPlace(index);
    CleanFolders folders = Platform::current().directories->cleanFolders(place);
    if (place == CleanPlace::HomeTrash)
        addVolumeTrashes(folders);
    if (leftOut)
        *leftOut = std::move(folders.leftOut);
    return std::move(folders.folders);
}

QString FolderUtilities::wordsOf(const std::vector<LeftOutFolder> &leftOut) {
    QStringList sentences;
    for (const LeftOutFolder &folder : leftOut) {
        const char *const key = wordsIn(reasons, folder.reason, "");
        sentences += localizedText(key).arg(paths::display(folder.path));
    }
    return sentences.join(QLatin1Char(' '));
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

// The name first: most folders hold neither.
bool FolderUtilities::isReserved(const RemovalRoot &folder, std::string_view name) {
    if (std::find(aptReserved.begin(), aptReserved.end(), name) == aptReserved.end())
        return false;
    const auto archives = Platform::current().files->attributesFollowing(
        Platform::current().directories->systemPath(aptArchives));
    return archives && archives->device == folder.device && archives->inode == folder.inode;
}

bool FolderUtilities::CreateAuthoration(AuthorizationReference *reference) {
    const RightsResult result = Platform::current().rights->request(RightsPurpose::Files);
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
