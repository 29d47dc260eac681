#pragma once

#include "core/Clock.h"
#include "foundation/CallQueue.h"
#include "platform/ApplicationSource.h"
#include "removal/PadlockController.h"
#include "uninstall/AppItems.h"
#include "uninstall/CatalogueWatch.h"
#include "uninstall/LeftBehindController.h"
#include "uninstall/UninstallAppInfo.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace brightsweep {

class RemovalRun;
class ThreadWorker;
class Uninstallation;

/// The notifications of the uninstall page. "object" of the first one's user info is missing or
/// "uninstalled"; the second one's carries "PathName" and "UninstallRowNumber".
inline constexpr QLatin1String
    uninstallShowSelectNumInBottomNotification("uninstallShowSelectNumInBottom");
inline constexpr QLatin1String changeSelectCellNotification("changeSelectCell");

/// The uninstall page without its screen: it lists what is installed, keeps what is ticked, has the
/// removal of that planned, asks, and has it carried out.
///
/// Main thread; what takes time runs on a worker, one job at a time, and the page is disabled
/// meanwhile. A view shows what this says, follows the signals and calls the actions; one that the
/// state does not allow is refused and logged. Destroying it waits for the job that runs.
///
/// | State | Leaves on |
/// |---|---|
/// | NotListed | beginSearchApps() |
/// | Listing | the list's arrival |
/// | Ready | a removal |
/// | Planning | the plan's arrival, to Asking |
/// | Asking | the answer |
/// | AskingRights | the answer to the system's question |
/// | Uninstalling | the end |
class UninstallAppsController : public QObject {
    Q_OBJECT

public:
    enum class State { NotListed, Listing, Ready, Planning, Asking, AskingRights, Uninstalling };
    /// The rows at the left.
    enum Row { AllApplications, SystemApplications, OtherApplications, LeftBehindRow };
    static constexpr int rows = 4;
    enum class SortKey { Name, Kind, Size, Date };
    using Items = std::vector<AppItems::Pointer>;
    using Plans = std::vector<RemovalPlan>;

    /// What the page needs of the program around it.
    struct Surroundings {
        /// False keeps a removal from starting.
        std::function<bool()> licenceGate = [] { return true; };
        Clock *clock = nullptr; ///< else that of the event loop
    };

    /// What the line at the bottom says.
    struct Message {
        QString text;         ///< empty where there is nothing to say
        QString toolTip;      ///< in full, where the text is cut
        bool isCount = false; ///< the text has the two numbers still to be put in
        std::size_t selected = 0;
        std::size_t total = 0;
        bool isFailure = false;
        QString notice = {}; ///< what is not to be missed of how it went, in full
    };

    /// One application, looked at closely.
    struct Details {
        AppItems::Pointer item;
        QString name;    ///< cut where it is long
        QString nameTip; ///< in full
        QString size;    ///< "--" where nothing can be said; null while it is measured
        QString date;
        QString path; ///< cut where it is long
    };

    explicit UninstallAppsController(Surroundings surroundings, QObject *parent = nullptr);
    ~UninstallAppsController() override;

    // -- What the view shows
    State state() const { return m_state; }
    /// The list has arrived.
    bool isScaned() const { return m_isScaned; }
    bool searchFinished() const { return m_searchFinished; }
    /// Neither a job that was asked for nor a question is under way.
    bool isIdle() const { return m_state == State::Ready && !m_leftBehind.isBusy(); }
    /// The list shown: of the left row, without what the search hides, in the order asked for.
    const Items &allApplications() const { return m_allApplications; }
    /// All that was found.
    const Items &searchAllAppArr() const { return m_searchAllAppArr; }
    const std::vector<UninstallAppInfo::Failure> &failures() const { return m_listFailures; }
    std::size_t countOfRow(int row) const;
    int nowSelectRow() const { return m_nowSelectRow; }
    /// The row of the table that is highlighted.
    int selectRow() const { return m_selectRow; }
    /// All of the list shown are ticked.
    bool selectButton() const { return m_selectButton; }
    std::size_t selectedCount() const; ///< of the list shown
    /// Ticked, and not in the list shown: they stay.
    std::size_t hiddenSelectedCount() const;
    /// Ticked applications of the list shown.
    Items getAllSelectApp() const;
    bool uninstallButton() const { return m_uninstallButton; }
    const char *uninstallImage() const;
    const Message &uninstallTextField() const { return m_uninstallTextField; }
    const QString &filter() const { return m_filter; }
    SortKey sortKey() const { return m_sortKey; }
    bool sortDescending() const { return m_sortDescending; }
    /// Why an application stayed at the last removal; empty where it did not.
    QString failureOf(const AppItems &item) const;
    /// What is about to go, while the question is asked. In the order of the ticked ones.
    const Plans &plans() const { return m_plans; }
    /// How large they are, with what goes along, in that order.
    const std::vector<std::uint64_t> &planSizes() const { return m_planSizes; }
    /// What is being removed; empty while nothing is.
    const QString &progress() const { return m_progress; }
    const Details &details() const { return m_details; }
    PadlockController &padlock() { return m_padlock; }
    /// What the last row at the left shows.
    LeftBehindController &leftBehind() { return m_leftBehind; }

