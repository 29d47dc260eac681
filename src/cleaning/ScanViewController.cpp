#include "cleaning/ScanViewController.h"

#include "cleaning/CleanNotifications.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/ItemSizes.h"
#include "core/Texts.h"
#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "removal/ItemRemoval.h"
#include "removal/RemovalReason.h"
#include "removal/RemovalRun.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace brightsweep {

namespace {

// The entries of a folder in system order, without those that are its owner's.
bool listItems(const OpenDirectory &folder, const RemovalRoot &root, const MountsBelow &mounts,
               std::vector<SizedItem> &items, const std::atomic<bool> &stop) {
    DirectoryBlock block;
    block.setMountPoints(&mounts.direct());
    do {
        if (stop || Platform::current().files->readBlock(folder, block, WantedAttributes::All))
            return !stop;
        for (const DirectoryEntry &entry : block.entries()) {
            if (FolderUtilities::isReserved(root, entry.nameView()))
                continue;
            SizedItem item{std::string(entry.nameView()), entry.type};
            if (entry.hasAttributes) {
                item.size = entry.type == EntryType::Directory ? 0 : entry.size;
                item.modified = entry.modified;
            }
            items.push_back(std::move(item));
        }
    } while (!block.atEnd());
    return true;
}

QString failureText(const RemovalOutcome &outcome) {
    QString text = localizedText(QString::fromStdString(outcome.error.message()));
    const auto words = QByteArrayView(outcome.words).trimmed();
    if (!words.isEmpty())
        text += QStringLiteral(" (") +
                paths::display(std::string_view(words.data(), std::size_t(words.size()))) +
                QLatin1Char(')');
    return text;
}

} // namespace

ScanViewController::ScanViewController(QObject *parent) : QObject(parent) {}

ScanViewController::~ScanViewController() {
    bIsStopTask = true;
    if (m_run)
        m_run->stop();
    for (const auto &worker : {twScan, twFastClean}) {
        if (worker) {
            worker->markAsCancelled();
            worker->abandon();
        }
    }
}

void ScanViewController::beginScanTask(std::vector<RemovalRoot> folders) {
    refreshTableView();
    folderPaths = std::move(folders);
    twScan = ThreadWorker::workOn(this, &ScanViewController::scanFolder, nullptr,
                                  &ScanViewController::scanTaskFinished);
}

void ScanViewController::scanFolder(std::nullptr_t, ThreadWorker *) {
    std::uint64_t total = 0;
    for (const RemovalRoot &folder : folderPaths) {
        if (bIsStopTask)
            break;
        NSLog("Scan folder: %@", folder.path);
        total = scanDirectory(folder, total, m_foundRows);
    }
    {
        const std::lock_guard lock(m_mutex);
        m_scanFiles = std::exchange(m_foundRows, {});
        rowsChanged();
    }
    Q_EMIT scanFilesChanged();
}

std::uint64_t ScanViewController::scanDirectory(const RemovalRoot &directory,
                                                std::uint64_t totalSize,
                                                std::vector<CleanFileInfo> &withArray) {
    FileOperations &files = *Platform::current().files;
    auto open = files.openRoot(directory);
    if (!open)
        return totalSize;
    const auto folder = std::make_shared<const OpenDirectory>(std::move(*open));
    const auto root = std::make_shared<const RemovalRoot>(directory);
    const MountsBelow mounts = MountsBelow::of(files, *folder);

    std::vector<SizedItem> items;
    if (!listItems(*folder, directory, mounts, items, bIsStopTask))
        return totalSize;
    sizeItems(folder, mounts, items, &bIsStopTask, [&](const SizedItem &item) {
        const std::filesystem::path path = paths::join(directory.path, item.name);
        {
            const std::lock_guard lock(m_mutex);
            CleanFileInfo &row =
                withArray.emplace_back(paths::text(path.native()), item.name, path,
                                       UtilityFunction::convertVolSpace(item.size), item.size);
            row.root = root;
            row.modified = item.modified;
            row.isDirectory = item.type == EntryType::Directory;
            // Known before any attempt.
            if (item.holdsVolume) {
                const std::error_code error = RemovalError::HoldsVolume;
                row.failure = localizedText(QString::fromStdString(error.message()));
                row.reasonKey = reasonKey(error);
            }
        }
        totalSize = addSaturating(totalSize, item.size);
        m_totalSize = totalSize;
        setFilesSize(UtilityFunction::convertVolSpace(totalSize));
    });
    return totalSize;
}

