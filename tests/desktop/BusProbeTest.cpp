#include "platform/linux/BusProbe.h"

#include "desktop/PrivateBus.h"
#include "foundation/FileDescriptor.h"
#include "platform/LinuxPlatform.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/UDisksWatch.h"
#include "support/TestEnvironment.h"

#include <gmock/gmock.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace brightsweep {
namespace {

using std::chrono::steady_clock;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// Takes connections and keeps silent.
class SilentListener {
public:
    explicit SilentListener(std::string name, bool isAbstract = false, int backlog = 64)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        name.copy(address.sun_path + isAbstract, sizeof address.sun_path - 1);
        const auto length =
            isAbstract ? offsetof(sockaddr_un, sun_path) + 1 + name.size() : sizeof address;
        const auto *const place = reinterpret_cast<const sockaddr *>(&address);
        EXPECT_EQ(::bind(m_socket.get(), place, socklen_t(length)), 0) << name;
        EXPECT_EQ(::listen(m_socket.get(), backlog), 0);
        if (backlog > 0)
            return;
        do {
            m_callers.emplace_back(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
        } while (::connect(m_callers.back().get(), place, socklen_t(length)) == 0);
        EXPECT_EQ(errno, EAGAIN);
    }

    /// What each of those who have called so far has said.
    std::vector<std::string> heard() {
        std::vector<std::string> words;
        pollfd waiting{m_socket.get(), POLLIN, 0};
        while (::poll(&waiting, 1, 0) > 0) {
            const FileDescriptor caller(::accept(m_socket.get(), nullptr, nullptr));
            char said[100];
            const auto size = ::recv(caller.get(), said, sizeof said, MSG_DONTWAIT);
            words.emplace_back(said, std::size_t(std::max<ssize_t>(size, 0)));
        }
        return words;
    }

private:
    FileDescriptor m_socket;
    std::vector<FileDescriptor> m_callers;
};

TEST(BusProbe, TellsSilenceFromAbsence) {
    test::PrivateBus bus;
    const std::string work = test::TestEnvironment::current().work();
    const SilentListener silent(work + "/silent bus");
    const SilentListener full(work + "/full", false, 0);
    const std::string hidden = "brightsweep-test" + work;
    const SilentListener abstract(hidden, true);
    const std::string silentAddress = "unix:guid=00,path=" + work + "/silent%20bus";
    const struct {
        std::string address;
        bool listens;
        bool isSilent;
    } rows[] = {
        {bus.address(), true, false},
        {bus.address() + ";" + silentAddress, true, false},
        {silentAddress, true, true},
        {"unix:path=" + work + "/nobody;" + silentAddress, true, true},
        {"unix:path=" + work + "/full", true, true},
        {"unix:abstract=" + hidden, true, true},
        {"unix:path=" + work + "/nobody", false, false},
        {"unix:path=" + work, false, false},
        {"", false, false},
        // Left to the library, which refuses what is no address.
        {"disabled:", true, false},
        {"tcp:host=localhost,port=1", true, false},
        {"autolaunch:", true, false},
        {"unix:path=/" + std::string(200, 'x'), true, false},
        {"unix:", true, false},
        {"unix", true, false},
        {"%zz;=,:", true, false},
    };
    constexpr std::chrono::milliseconds patience(200);
    for (const auto &row : rows) {
        EXPECT_EQ(busListens(row.address), row.listens) << row.address;
        if (row.address.find(bus.address()) != 0) {
            EXPECT_EQ(busIsSilent(row.address, patience), row.isSilent) << row.address;
        } else {
            EXPECT_FALSE(busIsSilent(row.address, std::chrono::minutes(1))) << row.address;
        }
    }
    bus.signal(SIGSTOP);
    EXPECT_TRUE(busIsSilent(bus.address(), patience));
    bus.signal(SIGCONT);
    EXPECT_FALSE(busIsSilent(bus.address(), std::chrono::minutes(1)));
}

TEST(BusProbe, ASilentSessionBusIsLeftAndFoundAgain) {
    test::PrivateBus bus;
    EXPECT_FALSE(leaveSilentSessionBus());
    EXPECT_EQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), nullptr);
    bus.signal(SIGSTOP);
    ASSERT_TRUE(leaveSilentSessionBus());
    for (const std::string &entry : environmentOfChildren())
        EXPECT_EQ(entry.find("disabled:"), std::string::npos) << entry;
    // What the toolkit does.
    EXPECT_FALSE(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("toolkit"))
            .isConnected());
    SessionBus session;
    session.open();
    EXPECT_FALSE(session.waitForConnection(steady_clock::now() + std::chrono::minutes(1)));
    bus.signal(SIGCONT);
    EXPECT_TRUE(test::eventuallyInLoop([&] { return session.isConnected(); }));
    // A program started anew in this one's place.
    EXPECT_FALSE(leaveSilentSessionBus());
    EXPECT_FALSE(sessionBusIsLeft());
    EXPECT_EQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), nullptr);

    const std::string address = bus.address();
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    bus.signal(SIGSTOP);
    ASSERT_TRUE(leaveSilentSessionBus());
    bus.signal(SIGCONT);
    EXPECT_THAT(environmentOfChildren(), Contains("DBUS_SESSION_BUS_ADDRESS=" + address));
    EXPECT_FALSE(leaveSilentSessionBus());
    EXPECT_EQ(std::getenv("DBUS_SESSION_BUS_ADDRESS"), address);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

TEST(BusProbe, ASilentSystemBusHoldsNobodyUp) {
    const std::string work = test::TestEnvironment::current().work();
    SilentListener silent(work + "/system");
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + work + "/system").c_str(), 1);
    {
        UDisksWatch watch([] {});
        watch.request(1);
        test::PrivateBus bus;
        SessionBus session;
        session.open();
        EXPECT_TRUE(session.waitForConnection(steady_clock::now() + std::chrono::minutes(1)));
        watch.wait(steady_clock::now() + std::chrono::minutes(1));
        EXPECT_EQ(watch.snapshot(), nullptr);
        // Only asked whether it is there, and not again at every look at the volumes.
        const std::string question("\0AUTH\r\n", 7);
        EXPECT_THAT(silent.heard(), ElementsAre("", question));
        watch.request(2);
        watch.wait(steady_clock::now() + std::chrono::minutes(1));
        EXPECT_THAT(silent.heard(), IsEmpty());
    }
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

} // namespace
} // namespace brightsweep
