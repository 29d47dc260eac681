#pragma once

#include "core/Clock.h"
#include "diskusage/BigSizeFilesRows.h"
#include "diskusage/RingChart.h"
#include "diskusage/UsageTicks.h"
#include "foundation/CallQueue.h"
#include "removal/PadlockController.h"

#include <QObject>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

class DiskUsageAppController;
class ThreadWorker;
struct Notification;

/// One cell of the path control.
struct PathCell {
    std::string name;
    std::filesystem::path path;
};

/// What the hover label says.
struct PieChartBubble {
    QString titleTextStr;
    QString sizeTextStr;
    QPointF location; ///< of the mouse, on the screen
    bool isShowBubble = false;
};

/// The results of a scan as a ring chart: the list of what the current directory holds, the path
/// control, what is selected, and its removal.
///
/// Main thread, but for drawPieTree(), which runs on the scan's worker. Folders are listed on
/// workers of their own, and a later listing overtakes an earlier one. A view shows what this says
/// and calls what the user did; questions are signals that it answers by the named call.
class V4DiskUsageViewController : public QObject {
    Q_OBJECT

public:
    using Act = UsageRemoval::Act;

    /// What the page needs of the window around it.
    struct Surroundings {
        /// False keeps a removal from starting.
        std::function<bool()> licenceGate = [] { return true; };
        Clock *clock = nullptr; ///< else that of the event loop
    };

    explicit V4DiskUsageViewController(DiskUsageAppController &diskUsageAppCon,
                                       Surroundings surroundings, QObject *parent = nullptr);
    ~V4DiskUsageViewController() override;

    // -- What the view shows
    RingChart &openGLView() { return m_openGLView; }
    const RingChart &openGLView() const { return m_openGLView; }
    const BigSizeFilesRows &allShowListArr() const { return m_allShowListArr; }
    /// True while a folder is being listed.
    bool isListing() const { return m_isListing; }
    const std::filesystem::path &currentPath() const { return m_currentPath; }
    /// The row of an item or of the folder that it lies in; one too many where there is none.
    std::size_t rowOf(const std::filesystem::path &path) const;
    /// The directory as it is listed: name, size, path.
    const CleanFileInfo &rootItem() const { return m_rootItem; }
    /// What the rows' sizes are parts of, by the measure of the chart.
    std::uint64_t shownRootBytes() const;
    /// A directory is being scanned anew.
    bool isReadingAgain() const { return m_isReadingAgain; }
    /// Directories that the user has left out.
    std::size_t foldersLeftOut() const { return m_openGLView.leftOut(); }
    /// From the scanned folder to the current one.
    std::vector<PathCell> pathCells() const;
    const PieChartBubble &pieBubble() const { return m_pieBubble; }
    UsageTicks &selection() { return m_ticks; }
    PadlockController &padlock() { return m_padlock; }
    /// "remove.png" where something is selected, else "remove_d.png".
    const char *removeImage() const;
    /// "%d items are selected."; empty until something was.
    QString selectedText() const;
    /// What the volume of the scanned folder can hold; 0 where that is not known.
    std::uint64_t volumeBytes() const { return m_volumeBytes; }
    const UnreadFolders &unread() const { return m_unread; }
    /// The scanned folder was not there any more.
    bool hasGone() const { return m_hasGone; }

    // -- The scan, by the page that owns this
    /// On the main thread, before the worker starts.
    void scanBegins();
    /// On the worker.
    void drawPieTree(const std::filesystem::path &path);
    void stopScanTask() { m_openGLView.cancelTask(); }
    /// The scan hangs: what it still does is of no account, and another one may begin.
    void abandonScan();
    /// On the main thread, when the scan has ended.
    void scanEnded();
    /// Goes to the directory, if it is one.
    void updateOpenGLView(const std::filesystem::path &path);

    // -- What the user does
    void onChangePath(const std::filesystem::path &cell);
    /// The mark of a row.
    void colorButtonAction(std::size_t row);
    /// A click elsewhere in the row.
    void mouseDownClick(std::size_t row);
    /// Ticks or unticks the directory that is found in the chart.
    void toggleFound();
    /// The same of any directory of the chart.
    void togglePath(const std::filesystem::path &path);
    void changeSelectArr(bool state, const CleanFileInfo &fileInfo);
    void removeButtonAction();
    /// To showAlertView(): call it off, or go on.
    void canelButtonAction();
    void removeSelectFilesButtonAction(Act act);
    /// To canNotRemoveSome(): it has been closed.
    void alertEnded() { Q_EMIT unlockAnimation(false); }
    void unlockRigths(bool open) { m_padlock.unlockRigths(open); }
    void backButtonAction();
    /// Lists the current directory again.
    void refresh();
    /// Scans one directory of the chart anew, on a worker; the scanned folder by a scan of its own.
    void readAgain(const std::filesystem::path &folder);
    /// Calls that off: the chart stays as it is.
    void stopReading();
    /// Leaves a directory out of chart and list, and takes its tick back.
    void leaveOut(const std::filesystem::path &folder);
    void showLeftOut();
    /// The measure of all sizes that are shown, and the colours of the chart.
    void setView(const ChartView &view);

Q_SIGNALS:
    void listChanged();
    /// Rows show another mark.
    void marksChanged();
    void bubbleChanged();
    void selectionChanged();
    void refused(const std::filesystem::path &path, std::error_code reason);
    void showAlertView();
    void sheetEnded();
    void canNotRemoveSome();
    void unlockAnimation(bool running);
    void removalEnded();
    void scanFactsChanged();
    /// Something is being read again, or has been; or directories were left out.
    void foldersChanged();

private:
    struct Listing;
    struct Reading;

    void bind();
    void listOn(const std::filesystem::path &path, std::uint64_t size);
    void endListing(const std::shared_ptr<Listing> &listing);
    void leftViewContent(Listing &listing);
    bool isTicked(const std::filesystem::path &path) const;
    std::optional<CleanFileInfo> itemOf(const std::filesystem::path &path) const;
    void endReading(Reading &reading);
    void removeEnded();
    void delayTimer();
    void postRefresh(const std::filesystem::path &path);

    DiskUsageAppController &m_diskUsageAppCon;
    Surroundings m_surroundings;
    RingChart m_openGLView;
    UsageTicks m_ticks;
    PadlockController m_padlock;
    PieChartBubble m_pieBubble;
    BigSizeFilesRows m_allShowListArr;
    std::filesystem::path m_currentPath;
    CleanFileInfo m_rootItem;
    std::filesystem::path m_firstInPath;
    std::size_t m_pathNumber = 0; ///< cells, of a scan of the home folder
    bool m_isFirstIn = true;
    bool m_isRootPath = false;
    bool m_hasSelected = false;
    bool m_keepsTicks = false; ///< over the scan that is under way
    bool m_isListing = false;
    bool m_isReadingAgain = false;
    std::uint64_t m_generation = 0;
    std::vector<std::shared_ptr<Listing>> m_listings; // under way
    std::shared_ptr<Listing> m_scanListing;           // what the scan listed at its end
    std::vector<std::shared_ptr<Reading>> m_readings; // under way; the last one counts
    std::uint64_t m_volumeBytes = 0;
    UnreadFolders m_unread;
    bool m_hasGone = false;
    Clock::Handle m_alert = 0;
};

} // namespace brightsweep
