// The process that acts as administrator: answers requests on its standard input until that ends.
//
// It trusts nobody but the process that started it, which also holds the token. Every request names
// one act of a closed list, and each item is checked here again, whatever the program has checked
// before.

#include "helper/Channel.h"
#include "helper/Frame.h"
#include "helper/ItemsRemoval.h"
#include "linux/UserDirectories.h"

#include <fcntl.h>
#include <poll.h>
#include <pwd.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

using namespace brightsweep;
using namespace brightsweep::helper;

namespace {

constexpr char dropCachesFile[] = "/proc/sys/vm/drop_caches";
// Which of the two questions the user was asked; packages includes files.
constexpr std::string_view filesArgument = "files";
constexpr std::string_view packagesArgument = "packages";

std::string homeOf(uid_t user) {
    const passwd *entry = ::getpwuid(user);
    return entry && entry->pw_dir ? entry->pw_dir : "";
}

// What the user's own settings call the folders for documents, pictures and so on. They only add to
// what is kept. The file is the user's, and so may be anything.
std::vector<StandardFolder> userFoldersOf(const std::string &home) {
    const FileDescriptor file(::open((home + "/.config/user-dirs.dirs").c_str(),
                                     O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    std::array<char, 16 * 1024> text;
    const ssize_t got = ::read(file.get(), text.data(), text.size());
    std::vector<StandardFolder> folders;
    for (const auto &[key, path] :
         parseUserDirectories({text.data(), std::size_t(got > 0 ? got : 0)}, home))
        folders.push_back({systemRole, path});
    return folders;
}

// Whom the helper works for. What the environment says counts only where it is the caller's own,
// that is, where nobody has gained rights by starting this process.
RemovalCaller callerOfProcess() {
    RemovalCaller caller;
    if (const char *text = std::getenv("PKEXEC_UID")) {
        std::from_chars(text, text + std::strlen(text), caller.user);
        caller.homes = {homeOf(caller.user)};
    } else {
        const auto variable = [](const char *name) {
            const char *value = std::getenv(name);
            return std::string(value ? value : "");
        };
        caller.user = ::getuid();
        caller.homes = {variable("HOME"), homeOf(caller.user)};
        caller.ownsAllHomes = true;
        caller.systemRoot = variable("BRIGHTSWEEP_SYSTEM_ROOT");
    }
    caller.furtherFolders = userFoldersOf(caller.homes.front());
    return caller;
}

bool makeToken(Token &token) {
    return ::getrandom(token.data(), token.size(), 0) == ssize_t(token.size());
}

Reply dropCaches() {
    ::sync();
    const int file = ::open(dropCachesFile, O_WRONLY | O_CLOEXEC);
    Reply reply;
    reply.performed = file >= 0 && ::write(file, "3", 1) == 1;
    if (!reply.performed)
        reply.output = std::strerror(errno);
    if (file >= 0)
        ::close(file);
    return reply;
}

// Answers requests until the stream ends.
class Service {
public:
    Service(Channel &channel, const Token &token, ItemsRemoval &removal)
        : m_channel(channel), m_token(token), m_removal(removal) {}

    int run() {
        while (const auto payload = m_channel.next()) {
            const auto replies = answer(*payload);
            if (!replies.empty() && !m_channel.send(encodeReplies(replies)))
                return 1;
        }
        if (m_channel.isOversized())
            m_channel.send(encodeReplies({{false, false, "oversized frame"}}));
        return m_channel.endedCleanly() ? 0 : 1;
    }

private:
    Replies answer(const std::string &payload) {
        Request request;
        const std::string_view problem = decodeRequest(payload, request);
        if (!sameToken(request.token, m_token))
            return {{false, false, "wrong token"}};
        if (!problem.empty())
            return {{false, false, std::string(problem)}};
        switch (request.verb) {
        case Verb::RemoveItems:
            return m_removal.run(request.remove, [this](int output) { return waitFor(output); });
        case Verb::DropCaches:
            return {dropCaches()};
        case Verb::Stop: // came when its request had been answered
            break;
        }
        return {};
    }

    // Waits for the tool's output; false when it is to be ended, by a stop or by the end of whoever
    // asked.
    bool waitFor(int output) {
        // One may have come along with the request.
        if (isStopArrived())
            return false;
        for (;;) {
            pollfd polled[] = {{output, POLLIN, 0},
                               {m_channel.stream(), POLLIN, 0},
                               {m_channel.peerProcess(), POLLIN, 0}};
            if (::poll(polled, 3, -1) < 0) {
                if (errno == EINTR)
                    continue;
                return false;
            }
            if (polled[2].revents != 0)
                return false;
            if (polled[1].revents != 0 && (!m_channel.takeArrived() || isStopArrived()))
                return false;
            if (polled[0].revents != 0)
                return true;
        }
    }

    bool isStopArrived() {
        bool stop = false;
        while (auto payload = m_channel.arrived()) {
            Request request;
            if (decodeRequest(*payload, request).empty() && request.verb == Verb::Stop &&
                sameToken(request.token, m_token))
                stop = true;
            else
                m_channel.keep(std::move(*payload));
        }
        return stop || m_channel.isOversized();
    }

    Channel &m_channel;
    const Token &m_token;
    ItemsRemoval &m_removal;
};

// Nothing of the caller's surroundings reaches what is started from here.
void settle() {
    ::clearenv();
    ::umask(022);
    // The end of the standard input ends the helper, not a key pressed in the caller's terminal.
    for (const int number : {SIGPIPE, SIGINT, SIGHUP, SIGQUIT})
        ::signal(number, SIG_IGN);
    const int nothing = ::open("/dev/null", O_WRONLY);
    if (::chdir("/") != 0 || nothing < 0 || ::dup2(nothing, STDERR_FILENO) < 0)
        std::_Exit(1);
    ::close_range(STDERR_FILENO + 1, ~0u, 0);
}

} // namespace

int main(int argc, char **argv) {
    if (::geteuid() != 0) {
        std::fputs("brightsweep-helper: runs as administrator only\n", stderr);
        return 1;
    }
    const std::string_view purpose = argc == 2 ? argv[1] : "";
    if (purpose != filesArgument && purpose != packagesArgument) {
        std::fputs("brightsweep-helper: started by brightsweep only\n", stderr);
        return 2;
    }
    ItemsRemoval removal(callerOfProcess());
    settle();
    Channel channel(STDIN_FILENO);
    Token token;
    if (!channel.isSound() || !makeToken(token) || !channel.send(encodeHello(token)))
        return 1;
    return Service(channel, token, removal).run();
}