void ScanViewController::scanTaskFinished() {
    NotificationCenter::defaultCenter().post(cleanShowSelectNumInBottomNotification);
    if (twScan)
        m_failure = twScan->failure();
    twScan.reset();
    Q_EMIT scanFinishedChanged(true);
}

void ScanViewController::cancelScanTask() {
    if (twScan)
        twScan->markAsCancelled();
}

void ScanViewController::refreshTableView() {
    {
        const std::lock_guard lock(m_mutex);
        m_scanFiles.clear();
        m_filesSize.clear();
        rowsChanged();
    }
    m_totalSize = 0;
    Q_EMIT scanFilesChanged();
}

// A non-empty reason, as at the start of a clean, would also turn off the list's header check box,
// which is the view's.
void ScanViewController::getSelectPath(const QString &) {
    const std::lock_guard lock(m_mutex);
    selDelFiles.clear();
    std::copy_if(m_scanFiles.begin(), m_scanFiles.end(), std::back_inserter(selDelFiles),
                 [](const CleanFileInfo &row) { return row.bIsSelected != 0; });
}

void ScanViewController::beginCleanTask(std::shared_ptr<RemovalRun> run) {
    iCleanSize = 0;
    m_run = std::move(run);
    twFastClean = ThreadWorker::workOn(this, &ScanViewController::fastClean, nullptr,
                                       &ScanViewController::cleanFinished);
}

void ScanViewController::fastClean(std::nullptr_t, ThreadWorker *) {
    const RemovalRun::Busy busy(*m_run);
    const std::atomic<bool> &stop = m_run->stopFlag();
    getSelectPath(QStringLiteral("clean"));
    std::vector<CleanFileInfo> selected;
    {
        const std::lock_guard lock(m_mutex);
        selected.swap(selDelFiles);
        m_removedFiles.clear();
    }
    // Each item's bytes, measured afresh: what the row says may have grown or gone since the scan.
    std::vector<std::uint64_t> measured(selected.size());
    std::vector<bool> gone(selected.size());
    ItemRemoval removal(&stop);
    const ItemRemoval::Told told = [&](std::size_t index, const RemovalOutcome &outcome) {
        CleanFileInfo &row = selected[index];
        gone[index] = outcome.removed || outcome.error == std::errc::no_such_file_or_directory;
        if (gone[index]) {
            hasGone(row, measured[index]);
        } else {
            row.failure = failureText(outcome);
            row.reasonKey = reasonKey(outcome);
        }
    };
    {
        const TrashBatch batch;
        for (std::size_t i = 0; i < selected.size() && !stop; ++i) {
            const RemovalTarget target = selected[i].target();
            const auto item = removal.reach(target);
            if (item && !item->refusal) {
                const auto bytes = sizeOfTarget(*item, &stop);
                if (!bytes) {
                    told(i, {false,
                             std::make_error_code(std::errc::operation_canceled),
                             {},
                             false,
                             false});
                    break;
                }
                measured[i] = *bytes;
            }
            removal.removeInTurn(i, target, item, told);
        }
        removal.finish(told);
    }
    std::unordered_map<std::string_view, std::size_t> indexOf;
    for (std::size_t i = 0; i < selected.size(); ++i)
        indexOf.emplace(selected[i].path.native(), i);
    {
        const std::lock_guard lock(m_mutex);
        const auto place = [&](const CleanFileInfo &row) {
            const auto found = indexOf.find(row.path.native());
            return found == indexOf.end() ? selected.size() : found->second;
        };
        std::erase_if(m_scanFiles, [&](const CleanFileInfo &row) {
            const std::size_t index = place(row);
            return index < selected.size() && gone[index];
        });
        rowsChanged();
        for (CleanFileInfo &row : m_scanFiles) {
            if (const std::size_t index = place(row); index < selected.size()) {
                row.failure = selected[index].failure;
                row.reasonKey = selected[index].reasonKey;
            }
        }
    }
    Q_EMIT scanFilesChanged();
}

