#include "helper/HelperProcess.h"

#include "support/NeedsRoot.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <sstream>
#include <stdexcept>

namespace brightsweep::test {

HelperProcess::HelperProcess(const std::vector<std::string> &environment) {
    needRoot();
    int streams[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, streams) != 0)
        throw std::runtime_error("socketpair");
    m_stream = FileDescriptor(streams[0]);
    FileDescriptor others(streams[1]);
    m_process = ::fork();
    if (m_process == 0) {
        for (const std::string &variable : environment) {
            const auto equals = variable.find('=');
            ::setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
        }
        ::dup2(others.get(), 0);
        ::dup2(others.get(), 1);
        ::execl(BRIGHTSWEEP_TEST_HELPER, BRIGHTSWEEP_TEST_HELPER, "files", nullptr);
        ::_exit(127);
    }
    others.reset(); // or the end of a helper that says nothing would not be seen
    if (const auto hello = payload())
        m_token = helper::decodeHello(*hello).value_or(helper::Token{});
}

void HelperProcess::sendBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_stream.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        bytes.remove_prefix(std::size_t(sent));
    }
}

std::optional<std::string> HelperProcess::payload() {
    for (;;) {
        if (auto payload = m_received.next())
            return payload;
        char block[4096];
        const ssize_t got = ::read(m_stream.get(), block, sizeof block);
        if (got <= 0)
            return std::nullopt;
        m_received.append({block, std::size_t(got)});
    }
}

std::optional<helper::Replies> HelperProcess::replies() {
    const auto answer = payload();
    return answer ? helper::decodeReplies(*answer) : std::nullopt;
}

void HelperProcess::sendRequest(helper::Verb verb, const helper::RemoveItems &removal) {
    sendBytes(helper::frame(helper::encodeRequest({m_token, verb, removal})));
}

helper::Replies HelperProcess::remove(const helper::RemoveItems &removal) {
    sendRequest(helper::Verb::RemoveItems, removal);
    return replies().value_or(helper::Replies{{false, false, "no reply"}});
}

helper::Reply HelperProcess::remove(const std::filesystem::path &root,
                                    const std::string &relative) {
    return remove(removalBelow(root, relative)).front();
}

int HelperProcess::finish() {
    if (m_process == 0)
        return -1;
    ::shutdown(m_stream.get(), SHUT_WR);
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

helper::RemoveItems removalOf(const std::filesystem::path &root, const std::string &way,
                              const std::vector<std::string> &names) {
    struct stat status {};
    ::stat(root.c_str(), &status);
    helper::RemoveItems removal{root.native(), status.st_dev, status.st_ino, way, {}};
    // By descriptors: the way may be longer than a path may be.
    FileDescriptor folder(::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::istringstream components(way);
    for (std::string name; folder && std::getline(components, name, '/');)
        folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_PATH | O_CLOEXEC));
    for (const std::string &name : names) {
        struct stat item {};
        ::fstatat(folder.get(), name.c_str(), &item, AT_SYMLINK_NOFOLLOW);
        removal.items.push_back({name, item.st_dev, item.st_ino, item.st_mode & S_IFMT,
                                 std::uint64_t(item.st_size),
                                 item.st_ctim.tv_sec * 1'000'000'000 + item.st_ctim.tv_nsec});
    }
    return removal;
}

helper::RemoveItems removalBelow(const std::filesystem::path &root, const std::string &relative) {
    const auto slash = relative.rfind('/');
    const bool isDirect = slash == std::string::npos;
    return removalOf(root, isDirect ? std::string() : relative.substr(0, slash),
                     {relative.substr(slash + 1)});
}

} // namespace brightsweep::test
