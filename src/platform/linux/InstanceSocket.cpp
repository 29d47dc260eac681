#include "platform/linux/InstanceSocket.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"

#include <QFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace brightsweep {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Between two looks at a first one that has its lock but no socket yet.
constexpr milliseconds startingPause(10);
// A caller writes its few bytes at once; one that does not is let go.
constexpr milliseconds callerPatience(500);
constexpr std::size_t longestRequest = 1 << 20;
constexpr char taken[] = "taken";

FileDescriptor openFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        return {};
    return FileDescriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::string fileName(const char *kind) {
    std::string name = bundleIdentifier;
    name.append(".").append(kind);
    return name;
}

std::string socketName() {
    return fileName("socket");
}

// By way of the folder's descriptor, as an address holds a hundred bytes only.
sockaddr_un addressIn(const FileDescriptor &folder) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string path = "/proc/self/fd/";
    path.append(std::to_string(folder.get())).append("/").append(socketName());
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

FileDescriptor makeSocket() {
    return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool waitFor(int descriptor, short events, steady_clock::time_point until) {
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
        pollfd wanted{descriptor, events, 0};
        const int found = ::poll(&wanted, 1, int(std::max<std::int64_t>(left.count(), 0)));
        if (found >= 0 || errno != EINTR)
            return found > 0;
    }
}

// All that comes until the other side has said everything; false if it does not in time.
bool readToEnd(int descriptor, std::string &text, steady_clock::time_point until) {
    char block[256];
    while (text.size() <= longestRequest && waitFor(descriptor, POLLIN, until)) {
        const ssize_t got = ::read(descriptor, block, sizeof block);
        if (got == 0)
            return true;
        if (got > 0)
            text.append(block, std::size_t(got));
        else if (errno != EINTR && errno != EAGAIN)
            return false;
    }
    return false;
}

bool writeWhole(int descriptor, std::string_view text, steady_clock::time_point until) {
    while (!text.empty()) {
        const ssize_t sent = ::send(descriptor, text.data(), text.size(), MSG_NOSIGNAL);
        if (sent > 0)
            text.remove_prefix(std::size_t(sent));
        else if (errno != EINTR && (errno != EAGAIN || !waitFor(descriptor, POLLOUT, until)))
            return false;
    }
    return true;
}

// The token, and behind a NUL the folder, where there is one; behind two the one whose space is
// asked about.
std::string wordsOf(const InstanceRequest &request) {
    std::string words = request.activationToken;
    if (request.page != RequestedPage::None)
        words.append(request.page == RequestedPage::Usage ? 2 : 1, '\0')
            .append(request.folder.native());
    return words;
}

InstanceRequest requestOf(const std::string &words) {
    const std::size_t end = words.find('\0');
    if (end == std::string::npos)
        return {words};
    const bool isUsage = words.substr(end + 1, 1) == std::string(1, '\0');
    return {words.substr(0, end), isUsage ? RequestedPage::Usage : RequestedPage::Duplicates,
            words.substr(end + (isUsage ? 2 : 1))};
}

} // namespace

InstanceSocket::~InstanceSocket() {
    if (m_thread.joinable()) {
        m_stop.wake();
        m_thread.join();
    }
}

InstanceOutcome InstanceSocket::claim(bool activate, const InstanceRequest &request,
                                      steady_clock::time_point until) {
    const FileDescriptor folder = openFolder();
    FileDescriptor lock(::openat(folder.get(), fileName("lock").c_str(),
                                 O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock) {
        NSLog("no lock for one instance: %s", std::strerror(errno));
        return InstanceOutcome::Failed;
    }
    for (;;) {
        if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
            m_lock = std::move(lock);
            if (listen(folder))
                return InstanceOutcome::First;
            NSLog("no socket for later starts: %s", std::strerror(errno));
            m_lock.reset();
            return InstanceOutcome::Failed;
        }
        if (errno != EWOULDBLOCK && errno != EINTR)
            return InstanceOutcome::Failed;
        if (!activate)
            return InstanceOutcome::PassedOn;
        if (ask(folder, request, until))
            return InstanceOutcome::PassedOn;
        if (steady_clock::now() >= until)
            return InstanceOutcome::Hanging;
        std::this_thread::sleep_for(startingPause);
    }
}

bool InstanceSocket::ask(const FileDescriptor &folder, const InstanceRequest &request,
                         steady_clock::time_point until) {
    const FileDescriptor caller = makeSocket();
    const sockaddr_un address = addressIn(folder);
    if (::connect(caller.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return false;
    std::string answer;
    if (!writeWhole(caller.get(), wordsOf(request), until) ||
        ::shutdown(caller.get(), SHUT_WR) != 0 || !readToEnd(caller.get(), answer, until))
        return false;
    return answer == taken;
}

bool InstanceSocket::listen(const FileDescriptor &folder) {
    // One left behind by a process that was killed; nobody else binds without the lock.
    ::unlinkat(folder.get(), socketName().c_str(), 0);
    FileDescriptor socket = makeSocket();
    const sockaddr_un address = addressIn(folder);
    if (::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(socket.get(), SOMAXCONN) != 0)
        return false;
    m_socket = std::move(socket);
    try {
        m_thread = std::thread(&InstanceSocket::serve, this);
    } catch (const std::system_error &error) {
        errno = error.code().value();
        return false;
    }
    return true;
}

void InstanceSocket::serve() {
    for (;;) {
        pollfd wanted[] = {{m_socket.get(), POLLIN, 0}, {m_stop.descriptor(), POLLIN, 0}};
        if (::poll(wanted, std::size(wanted), -1) < 0 && errno != EINTR)
            return;
        if (wanted[1].revents)
            return;
        FileDescriptor caller(
            ::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (caller)
            hear(std::move(caller));
    }
}

void InstanceSocket::hear(FileDescriptor caller) {
    std::string words;
    if (!readToEnd(caller.get(), words, steady_clock::now() + callerPatience))
        return;
    m_requests.add(requestOf(words),
                   [answer = std::make_shared<FileDescriptor>(std::move(caller))] {
                       // A caller that has given up by now would end this process by a signal.
                       [[maybe_unused]] const auto sent =
                           ::send(answer->get(), taken, std::strlen(taken), MSG_NOSIGNAL);
                       // Whatever the wish leads to, its caller need not wait for that.
                       ::shutdown(answer->get(), SHUT_RDWR);
                   });
}

} // namespace brightsweep
