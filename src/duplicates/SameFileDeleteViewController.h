#pragma once

#include "core/Clock.h"
#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/DuplicateRemoval.h"
#include "duplicates/DuplicateSelection.h"
#include "foundation/CallQueue.h"
#include "removal/PadlockController.h"

#include <QObject>
#include <QString>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <unordered_map>
#include <vector>

namespace brightsweep {

class RemovalRun;
class ThreadWorker;
struct Notification;

/// One of the seven lists of the duplicates page, by its row at the left.
struct DuplicateListRow {
    const char *title;     ///< the key of its text
    std::int32_t fileType; ///< of its groups; 0 for all
};
/// The rows are numbered otherwise than the classes.
extern const std::array<DuplicateListRow, 7> duplicateLists;

/// Which controls of the page are shown and can be used.
struct DuplicateControls {
    bool folderButton = true;
    bool stopScanText = false; ///< "stopping" in place of the progress
    bool stopRemove = false;
    bool remove = false; ///< its image is "remove.png", else "remove_d.png"
    bool pathView = false;
    bool outline = false; ///< with opening, revealing and the padlock
    bool allSelect = false;
    Qt::CheckState allSelectState = Qt::Unchecked;
    bool operator==(const DuplicateControls &) const = default;
};

/// The duplicates page without its screen: it searches a folder, shows what was found as seven
/// lists, keeps what is ticked, and removes it, moves it to the trash or has it share blocks.
///
/// Main thread. A view shows what this says, follows the signals and calls the actions; one that
/// the state does not allow is refused and logged. Questions are signals that the view answers by
/// the named action. Destroying it stops what runs and waits for it.
///
/// | State | Panel | Leaves on |
/// |---|---|---|
/// | Start | duplicates_file | a folder, chosen or dropped |
/// | Searching, Stopping | QC_Duplicates | the thread's end; after a stop to Start |
/// | Results | DATA_Duplicates | a removal, a new search, back |
/// | Removing | DATA_Duplicates | the thread's end |
class SameFileDeleteViewController : public QObject {
    Q_OBJECT

public:
    enum class State { Start, Searching, Stopping, Results, Removing };
    using Act = DuplicateRemoval::Act;

    /// What the page needs of the window around it.
    struct Surroundings {
        /// The toolbar's selected item.
        std::function<QString()> selectedItem = [] { return QStringLiteral("duplicates_file"); };
        /// False keeps a removal from starting.
        std::function<bool()> licenceGate = [] { return true; };
        Clock *clock = nullptr; ///< else that of the event loop
    };

    /// What a removal came to.
    struct Report {
        Act act = Act::Remove;
        std::size_t done = 0;
        std::size_t failed = 0;
        std::size_t neededRights = 0;
        std::uint64_t bytesFreed = 0;
        bool stopped = false;
    };

    explicit SameFileDeleteViewController(QObject *parent = nullptr);
    SameFileDeleteViewController(Surroundings surroundings, QObject *parent = nullptr);
    ~SameFileDeleteViewController() override;

