#include "platform/linux/LinuxAdministratorRights.h"

#include "foundation/Paths.h"
#include "linux/ProcessStart.h"
#include "platform/linux/BusProbe.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

constexpr char helperName[] = "brightsweep-helper";
// Which of the policy's two questions is asked, by purpose.
constexpr std::array purposeArguments = {"files", "packages"};
// Between two looks at a stop flag, and how long a stopped request may take to answer.
constexpr int tickMilliseconds = 50;
constexpr int stopMilliseconds = 1000;
// Of a program that ended by itself.
constexpr int highestStatus = 127;
constexpr int dismissedStatus = 126;
constexpr int refusedStatus = 127;
constexpr std::size_t maximumWords = 4096;
constexpr char noRights[] = "no administrator rights are held";
constexpr char helperHasEnded[] = "the process that held the rights has ended";

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

// Waits for the hello, without limit: the user takes his time. What `errors` delivers meanwhile is
// added to the words. Nothing when the stream has ended.
std::optional<std::string> receiveHello(int stream, int errors, std::string &words) {
    helper::FrameBuffer received;
    bool wordsMayCome = true;
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

// A running helper. Requests come one after the other; ending it is possible at any time.
class LinuxAdministratorRights::Helper {
public:
    Helper(FileDescriptor stream, pid_t process, RightsPurpose purpose, const helper::Token &token)
        : m_stream(std::move(stream)), m_process(process), m_purpose(purpose), m_token(token) {}
    ~Helper() {
        end();
        m_stream.reset();
        const pid_t process = m_process;
        // It ends within a second by itself; whoever gives the rights up does not wait for it.
        try {
            std::thread([process] { waitForProcess(process); }).detach();
        } catch (const std::system_error &) {
            ::waitpid(process, nullptr, WNOHANG);
        }
    }
    Helper(const Helper &) = delete;
    Helper &operator=(const Helper &) = delete;

    bool accepts(const RightsToken &token) {
        const std::lock_guard lock(m_tokenMutex);
        return helper::sameToken(token, m_token) && isAlive();
    }
    bool covers(RightsPurpose purpose) const { return isAlive() && m_purpose >= purpose; }
    RightsToken token() {
        const std::lock_guard lock(m_tokenMutex);
        return isAlive() ? m_token : RightsToken{};
    }
    // Its end of the stream is closed for both, so that it stops what it does and ends.
    void end() {
        const std::lock_guard lock(m_tokenMutex);
        ::explicit_bzero(m_token.data(), m_token.size());
        m_isEnded = true;
        ::shutdown(m_stream.get(), SHUT_RDWR);
    }
    bool isAlive() const {
        pollfd polled{m_stream.get(), POLLRDHUP, 0};
        return !m_isEnded && ::poll(&polled, 1, 0) == 0;
    }

    // The reply by its decoder, or replies that refuse. Neither when the helper has gone or been
    // ended. A request that waits for another one gives up when it is stopped.
    template <typename Reply>
    struct Answer {
        std::optional<Reply> reply;
        std::optional<helper::Replies> refusals;
    };
    template <typename Reply>
    Answer<Reply> ask(const helper::Request &request, const std::atomic<bool> *stop,
                      std::optional<Reply> (*decode)(std::string_view)) {
        const std::string bytes = helper::frame(helper::encodeRequest(request));
        if (bytes.empty())
            return {{}, helper::Replies{{false, false, std::strerror(ENAMETOOLONG)}}};
        if (!takeTurn(stop))
            return {{}, helper::Replies{{false, false, std::strerror(ECANCELED)}}};
        const Turn turn(*this);
        if (!sendAll(m_stream.get(), bytes))
            return {};
        Answer<Reply> answer;
        if (const auto payload = receive(request.token, stop)) {
            answer.reply = decode(*payload);
            if (!answer.reply)
                answer.refusals = helper::decodeReplies(*payload);
        }
        if (!answer.reply && !answer.refusals)
            end();
        return answer;
    }

private:
    class Turn {
    public:
        explicit Turn(Helper &helper) : m_helper(helper) {}
        ~Turn() {
            const std::lock_guard lock(m_helper.m_turnMutex);
            m_helper.m_busy = false;
            m_helper.m_turns.notify_one();
        }

    private:
        Helper &m_helper;
    };

    bool takeTurn(const std::atomic<bool> *stop) {
        std::unique_lock lock(m_turnMutex);
        while (m_busy) {
            if (stop && *stop)
                return false;
            m_turns.wait_for(lock, std::chrono::milliseconds(tickMilliseconds));
        }
        m_busy = true;
        return true;
    }

    // Waits for the next payload for as long as a large removal takes.
    std::optional<std::string> receive(const helper::Token &token, const std::atomic<bool> *stop) {
        int left = -1; // milliseconds; no limit until a stop was sent
        for (;;) {
            if (auto payload = m_received.next())
                return payload;
            if (m_received.isOversized() || left == 0)
                return std::nullopt;
            if (left < 0 && stop && *stop) {
                sendAll(m_stream.get(),
                        helper::frame(helper::encodeRequest({token, helper::Verb::Stop, {}})));
                left = stopMilliseconds;
            }
            pollfd polled{m_stream.get(), POLLIN, 0};
            const bool ticks = stop || left > 0;
            const int ready = ::poll(&polled, 1, ticks ? tickMilliseconds : -1);
            if (ready < 0 && errno != EINTR)
                return std::nullopt;
            if (ready == 0 && left > 0)
                left = std::max(left - tickMilliseconds, 0);
            if (ready > 0 && !readSome(m_stream.get(),
                                       [&](std::string_view bytes) { m_received.append(bytes); }))
                return std::nullopt;
        }
    }

    FileDescriptor m_stream;
    const pid_t m_process;
    const RightsPurpose m_purpose;
    std::mutex m_tokenMutex;
    RightsToken m_token;
    std::atomic<bool> m_isEnded{false};
    std::mutex m_turnMutex;
    std::condition_variable m_turns;
    bool m_busy = false;
    helper::FrameBuffer m_received; // of whoever has the turn
};

LinuxAdministratorRights::~LinuxAdministratorRights() {
    release();
}

std::shared_ptr<LinuxAdministratorRights::Helper> LinuxAdministratorRights::helper() const {
    const std::lock_guard lock(m_mutex);
    return m_helper;
}

RightsResult LinuxAdministratorRights::request(RightsPurpose purpose) {
    const std::lock_guard requesting(m_requesting);
    const auto held = helper();
    if (held && held->covers(purpose))
        return {RightsOutcome::Granted, 0, {}};
    if (!held || !held->isAlive())
        release();
    {
        const std::lock_guard lock(m_mutex);
        m_withdrawn = false;
    }
    return start(purpose);
}

int LinuxAdministratorRights::release() {
    std::shared_ptr<Helper> held;
    {
        const std::lock_guard lock(m_mutex);
        held = std::exchange(m_helper, nullptr);
        m_withdrawn = true;
        // The question goes with the process that asks it.
        if (m_asking != 0)
            ::kill(m_asking, SIGTERM);
    }
    if (held)
        held->end();
    return 0;
}

RightsToken LinuxAdministratorRights::token() const {
    const auto held = helper();
    return held ? held->token() : RightsToken{};
}

bool LinuxAdministratorRights::accepts(const RightsToken &token) {
    const auto held = helper();
    return held && held->accepts(token);
}

std::vector<PrivilegedReply> LinuxAdministratorRights::removeItems(const RightsToken &token,
                                                                   const PrivilegedRemoval &removal,
                                                                   const std::atomic<bool> *stop) {
    static_assert(PrivilegedRemoval::mostItems <= helper::maximumItems);
    helper::Request request{token, helper::Verb::RemoveItems, {}};
    request.remove.root = removal.root.path.native();
    request.remove.device = removal.root.device;
    request.remove.inode = removal.root.inode;
    request.remove.way = removal.way.native();
    for (const PrivilegedRemoval::Item &item : removal.items) {
        request.remove.items.push_back({item.name, item.attributes.device, item.attributes.inode,
                                        item.attributes.kind, item.attributes.size,
                                        item.attributes.changed});
    }
    const helper::Replies replies = ask(request, stop);
    std::vector<PrivilegedReply> answers;
    // One reply for all is a refusal of the whole.
    for (std::size_t i = 0; i < removal.items.size(); ++i) {
        const helper::Reply &reply = replies[replies.size() == removal.items.size() ? i : 0];
        answers.push_back({reply.performed, reply.gone, reply.output});
    }
    return answers;
}

PrivilegedReply LinuxAdministratorRights::dropCaches(const RightsToken &token) {
    const helper::Reply reply = ask({token, helper::Verb::DropCaches, {}}, nullptr).front();
    return {reply.performed, reply.gone, reply.output};
}

PackagesReply LinuxAdministratorRights::removePackages(const RightsToken &token,
                                                       const PackageRemoval &removal) {
    const auto held = helper();
    if (!held)
        return {PackagesOutcome::Refused, {}, noRights};
    helper::Request request{token, helper::Verb::RemovePackages, {}};
    request.packages = removal;
    auto answer = held->ask(request, nullptr, &helper::decodePackagesReply);
    if (answer.reply)
        return *std::move(answer.reply);
    // What became of a removal whose process has ended is told by the database alone.
    return answer.refusals
               ? PackagesReply{PackagesOutcome::Refused, {}, answer.refusals->front().output}
               : PackagesReply{PackagesOutcome::Broken,
                               {},
                               std::string(helperHasEnded) +
                                   "; the package manager may still be at work"};
}

RightsResult LinuxAdministratorRights::start(RightsPurpose purpose) {
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
    arguments.emplace_back(purposeArguments[std::size_t(purpose)]);
    const auto [process, error] = startProcess({.arguments = arguments,
                                                .environment = toolEnvironment(),
                                                .input = others.get(),
                                                .output = others.get(),
                                                .errors = errorsWritten.get()});
    if (error != 0)
        return {RightsOutcome::Failed, error, arguments[0] + ": " + std::strerror(error)};
    others.reset();
    errorsWritten.reset();
    {
        const std::lock_guard lock(m_mutex);
        m_asking = process;
        if (m_withdrawn)
            ::kill(process, SIGTERM);
    }

    std::string words;
    const auto payload = receiveHello(own.get(), errorsRead.get(), words);
    auto token = payload ? helper::decodeHello(*payload) : std::nullopt;
    {
        const std::lock_guard lock(m_mutex);
        m_asking = 0;
        if (token && !m_withdrawn) {
            m_helper = std::make_shared<Helper>(std::move(own), process, purpose, *token);
            ::explicit_bzero(token->data(), token->size());
            return {RightsOutcome::Granted, 0, words};
        }
    }
    own.reset();
    const int code = waitForProcess(process);
    if (token)
        return {RightsOutcome::Dismissed, dismissedStatus, "taken back"};
    readRest(errorsRead.get(), words);
    const bool wasKilled = code < 0 || code > highestStatus;
    return {wasKilled ? RightsOutcome::Dismissed : rightsOutcome(code, words),
            wasKilled ? EINTR : code, words};
}

helper::Replies LinuxAdministratorRights::ask(const helper::Request &request,
                                              const std::atomic<bool> *stop) {
    const auto held = helper();
    if (!held)
        return {{false, false, noRights}};
    auto answer = held->ask(request, stop, &helper::decodeReplies);
    if (answer.reply)
        return *std::move(answer.reply);
    return answer.refusals.value_or(helper::Replies{{false, false, helperHasEnded}});
}

} // namespace brightsweep