void ScanViewController::hasGone(CleanFileInfo &row, std::uint64_t bytes) {
    const std::uint64_t total = UtilityFunction::getVolSpaceFromString(filesSize());
    row.fileSizeNum = bytes;
    row.size = UtilityFunction::convertVolSpace(bytes);
    {
        const std::lock_guard lock(m_mutex);
        m_removedFiles.push_back(row);
    }
    iCleanSize = addSaturating(iCleanSize, bytes);
    m_totalSize = m_totalSize > bytes ? m_totalSize - bytes : 0;
    setFilesSize(UtilityFunction::convertVolSpace(total > bytes ? total - bytes : 0));
}

void ScanViewController::cleanFinished() {
    if (twFastClean)
        m_failure = twFastClean->failure();
    twFastClean.reset();
    m_run.reset();
    Q_EMIT cleanFinishedChanged(true);
}

void ScanViewController::cancelFastClean() {
    if (m_run)
        m_run->stop();
    if (twFastClean)
        twFastClean->markAsCancelled();
}

std::vector<CleanFileInfo> ScanViewController::scanFiles() const {
    const std::lock_guard lock(m_mutex);
    return m_scanFiles;
}

std::vector<CleanFileInfo> ScanViewController::foundRows() const {
    const std::lock_guard lock(m_mutex);
    return m_foundRows.empty() ? m_scanFiles : m_foundRows;
}

std::size_t ScanViewController::rowCount() const {
    const std::lock_guard lock(m_mutex);
    return m_scanFiles.size();
}

void ScanViewController::setSelected(std::size_t row, bool selected) {
    const std::lock_guard lock(m_mutex);
    if (row < m_scanFiles.size())
        m_scanFiles[row].bIsSelected = selected ? 1 : 0;
    else
        NSLog("There is no row %llu to select", row);
}

// With the lock held.
std::optional<std::size_t> ScanViewController::findRow(const std::string &path) const {
    if (m_rowOfPath.empty()) {
        m_rowOfPath.reserve(m_scanFiles.size());
        for (std::size_t row = 0; row < m_scanFiles.size(); ++row)
            m_rowOfPath.emplace(m_scanFiles[row].path.native(), row);
    }
    const auto found = m_rowOfPath.find(path);
    return found == m_rowOfPath.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::size_t> ScanViewController::rowOf(const std::string &path) const {
    const std::lock_guard lock(m_mutex);
    return findRow(path);
}

bool ScanViewController::setSelected(const std::string &path, bool selected) {
    const std::lock_guard lock(m_mutex);
    const auto row = findRow(path);
    if (row)
        m_scanFiles[*row].bIsSelected = selected ? 1 : 0;
    return row.has_value();
}

void ScanViewController::sortRows(const RowOrder &before) {
    {
        const std::lock_guard lock(m_mutex);
        std::stable_sort(m_scanFiles.begin(), m_scanFiles.end(), before);
        rowsChanged();
    }
    Q_EMIT scanFilesChanged();
}

ScanViewController::Counts ScanViewController::counts() const {
    const std::lock_guard lock(m_mutex);
    Counts counts;
    counts.rows = m_scanFiles.size();
    for (const CleanFileInfo &row : m_scanFiles) {
        if (row.bIsSelected == 0)
            continue;
        ++counts.ticked;
        counts.shownBytes = addSaturating(counts.shownBytes, row.shownSize);
    }
    return counts;
}

void ScanViewController::visitRows(const RowVisitor &visit) const {
    const std::lock_guard lock(m_mutex);
    for (const CleanFileInfo &row : m_scanFiles)
        visit(row);
}

std::optional<CleanFileInfo> ScanViewController::rowAt(std::size_t row) const {
    const std::lock_guard lock(m_mutex);
    return row < m_scanFiles.size() ? std::optional(m_scanFiles[row]) : std::nullopt;
}

// With the lock held.
void ScanViewController::rowsChanged() {
    m_rowOfPath.clear();
    ++m_generation;
}

void ScanViewController::selectAll(bool selected) {
    const std::lock_guard lock(m_mutex);
    for (CleanFileInfo &row : m_scanFiles)
        row.bIsSelected = selected ? 1 : 0;
}

std::vector<CleanFileInfo> ScanViewController::removedFiles() const {
    const std::lock_guard lock(m_mutex);
    return m_removedFiles;
}

QString ScanViewController::filesSize() const {
    const std::lock_guard lock(m_mutex);
    return m_filesSize;
}

void ScanViewController::setFilesSize(const QString &text) {
    {
        const std::lock_guard lock(m_mutex);
        m_filesSize = text;
    }
    Q_EMIT filesSizeChanged(text);
}

} // namespace brightsweep
