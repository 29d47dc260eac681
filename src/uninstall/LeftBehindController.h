#pragma once

#include "foundation/CallQueue.h"
#include "platform/ApplicationSource.h"
#include "removal/PadlockController.h"
#include "uninstall/Uninstallation.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace brightsweep {

/// The last row of the uninstall page without its screen: what applications that are gone have
/// left, ticked by hand alone, and its removal.
///
/// Main thread; the searching and the removing are jobs of the page, which runs one at a time.
class LeftBehindController : public QObject {
    Q_OBJECT

public:
    enum class State { NotSearched, Searching, Ready, Asking, AskingRights, Removing };

    /// What it needs of the page.
    struct Surroundings {
        /// Runs the first on a worker and then the second here.
        std::function<void(std::function<void()>, std::function<void()>)> enqueue;
        std::function<std::vector<InstalledApplication>()> installed; ///< as listed last
        std::function<std::vector<ApplicationKind>()> unknown;        ///< could not be listed
    };

    LeftBehindController(Surroundings surroundings, PadlockController &padlock,
                         QObject *parent = nullptr);
    ~LeftBehindController() override;

    State state() const { return m_state; }
    bool isReady() const { return m_state == State::Ready; }
    /// Asks or removes: nothing else of the page may begin.
    bool isBusy() const { return m_state > State::Ready; }
    bool isSearched() const { return m_isSearched; }
    const std::vector<Leftover> &items() const { return m_items; }
    /// Why one stayed at the last removal; empty where it did not.
    QString failureOf(std::size_t row) const { return m_failures[row]; }
    std::size_t tickedCount() const;
    std::uint64_t tickedBytes() const;
    /// What the last removal came to; empty before one and after a tick.
    const QString &message() const { return m_message; }
    /// Why rights that it took were not given; empty where they were, and after a tick.
    const QString &refusal() const { return m_refusal; }

    /// The row was chosen: searches, anew each time. Ticks stay.
    void search();
    void tick(const std::vector<int> &rows, bool isTicked);
    void removeButtonAction();
    void alertEnded(bool remove);

Q_SIGNALS:
    void stateChanged();
    void itemsChanged();
    void ticksChanged();
    void askToRemove();
    void removalRefused(const QString &words);

private:
    void setState(State state);
    void take(std::vector<Leftover> items);
    void attempt();
    void attemptEnded();
    void rightsAnswered();
    void finish();

    Surroundings m_surroundings;
    PadlockController &m_padlock;
    State m_state = State::NotSearched;
    bool m_isSearched = false;
    std::vector<Leftover> m_items; ///< left alone while a removal runs
    std::vector<QString> m_failures;
    QString m_message;
    QString m_refusal;
    std::vector<Leftover> m_found; ///< left alone while the search runs
    std::shared_ptr<RemovalRun> m_run;
    std::vector<Uninstallation::Item> m_results; ///< likewise, the removal
    std::size_t m_removed = 0;
    std::uint64_t m_bytes = 0;
    bool m_isSecondAttempt = false;
};

} // namespace brightsweep
