#include "platform/linux/LinuxAdministratorRights.h"

#include "foundation/Paths.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

constexpr char helperName[] = "brightsweep-helper";
constexpr int dismissedStatus = 126;
constexpr int refusedStatus = 127;
constexpr std::size_t maximumWords = 4096;

struct Saying {
    std::string_view words;
    RightsOutcome outcome;
};

// What pkexec prints before it ends with 127. The first that is found counts.
constexpr std::array sayings = {
    Saying{"Error getting authority", RightsOutcome::NoBus},
    Saying{"Could not connect", RightsOutcome::NoBus},
    Saying{"Error checking for authorization", RightsOutcome::NoBus},
    Saying{"Error creating textual authentication agent", RightsOutcome::NoAgent},
    Saying{"No authentication agent found", RightsOutcome::NoAgent},
    Saying{"Not authorized", RightsOutcome::Denied},
};

std::filesystem::path helperPath() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        const auto beside = paths::join(paths::parent(program), helperName);
        if (::access(beside.c_str(), X_OK) == 0)
            return beside;
    }
    return BRIGHTSWEEP_HELPER_PATH;
}

// The caller's environment in the C locale. A shell that is not in /etc/shells would make pkexec
// refuse, and the helper has no use for one.
std::vector<std::string> toolEnvironment() {
    constexpr std::array<std::string_view, 4> leftOut = {"LC_", "LANG=", "LANGUAGE=", "SHELL="};
    std::vector<std::string> environment = {"LC_ALL=C"};
    for (std::string &entry : environmentOfChildren()) {
        if (std::none_of(leftOut.begin(), leftOut.end(),
                         [&](std::string_view prefix) { return entry.starts_with(prefix); }))
            environment.push_back(std::move(entry));
    }
    return environment;
}

// Starts the program with the stream as its standard input and output; 0 or an errno.
int spawn(std::vector<std::string> arguments, int stream, int errors, pid_t &process) {
    auto environment = toolEnvironment();
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    sigset_t none;
    sigset_t pipe;
    ::sigemptyset(&none);
    ::sigemptyset(&pipe);
    ::sigaddset(&pipe, SIGPIPE);
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, stream, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, stream, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &pipe);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const int error = ::posix_spawnp(&process, arguments[0].c_str(), &actions, &attributes,
                                     pointersTo(arguments).data(), pointersTo(environment).data());
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

int waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return status;
}

// One read from a descriptor that poll has found ready. False at the end of the stream.
template <typename Append>
bool readSome(int descriptor, Append append) {
    char block[4096];
    const ssize_t got = ::read(descriptor, block, sizeof block);
    if (got > 0)
        append(std::string_view(block, std::size_t(got)));
    return got > 0 || (got < 0 && (errno == EINTR || errno == EAGAIN));
}

bool sendAll(int stream, std::string_view bytes) {
    while (!bytes.empty()) {
        // No signal when the helper is gone: the program must not die with it.
        const ssize_t sent = ::send(stream, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes.remove_prefix(std::size_t(sent));
    }
    return true;
}

// Waits for the next payload, without limit: a dialog or a large removal takes its time. What
// `errors` delivers meanwhile is added to the words. Nothing when the stream has ended.
std::optional<std::string> receive(int stream, helper::FrameBuffer &received, int errors,
                                   std::string &words) {
    bool wordsMayCome = errors >= 0;
    for (;;) {
        if (auto payload = received.next())
            return payload;
        if (received.isOversized())
            return std::nullopt;
        pollfd polled[] = {{stream, POLLIN, 0}, {wordsMayCome ? errors : -1, POLLIN, 0}};
        if (::poll(polled, 2, -1) < 0 && errno != EINTR)
            return std::nullopt;
        if (polled[1].revents != 0) {
            wordsMayCome = readSome(errors, [&](std::string_view bytes) {
                words += bytes.substr(0, maximumWords - std::min(maximumWords, words.size()));
            });
        }
        if (polled[0].revents != 0 &&
            !readSome(stream, [&](std::string_view bytes) { received.append(bytes); }))
            return std::nullopt;
    }
}

void readRest(int errors, std::string &words) {
    ::fcntl(errors, F_SETFL, O_NONBLOCK);
    char block[4096];
    for (ssize_t got; (got = ::read(errors, block, sizeof block)) > 0;)
        words.append(
            block, std::min(std::size_t(got), maximumWords - std::min(maximumWords, words.size())));
    while (!words.empty() && (words.back() == '\n' || words.back() == ' '))
        words.pop_back();
}

} // namespace

