#pragma once

#include "foundation/CallQueue.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace brightsweep {

/// One job on a thread of its own: a work function of a target, and when that returns, an end
/// function of the target on the thread that started the job, through that thread's event loop.
/// The worker's thread waits until the end function has returned.
///
/// Results are not handed over: the work leaves them in the target's own fields. The thread keeps
/// the worker alive while it runs, but not the target: an owner that dies before the end call calls
/// abandon(). The end call comes in every case: also when the work ended by an exception, and when
/// no thread could be had for it, which failure() tells.
class ThreadWorker : public std::enable_shared_from_this<ThreadWorker> {
public:
    /// Starts a job. The work takes the argument alone, or the argument and a ThreadWorker *. A
    /// null `didEnd` means no end call. Null where the work is null; then nothing runs and nothing
    /// is called. Call it on a thread with an event loop.
    template <typename Target, typename Class, typename... Parameters>
    static std::shared_ptr<ThreadWorker>
    workOn(Target *target, void (Class::*work)(Parameters...),
           std::type_identity_t<std::decay_t<std::tuple_element_t<0, std::tuple<Parameters...>>>>
               argument,
           std::type_identity_t<void (Class::*)()> didEnd) {
        static_assert(sizeof...(Parameters) <= 2);
        if (!work)
            return refuse(nameOf(*target));
        std::function<void()> end;
        if (didEnd)
            end = [target, didEnd] { (target->*didEnd)(); };
        return start(
            [target, work, argument = std::move(argument)](ThreadWorker *worker) {
                if constexpr (sizeof...(Parameters) == 2)
                    (target->*work)(argument, worker);
                else
                    (target->*work)(argument);
            },
            std::move(end));
    }

    ~ThreadWorker();
    ThreadWorker(const ThreadWorker &) = delete;
    ThreadWorker &operator=(const ThreadWorker &) = delete;

    /// Asks the job to stop: a flag for the work to look at, nothing more. The end call comes as
    /// after any other end. From any thread, as often as one likes.
    void markAsCancelled() { m_cancelled = true; }
    bool cancelled() const { return m_cancelled; }
    const std::atomic<bool> &cancelledFlag() const { return m_cancelled; }

    /// For an owner that goes first: no end call any more, and returns when the work has returned.
    /// On the starting thread only, never from the work itself. The owner raises the job's stop
    /// flags before. After the end call, or in it, it returns at once.
    void abandon();

    /// What kept the work from its end, null where nothing did. From the end call on.
    std::exception_ptr failure() const { return m_failure; }

    /// Where no thread can be had, lets the work run on the starting thread, from its event loop,
    /// instead of not at all: for a process without a window that it would hold up.
    static void setRunsWithoutThreads(bool runs);

    static const char *description() { return "ThreadWorker v0.7.1"; }

private:
    using Work = std::function<void(ThreadWorker *)>;

    ThreadWorker(Work work, std::function<void()> didEnd);
    static std::shared_ptr<ThreadWorker> start(Work work, std::function<void()> didEnd);
    static std::shared_ptr<ThreadWorker> refuse(const std::string &target);

    template <typename Target>
    static std::string nameOf(const Target &target) {
        if constexpr (std::is_base_of_v<QObject, Target>)
            return target.metaObject()->className();
        else
            return typeid(target).name();
    }

    void run();
    void runPrimaryTask();
    void doWithoutThread(std::exception_ptr reason);
    void postToQueue(std::unique_lock<std::mutex> &lock, const std::function<void()> &function);
    void callEnd();

    Work m_work;
    std::function<void()> m_didEnd;
    std::atomic<bool> m_cancelled{false};
    std::exception_ptr m_failure;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    CallQueue *m_queue = nullptr; // lives and dies on the starting thread
    bool m_workReturned = false;
    bool m_endReturned = false;
    bool m_abandoned = false;
};

} // namespace brightsweep