    // -- What the view shows
    State state() const { return m_state; }
    /// A folder can be given: nothing runs.
    bool canBegin() const { return m_state == State::Start || m_state == State::Results; }
    /// 0 the start panel, 1 progress, 2 results.
    int view4Duplicates() const { return m_view4Duplicates; }
    const DuplicateControls &controls() const { return m_controls; }
    /// What a search searches. The text of the title, too: after a search this is no path.
    const std::string &searchPath() const { return m_searchPath; }
    QString title() const;    ///< 25 characters at most, then "..."
    QString titleTip() const; ///< in full
    int remberWitchSelect() const { return m_remberWitchSelect; }
    /// The list that is shown; null without duplicates.
    const TreeNode::Pointer &treeData() const { return m_trees[std::size_t(m_remberWitchSelect)]; }
    /// The size of a row's files in words, "0.0KB" without.
    QString sizeOfRow(int row) const;
    std::uint64_t bytesOfRow(int row) const;
    /// The column that the lists are ordered by; empty until the user has asked for one.
    const QString &lastColumn() const { return m_lastColumn; }
    bool sortDescending() const { return m_sortDescending; }
    const QString &filter() const { return m_filter; }
    /// Ticked leaves that the filter, or the choice of a list, leaves no row to.
    std::size_t hiddenSelectedCount() const;
    /// There are ticks of many files to take back, and nothing runs.
    bool canUndoTicks() const { return m_state == State::Results && m_selection.canUndo(); }
    /// What was searched last; empty without.
    std::filesystem::path searchedFolder() const;
    /// What was searched is a folder. False also before the first search.
    bool hasRoot() const { return bool(m_root); }
    /// The last search was stopped.
    bool wasStopped() const { return m_bIsStopScan; }
    /// Leaves of the list shown.
    std::uint64_t allFilesCount() const { return m_frashAllFilesCount; }
    const DuplicateSelection &selection() const { return m_selection; }
    /// What removing all that is ticked gives back, in stored bytes; see freedBy().
    std::uint64_t freedBySelection() const;
    /// The size that files must exceed to be searched.
    static std::uint64_t searchLimit();
    /// "2 of 7 selected."; empty until something was ticked.
    QString selectionMessage() const;
    /// Why a leaf stayed at the last removal; empty where it did not.
    QString failureOf(const TreeNode *leaf) const;
    const Report &report() const { return m_report; }
    PadlockController &padlock() { return m_padlock; }
    /// True where a filter hides nothing of it.
    bool isShown(const TreeNode &leaf) const;
    const std::string &openItemPath() const { return m_openItemPath; }

    // -- What the user does
    void clickScanBtn();
    /// The answer to askForFolder(), and a folder that was dropped on the page or handed over from
    /// outside. While something runs it is refused in words.
    void viewDragAction(const std::filesystem::path &folder);
    void searchBtnClicked();
    void stopScanBtnClicked();
    void refViewBgColor(int row);
    /// The column is "NameColumn", "FileSize" or "ModifyDate"; others do nothing. A second click
    /// turns the order.
    void didClickTableColumn(const QString &column);
    /// A click on the box of a row, of a group or of a leaf.
    void setSelectState(const TreeNode::Pointer &node);
    /// Ticks many rows, or unticks them where all are ticked. It never asks, and leaves the last
    /// file of a group as it is.
    void setSelectState(const TreeNode::List &nodes);
    /// To askAboutLastFile(): true for "OK".
    void alertEnded(bool ok);
    void setAllSelectOrNoSelect(bool on);
    /// Of all groups of the list shown, or of one.
    void tickAllBut(KeepRule rule, const TreeNode::Pointer &group = nullptr);
    /// One file stays, all others of its group are ticked.
    void keepOnly(const TreeNode::Pointer &leaf);
    void tickAllOutside(const std::filesystem::path &folder);
    void undoTicks();
    void setFilter(const QString &text);
    /// Asks once; the answer is removalAnswered().
    void removeBtnClicked();
    void removalAnswered(Act act);
    /// Asks the file system of what is ticked, on a worker; the answers are trashAnswered() and
    /// sharingAnswered(). Only one question at a time.
    void askWhetherShareable();
    void stopRemoveBtnClicked();
    void unlockRigths(bool open);
    /// To alertCanNotRemoveSome(): it has been closed.
    void alertDidEnd() { Q_EMIT unlockAnimation(false); }
    void shouldSelectItem(const TreeNode &node);
    void openFinderBtnClicked();
    void RevealInFinderBtnClicked();
    void backButtonAction();
    void link2Preferences() { Q_EMIT displayPanel(QStringLiteral("preferences"), true); }

Q_SIGNALS:
    void stateChanged();
    void controlsChanged();
    void titleChanged();
    void sizesChanged();
    /// Another list, another order, or other figures in it.
    void listChanged();
    /// These groups have lost leaves, or have gone from their lists.
    void rowsChanged();
    void selectionChanged();
    void displayPanel(const QString &identifier, bool animate);
    void askForFolder(const std::filesystem::path &start);
    void askAboutLastFile(const TreeNode::Pointer &leaf);
    void askToRemove();
    /// Nothing is removed, or searched: why.
    void removalRefused(const QString &words);
    /// The volume of what is ticked has a trash.
    void trashAnswered(bool hasTrash);
    /// The key of the reason why files cannot share blocks; empty where they can.
    void sharingAnswered(const QString &refusal);
    /// One row has been ticked by hand.
    void ticked(const TreeNode::Pointer &node);
    /// Some stayed, perhaps for want of rights; report() tells.
    void alertCanNotRemoveSome();
    void unlockAnimation(bool running);
    /// The file under search or removal.
    void pathShown(const std::string &path);
    void baseNumberSetPrograss(int percent);
    void baseNumberSetPrograssMax(std::size_t count, std::size_t index);
    void removalEnded();

private:
    struct Job {
        TreeNode::Pointer leaf;
        std::shared_ptr<const std::vector<DuplicateRemoval::Member>> group;
        std::size_t index = 0;
        bool takesWholeGroup = false;
    };
    struct Result {
        TreeNode::Pointer leaf;
        DuplicateRemoval::Outcome outcome;
    };

