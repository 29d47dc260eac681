#include "platform/linux/BusProbe.h"

#include "desktop/PrivateBus.h"
#include "foundation/FileDescriptor.h"
#include "platform/LinuxPlatform.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace brightsweep {
namespace {

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

} // namespace
} // namespace brightsweep
