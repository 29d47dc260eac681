#include "cleaning/DeleteFolderOperation.h"

#include "cleaning/CleanNotifications.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/ItemSizes.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"
#include "removal/ItemRemoval.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"

#include <optional>
#include <string>
#include <utility>

namespace brightsweep {

namespace {

void post(QLatin1String name, const QVariantMap &userInfo = {}) {
    NotificationCenter::defaultCenter().post(name, nullptr, userInfo);
}

QVariantMap entryInfo(const RemovalTarget &entry, std::uint64_t size) {
    return {{QStringLiteral("FilePath"), paths::toVariant(entry.path())},
            {QStringLiteral("FileSize"), qulonglong(size)}};
}

// Everything below a folder, deep and in system order: an entry first, then what lies in it, if it
// is still a directory by then and was not left alone.
class DeepEntries {
public:
    DeepEntries(const RemovalRoot &folder, ItemRemoval &removal)
        : m_root(folder), m_removal(removal) {
        if (const auto directory = files().openRoot(folder))
            list(*directory, {});
    }

    struct Entry {
        RemovalTarget target;
        OpenItem item;
    };

    std::optional<Entry> next() {
        descendIntoLast();
        while (!m_waiting.empty()) {
            const RemovalTarget target{m_root, std::move(m_waiting.back())};
            m_waiting.pop_back();
            const auto item = m_removal.reach(target);
            if (!item)
                continue; // it has gone meanwhile
            if (item->attributes.type == EntryType::Directory && !item->refusal)
                m_lastDirectory = Entry{target, *item};
            return Entry{target, *item};
        }
        return {};
    }
    /// The entry given last is not entered.
    void leaveAlone() { m_lastDirectory.reset(); }

private:
    static FileOperations &files() { return *Platform::current().files; }

    void descendIntoLast() {
        const auto last = std::exchange(m_lastDirectory, std::nullopt);
        if (!last)
            return;
        const auto directory =
            files().openDirectoryAt(last->item.folder->directory(), last->item.name.c_str());
        const bool isSame = directory && directory->device == last->item.attributes.device &&
                            directory->inode == last->item.attributes.inode;
        if (isSame)
            list(*directory, last->target.relative.native());
    }

    void list(const OpenDirectory &directory, const std::string &relative) {
        const MountsBelow mounts = MountsBelow::of(files(), directory);
        std::vector<std::string> found;
        DirectoryBlock block;
        block.setMountPoints(&mounts.direct());
        do {
            if (files().readBlock(directory, block, WantedAttributes::None))
                break;
            for (const DirectoryEntry &entry : block.entries()) {
                if (relative.empty() && FolderUtilities::isReserved(m_root, entry.nameView()))
                    continue;
                found.push_back(relative.empty() ? std::string(entry.nameView())
                                                 : relative + "/" + entry.name);
            }
        } while (!block.atEnd());
        m_waiting.insert(m_waiting.end(), std::make_move_iterator(found.rbegin()),
                         std::make_move_iterator(found.rend()));
    }

