#include "platform/linux/SnapdSocket.h"

#include "foundation/FileDescriptor.h"
#include "foundation/LastError.h"

#include <QJsonDocument>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace brightsweep {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t mostBytes = std::size_t(32) << 20;

// Waits until the socket is ready; errc::timed_out at the end of the patience.
std::error_code waitFor(int socket, short events, steady_clock::time_point end) {
    for (;;) {
        const auto left =
            std::chrono::duration_cast<milliseconds>(end - steady_clock::now()).count();
        if (left <= 0)
            return std::make_error_code(std::errc::timed_out);
        pollfd waiting = {socket, events, 0};
        const int count = ::poll(&waiting, 1, int(std::min<long long>(left, 60'000)));
        if (count > 0)
            return {};
        if (count < 0 && errno != EINTR)
            return lastError();
    }
}

} // namespace

std::string SnapdReply::errorKind() const {
    return object.value(QLatin1String("result"))
        .toObject()
        .value(QLatin1String("kind"))
        .toString()
        .toStdString();
}

std::string SnapdReply::errorMessage() const {
    return object.value(QLatin1String("result"))
        .toObject()
        .value(QLatin1String("message"))
        .toString()
        .toStdString();
}

Result<SnapdReply> parseSnapdReply(std::string_view text) {
    constexpr std::string_view beginning = "HTTP/1.";
    constexpr std::size_t statusAt = beginning.size() + 2;
    const auto end = text.find("\r\n\r\n");
    SnapdReply reply;
    if (!text.starts_with(beginning) || end == text.npos ||
        std::from_chars(text.data() + statusAt, text.data() + end, reply.status).ec != std::errc())
        return std::errc::protocol_error;
    const std::string_view body = text.substr(end + 4);
    const auto document =
        QJsonDocument::fromJson(QByteArray::fromRawData(body.data(), qsizetype(body.size())));
    if (!document.isObject())
        return std::errc::protocol_error;
    reply.object = document.object();
    return reply;
}

Result<SnapdReply> SnapdSocket::get(std::string_view path, milliseconds patience) const {
    return exchange("GET " + std::string(path) + " HTTP/1.0\r\nHost: localhost\r\n\r\n", patience);
}

Result<SnapdReply> SnapdSocket::post(std::string_view path, const QJsonObject &body,
                                     milliseconds patience) const {
    const QByteArray text = QJsonDocument(body).toJson(QJsonDocument::Compact);
    return exchange("POST " + std::string(path) +
                        " HTTP/1.0\r\nHost: localhost\r\nX-Allow-Interaction: true\r\n"
                        "Content-Type: application/json\r\nContent-Length: " +
                        std::to_string(text.size()) + "\r\n\r\n" + text.toStdString(),
                    patience);
}

Result<SnapdReply> SnapdSocket::exchange(const std::string &request, milliseconds patience) const {
    const auto end = steady_clock::now() + patience;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string &path = m_socket.native();
    if (path.size() >= sizeof address.sun_path)
        return std::errc::filename_too_long;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket ||
        ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return lastError();
    for (std::size_t sent = 0; sent < request.size();) {
        const ssize_t count =
            ::send(socket.get(), &request[sent], request.size() - sent, MSG_NOSIGNAL);
        if (count >= 0)
            sent += std::size_t(count);
        else if (errno != EAGAIN && errno != EINTR)
            return lastError();
        else if (const auto error = waitFor(socket.get(), POLLOUT, end))
            return error;
    }
    std::string answer;
    for (;;) {
        char block[16'384];
        const ssize_t count = ::recv(socket.get(), block, sizeof block, 0);
        if (count == 0)
            return parseSnapdReply(answer);
        if (count > 0)
            answer.append(block, std::size_t(count));
        else if (errno != EAGAIN && errno != EINTR)
            return lastError();
        else if (const auto error = waitFor(socket.get(), POLLIN, end))
            return error;
        if (answer.size() > mostBytes)
            return std::errc::message_size;
    }
}

} // namespace brightsweep
