#pragma once

#include "foundation/FileDescriptor.h"
#include "helper/Frame.h"

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace brightsweep::helper {

/// The helper's end of the stream to the process that started it. Nobody else is heard, whoever
/// holds a copy of the other end: the kernel's own record of each message's sender must be that of
/// the process that made the stream, and the stream ends with that process.
class Channel {
public:
    /// `stream` is a socket and outlives this object.
    explicit Channel(int stream);

    /// False where the stream is no such socket, or whoever made it has gone.
    bool isSound() const { return m_peer > 0 && bool(m_peerProcess); }
    /// Waits for the next payload; nothing at the end of the stream or after a stranger's message.
    std::optional<std::string> next();
    bool send(const std::string &payload);

    /// What a request under way looks at: the descriptors that become readable when there is
    /// something to read or the other process has ended.
    int stream() const { return m_stream; }
    int peerProcess() const { return m_peerProcess.get(); }
    /// Takes what has arrived without waiting. False at the end of the stream.
    bool takeArrived();
    /// A payload that has arrived, if it is whole.
    std::optional<std::string> arrived() { return m_received.next(); }
    /// Puts payloads that a request did not want in front of those to come.
    void keep(std::string payload) { m_kept.push_back(std::move(payload)); }
    bool isOversized() const { return m_received.isOversized(); }
    /// True when the stream ended between two frames.
    bool endedCleanly() const { return m_endedCleanly; }

private:
    bool receive(int flags);

    const int m_stream;
    pid_t m_peer = 0;
    uid_t m_peerUser = 0;
    FileDescriptor m_peerProcess;
    FrameBuffer m_received;
    std::vector<std::string> m_kept;
    bool m_endedCleanly = false;
};

} // namespace brightsweep::helper
