// The process that acts as administrator: answers requests on its standard input until that ends.
//
// It trusts nobody but the process that started it, which also holds the token. Every request names
// one act of a closed list, and each item is checked here again, whatever the program has checked
// before.

#include "helper/AptReports.h"
#include "helper/Channel.h"
#include "helper/Frame.h"
#include "helper/ItemsRemoval.h"
#include "helper/PackagesRemoval.h"
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
#include <climits>
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
    /// `packages` is null where the user was not asked about them.
    Service(Channel &channel, const Token &token, ItemsRemoval &removal,
            const PackagesRemoval *packages)
        : m_channel(channel), m_token(token), m_removal(removal), m_packages(packages) {}

    int run() {
        while (const auto payload = m_channel.next()) {
            const std::string reply = answer(*payload);
            if (!reply.empty() && !m_channel.send(reply))
                return 1;
        }
        if (m_channel.isOversized())
            m_channel.send(encodeReplies({{false, false, "oversized frame"}}));
        return m_channel.endedCleanly() ? 0 : 1;
    }

private:
    // Empty for what is not answered.
    std::string answer(const std::string &payload) {
        Request request;
        const std::string_view problem = decodeRequest(payload, request);
        if (!sameToken(request.token, m_token))
            return refusal("wrong token");
        if (!problem.empty())
            return refusal(problem);
        switch (request.verb) {
        case Verb::RemoveItems:
            return encodeReplies(
                m_removal.run(request.remove, [this](int output) { return waitFor(output); }));
        case Verb::DropCaches:
            return encodeReplies({dropCaches()});
        case Verb::RemovePackages:
            return m_packages ? encodePackagesReply(m_packages->run(request.packages))
                              : refusal("these rights do not reach packages");
        case Verb::Stop: // came when its request had been answered
            break;
        }
        return {};
    }

    static std::string refusal(std::string_view words) {
        return encodeReplies({{false, false, std::string(words)}});
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
    const PackagesRemoval *const m_packages;
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

// apt-get's hook: ends it unless it is about to remove exactly the names.
int verify(const std::vector<std::string> &names) {
    std::string report;
    std::array<char, 16 * 1024> block;
    for (ssize_t got; (got = ::read(STDIN_FILENO, block.data(), block.size())) != 0;) {
        if (got < 0 && errno != EINTR)
            return 1;
        report.append(block.data(), std::size_t(got > 0 ? got : 0));
    }
    if (matchesReport(report, names))
        return 0;
    std::fprintf(stderr, "%s\n", std::string(hookRefusal).c_str());
    return 1;
}

std::string ownPath() {
    std::array<char, PATH_MAX> path;
    const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
    return {path.data(), std::size_t(size > 0 ? size : 0)};
}

int main(int argc, char **argv) {
    if (argc > 2 && argv[1] == verifyArgument)
        return verify({argv + 2, argv + argc});
    if (::geteuid() != 0) {
        std::fputs("brightsweep-helper: runs as administrator only\n", stderr);
        return 1;
    }
    const std::string_view purpose = argc == 2 ? argv[1] : "";
    if (purpose != filesArgument && purpose != packagesArgument) {
        std::fputs("brightsweep-helper: started by brightsweep only\n", stderr);
        return 2;
    }
    const RemovalCaller caller = callerOfProcess();
    ItemsRemoval removal(caller);
    // Package managers know the running system only.
    const bool hasPackages = purpose == packagesArgument && caller.systemRoot.empty();
    const PackagesRemoval packages(
        [](const std::vector<std::string> &arguments) {
            return runToEnd(arguments, PackagesRemoval::environment());
        },
        ownPath());
    settle();
    Channel channel(STDIN_FILENO);
    Token token;
    if (!channel.isSound() || !makeToken(token) || !channel.send(encodeHello(token)))
        return 1;
    return Service(channel, token, removal, hasPackages ? &packages : nullptr).run();
}
