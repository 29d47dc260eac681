#pragma once

#include "cleaning/CleanOutlineController.h"
#include "cleaning/CleanPageControls.h"
#include "cleaning/CleanPageTexts.h"
#include "cleaning/CleanSelection.h"
#include "core/Clock.h"
#include "removal/PadlockController.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brightsweep {

class CategoryListModel;
class CustomTableView;
class NewLeftCustomTableView;
class RemovalRun;
class ScanViewController;
class V3MainListView;
struct Notification;

/// The clean page without its screen: it runs the six scanners together, keeps the results and what
/// is ticked of them, asks what has to be asked, and cleans.
///
/// Main thread. A view shows controls(), parts(), heading(), the rows and the models, follows the
/// signals, and calls the actions; an action that its state does not allow is refused and logged,
/// so that a late click does no harm. Questions are signals that the view answers by one of the
/// named actions, at any time. Destroying it stops what runs and waits for it.
///
/// | State | Panel | Leaves on |
/// |---|---|---|
/// | Idle | Scan | clickScanBtn() |
/// | Scanning, Stopping | QC_FastClean | the last scanner's end |
/// | Results | DATA_FastClean | cleanButtonActionInfo(), cleanButtonAction(), clickBackBtn() |
/// | Warning | DATA_FastClean | the answer |
/// | Cleaning | DATA_FastClean | the last scanner's end |
class NewMainViewController : public QObject {
    Q_OBJECT

public:
    enum class State { Idle, Scanning, Stopping, Results, Warning, Cleaning };
    /// What the page needs of the window around it.
    struct Surroundings {
        /// The toolbar's selected item.
        std::function<QString()> selectedItem = [] { return QStringLiteral("Scan"); };
        /// False keeps a clean from starting.
        std::function<bool()> licenceGate = [] { return true; };
        Clock *clock = nullptr; ///< else that of the event loop
    };

    explicit NewMainViewController(QObject *parent = nullptr);
    NewMainViewController(Surroundings surroundings, QObject *parent = nullptr);
    ~NewMainViewController() override;

    // -- What the view shows
    State state() const { return m_state; }
    /// 0 the start panel, 1 progress, 2 results.
    int view4FastClean() const { return m_view4FastClean; }
    const CleanPageControls &controls() const { return m_controls; }
    const CleanPageParts &parts() const { return m_parts; }
    /// For the row of the left list; of the overview with what the last clean recovered.
    CleanHeading heading() const;
    /// The overview's description without the last clean.
    CleanStyledText capacity() const;
    /// What the last clean recovered, for the start panel; empty before the first.
    CleanStyledText recovered() const;
    CleanOutcome outcome() const { return m_outcome; }
    /// True once a scan was stopped: no later one of this process finds anything.
    bool needsRestart() const { return m_needsRestart; }
    /// A quick clean has removed something since the scan that is on show, or under way.
    bool isOutdated() const { return m_isOutdated; }
    /// What the user has to know whatever else is shown: that a restart is needed, or that the
    /// settings do not tell what is chosen, so that nothing comes up ticked. Most often empty.
    QString notice() const;
    V3MainListView &row(unsigned category) { return *allNewViewArr[category]; }
    CategoryListModel &list(unsigned category) { return *m_lists[category]; }
    CustomTableView &customTableView() { return *m_customTableView; }
    NewLeftCustomTableView &newCustomTableView() { return *m_newCustomTableView; }
    CleanOutlineController &outline() { return *m_outline; }
    PadlockController &padlock() { return m_padlock; }
    int selectRowNum() const { return m_selectRowNum; }
    bool isCleanFinshed() const { return m_state != State::Warning && m_state != State::Cleaning; }
    /// What is ticked of one category.
    CleanSelection::Counts selected(unsigned category) const {
        return m_selection->counts(category);
    }
    std::size_t selectCount2Clean() const { return m_selectCount2Clean; }
    std::uint64_t allSelectTotalSize() const { return m_allSelectTotalSize; }
    /// The last clean of all, as the page's words add up.
    std::uint64_t showCleanedSize() const { return m_showCleanedSize.value_or(0); }

    // -- What the user does
    void clickScanBtn();
    void clickStopScanBtn();
    void pausButtonAction();
    void clickBackBtn();
    /// Cleans what is ticked, in all categories.
    void cleanButtonActionInfo();
    /// Cleans the category of the row; in the overview all.
    void cleanButtonAction();
    void unlockRigths(bool open) { m_padlock.unlockRigths(open); }
    /// A row of the left list. Without effect during a clean.
    void shouldSelectRowWithArray(int row);
    void restart();

