#include "helper/Channel.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstring>

namespace brightsweep::helper {

Channel::Channel(int stream) : m_stream(stream) {
    const int yes = 1;
    ucred maker{};
    socklen_t size = sizeof maker;
    if (::setsockopt(stream, SOL_SOCKET, SO_PASSCRED, &yes, sizeof yes) != 0 ||
        ::getsockopt(stream, SOL_SOCKET, SO_PEERCRED, &maker, &size) != 0)
        return;
    m_peer = maker.pid;
    m_peerUser = maker.uid;
    // A process number may be used again; a pidfd stands for the one process for ever.
    m_peerProcess = FileDescriptor(int(::syscall(SYS_pidfd_open, maker.pid, 0)));
}

bool Channel::receive(int flags) {
    char block[64 * 1024];
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred)) + CMSG_SPACE(64)];
    iovec part{block, sizeof block};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    ssize_t got;
    do {
        got = ::recvmsg(m_stream, &message, flags | MSG_CMSG_CLOEXEC);
    } while (got < 0 && errno == EINTR);
    if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        return true;
    m_endedCleanly = got == 0 && m_received.isEmpty();
    if (got <= 0)
        return false;
    bool isKnown = false;
    for (cmsghdr *part_ = CMSG_FIRSTHDR(&message); part_; part_ = CMSG_NXTHDR(&message, part_)) {
        if (part_->cmsg_level != SOL_SOCKET)
            continue;
        if (part_->cmsg_type == SCM_CREDENTIALS) {
            ucred sender;
            std::memcpy(&sender, CMSG_DATA(part_), sizeof sender);
            isKnown = sender.pid == m_peer && sender.uid == m_peerUser;
        } else {
            return false; // no descriptors are ever sent
        }
    }
    if (!isKnown)
        return false;
    m_received.append({block, std::size_t(got)});
    return true;
}

std::optional<std::string> Channel::next() {
    if (!m_kept.empty()) {
        std::string payload = std::move(m_kept.front());
        m_kept.erase(m_kept.begin());
        return payload;
    }
    for (;;) {
        if (auto payload = m_received.next())
            return payload;
        if (m_received.isOversized())
            return std::nullopt;
        pollfd polled[] = {{m_stream, POLLIN, 0}, {m_peerProcess.get(), POLLIN, 0}};
        if (::poll(polled, 2, -1) < 0 && errno != EINTR)
            return std::nullopt;
        // What it said before its end is not acted on after it.
        if (polled[1].revents != 0 || (polled[0].revents != 0 && !receive(0)))
            return std::nullopt;
    }
}

bool Channel::takeArrived() {
    return receive(MSG_DONTWAIT);
}

bool Channel::send(const std::string &payload) {
    const std::string bytes = frame(payload);
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t written =
            ::send(m_stream, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        sent += std::size_t(written);
    }
    return true;
}

} // namespace brightsweep::helper
