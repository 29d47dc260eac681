#pragma once

#include "results/CleanFileInfo.h"

#include <QObject>

#include <atomic>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brightsweep {

class RemovalRun;
class ThreadWorker;

/// Scans and cleans one category: a row for each direct child of its folders.
///
/// Belongs to the thread that made it, whose event loop brings the two end calls. The work itself
/// runs on a ThreadWorker; filesSizeChanged and scanFilesChanged are emitted there, in order, while
/// the two finish signals come on the owner's thread. Rows may be read and ticked from any thread.
/// Nothing is reported as an error while it happens: what cannot be read counts 0, what cannot be
/// removed stays and stays ticked, with its reason.
class ScanViewController : public QObject {
    Q_OBJECT

public:
    explicit ScanViewController(QObject *parent = nullptr);
    /// Stops what runs and waits for it.
    ~ScanViewController() override;

    // -- Scanning

    /// Starts a run over the folders. One at a time.
    void beginScanTask(std::vector<RemovalRoot> folders);
    /// Marks the worker as cancelled, which does not end the run; the stop flag does.
    void cancelScanTask();
    /// Empties the rows.
    void refreshTableView();
    /// Ends a running scan after the item under way, whose row does not come. It is never cleared:
    /// every later scan of this object ends at once, without rows.
    void stopScan() { bIsStopTask = true; }

    // -- Cleaning

    /// Rebuilds the list of the ticked rows, in row order.
    void getSelectPath(const QString &reason);
    /// Starts to remove the ticked rows, as part of the run. One at a time, and not during a scan.
    void beginCleanTask(std::shared_ptr<RemovalRun> run);
    /// Asks the whole run to end: at the item under way, which is then not told as removed.
    void cancelFastClean();

    // -- Results

    std::vector<CleanFileInfo> scanFiles() const;
    /// The same, or during a scan the rows that have been found so far.
    std::vector<CleanFileInfo> foundRows() const;
    std::size_t rowCount() const;
    void setSelected(std::size_t row, bool selected);
    /// The row of that exact path; false where there is none.
    bool setSelected(const std::string &path, bool selected);
    void selectAll(bool selected);

    struct Counts {
        std::size_t ticked = 0;
        std::size_t rows = 0;
        std::uint64_t shownBytes = 0; ///< the ticked rows' sizes as their words read, added up
    };
    Counts counts() const;
    std::optional<CleanFileInfo> rowAt(std::size_t row) const;
    /// The place of the row of that exact path.
    std::optional<std::size_t> rowOf(const std::string &path) const;
    /// Every row in order, without copies. The visitor calls nothing of this object.
    using RowVisitor = std::function<void(const CleanFileInfo &)>;
    void visitRows(const RowVisitor &visit) const;
    /// Puts the rows into another order; equal ones stay as they are.
    using RowOrder = std::function<bool(const CleanFileInfo &, const CleanFileInfo &)>;
    void sortRows(const RowOrder &before);
    /// Another number whenever rows came, went or changed places; ticks do not count.
    std::uint64_t generation() const { return m_generation; }
    /// The rows that the last clean removed, each with the size that it had then.
    std::vector<CleanFileInfo> removedFiles() const;
    /// The running total in words.
    QString filesSize() const;
    /// The same as a number, which the words round.
    std::uint64_t totalSize() const { return m_totalSize; }
    /// Bytes that the last clean removed.
    std::uint64_t cleanSize() const { return iCleanSize; }
    /// What kept the last run from its end, such as want of memory; null where nothing did. From
    /// its finish signal on, on the owner's thread.
    std::exception_ptr failure() const { return m_failure; }

Q_SIGNALS:
    void filesSizeChanged(const QString &filesSize);
    void scanFilesChanged();
    void scanFinishedChanged(bool scanFinished);
    void cleanFinishedChanged(bool cleanFinished);

private:
    void scanFolder(std::nullptr_t argument, ThreadWorker *worker);
    std::uint64_t scanDirectory(const RemovalRoot &directory, std::uint64_t totalSize,
                                std::vector<CleanFileInfo> &withArray);
    void scanTaskFinished();
    void fastClean(std::nullptr_t argument, ThreadWorker *worker);
    void rowsChanged();
    std::optional<std::size_t> findRow(const std::string &path) const;
    void hasGone(CleanFileInfo &row, std::uint64_t bytes);
    void cleanFinished();
    void setFilesSize(const QString &text);

    std::vector<RemovalRoot> folderPaths;
    std::shared_ptr<ThreadWorker> twScan;
    std::shared_ptr<ThreadWorker> twFastClean;
    std::shared_ptr<RemovalRun> m_run; ///< while a clean is under way
    std::exception_ptr m_failure;
    std::atomic<bool> bIsStopTask{false};
    std::atomic<std::uint64_t> iCleanSize{0};
    std::atomic<std::uint64_t> m_totalSize{0};
    std::atomic<std::uint64_t> m_generation{0};

    mutable std::mutex m_mutex; // guards what follows
    std::vector<CleanFileInfo> m_scanFiles;
    std::vector<CleanFileInfo> m_foundRows;                                // of the scan under way
    mutable std::unordered_map<std::string_view, std::size_t> m_rowOfPath; // made when first needed
    std::vector<CleanFileInfo> selDelFiles;
    std::vector<CleanFileInfo> m_removedFiles;
    QString m_filesSize;
};

} // namespace brightsweep
