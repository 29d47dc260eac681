#include "platform/linux/SnapSource.h"

#include "foundation/FileDescriptor.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <map>
#include <mutex>
#include <thread>

namespace brightsweep {
namespace {

using namespace test;
using testing::HasSubstr;
using testing::Not;

std::string http(int status, const std::string &result, const std::string &more = {}) {
    return "HTTP/1.0 " + std::to_string(status) + " x\r\nA: b\r\n\r\n{\"type\":\"sync\"," + more +
           "\"result\":" + result + "}";
}
std::string error(int status, const std::string &kind) {
    return http(status, R"({"message":"words of snapd","kind":")" + kind + "\"}");
}

// A snapd that gives each request, by the beginning of its first line, one answer after the other,
// the last one from then on, and hangs up on what it has none for.
class SnapSourceTest : public testing::Test {
protected:
    SnapSourceTest() {
        const auto place = TestEnvironment::current().system() / "run";
        std::filesystem::create_directories(place);
        sockaddr_un address = {AF_UNIX, {}};
        std::strcpy(address.sun_path, (place / "snapd.socket").c_str());
        EXPECT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket.get(), 8), 0);
        thread = std::thread([this] { serve(); });
    }
    ~SnapSourceTest() override {
        ::shutdown(socket.get(), SHUT_RDWR);
        thread.join();
    }
    void serve() {
        for (;;) {
            const FileDescriptor client(::accept4(socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!client)
                return;
            std::string text(4096, '\0');
            text.resize(std::size_t(std::max<ssize_t>(0, ::read(client.get(), &text[0], 4096))));
            const std::lock_guard lock(mutex);
            requests.push_back(text);
            auto &answer = answers[text.substr(0, text.find(" HTTP"))];
            if (!answer.empty() &&
                ::write(client.get(), answer.front().data(), answer.front().size()) < 0)
                return;
            if (answer.size() > 1)
                answer.erase(answer.begin());
        }
    }
    std::string request(std::size_t index) {
        const std::lock_guard lock(mutex);
        return requests[index];
    }
    UninstallOutcome removeAfter(const std::string &post, std::vector<std::string> change = {}) {
        {
            const std::lock_guard lock(mutex);
            answers["POST /v2/snaps/demo"] = {post};
            answers["GET /v2/changes/7"] = std::move(change);
        }
        plan.application.key = "demo";
        result = source.remove(plan, nullptr);
        return result.outcome;
    }

    const FileDescriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    std::map<std::string, std::vector<std::string>> answers;
    std::vector<std::string> requests;
    std::mutex mutex; // guards both
    std::thread thread;
    SnapSource source{std::chrono::milliseconds(1), std::chrono::milliseconds(50)};
    RemovalPlan plan;
    RemovalResult result;
};

TEST_F(SnapSourceTest, ListsWhatHasAnEntryAndReadsThat) {
    TestTree(TestEnvironment::current().system())
        .file("apps/demo_demo.desktop", "[Desktop Entry]\nName=Demo Program\nExec=x\n");
    const auto snaps = {http(200, R"([
        {"name":"core22","type":"base"},
        {"name":"tool","type":"app","apps":[{"name":"tool"}]},
        {"name":"../evil","type":"app","apps":[{"name":"x","desktop-file":"/x"}]},
        {"name":"demo","type":"app","version":"1.5","installed-size":4096,
         "install-date":"2026-01-31T10:00:00Z",
         "apps":[{"name":"demo","desktop-file":"/apps/demo_demo.desktop"}]}])"),
                        std::string("HTTP/1.0 200 OK\r\n\r\n[not json")};
    {
        const std::lock_guard lock(mutex);
        answers["GET /v2/snaps"] = snaps;
    }
    const auto found = source.applications();
    ASSERT_TRUE(found && found->size() == 1);
    const InstalledApplication &demo = found->front();
    EXPECT_EQ(demo.name + " " + demo.version + " " + demo.ids[0], "Demo Program 1.5 demo_demo");
    EXPECT_TRUE(demo.bytes == 4096u && demo.installed == 1769853600);
    EXPECT_EQ(source.claims().size(), 4u);
    EXPECT_FALSE(source.applications());
}

TEST_F(SnapSourceTest, FollowsAChangeToItsEnd) {
    const std::string accepted = http(202, "null", "\"change\":\"7\",");
    const std::string doing = http(200, R"({"status":"Doing","ready":false})");
    const std::string done = http(200, R"({"status":"Done","ready":true})");
    EXPECT_EQ(removeAfter(accepted, {doing, "", doing, done}), UninstallOutcome::Removed)
        << "snapd may restart meanwhile";
    EXPECT_THAT(request(0), HasSubstr("X-Allow-Interaction: true"));
    EXPECT_THAT(request(0), Not(HasSubstr("purge")));
    const auto undone = http(200, R"({"status":"Error","ready":true,"err":"cannot"})");
    EXPECT_EQ(removeAfter(accepted, {undone}), UninstallOutcome::Failed);
    EXPECT_EQ(result.message, "cannot");
    EXPECT_EQ(removeAfter(accepted, {""}), UninstallOutcome::Failed) << "gone for good";
    const std::pair<std::string, UninstallOutcome> refusals[] = {
        {error(401, "login-required"), UninstallOutcome::Dismissed},
        {error(403, "auth-cancelled"), UninstallOutcome::Dismissed},
        {error(409, "snap-change-conflict"), UninstallOutcome::Busy},
        {error(404, "snap-not-found"), UninstallOutcome::Removed},
        {error(400, "other"), UninstallOutcome::Failed},
    };
    for (const auto &[answer, outcome] : refusals)
        EXPECT_EQ(removeAfter(answer), outcome) << answer;
    plan.leftovers.resize(1);
    plan.leftovers[0].target.relative = "snap/demo";
    plan.leftovers[0].ticked = true;
    removeAfter(error(404, "snap-not-found"));
    EXPECT_THAT(request(requests.size() - 1), HasSubstr("\"purge\":true")) << "the data was ticked";
}

} // namespace
} // namespace brightsweep
