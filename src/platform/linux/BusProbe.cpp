#include "platform/linux/BusProbe.h"

#include "foundation/FileDescriptor.h"
#include "platform/LinuxPlatform.h"

#include <QByteArray>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace brightsweep {

namespace {

constexpr char sessionVariable[] = "DBUS_SESSION_BUS_ADDRESS";
// What the variable held before, for the program started anew in this one's place.
constexpr char givenVariable[] = "BRIGHTSWEEP_SESSION_BUS";
// An address that libdbus refuses at once, instead of starting a bus by autolaunch.
constexpr char leftAddress[] = "disabled:";

// The bus that was found silent.
std::string &givenAddress() {
    static std::string address;
    return address;
}

void setOrUnset(const char *name, const std::string &value) {
    if (value.empty())
        ::unsetenv(name);
    else
        ::setenv(name, value.c_str(), 1);
}

std::string variable(const char *name) {
    const char *const value = std::getenv(name);
    return value ? value : "";
}

// Takes the text up to the separator, and the separator, from the front.
std::string_view takeFront(std::string_view &text, char separator) {
    const auto front = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(front.size() + 1, text.size()));
    return front;
}

struct SocketAddress {
    sockaddr_un address = {};
    socklen_t length = 0;
};

std::optional<SocketAddress> socketAddress(std::string_view value, bool isAbstract) {
    const auto name =
        QByteArray::fromPercentEncoding(QByteArray(value.data(), qsizetype(value.size())));
    const std::size_t start = isAbstract ? 1 : 0;
    SocketAddress result;
    if (name.isEmpty() || start + std::size_t(name.size()) >= sizeof result.address.sun_path)
        return std::nullopt;
    result.address.sun_family = AF_UNIX;
    std::memcpy(result.address.sun_path + start, name.constData(), std::size_t(name.size()));
    result.length = socklen_t(isAbstract ? offsetof(sockaddr_un, sun_path) + 1 + name.size()
                                         : sizeof result.address);
    return result;
}

// One address of a list, "unix:key=value,…"; nothing for a form that is not known here.
std::optional<SocketAddress> parseAddress(std::string_view entry) {
    if (takeFront(entry, ':') != "unix")
        return std::nullopt;
    while (!entry.empty()) {
        std::string_view value = takeFront(entry, ',');
        const std::string_view key = takeFront(value, '=');
        if (key == "path" || key == "abstract")
            return socketAddress(value, key == "abstract");
    }
    return std::nullopt;
}

struct Contact {
    enum class State { Unknown, Absent, Full, Connected };
    State state = State::Absent;
    FileDescriptor socket;
};

// The first of the addresses that somebody listens at, as the library tries them.
Contact contact(std::string_view addresses) {
    while (!addresses.empty()) {
        const auto place = parseAddress(takeFront(addresses, ';'));
        if (!place)
            return {Contact::State::Unknown, {}};
        FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&place->address),
                      place->length) == 0)
            return {Contact::State::Connected, std::move(socket)};
        // So many wait already that the library would wait with them.
        if (errno == EAGAIN)
            return {Contact::State::Full, {}};
    }
    return {};
}

} // namespace

std::string sessionBusAddress() {
    const std::string address = variable(sessionVariable);
    if (address == leftAddress && !givenAddress().empty())
        return givenAddress();
    if (!address.empty())
        return address;
    const std::string folder = variable("XDG_RUNTIME_DIR");
    if (!folder.starts_with('/'))
        return {};
    const std::string socket = folder + "/bus";
    struct stat status;
    if (::stat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode))
        return {};
    return "unix:path=" +
           QByteArray::fromStdString(socket).toPercentEncoding("/", "~").toStdString();
}

std::string systemBusAddress() {
    const std::string address = variable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

bool busListens(std::string_view address) {
    return contact(address).state != Contact::State::Absent;
}

bool busIsSilent(std::string_view address, std::chrono::milliseconds patience) {
    const Contact bus = contact(address);
    if (bus.state != Contact::State::Connected)
        return bus.state == Contact::State::Full;
    // Every bus answers at once with the ways to log in that it offers.
    constexpr std::string_view question("\0AUTH\r\n", 7);
    if (::send(bus.socket.get(), question.data(), question.size(), MSG_NOSIGNAL) < 0)
        return false;
    pollfd wait{bus.socket.get(), POLLIN, 0};
    const auto until = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        const int ready = ::poll(&wait, 1, int(std::max<std::int64_t>(left.count(), 0)));
        if (ready >= 0 || errno != EINTR)
            return ready == 0;
    }
}

bool sessionBusIsLeft() {
    return variable(sessionVariable) == leftAddress && !givenAddress().empty();
}

bool leaveSilentSessionBus() {
    if (variable(sessionVariable) == leftAddress)
        setOrUnset(sessionVariable, variable(givenVariable));
    ::unsetenv(givenVariable);
    const std::string address = sessionBusAddress();
    if (!busIsSilent(address, startPatience))
        return false;
    givenAddress() = address;
    setOrUnset(givenVariable, variable(sessionVariable));
    ::setenv(sessionVariable, leftAddress, 1);
    return true;
}

std::vector<std::string> environmentOfChildren() {
    const bool isLeft = sessionBusIsLeft();
    const std::string bus = std::string(sessionVariable) + '=';
    const std::string given = std::string(givenVariable) + '=';
    std::vector<std::string> environment;
    for (char **entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        if (isLeft && text.starts_with(given))
            environment.push_back(bus + std::string(text.substr(given.size())));
        else if (!isLeft || !text.starts_with(bus))
            environment.emplace_back(text);
    }
    return environment;
}

} // namespace brightsweep
