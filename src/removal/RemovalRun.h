#pragma once

#include "foundation/FileDescriptor.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace brightsweep {

/// The one run of removals that a user has at a time, whatever page, window or program it belongs
/// to: two at once would tell each other's items as failures and count their bytes twice.
///
/// While it lives it holds a lock in the runtime folder and the journal of modes. Any thread; the
/// workers of a run share it, and it ends with the last of them.
class RemovalRun {
public:
    struct Begun {
        std::shared_ptr<RemovalRun> run; ///< empty when it could not begin
        std::string heldBy;              ///< then what runs, as its beginner called it, …
        long process = 0;                ///< … and where; 0 where that is not known
    };
    /// Never waits. `what` names the run for whoever is refused meanwhile. Modes that a killed run
    /// left opened up are put back first.
    static Begun begin(const std::string &what);
    /// Why it could not begin, for the user; key "REMOVAL_RUNS" or "REMOVAL_NO_LOCK".
    static QString refusal(const Begun &begun);
    /// The run of this process, if one is under way.
    static std::shared_ptr<RemovalRun> current();
    /// Puts back the modes that a killed run left opened up, unless a run is under way.
    static void putBackLeftModes();

    ~RemovalRun();
    RemovalRun(const RemovalRun &) = delete;
    RemovalRun &operator=(const RemovalRun &) = delete;

    /// Asks every removal of the run to end, within the item under way.
    void stop() { m_stop = true; }
    const std::atomic<bool> &stopFlag() const { return m_stop; }

    /// The program is about to end: stops the run of this process, waits for its removals for as
    /// long as given, and puts modes back.
    static void endForQuit(std::chrono::milliseconds patience);

    /// One removal under way. What lives longer than the patience of endForQuit() is left behind.
    class [[nodiscard]] Busy {
    public:
        explicit Busy(RemovalRun &run);
        ~Busy();
        Busy(const Busy &) = delete;
        Busy &operator=(const Busy &) = delete;

    private:
        RemovalRun &m_run;
    };

private:
    explicit RemovalRun(FileDescriptor lock);

    FileDescriptor m_lock;
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::condition_variable m_idle;
    int m_busy = 0;
};

} // namespace brightsweep
