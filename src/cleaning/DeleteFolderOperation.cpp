#include "cleaning/DeleteFolderOperation.h"

#include "cleaning/CleanNotifications.h"
#include "cleaning/FolderUtilities.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"
#include "removal/TrashRecord.h"

#include <string>

namespace brightsweep {

namespace {

constexpr std::uint32_t everybodysMode = 0777;

void post(QLatin1String name, const QVariantMap &userInfo = {}) {
    NotificationCenter::defaultCenter().post(name, nullptr, userInfo);
}

QVariantMap entryInfo(const RemovalTarget &entry, std::uint64_t size) {
    return {{QStringLiteral("FilePath"), paths::toVariant(entry.path())},
            {QStringLiteral("FileSize"), qulonglong(size)}};
}

// Everything below a folder, deep and in system order: an entry first, then what lies in it, if it
// is still a directory by then.
class DeepEntries {
public:
    explicit DeepEntries(const std::filesystem::path &folder) {
        const auto root = Platform::current().files->rememberRoot(folder);
        if (!root)
            return;
        m_root = *root;
        list({});
    }

    struct Entry {
        RemovalTarget target;
        std::uint64_t size = 0;
    };

    std::optional<Entry> next() {
        FileOperations &files = *Platform::current().files;
        descendIntoLast();
        while (!m_waiting.empty()) {
            Entry entry{{m_root, std::move(m_waiting.back())}, 0};
            m_waiting.pop_back();
            const auto holder = files.openHolder(entry.target);
            const std::string name = paths::lastComponent(entry.target.relative);
            const auto attributes = holder ? files.attributesAt(*holder, name.c_str())
                                           : Result<FileAttributes>(holder.error());
            if (!attributes)
                continue; // it has gone meanwhile
            entry.size = attributes->size;
            if (attributes->type == EntryType::Directory)
                m_lastDirectory = entry.target.relative.native();
            return entry;
        }
        return {};
    }

private:
    void descendIntoLast() {
        if (const auto last = std::exchange(m_lastDirectory, std::nullopt))
            list(*last);
    }

    void list(const std::string &relative) {
        FileOperations &files = *Platform::current().files;
        Result<OpenDirectory> directory = std::errc::no_such_file_or_directory;
        if (relative.empty()) {
            directory = files.openDirectory(m_root.path);
            if (directory &&
                (directory->device != m_root.device || directory->inode != m_root.inode))
                return;
        } else if (const auto holder = files.openHolder({m_root, relative})) {
            directory = files.openDirectoryAt(*holder, paths::lastComponent(relative).c_str());
        }
        if (!directory)
            return;
        std::vector<std::string> found;
        DirectoryBlock block;
        do {
            if (files.readBlock(*directory, block, WantedAttributes::None))
                break;
            for (const DirectoryEntry &entry : block.entries()) {
                if (relative.empty() && FolderUtilities::isReserved(m_root.path, entry.nameView()))
                    continue;
                found.push_back(relative.empty() ? std::string(entry.nameView())
                                                 : relative + "/" + entry.name);
            }
        } while (!block.atEnd());
        m_waiting.insert(m_waiting.end(), std::make_move_iterator(found.rbegin()),
                         std::make_move_iterator(found.rend()));
    }

    RemovalRoot m_root;
    std::vector<std::string> m_waiting; // the next one last
    std::optional<std::string> m_lastDirectory;
};

// Opens the mode of an entry for the time of an attempt; one that survives gets its own back.
class OpenedEntry {
public:
    explicit OpenedEntry(const RemovalTarget &target)
        : m_target(target),
          m_before(Platform::current().files->setPermissions(target, everybodysMode)) {
        if (!m_before)
            NSLog("Set Attribute faile.");
    }
    void putBack() {
        if (m_before)
            (void)Platform::current().files->setPermissions(m_target, *m_before);
    }

private:
    const RemovalTarget &m_target;
    Result<std::uint32_t> m_before;
};

} // namespace

DeleteFolderOperation::DeleteFolderOperation(std::vector<std::filesystem::path> path)
    : folderPathArr(std::move(path)) {}

void DeleteFolderOperation::main() {
    post(DSBeginFastClean);
    if (isCancelled())
        return post(DSCleanCanceled);
    for (const std::filesystem::path &folder : folderPathArr) {
        if (isCancelled())
            return post(DSCleanCanceled);
        const TrashBatch batch;
        const auto place = NvAuthorization::targetOf(folder);
        const bool deletable = place && Platform::current().files->isDeletable(*place);
        if (!deletable || !cleanDeletableFolder(folder))
            cleanUndeletableFolder(folder);
    }
    post(DSFastCleanFinish);
}

bool DeleteFolderOperation::cleanDeletableFolder(const std::filesystem::path &folder) {
    if (isCancelled()) {
        post(DSCleanCanceled);
        return false;
    }
    bool clean = true;
    DeepEntries entries(folder);
    while (const auto entry = entries.next()) {
        if (isCancelled()) {
            post(DSCleanCanceled);
            return false;
        }
        OpenedEntry opened(entry->target);
        const RemovalOutcome outcome =
            NvAuthorization::removeWithoutRights(entry->target, &cancelledFlag());
        if (outcome.removed) {
            post(DSDeleteFileSuccess, entryInfo(entry->target, entry->size));
        } else {
            clean = false;
            opened.putBack();
            NSLog("Clean deletable folder failed: %@", outcome.error);
        }
    }
    return clean;
}

bool DeleteFolderOperation::cleanUndeletableFolder(const std::filesystem::path &folder) {
    if (isCancelled()) {
        post(DSCleanCanceled);
        return false;
    }
    if (!NvAuthorization::shareNvAuthorization().getAuthorizationRet()) {
        notifyDeleteFailed(folder);
        return false;
    }
    DeepEntries entries(folder);
    while (const auto entry = entries.next()) {
        if (isCancelled()) {
            post(DSCleanCanceled);
            return true;
        }
        OpenedEntry opened(entry->target);
        const RemovalOutcome outcome =
            NvAuthorization::removeWithoutRights(entry->target, &cancelledFlag());
        if (!outcome.removed && !removeItemAtPath(entry->target)) {
            opened.putBack();
            post(DSDeleteFileFailed, entryInfo(entry->target, entry->size));
            NSLog("Delete file failed: %@", entry->target.path());
        }
        // An entry that failed is told both ways.
        post(DSDeleteFileSuccess, entryInfo(entry->target, entry->size));
    }
    return true;
}

bool DeleteFolderOperation::removeItemAtPath(const RemovalTarget &target) {
    return NvAuthorization::removeItemAtPath(target);
}

void DeleteFolderOperation::notifyDeleteFailed(const std::filesystem::path &folder) {
    post(DSDeleteFileFailed, {{QStringLiteral("FilePath"), paths::toVariant(folder)}});
}

} // namespace brightsweep
