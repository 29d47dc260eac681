#pragma once

#include "diskusage/ChartView.h"
#include "diskusage/UsageRemoval.h"
#include "foundation/CallQueue.h"
#include "results/CleanFileInfo.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

class RemovalRun;
class ThreadWorker;

/// One row of the sheet that asks before a removal: a ticked item as it is now.
struct SelectFilesListView {
    CleanFileInfo aFileInfo;
    bool isDir = false;
    bool isSelected = true;
    bool hasGone = false;
    std::error_code refusal;  ///< why it will stay
    std::uint64_t gained = 0; ///< entries more than when it was ticked
    bool isOther = false;     ///< another object, or other contents, than were ticked
    std::string program;      ///< one that holds it or something in it
    UsageItem now;
};

/// What is ticked on the disk usage page, and its removal.
///
/// A tick keeps what the item was when it was made: it is looked at on a worker, and so is all
/// before the question and the removal itself. A tick whose item no removal would take is taken
/// back, with the reason. Main thread, with an event loop; destroying it stops what runs and waits
/// for it.
class UsageTicks : public QObject {
    Q_OBJECT

public:
    using Act = UsageRemoval::Act;
    /// The item as removals take it.
    using Targets = std::function<Result<RemovalTarget>(const std::filesystem::path &)>;

    /// What a removal came to.
    struct Report {
        Act act = Act::Remove;
        std::size_t done = 0;
        std::size_t failed = 0;
        std::size_t neededRights = 0;
        std::uint64_t bytesFreed = 0;
        bool stopped = false;
        std::vector<std::pair<std::filesystem::path, std::error_code>> stayed;
    };

    explicit UsageTicks(Targets targets, QObject *parent = nullptr);
    ~UsageTicks() override;

    /// In the order of their paths. The size of each is the one that it was listed with.
    std::vector<CleanFileInfo> allSelectArr() const;
    std::size_t count() const { return m_ticks.size(); }
    /// By that measure. What lies in a ticked folder counts once.
    std::uint64_t bytes(ChartMeasure measure = ChartMeasure::Size) const;
    bool contains(const std::filesystem::path &path) const {
        return m_ticks.contains(path.native());
    }
    /// A folder above it is ticked.
    bool isBelowTick(const std::filesystem::path &path) const;

    void tick(const CleanFileInfo &item);
    void untick(const std::filesystem::path &path);
    /// Takes back the ticks of that path and of every folder above it, and of what lies below it.
    void untickAround(const std::filesystem::path &path, bool alsoBelow);
    void clear();

    /// True from ask() until the answer, and while something is removed.
    bool isBusy() const { return m_worker != nullptr; }
    bool isRemoving() const { return m_run != nullptr; }
    /// Looks at everything that is ticked, and then emits asked().
    void ask();
    const std::vector<SelectFilesListView> &sheet() const { return m_sheet; }
    /// What the selected rows of the sheet would free.
    std::uint64_t sheetFreed() const;
    /// What is not selected takes the selection of every folder above it back.
    void select(std::size_t row, bool selected);
    /// Removes what is selected in the sheet. Every tick goes with it, also of what stays.
    void remove(Act act);
    void stop();
    const Report &report() const { return m_report; }

Q_SIGNALS:
    void changed();
    /// A tick was taken back.
    void refused(const std::filesystem::path &path, std::error_code reason);
    /// The sheet is filled.
    void asked();
    /// No removal may begin now.
    void removalRefused(const QString &words);
    /// One item has gone, of those that are ticked.
    void itemGone(const brightsweep::CleanFileInfo &item);
    void removing(const std::string &path, std::size_t done, std::size_t all);
    void removalEnded();

private:
    struct Tick {
        CleanFileInfo info;
        std::optional<UsageItem> seen; ///< once it has been looked at
    };
    struct Look {
        std::filesystem::path path;
        std::uint64_t generation = 0; ///< of the tick
        std::optional<UsageItem> seen;
        std::error_code refusal;
    };
    struct Told {
        CleanFileInfo info;
        UsageRemoval::Outcome outcome;
    };

    void lookOn();
    void look(std::nullptr_t argument);
    void lookEnded();
    void survey(std::nullptr_t argument);
    void surveyEnded();
    void removeAll(std::nullptr_t argument);
    void takeTold();
    void removeEnded();

    const Targets m_targets;
    std::map<std::string, Tick> m_ticks; ///< by path
    std::map<std::string, std::uint64_t> m_generations;
    std::uint64_t m_lastGeneration = 0;
    std::vector<Look> m_toLook;
    std::vector<Look> m_looking; // the worker's, until it has ended
    std::shared_ptr<ThreadWorker> m_looker;
    std::shared_ptr<ThreadWorker> m_worker;
    std::atomic<bool> m_stop{false};
    bool m_asks = false;       // as soon as the ticks have been looked at
    std::uint64_t m_limit = 0; // of the lists, when the sheet was asked for
    std::vector<SelectFilesListView> m_sheet;
    std::vector<FreedBytes> m_freed; ///< by row of the sheet
    std::shared_ptr<RemovalRun> m_run;
    Report m_report;
    std::mutex m_mutex; // guards the two below
    std::vector<Told> m_told;
    std::uint64_t m_bytesFreed = 0;
    std::size_t m_all = 0;
    CallQueue m_calls;
};

} // namespace brightsweep