    const RemovalRoot m_root;
    ItemRemoval &m_removal;
    std::vector<std::string> m_waiting; // the next one last
    std::optional<Entry> m_lastDirectory;
};

StayReason reasonOf(std::error_code error, bool hadRights) {
    if (error == std::errc::read_only_file_system)
        return StayReason::ReadOnly;
    if (error == std::errc::device_or_resource_busy)
        return StayReason::InUse;
    return isForWantOfPermission(error) && !hadRights ? StayReason::NeedsRights : StayReason::Other;
}

void logStayedMode(const RemovalOutcome &outcome) {
    if (outcome.modeStayed)
        NSLog("Set Attribute faile.");
}

} // namespace

DeleteFolderOperation::DeleteFolderOperation(std::vector<RemovalRoot> path,
                                             std::shared_ptr<RemovalRun> run)
    : folderPathArr(std::move(path)), m_run(std::move(run)) {}

DeleteFolderOperation::~DeleteFolderOperation() = default;

bool DeleteFolderOperation::isStopped() const {
    return isCancelled() || m_run->stopFlag();
}

CleanTally DeleteFolderOperation::tally() const {
    const std::lock_guard lock(m_mutex);
    return m_tally;
}

// Items are measured right before the first attempt: they may have grown or gone since the scan.
void DeleteFolderOperation::meet(const RemovalTarget &target, const OpenItem &item) {
    if (target.relative.has_parent_path())
        return;
    const auto [place, isNew] = m_items.try_emplace(target.relative.native());
    if (isNew)
        place->second.bytes = sizeOfTarget(item, &m_run->stopFlag()).value_or(0);
}

void DeleteFolderOperation::went(const RemovalTarget &target) {
    const auto item = m_items.extract(target.relative.native());
    if (!item)
        return;
    const std::lock_guard lock(m_mutex);
    ++m_tally.wentItems;
    m_tally.wentBytes = addSaturating(m_tally.wentBytes, item.mapped().bytes);
}

void DeleteFolderOperation::stays(const RemovalTarget &target, std::error_code error) {
    m_items[target.relative.begin()->native()].error = error;
}

// Takes the items that are left of a folder into account.
void DeleteFolderOperation::settle(const RemovalRoot &folder) {
    ItemRemoval removal;
    for (const auto &[name, left] : std::exchange(m_items, {})) {
        const auto item = removal.reach({folder, name});
        const bool hasGone = !item && item.error() == std::errc::no_such_file_or_directory;
        const auto after =
            !item ? std::uint64_t(0) : sizeOfTarget(*item, &m_run->stopFlag()).value_or(left.bytes);
        const std::lock_guard lock(m_mutex);
        if (hasGone)
            ++m_tally.wentItems;
        if ((item || hasGone) && left.bytes > after)
            m_tally.wentBytes = addSaturating(m_tally.wentBytes, left.bytes - after);
        if (!hasGone && left.error && left.error != std::errc::operation_canceled)
            ++m_tally.stayed[std::size_t(reasonOf(left.error, m_hasRights))];
    }
}

bool DeleteFolderOperation::cancelled(const RemovalRoot &folder) {
    if (!isStopped())
        return false;
    settle(folder);
    post(DSCleanCanceled);
    return true;
}

// Of a folder that nothing may be taken from every item stays.
void DeleteFolderOperation::keepAll(const RemovalRoot &folder) {
    ItemRemoval removal(&m_run->stopFlag());
    DeepEntries entries(folder, removal);
    while (const auto entry = entries.next()) {
        entries.leaveAlone();
        if (m_items.try_emplace(entry->target.relative.native()).second)
            stays(entry->target, std::make_error_code(std::errc::permission_denied));
        if (isStopped())
            break;
    }
}

void DeleteFolderOperation::main() {
    const RemovalRun::Busy busy(*m_run);
    post(DSBeginFastClean);
    if (isStopped())
        return post(DSCleanCanceled);
    for (const RemovalRoot &folder : folderPathArr) {
        if (isStopped())
            return post(DSCleanCanceled);
        const TrashBatch batch;
        ItemRemoval removal;
        const auto place = NvAuthorization::targetOf(folder.path);
        const auto item = place ? removal.reach(*place) : Result<OpenItem>(place.error());
        const bool deletable = item && Platform::current().files->isDeletable(*item);
        m_hasRights = NvAuthorization::shareNvAuthorization().getAuthorizationRet().has_value();
        if (!deletable || !cleanDeletableFolder(folder))
            cleanUndeletableFolder(folder);
        settle(folder);
    }
    post(DSFastCleanFinish);
}

bool DeleteFolderOperation::cleanDeletableFolder(const RemovalRoot &folder) {
    if (cancelled(folder))
        return false;
    bool clean = true;
    ItemRemoval removal(&m_run->stopFlag());
    DeepEntries entries(folder, removal);
    while (const auto entry = entries.next()) {
        if (cancelled(folder))
            return false;
        meet(entry->target, entry->item);
        const RemovalOutcome outcome = removal.removeWithoutRights(entry->target, entry->item);
        logStayedMode(outcome);
        if (outcome.removed) {
            entries.leaveAlone();
            went(entry->target);
            post(DSDeleteFileSuccess, entryInfo(entry->target, entry->item.attributes.size));
            continue;
        }
        clean = false;
        stays(entry->target, outcome.error);
        if (outcome.error == std::errc::device_or_resource_busy)
            entries.leaveAlone();
        NSLog("Clean deletable folder failed: %@", outcome.error);
    }
    return clean;
}

bool DeleteFolderOperation::cleanUndeletableFolder(const RemovalRoot &folder) {
    if (cancelled(folder))
        return false;
    if (!NvAuthorization::shareNvAuthorization().getAuthorizationRet()) {
        if (m_items.empty())
            keepAll(folder);
        notifyDeleteFailed(folder.path);
        return false;
    }
    ItemRemoval removal(&m_run->stopFlag());
    DeepEntries entries(folder, removal);
    std::vector<DeepEntries::Entry> waiting;
    const ItemRemoval::Told told = [&](std::size_t index, const RemovalOutcome &outcome) {
        const DeepEntries::Entry &entry = waiting[index];
        const QVariantMap info = entryInfo(entry.target, entry.item.attributes.size);
        logStayedMode(outcome);
        if (outcome.removed)
            went(entry.target);
        if (!outcome.removed) {
            stays(entry.target, outcome.error);
            post(DSDeleteFileFailed, info);
            NSLog("Delete file failed: %@", entry.target.path());
        }
        const bool isLast = index + 1 == waiting.size(); // others may be told of with it
        if (isLast && (outcome.removed || outcome.error == std::errc::device_or_resource_busy))
            entries.leaveAlone();
        // An entry that failed is told both ways.
        post(DSDeleteFileSuccess, info);
    };
    while (const auto entry = entries.next()) {
        if (isStopped()) {
            removal.finish(told);
            cancelled(folder);
            return true;
        }
        waiting.push_back(*entry);
        meet(entry->target, entry->item);
        removal.removeInTurn(waiting.size() - 1, entry->target, entry->item, told);
        // Whether a directory is entered depends on how it went.
        if (entry->item.attributes.type == EntryType::Directory)
            removal.finish(told);
        if (!removal.isWaiting())
            waiting.clear();
    }
    removal.finish(told);
    return true;
}

bool DeleteFolderOperation::removeItemAtPath(const RemovalTarget &target) {
    return NvAuthorization::removeItemAtPath(target);
}

void DeleteFolderOperation::notifyDeleteFailed(const std::filesystem::path &folder) {
    post(DSDeleteFileFailed, {{QStringLiteral("FilePath"), paths::toVariant(folder)}});
}

} // namespace brightsweep