    struct SearchedGroup {
        SearchRoot root;
        std::vector<DuplicateRemoval::Member> members;
    };

    bool refuseUnless(bool allowed, const char *what) const;
    void setState(State state);
    void setControls(const DuplicateControls &controls);
    void updatePathString(std::string text);
    void renewTitle();
    bool sortList();
    void switch2QcAnimation(bool searching);
    void resetOulineView();

    void searchDuplicateFiles(std::string path);
    void searchFinished();
    void constructSubtrees();
    void delayBtnChangeStateTime();
    void getPathForSreachDuplicate();
    void getPrograss();
    std::uint64_t countLeaves() const;
    void ticksChanged();
    DuplicateSelection::IsShown shownOnly() const;

    void beginBlocks();
    void lookAtBlocks(std::nullptr_t argument);
    void blocksLookedAt();
    void forgetBlocks();

    void askSharing(SearchedGroup group);
    void sharingAsked();
    std::vector<Job> jobs() const;
    void deleteDupFiles(std::nullptr_t argument);
    void deleteFinished();
    void takeResults();
    void refreshOutlineView(const TreeNode::Pointer &leaf, TreeNode::List &goneGroups);

    Surroundings m_surroundings;
    State m_state = State::Start;
    int m_view4Duplicates = 0;
    DuplicateControls m_controls;
    std::string m_searchPath;
    std::array<TreeNode::Pointer, 7> m_trees; ///< by row
    std::array<std::uint64_t, 7> m_sizes{};   ///< by fileType
    int m_remberWitchSelect = 0;
    QString m_lastColumn;
    bool m_sortDescending = false;
    QString m_filter;
    DuplicateSelection m_selection;
    TreeNode::Pointer m_askedAbout;
    bool m_hasTicked = false;
    std::uint64_t m_frashAllFilesCount = 0;
    std::string m_openItemPath;
    std::unordered_map<const TreeNode *, std::string> m_failures;
    PadlockController m_padlock;
    Clock::Handle m_poll = 0;
    bool m_bIsStopScan = false;
    bool m_bSearchFinished = false;
    bool m_duplicateScaned = false;
    std::shared_ptr<ThreadWorker> m_twDuplicateSearch;
    std::shared_ptr<ThreadWorker> m_twRemoveDupFiles;
    std::shared_ptr<DuplicateFilesOpt> m_duplicateOpt;
    brightsweep::Result<SearchRoot> m_root = std::errc::no_such_file_or_directory;

    std::shared_ptr<ThreadWorker> m_blocksWorker;
    TreeNode::List m_lookedAt;          ///< left alone while that worker runs
    std::vector<std::uint64_t> m_freed; ///< likewise
    std::atomic<bool> m_stopsBlocks{false};
    bool m_wantsBlocks = false; ///< once that worker has ended
    std::shared_ptr<ThreadWorker> m_sharingWorker;
    std::error_code m_sharingRefusal; ///< left alone while that worker runs
    bool m_hasTrash = true;           ///< likewise
    std::shared_ptr<RemovalRun> m_run;
    Report m_report;
    std::vector<Job> m_jobs; ///< left alone while the worker runs
    std::atomic<bool> m_bStopDelTask{false};
    std::mutex m_mutex; // guards the two below
    std::vector<Result> m_results;
    bool m_resultsTold = false;
    CallQueue m_calls; ///< of this thread, for what a removal tells
};

} // namespace brightsweep
