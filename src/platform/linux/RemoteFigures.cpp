#include "platform/linux/RemoteFigures.h"

#include "foundation/Log.h"
#include "platform/linux/ChildProcess.h"

#include <poll.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <system_error>

namespace brightsweep {

namespace {

using std::chrono::steady_clock;

// The figures of a server are asked for less often than those of a disk.
constexpr std::chrono::seconds renewal(5);
constexpr std::chrono::seconds takingBack(2);

struct Question {
    MountIdentity mount;
    ChildProcess process;
    std::string answer;
};

} // namespace

std::optional<VolumeFigures> parseFigures(std::string_view text) {
    std::uint64_t numbers[3] = {};
    const char *at = text.data();
    const char *const end = at + text.size();
    for (std::uint64_t &number : numbers) {
        while (at != end && *at == ' ')
            ++at;
        const auto read = std::from_chars(at, end, number);
        if (read.ec != std::errc())
            return std::nullopt;
        at = read.ptr;
    }
    VolumeFigures figures;
    if (__builtin_mul_overflow(numbers[0], numbers[1], &figures.totalBytes) ||
        __builtin_mul_overflow(numbers[0], numbers[2], &figures.freeBytes))
        return std::nullopt;
    return figures;
}

RemoteFigures::RemoteFigures(std::function<void()> firstFigures)
    : m_firstFigures(std::move(firstFigures)) {}

RemoteFigures::~RemoteFigures() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.wake();
    if (m_thread.joinable())
        m_thread.join();
}

std::optional<VolumeFigures> RemoteFigures::ask(MountIdentity mount,
                                                const std::string &mountPoint) {
    const std::lock_guard lock(m_mutex);
    Volume &volume = m_volumes[mount];
    const bool old = !volume.figures || steady_clock::now() - volume.answered >= renewal;
    if (!volume.asked && !volume.wanted && !volume.paused && old) {
        volume.mountPoint = mountPoint;
        volume.wanted = startAsking();
        m_wake.wake();
    }
    return volume.figures;
}

// With the lock held. False where no thread can be had, now.
bool RemoteFigures::startAsking() {
    try {
        if (!m_thread.joinable())
            m_thread = std::thread(&RemoteFigures::run, this);
        return true;
    } catch (const std::system_error &error) {
        NSLog("No volume can be asked for its figures: %@", error.code());
        return false;
    }
}

void RemoteFigures::keepOnly(const std::vector<MountIdentity> &mounts) {
    const std::lock_guard lock(m_mutex);
    const std::set<MountIdentity> kept(mounts.begin(), mounts.end());
    std::erase_if(m_volumes, [&](const auto &entry) { return !kept.contains(entry.first); });
}

void RemoteFigures::pause(MountIdentity mount) {
    std::unique_lock lock(m_mutex);
    m_volumes[mount].paused = true;
    m_volumes[mount].wanted = false;
    m_wake.wake();
    m_answer.wait_for(lock, takingBack, [&] {
        const auto volume = m_volumes.find(mount);
        return volume == m_volumes.end() || !volume->second.asked;
    });
}

void RemoteFigures::resume(MountIdentity mount) {
    const std::lock_guard lock(m_mutex);
    if (const auto volume = m_volumes.find(mount); volume != m_volumes.end())
        volume->second.paused = false;
}

void RemoteFigures::wait(steady_clock::time_point until) {
    std::unique_lock lock(m_mutex);
    m_answer.wait_until(lock, until, [this] {
        return std::none_of(m_volumes.begin(), m_volumes.end(), [](const auto &entry) {
            return entry.second.wanted || entry.second.asked;
        });
    });
}

void RemoteFigures::run() {
    std::vector<Question> questions;
    for (;;) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                return;
            for (Question &question : questions) {
                const auto volume = m_volumes.find(question.mount);
                if (volume == m_volumes.end() || volume->second.paused)
                    question.process.kill();
            }
            for (auto &[mount, volume] : m_volumes) {
                if (!std::exchange(volume.wanted, false))
                    continue;
                auto process =
                    ChildProcess::start({"stat", "-f", "-c", "%S %b %a", "--", volume.mountPoint},
                                        ChildProcess::Purpose::Question);
                volume.asked = bool(process);
                if (process)
                    questions.push_back({mount, *std::move(process), {}});
            }
        }
        m_answer.notify_all();

        std::vector<pollfd> waiting = {{m_wake.descriptor(), POLLIN, 0}};
        for (const Question &question : questions)
            waiting.push_back({question.process.output(), POLLIN, 0});
        ::poll(waiting.data(), waiting.size(), -1);
        m_wake.drain();

        bool first = false;
        std::erase_if(questions, [&](Question &question) {
            if (question.process.read(question.answer))
                return false;
            const auto figures = parseFigures(question.answer);
            const std::lock_guard lock(m_mutex);
            const auto volume = m_volumes.find(question.mount);
            if (volume == m_volumes.end())
                return true;
            volume->second.asked = false;
            volume->second.answered = steady_clock::now();
            first = first || (figures && !volume->second.figures);
            // A server that says nothing sensible now leaves the last figures as they are.
            if (figures)
                volume->second.figures = figures;
            return true;
        });
        m_answer.notify_all();
        if (first)
            m_firstFigures();
    }
}

} // namespace brightsweep
