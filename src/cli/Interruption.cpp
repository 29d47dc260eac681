#include "cli/Interruption.h"

#include "foundation/Log.h"
#include "linux/ParentDeath.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <new>
#include <optional>
#include <thread>

namespace brightsweep::cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
// The supervisor passes a signal on by this one, as the terminal sends its own to both. Several of
// its kind are queued.
const int passedOn = SIGRTMIN;

// What stops well takes a tenth of that. All three together make less than a second.
constexpr milliseconds patienceWithWork(450);
constexpr milliseconds patienceWithWorker(650);
// So that it closes what it has open, be it killed for good or not.
constexpr milliseconds patienceWithEnd(300);

// In the place of a signal that is passed on.
constexpr int endAtOnce = 0;

// What the worker reports: a byte of these, and behind the last one its exit status.
constexpr char outputBegan = 'o';
constexpr char ended = 'e';

std::atomic<int> asked{0};
std::atomic<std::int64_t> askedAt{0};
static_assert(std::atomic<int>::is_always_lock_free &&
              std::atomic<std::int64_t>::is_always_lock_free);

pid_t supervisor = 0;
int reportEnd = -1;

std::int64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t(time.tv_sec) * 1'000 + time.tv_nsec / 1'000'000;
}

void ask(int number) {
    askedAt = now();
    asked = number;
}

void handle(int number, void (*handler)(int, siginfo_t *, void *)) {
    struct sigaction action {};
    action.sa_sigaction = handler;
    action.sa_flags = SA_RESTART | SA_SIGINFO;
    ::sigaction(number, &action, nullptr);
}

void allow(int number) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

// As under nohup, which has the command outlive its terminal.
bool isIgnored(int number) {
    struct sigaction action {};
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handleEnding(void (*handler)(int, siginfo_t *, void *)) {
    for (const int number : endingSignals) {
        if (number != SIGHUP || !isIgnored(number))
            handle(number, handler);
    }
}

void report(std::initializer_list<char> bytes) {
    if (reportEnd >= 0) [[maybe_unused]]
        const auto written = ::write(reportEnd, std::data(bytes), bytes.size());
}

// -- Handlers. Not ignored, as that would be inherited by the programs that are started.

void doNothing(int, siginfo_t *, void *) {}

// Whoever reads what this process writes need not wait for a thread that hangs.
void closeStandard() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::close(descriptor);
}

void hearSupervisor(int, siginfo_t *info, void *) {
    if (info->si_pid != supervisor)
        return;
    if (info->si_value.sival_int != endAtOnce)
        return ask(info->si_value.sival_int);
    closeStandard();
    report({ended});
    ::_exit(128);
}

// On a thread of its own where one can be had: the main one may hang as well.
void listenToSupervisor() {
    handle(passedOn, hearSupervisor);
    try {
        std::thread([] {
            allow(passedOn);
            for (;;)
                ::pause();
        }).detach();
    } catch (const std::exception &) {
        allow(passedOn);
    }
}

void hearAlone(int number, siginfo_t *, void *) {
    if (asked != 0)
        ::_exit(128 + number);
    ask(number);
}

std::atomic<int> heard[std::size(endingSignals)];

void hear(int number, siginfo_t *, void *) {
    const auto place = std::find(std::begin(endingSignals), std::end(endingSignals), number);
    ++heard[place - std::begin(endingSignals)];
}

} // namespace

void Interruption::divideProcess() {
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignored, nullptr);

    // Nothing may come between; the worker goes on with what it was given.
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    for (const int number : endingSignals)
        sigaddset(&blocked, number);
    sigaddset(&blocked, passedOn);
    sigaddset(&blocked, SIGCHLD);
    ::sigprocmask(SIG_BLOCK, &blocked, &before);

    int ends[2] = {-1, -1};
    const bool hasPipe = ::pipe2(ends, O_CLOEXEC) == 0;
    FileDescriptor reports(ends[0]);
    FileDescriptor reporting(ends[1]);
    const pid_t parent = ::getpid();
    const pid_t worker = hasPipe ? ::fork() : -1;
    if (worker > 0) {
        reporting.reset();
        handleEnding(hear);
        handle(SIGCHLD, doNothing);
        supervise(worker, std::move(reports));
    }
    if (worker == 0) {
        dieWithParent(parent);
        supervisor = parent;
        reportEnd = reporting.release();
        handleEnding(doNothing);
        sigaddset(&before, passedOn);
    } else {
        handleEnding(hearAlone);
    }
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    if (worker == 0)
        listenToSupervisor();
}

// Signals are let in while it waits, and only then.
void Interruption::supervise(pid_t worker, FileDescriptor reports) {
    sigset_t all;
    sigemptyset(&all);
    int first = 0;
    std::optional<int> status;
    std::int64_t until = 0; // when the worker has to have answered; 0 for no such time
    const auto pass = [&](int number) {
        sigval value{};
        value.sival_int = number;
        ::sigqueue(worker, passedOn, value);
    };
    const auto end = [&](int number) {
        pass(endAtOnce);
        const std::int64_t latest = now() + patienceWithEnd.count();
        pollfd closed = {reports.get(), POLLIN, 0};
        char last = 0;
        while (last != ended &&
               ::poll(&closed, 1, int(std::max<std::int64_t>(latest - now(), 0))) > 0 &&
               ::read(reports.get(), &last, 1) > 0) {
        }
        ::kill(worker, SIGKILL);
        ::_exit(128 + number);
    };
    for (;;) {
        timespec left{};
        if (until != 0) {
            const std::int64_t time = std::max<std::int64_t>(until - now(), 0);
            left = {time_t(time / 1'000), long(time % 1'000) * 1'000'000};
        }
        pollfd waiting = {reports.get(), POLLIN, 0};
        const int got = ::ppoll(&waiting, 1, until != 0 ? &left : nullptr, &all);
        if (got == 0)
            end(first);
        for (std::size_t i = 0; i < std::size(endingSignals); ++i) {
            for (; heard[i] > 0; --heard[i]) {
                if (first != 0)
                    end(endingSignals[i]);
                first = endingSignals[i];
                until = now() + patienceWithWorker.count();
                pass(first);
            }
        }
        char bytes[16];
        const ssize_t size = got > 0 ? ::read(reports.get(), bytes, sizeof bytes) : -1;
        for (ssize_t i = 0; i < size; ++i) {
            if (bytes[i] == outputBegan)
                until = 0;
            else if (bytes[i] == ended && i + 1 < size)
                status = static_cast<unsigned char>(bytes[++i]);
        }
        // A worker that was interrupted may never be gone for good.
        if (status && first != 0)
            ::_exit(*status);
        if (size == 0)
            reports.reset();
        int how = 0;
        if (::waitpid(worker, &how, WNOHANG) == worker)
            ::_exit(WIFEXITED(how) ? WEXITSTATUS(how) : 128 + WTERMSIG(how));
    }
}

int Interruption::signal() {
    return asked;
}

bool Interruption::timeIsUp() {
    return asked != 0 && now() - askedAt >= patienceWithWork.count();
}

void Interruption::outputBegins() {
    static std::atomic<bool> told{false};
    if (asked != 0 && !told.exchange(true))
        report({outputBegan});
}

void Interruption::end(int status) {
    if (const int number = asked)
        status = 128 + number;
    try {
        ObjectLog::flushAll();
    } catch (const std::bad_alloc &) {
        // What the memory does not suffice for is not what the process ends with.
    }
    // The supervisor does not wait for what comes behind the report.
    closeStandard();
    report({ended, char(status)});
    std::_Exit(status);
}

} // namespace brightsweep::cli