    // -- Answers
    /// To askDownloads(): clean everything.
    void alertWindowYesButtonAction();
    /// Clean the rest and keep the downloads, which are unticked.
    void alertWindowNoButtonAction();
    /// Esc, or the sheet was closed: nothing is unticked or removed.
    void alertWindowCalledOff();
    /// Opens the downloads in the file manager, with the question still up.
    void openViewNewLink();
    /// To askDownloadsAlone(): 1 goes on, anything else calls it off.
    void downloadAlertEnded(int code);
    /// To showAlertForPrivilegesToClean(): it has been closed.
    void limitAlertEnded() { Q_EMIT lockAnimation(false); }

Q_SIGNALS:
    void controlsChanged();
    void partsChanged();
    void headingChanged();
    void stateChanged(State state);
    /// A panel of the page is to be shown: "Scan", "QC_FastClean" or "DATA_FastClean".
    void displayPanel(const QString &identifier, bool animate);
    /// The texts are warningTitle and warningText; answers Yes, No, or called off.
    void askDownloads();
    /// The same for the downloads alone; answers "OK" and "Cancel".
    void askDownloadsAlone();
    /// The text is privilegesText; "OK" is the only answer.
    void showAlertForPrivilegesToClean();
    /// Another removal is under way, and nothing was removed; "OK" is the only answer.
    void removalRefused(const QString &words);
    void lockAnimation(bool running);
    /// The bar of the progress panel, which counts to six.
    void baseNumberSetPrograss(int percent);
    void prograssShowDependChangeSize(int amount);
    /// Something flies to the trash: a path to look its icon up by, or an image's name.
    void flyToTrash(const QVariant &icon, const QModelIndex &from);
    void restartRequested();

private:
    /// The scan or clean under way, else the last one.
    struct Run {
        enum class Kind { None, Scan, CleanAll, CleanOne };
        Kind kind = Kind::None;
        std::vector<unsigned> scanObjsArr; ///< its categories, by index
        std::size_t finishScanCount = 0;   ///< how many of them have not ended
        QStringList sizeArr;               ///< the rows' sizes before a clean, by category
        QString freeBefore;                ///< the free space before a clean, in words
    };

    using Handler = void (NewMainViewController::*)(const Notification &);
    void observe(QLatin1String name, Handler handler);
    void callBackCheckBoxClick(const Notification &notification);
    void shouldSelectRow(const Notification &notification);
    void updateSelectNumber(const Notification &notification);
    void cleanShowSelectNumInBottom(const Notification &notification);
    void scanItemGetScanBtn(const Notification &notification);
    void GetFreeTotleArr(const Notification &notification);
    void refNewTableViewSizeLabel(const Notification &notification);
    void quickCleanEnded(const Notification &notification);

    void v3MainViewInfo();
    void setState(State state);
    bool refuseUnless(bool allowed, const char *action) const;
    void switch2QcAnimation(bool scanning);
    void scanButtonAction();
    void scanFinished();
    void endScan();

    void setCleanButtonState();
    void cleanShowSelectNumCommAction();
    void refreshCounters();
    void setCleanButtonEnabled(bool enabled);
    void changeStateTextFeild(const CleanStyledText &text);

    void allCleanButtonActionInfo();
    std::shared_ptr<RemovalRun> beginRun();
    void startClean(unsigned categories, bool allRunDown);
    void oneScanButtonAction();
    void beginClean(Run::Kind kind);
    void startCategory(unsigned index, const std::shared_ptr<RemovalRun> &run);
    void enterCleaning();
    void callOff();
    void cleanFinished();
    void endClean();
    void endOneClean();
    void setTicksEnabled(bool enabled);
    void leaveCleaning();
    std::uint64_t freedOf(unsigned index, const QString &before);
    std::size_t failuresOf(unsigned index) const;
    void recordHistory();
    void readHistory();
    QString postStartupVolume();

    const Surroundings m_surroundings;
    Clock &m_clock;
    Clock::Handle m_alertCall = 0;
    State m_state = State::Idle;
    CleanPageControls m_controls;
    CleanPageParts m_parts;
    CleanOutcome m_outcome = CleanOutcome::None;
    Run m_run;
    PadlockController m_padlock;

    std::vector<std::unique_ptr<V3MainListView>> allNewViewArr; // outlive the scanners
    std::vector<std::unique_ptr<ScanViewController>> tableControllers;
    std::vector<std::unique_ptr<CategoryListModel>> m_lists;
    std::unique_ptr<CleanSelection> m_selection;
    std::unique_ptr<CleanOutlineController> m_outline;
    std::unique_ptr<CustomTableView> m_customTableView;
    std::unique_ptr<NewLeftCustomTableView> m_newCustomTableView;

    QString freeString;
    QString totleString;
    std::uint64_t m_recoveredSize = 0; ///< by the last clean, as the history has it
    QDateTime m_recoveredDate;
    std::optional<std::uint64_t> m_showCleanedSize; ///< none since the last scan began
    std::uint64_t m_allSelectTotalSize = 0;
    std::size_t m_selectCount2Clean = 0;
    int m_view4FastClean = 0;
    int m_selectRowNum = 0;
    bool m_needsRestart = false;
    bool m_isOutdated = false;
    QString m_selectionProblem;
};

} // namespace brightsweep