    // -- What the user does
    /// The page is shown. The first time it lists.
    void beginSearchApps();
    /// The listing goes on, but is not shown to.
    void cancelSearchApps();
    /// The list follows the machine as long as the page is shown.
    void setShown(bool isShown);
    /// A row at the left was clicked. Nothing before the list has arrived.
    void changeSelectCell(int row);
    void setSelectRow(int row) { m_selectRow = row; }
    /// A click on the box of a row.
    void tick(int row);
    void tick(const std::vector<int> &rows, bool isTicked);
    void selectAllList(bool isTicked);
    void setFilter(const QString &text);
    void sort(SortKey key, bool descending);
    void cellClickOfView(int row);
    /// The details are closed.
    void alertWindowOkAction();
    void unlockRigths(bool open);
    void uninstallButtonAction();
    /// While the plans are made: nothing is asked then.
    void stopPlanning();
    /// While the question is asked: the ticks of what would be left.
    void tickLeftover(std::size_t plan, std::size_t leftover, bool isTicked);
    void tickSystemSettings(std::size_t plan, bool isTicked);
    /// To askToUninstall(): 1 for "Uninstall"; anything else calls it off.
    void alertEnded(int code);

Q_SIGNALS:
    void stateChanged();
    /// The list shown is another one, or in another order.
    void allApplicationsChanged();
    /// What rows say has changed: ticks, why they stayed.
    void rowsChanged();
    void messageChanged();
    void progressChanged();
    void countsChanged(); ///< of the rows at the left
    /// Of the row with that number, by hand.
    void ticked(int row);
    /// "Uninstall Applications", and this text; the plans say what goes.
    void askToUninstall(const QString &text);
    void removalRefused(const QString &words);
    void detailsAsked();
    void detailsChanged();

private:
    struct Job {
        std::function<void()> work; ///< on the worker
        std::function<void()> done; ///< back here
    };

    bool refuseUnless(bool allowed, const char *what) const;
    void setState(State state);
    void enqueue(Job job);
    void startNextJob();
    void doJob(std::nullptr_t argument);
    void jobDone();

    void searchApplications(std::nullptr_t argument, ThreadWorker *worker);
    void searchAppsFinished();
    void listAgain();
    void mergeFound();
    LeftBehindController::Surroundings surroundingsOfLeftBehind();
    std::vector<InstalledApplication> installed() const;
    Items itemsOfRow(int row) const;
    void renewList();
    void sortList();
    void getSelectAllOrNull();
    void uninstallShowSelectNumInBottom(bool isUninstalled);
    void postSelectNum(bool isUninstalled = false);

    void showAlertForUninstall();
    void planned();
    bool needsRightsFirst() const;
    bool lacksRights() const;
    void makePlans(const std::vector<InstalledApplication> &installed,
                   const std::vector<InstalledApplication> &applications);
    void askForRights();
    void rightsAnswered();
    void noteLackOfRights();
    void uninstallActionfromBottomButton();
    void attemptEnded();
    void tellStayed(const QString &refusal = {});
    void tellNotice(const QString &refusal);
    void tellFailure(const QString &refusal = {});
    void finish();

    Surroundings m_surroundings;
    Clock &m_clock;
    State m_state = State::NotListed;
    bool m_isScaned = false;
    bool m_searchFinished = false;
    bool m_alreadyListApps = false;
    Items m_allApplications;
    Items m_searchAllAppArr;
    std::vector<UninstallAppInfo::Failure> m_listFailures;
    int m_nowSelectRow = AllApplications;
    int m_selectRow = 0;
    bool m_selectButton = false;
    bool m_uninstallButton = false;
    Message m_uninstallTextField;
    QString m_filter;
    SortKey m_sortKey = SortKey::Name;
    bool m_sortDescending = false;
    std::unordered_map<const AppItems *, QString> m_failures;
    Details m_details;
    PadlockController m_padlock;
    CatalogueWatch m_watch;
    bool m_wantsListing = false;
    bool m_isShown = false;

    std::deque<Job> m_jobs; ///< the first one is under way
    std::shared_ptr<ThreadWorker> m_worker;
    LeftBehindController m_leftBehind;
    std::vector<std::filesystem::path> m_watched; ///< as the next one
    std::unique_ptr<UninstallAppInfo> m_found;    ///< left alone while the listing runs
    std::uint64_t m_measured = 0;                 ///< likewise, the measuring

    std::shared_ptr<RemovalRun> m_run;
    Items m_chosen; ///< what the plans are of
    Plans m_plans;  ///< left alone while a job about them runs, as is the next one
    std::vector<std::uint64_t> m_planSizes;
    std::atomic<bool> m_stopsPlanning{false};
    std::unique_ptr<Uninstallation> m_uninstallation; ///< likewise
    QString m_progress;
    RightsPurpose m_purpose = RightsPurpose::Files; ///< of the rights that the run takes
    bool m_isSecondAttempt = false;
    QStringList m_reasons; ///< why the run failed, by application
    QStringList m_stayed;  ///< what stayed of those that went, likewise
    CallQueue m_calls;     ///< of this thread, for what a removal tells
};

} // namespace brightsweep
