#pragma once

#include "platform/linux/ReferenceNumbers.h"
#include "platform/linux/WakePipe.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace brightsweep {

struct VolumeFigures {
    std::uint64_t totalBytes = 0;
    std::uint64_t freeBytes = 0; ///< available to the user

    bool operator==(const VolumeFigures &) const = default;
};

/// The figures of volumes whose answer depends on another program or machine.
///
/// Each question is put by a process of its own, since a thread whose server has taken the question
/// and keeps silent can be ended by nothing, and would keep this process from ending too. A volume
/// has one question open at most. All calls are safe from every thread and none of them waits for
/// an answer, but wait().
class RemoteFigures {
public:
    /// `firstFigures` is called, on an own thread, when a volume has its first figures.
    explicit RemoteFigures(std::function<void()> firstFigures);
    ~RemoteFigures();

    /// The figures as last heard, none before the first answer. Asks anew where they are old.
    std::optional<VolumeFigures> ask(MountIdentity mount, const std::string &mountPoint);
    /// Forgets every volume but these.
    void keepOnly(const std::vector<MountIdentity> &mounts);
    /// Takes back an open question, which would hold the volume, and puts none before resume().
    /// Waits a little for it; a question that the server has taken cannot be taken back.
    void pause(MountIdentity mount);
    void resume(MountIdentity mount);
    /// Waits until each question asked so far has been answered, or until the time has come.
    void wait(std::chrono::steady_clock::time_point until);

private:
    struct Volume {
        std::string mountPoint;
        std::optional<VolumeFigures> figures;
        std::chrono::steady_clock::time_point answered;
        bool wanted = false; ///< to be asked
        bool asked = false;  ///< the answer is not there yet
        bool paused = false; ///< not to be asked, and an open question is to end
    };

    bool startAsking();
    void run();

    const std::function<void()> m_firstFigures;
    std::mutex m_mutex;
    std::condition_variable m_answer;
    std::map<MountIdentity, Volume> m_volumes;
    bool m_stop = false;
    WakePipe m_wake;
    std::thread m_thread;
};

/// Reads what the tool for this prints: block size, blocks, blocks available to the user.
std::optional<VolumeFigures> parseFigures(std::string_view text);

} // namespace brightsweep
