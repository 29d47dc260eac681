#pragma once

#include "core/Clock.h"
#include "diskusage/FSNode.h"
#include "diskusage/V4DiskUsageViewController.h"
#include "foundation/CallQueue.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace brightsweep {

/// One row of the start panel: a volume, or the home folder.
struct DiskUsageLeftCell {
    QString name;
    std::filesystem::path path;
    QString image; ///< the name of its icon
    std::uint64_t totalBytes = 0;
    std::uint64_t freeBytes = 0;
    bool isHome = false;
};

/// The disk usage page: it chooses a folder, scans it as a ring chart or as a list of what is
/// large, and shows what was found. The ring chart's results belong to `diskView`.
///
/// Main thread, but for the work of its worker. A view shows what this says, follows the signals
/// and calls the actions; one that the state does not allow is refused. Destroying it stops what
/// runs and waits for it, also for scans that were left behind.
///
/// | State | Panel | Leaves on |
/// |---|---|---|
/// | Start | disk_usage | a folder, chosen, dropped or clicked |
/// | Scanning, Stopping | QC_DiskUsage | the worker's end; after a stop to Start, at once |
/// | Results | DATA_DiskUsage | back, a new scan |
class DiskUsageAppController : public QObject {
    Q_OBJECT

public:
    enum class State { Start, Scanning, Stopping, Results };
    using Act = UsageRemoval::Act;
    using Surroundings = V4DiskUsageViewController::Surroundings;

    explicit DiskUsageAppController(QObject *parent = nullptr);
    explicit DiskUsageAppController(Surroundings surroundings, QObject *parent = nullptr);
    ~DiskUsageAppController() override;

    // -- What the view shows
    State state() const { return m_state; }
    /// 0 the start panel, 1 progress, 2 results.
    int view4DiskUsage() const { return m_view4DiskUsage; }
    /// True while no scan is under way that counts.
    bool bSearchFinished() const { return m_bSearchFinished; }
    /// What was being scanned by a scan that was stopped and still waits for its file system; empty
    /// where there is none. It keeps no other one from starting.
    std::filesystem::path leftBehind() const;
    /// The last scan was stopped.
    bool wasStopped() const { return m_bStopTask; }
    const std::filesystem::path &scanPathStr() const { return m_scanPathStr; }
    /// The mode of the scan whose results are shown: a ring chart, else a list.
    bool isChart() const { return m_isChart; }
    /// The mode of the next scan.
    bool displayMode() const;
    V4DiskUsageViewController &diskView() { return m_diskView; }
    std::int64_t rootDirLevels() const { return m_rootDirLevels; }
    std::int64_t levelsDone() const { return m_levelsDone; }
    /// The home folder and the volumes, as they are now.
    const std::vector<DiskUsageLeftCell> &leftCellArr() const { return m_leftCellArr; }
    /// What was scanned last, the latest first.
    std::vector<std::filesystem::path> lastFolders() const;

    // -- The list mode
    /// What is large, largest first; null before a scan. Changes between rowsWillChange() and
    /// rowsChanged().
    FSNode *_rootNode() { return m_rootNode.get(); }
    UsageTicks &listTicks() { return m_listTicks; }
    const UnreadFolders &listUnread() const { return m_listUnread; }
    /// A click on the box of an item.
    void setNodeTicked(FSNode &node, bool ticked);

    // -- What the user does
    void getLocalDiskInfo();
    void clickIconAction();
    /// A folder that was chosen, dropped or clicked.
    void viewDragAction(const std::filesystem::path &path);
    void changeDisplayMode(bool chart);
    void stopBtnClick();
    void clickBackBtn();
    void link2Preferences() { Q_EMIT displayPanel(QStringLiteral("preferences"), true); }
    /// Of the list mode, as the chart's of the same purpose.
    void removeBtnClick();
    void canelButtonAction() { Q_EMIT sheetEnded(); }
    void removeBtnClickAction(Act act) { m_listTicks.remove(act); }

Q_SIGNALS:
    void stateChanged();
    void displayPanel(const QString &identifier, bool animate);
    void askForFolder(const std::filesystem::path &start);
    /// A text with "OK" alone, by its key.
    void alert(const char *key);
    void progressChanged();
    void displayModeChanged();
    void cellsChanged();
    /// The list mode's tree is another one, or will be.
    void rowsWillChange();
    void rowsChanged();
    /// Boxes show another state.
    void boxesChanged();
    /// The list mode takes no tick of it.
    void refused(const std::filesystem::path &path, std::error_code reason);
    void showAlertView();
    void sheetEnded();
    void canNotRemoveSome();
    void removalEnded();

private:
    struct Scan;

    void bind();
    void begin(const std::filesystem::path &path);
    void browseFilesFinished(Scan &scan);
    void giveUp();
    void switch2QcAnimation(bool scanning);
    void show(State state, const char *panel);
    void getDirLevels4PieTree(const Scan *scan, std::int64_t levels);
    void finishADirLevel(const Scan *scan);
    void refDiskusageView(const std::filesystem::path &path);
    Result<RemovalTarget> listTarget(const std::filesystem::path &item);
    FSNode *nodeOf(const std::filesystem::path &path);
    void listRemovalEnded();

    Surroundings m_surroundings;
    V4DiskUsageViewController m_diskView;
    State m_state = State::Start;
    int m_view4DiskUsage = 0;
    std::filesystem::path m_scanPathStr;
    bool m_isChart = false;
    bool m_bStopTask = false;
    bool m_bSearchFinished = true;
    std::int64_t m_rootDirLevels = 0;
    std::int64_t m_levelsDone = 0;
    std::vector<DiskUsageLeftCell> m_leftCellArr;
    std::shared_ptr<Scan> m_scan;                    // the one that counts
    std::vector<std::shared_ptr<Scan>> m_leftBehind; // stopped, and not ended yet
    std::unique_ptr<FSNode> m_rootNode;
    std::mutex m_mutex; // guards the next two, which workers look at
    std::filesystem::path m_listPath;
    Result<RemovalRoot> m_listRoot = std::errc::no_such_file_or_directory;
    UsageTicks m_listTicks;
    UnreadFolders m_listUnread;
    Clock::Handle m_giveUp = 0;
    Clock::Handle m_alert = 0;
    CallQueue m_calls;
};

} // namespace brightsweep
