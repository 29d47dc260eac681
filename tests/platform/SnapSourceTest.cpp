#include "platform/linux/SnapSource.h"

#include "platform/linux/SnapdSocket.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <mutex>
#include <thread>

namespace brightsweep {
namespace {

using namespace test;

// Answers each request of a line beginning with what the test has put down for it last; what it
// has nothing for it hangs up on.
class FakeSnapd {
public:
    FakeSnapd() {
        const auto place = TestEnvironment::current().system() / "run";
        std::filesystem::create_directories(place);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, (place / "snapd.socket").c_str());
        m_socket = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(::bind(m_socket.get(), reinterpret_cast<sockaddr *>(&address), sizeof address),
                  0);
        EXPECT_EQ(::listen(m_socket.get(), 8), 0);
        m_thread = std::thread([this] { serve(); });
    }
    ~FakeSnapd() {
        ::shutdown(m_socket.get(), SHUT_RDWR);
        m_thread.join();
    }
    /// Each of the answers once, the last one from then on.
    void put(const std::string &request, std::vector<std::string> answers) {
        const std::lock_guard lock(m_mutex);
        m_answers[request] = std::move(answers);
    }
    std::vector<std::string> requests() {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

private:
    void serve() {
        for (;;) {
            const FileDescriptor client(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!client)
                return;
            std::string text(4096, '\0');
            pollfd waiting = {client.get(), POLLIN, 0};
            ::poll(&waiting, 1, 5000);
            text.resize(std::size_t(std::max<ssize_t>(0, ::read(client.get(), &text[0], 4096))));
            std::string answer;
            {
                const std::lock_guard lock(m_mutex);
                m_requests.push_back(text);
                auto &answers = m_answers[text.substr(0, text.find(" HTTP"))];
                if (!answers.empty())
                    answer = answers.front();
                if (answers.size() > 1)
                    answers.erase(answers.begin());
            }
            [[maybe_unused]] const auto sent = ::write(client.get(), answer.data(), answer.size());
        }
    }

    FileDescriptor m_socket;
    std::mutex m_mutex;
    std::map<std::string, std::vector<std::string>> m_answers;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};

std::string http(int status, const std::string &result, const std::string &more = {}) {
    return "HTTP/1.0 " + std::to_string(status) +
           " x\r\nContent-Type: application/json\r\n\r\n{\"type\":\"sync\"," + more +
           "\"result\":" + result + "}";
}
std::string error(int status, const std::string &kind) {
    return http(status, R"({"message":"words of snapd","kind":")" + kind + "\"}");
}

class SnapSourceTest : public testing::Test {
protected:
    UninstallOutcome removeAfter(std::vector<std::string> post, std::vector<std::string> change) {
        snapd.put("POST /v2/snaps/demo", std::move(post));
        snapd.put("GET /v2/changes/7", std::move(change));
        RemovalPlan plan;
        plan.application.kind = ApplicationKind::Snap;
        plan.application.key = "demo";
        plan.leftovers = leftovers;
        result = source.remove(plan, nullptr);
        return result.outcome;
    }

    FakeSnapd snapd;
    SnapSource source{std::chrono::milliseconds(1), std::chrono::milliseconds(50)};
    std::vector<Leftover> leftovers;
    RemovalResult result;
};

TEST_F(SnapSourceTest, ListsWhatHasAnEntryAndReadsThat) {
    TestTree(TestEnvironment::current().system())
        .file("var/lib/snapd/desktop/applications/demo_demo.desktop",
              "[Desktop Entry]\nType=Application\nName=Demo Program\nExec=x\nIcon=/i.png\n");
    snapd.put("GET /v2/snaps", {http(200, R"([
        {"name":"core22","type":"base"},
        {"name":"tool","type":"app","apps":[{"name":"tool"}]},
        {"name":"../evil","type":"app","apps":[{"name":"x","desktop-file":"/x"}]},
        {"name":"gone","type":"app","apps":[{"name":"gone","desktop-file":"/missing"}]},
        {"name":"demo","type":"app","version":"1.5","installed-size":4096,
         "install-date":"2026-01-31T10:00:00Z","apps":[{"name":"demo",
         "desktop-file":"/var/lib/snapd/desktop/applications/demo_demo.desktop"}]}])")});
    EXPECT_EQ(source.unavailableReason(), "");
    const auto found = source.applications();
    ASSERT_TRUE(found);
    ASSERT_EQ(found->size(), 2u);
    const InstalledApplication &demo = (*found)[1];
    EXPECT_EQ(demo.name + " " + demo.version + " " + demo.desktopId(),
              "Demo Program 1.5 demo_demo");
    EXPECT_EQ(demo.bytes, 4096u);
    EXPECT_EQ(demo.installed, 1769853600);
    EXPECT_EQ((*found)[0].name, "gone");
    snapd.put("GET /v2/snaps", {"HTTP/1.0 200 OK\r\n\r\n[not json"});
    EXPECT_FALSE(source.applications());
}

TEST_F(SnapSourceTest, FollowsAChangeToItsEnd) {
    const std::string accepted = http(202, "null", "\"change\":\"7\",");
    const std::string doing = http(200, R"({"status":"Doing","ready":false})");
    const std::string done = http(200, R"({"status":"Done","ready":true})");
    EXPECT_EQ(removeAfter({accepted}, {doing, "", doing, done}), UninstallOutcome::Removed)
        << "snapd may restart meanwhile";
    EXPECT_THAT(snapd.requests().front(), testing::HasSubstr("X-Allow-Interaction: true"));
    EXPECT_THAT(snapd.requests().front(), testing::Not(testing::HasSubstr("purge")));
    EXPECT_EQ(
        removeAfter({accepted}, {http(200, R"({"status":"Error","ready":true,"err":"cannot"})")}),
        UninstallOutcome::Failed);
    EXPECT_EQ(result.message, "cannot");
    EXPECT_EQ(removeAfter({accepted}, {""}), UninstallOutcome::Failed) << "gone for good";
    const std::tuple<std::string, UninstallOutcome> refusals[] = {
        {error(401, "login-required"), UninstallOutcome::Dismissed},
        {error(403, "auth-cancelled"), UninstallOutcome::Dismissed},
        {error(409, "snap-change-conflict"), UninstallOutcome::Busy},
        {error(404, "snap-not-found"), UninstallOutcome::Removed},
        {error(400, "other"), UninstallOutcome::Failed},
        {http(202, "null"), UninstallOutcome::Failed},
    };
    for (const auto &[answer, outcome] : refusals)
        EXPECT_EQ(removeAfter({answer}, {done}), outcome) << answer;
}

TEST_F(SnapSourceTest, PurgesOnlyWithTheDataTicked) {
    Leftover data;
    data.kind = LeftoverKind::Data;
    data.target.relative = "snap/demo";
    for (const bool isTicked : {false, true}) {
        data.ticked = isTicked;
        leftovers = {data};
        removeAfter({error(404, "snap-not-found")}, {});
        EXPECT_EQ(snapd.requests().back().find("\"purge\":true") != std::string::npos, isTicked);
    }
    InstalledApplication demo;
    demo.key = "demo";
    snapd.put("GET /v2/snaps/demo", {error(404, "snap-not-found")});
    EXPECT_EQ(source.plan(demo).blocker, Blocker::Gone);
    snapd.put("GET /v2/snaps/demo", {""});
    EXPECT_EQ(source.plan(demo).blocker, Blocker::Busy);
}

} // namespace
} // namespace brightsweep