RightsOutcome rightsOutcome(int status, std::string_view words) {
    if (status == dismissedStatus)
        return RightsOutcome::Dismissed;
    if (status != refusedStatus)
        return RightsOutcome::Failed;
    const auto saying = std::find_if(sayings.begin(), sayings.end(), [&](const Saying &row) {
        return words.find(row.words) != words.npos;
    });
    return saying == sayings.end() ? RightsOutcome::Failed : saying->outcome;
}

LinuxAdministratorRights::~LinuxAdministratorRights() {
    release();
}

RightsResult LinuxAdministratorRights::request() {
    const std::lock_guard lock(m_mutex);
    if (m_process != 0 && isAlive())
        return {RightsOutcome::Granted, 0, {}};
    end();
    return start();
}

int LinuxAdministratorRights::release() {
    const std::lock_guard lock(m_mutex);
    return end();
}

RightsToken LinuxAdministratorRights::token() const {
    const std::lock_guard lock(m_mutex);
    return m_token;
}

bool LinuxAdministratorRights::accepts(const RightsToken &token) {
    const std::lock_guard lock(m_mutex);
    return m_process != 0 && helper::sameToken(token, m_token) && isAlive();
}

PrivilegedReply LinuxAdministratorRights::removeItem(const RightsToken &token,
                                                     const RemovalTarget &target) {
    return ask({token,
                helper::Verb::RemovePath,
                {target.root.path.native(), target.root.device, target.root.inode,
                 target.relative.native()}});
}

PrivilegedReply LinuxAdministratorRights::dropCaches(const RightsToken &token) {
    return ask({token, helper::Verb::DropCaches, {}});
}

RightsResult LinuxAdministratorRights::start() {
    int streams[2];
    int errors[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, streams) != 0)
        return {RightsOutcome::Failed, errno, std::strerror(errno)};
    FileDescriptor own(streams[0]);
    FileDescriptor others(streams[1]);
    if (::pipe2(errors, O_CLOEXEC) != 0)
        return {RightsOutcome::Failed, errno, std::strerror(errno)};
    const FileDescriptor errorsRead(errors[0]);
    FileDescriptor errorsWritten(errors[1]);

    std::vector<std::string> arguments;
    if (::geteuid() != 0)
        arguments.emplace_back("pkexec");
    arguments.push_back(helperPath().native());
    pid_t process = 0;
    if (const int error = spawn(arguments, others.get(), errorsWritten.get(), process))
        return {RightsOutcome::Failed, error, arguments[0] + ": " + std::strerror(error)};
    others.reset();
    errorsWritten.reset();

    std::string words;
    helper::FrameBuffer received;
    const auto payload = receive(own.get(), received, errorsRead.get(), words);
    const auto token = payload ? helper::decodeHello(*payload) : std::nullopt;
    if (!token) {
        own.reset();
        const int status = waitFor(process);
        readRest(errorsRead.get(), words);
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : EINTR;
        return {WIFEXITED(status) ? rightsOutcome(code, words) : RightsOutcome::Failed, code,
                words};
    }
    m_stream = std::move(own);
    m_received = std::move(received);
    m_process = process;
    m_token = *token;
    return {RightsOutcome::Granted, 0, words};
}

// The helper never speaks unasked, so that anything to read is the end of the stream.
bool LinuxAdministratorRights::isAlive() const {
    pollfd polled{m_stream.get(), POLLIN, 0};
    return ::poll(&polled, 1, 0) == 0;
}

// Ends the helper by ending its input, and waits until it has gone.
int LinuxAdministratorRights::end() {
    m_stream.reset();
    m_received = {};
    m_token = {};
    if (m_process == 0)
        return 0;
    const int status = waitFor(m_process);
    m_process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : EINTR;
}

PrivilegedReply LinuxAdministratorRights::ask(const helper::Request &request) {
    const std::lock_guard lock(m_mutex);
    if (m_process == 0)
        return {false, false, "no administrator rights are held"};
    const std::string bytes = helper::frame(helper::encodeRequest(request));
    if (bytes.empty())
        return {false, false, std::strerror(ENAMETOOLONG)};
    std::string none;
    std::optional<std::string> payload;
    if (sendAll(m_stream.get(), bytes))
        payload = receive(m_stream.get(), m_received, -1, none);
    const auto reply = payload ? helper::decodeReply(*payload) : std::nullopt;
    if (!reply) {
        end();
        return {false, false, "the process that held the rights has ended"};
    }
    return {reply->performed, reply->gone, reply->output};
}

} // namespace brightsweep
