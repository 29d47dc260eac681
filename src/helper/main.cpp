// The process that acts as administrator: answers requests on its standard input until that ends.
//
// It trusts nobody but whoever started it and holds the token. Every request names one act of a
// closed list, and each path is checked here again, whatever the program has checked before.

#include "helper/Frame.h"
#include "helper/PathRemoval.h"
#include "helper/PathRules.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace brightsweep::helper;

namespace {

constexpr char dropCachesFile[] = "/proc/sys/vm/drop_caches";

std::string homeOf(uid_t user) {
    const passwd *entry = ::getpwuid(user);
    return entry && entry->pw_dir ? entry->pw_dir : "";
}

// Whom the helper works for. What the environment says counts only where it is the caller's own,
// that is, where nobody has gained rights by starting this process.
ProtectedPlaces placesOfCaller() {
    if (const char *text = std::getenv("PKEXEC_UID")) {
        uid_t user = 0;
        std::from_chars(text, text + std::strlen(text), user);
        return ProtectedPlaces({}, {homeOf(user), homeOf(::getuid())});
    }
    const auto variable = [](const char *name) {
        const char *value = std::getenv(name);
        return std::string(value ? value : "");
    };
    return ProtectedPlaces(variable("BRIGHTSWEEP_SYSTEM_ROOT"),
                           {homeOf(::getuid()), variable("HOME")});
}

bool makeToken(Token &token) {
    return ::getrandom(token.data(), token.size(), 0) == ssize_t(token.size());
}

bool send(std::string_view payload) {
    const std::string bytes = frame(payload);
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data() + sent, bytes.size() - sent);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        sent += std::size_t(written);
    }
    return true;
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

Reply answer(const std::string &payload, const Token &token, const PathRemoval &removal) {
    Request request;
    const std::string_view problem = decodeRequest(payload, request);
    if (!sameToken(request.token, token))
        return {false, false, "wrong token"};
    if (!problem.empty())
        return {false, false, std::string(problem)};
    return request.verb == Verb::RemovePath ? removal.run(request.remove) : dropCaches();
}

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

int serve(const Token &token, const PathRemoval &removal) {
    FrameBuffer buffer;
    static char block[64 * 1024];
    for (;;) {
        const ssize_t got = ::read(STDIN_FILENO, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0 && buffer.isEmpty() ? 0 : 1;
        buffer.append({block, std::size_t(got)});
        while (const auto payload = buffer.next()) {
            if (!send(encodeReply(answer(*payload, token, removal))))
                return 1;
        }
        if (buffer.isOversized()) {
            send(encodeReply({false, false, "oversized frame"}));
            return 1;
        }
    }
}

} // namespace

int main() {
    if (::geteuid() != 0) {
        std::fputs("brightsweep-helper: runs as administrator only\n", stderr);
        return 1;
    }
    const PathRemoval removal(placesOfCaller());
    settle();
    Token token;
    if (!makeToken(token) || !send(encodeHello(token)))
        return 1;
    return serve(token, removal);
}
