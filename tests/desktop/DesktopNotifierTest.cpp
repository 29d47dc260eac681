#include "platform/DesktopNotifier.h"

#include "desktop/PrivateBus.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <QDBusArgument>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using test::eventually;
using test::PlayedService;
using test::PrivateBus;

constexpr char serviceName[] = "org.freedesktop.Notifications";

// The desktop's side: numbers what it shows.
class Server : public PlayedService {
public:
    Server(const PrivateBus &bus, const char *capabilities)
        : PlayedService(bus, "/org/freedesktop/Notifications") {
        answer = [this, list = QString::fromLatin1(capabilities).split(QLatin1Char(' '))](
                     const QDBusMessage &call) {
            if (call.member() == QLatin1String("GetCapabilities"))
                return call.createReply(list);
            if (call.member() == QLatin1String("Notify"))
                return call.createReply(++lastNumber);
            return call.createReply();
        };
    }
    bool come() { return takeName(serviceName); }
    void click(unsigned number, const char *key, const char *token) {
        if (token)
            emitSignal(serviceName, "ActivationToken", {number, QLatin1String(token)});
        emitSignal(serviceName, "ActionInvoked", {number, QLatin1String(key)});
    }

    unsigned lastNumber = 40;
};

class DesktopNotifierTest : public testing::Test {
protected:
    DesktopNotifier &notifier() { return *Platform::current().notifier; }
    void TearDown() override { Platform::setCurrent(makeNullPlatform("at the end")); }

    PrivateBus m_bus;
};

TEST_F(DesktopNotifierTest, BodyIsShownAsItStands) {
    const struct {
        const char *capabilities;
        const char *body;
        const char *sent;
    } cases[] = {
        {"body body-markup", "<i>A</i> & 5%", "&lt;i&gt;A&lt;/i&gt; &amp; 5%"},
        {"body", "<i>A</i> & 5%", "<i>A</i> & 5%"},
        {"body-markup", "\xd7\x90\xd7\x91 100%", "\xd7\x90\xd7\x91 100%"},
    };
    // Each server takes the place of the one before.
    for (const auto &one : cases) {
        SCOPED_TRACE(one.capabilities);
        ASSERT_TRUE(eventually([&] { return !notifier().available(); }));
        Server server(m_bus, one.capabilities);
        ASSERT_TRUE(server.come());
        notifier().show({QStringLiteral("A & <b>"), QString::fromUtf8(one.body), 0, {}, {}});
        ASSERT_TRUE(eventually([&] { return server.count("Notify") == 1; }));
        const auto arguments = server.callsOf("Notify")[0].arguments();
        EXPECT_EQ(arguments.value(3), QStringLiteral("A & <b>"));
        EXPECT_EQ(arguments.value(4).toString().toStdString(), one.sent);
        EXPECT_EQ(arguments.value(7), -1);
        notifier().show({QStringLiteral("second"), {}, 0, {}, {}});
        ASSERT_TRUE(eventually([&] { return server.count("Notify") == 2; }));
        EXPECT_EQ(server.count("GetCapabilities"), 1);
    }
}

TEST_F(DesktopNotifierTest, ClosedAfterItsTime) {
    Server server(m_bus, "body");
    ASSERT_TRUE(server.come());
    notifier().show({QStringLiteral("stays"), {}, 0, {}, {}});
    notifier().show({QStringLiteral("goes"), {}, 30, {}, {}});
    ASSERT_TRUE(eventually([&] { return server.count("CloseNotification") == 1; }));
    EXPECT_EQ(server.callsOf("CloseNotification")[0].arguments().value(0), 42u);
    EXPECT_EQ(server.callsOf("Notify")[1].arguments().value(7), 30);
}

TEST_F(DesktopNotifierTest, ActionBringsItsToken) {
    Server server(m_bus, "actions body");
    ASSERT_TRUE(server.come());
    std::vector<std::string> done;
    const auto action = [&](const std::string &token) { done.push_back(token); };
    for (const char *name : {"one", "two", "three"})
        notifier().show({QString::fromLatin1(name), {}, 0, QStringLiteral("Open"), action});
    ASSERT_TRUE(eventually([&] { return server.count("Notify") == 3; }));
    EXPECT_EQ(server.callsOf("Notify")[0].arguments().value(5).toStringList(),
              QStringList({QStringLiteral("default"), QStringLiteral("Open"),
                           QStringLiteral("open"), QStringLiteral("Open")}));
    // Of another program, closed before, then ours, and the same once more.
    server.click(7, "default", "foreign");
    server.emitSignal(serviceName, "NotificationClosed", {42u, 2u});
    server.click(42, "open", "closed");
    server.click(41, "open", "token");
    server.click(41, "open", "again");
    server.click(43, "default", nullptr);
    ASSERT_TRUE(eventually([&] { return done.size() == 2; }));
    EXPECT_EQ(done, (std::vector<std::string>{"token", ""}));
}

TEST_F(DesktopNotifierTest, AvailableOnceSomebodyIsThere) {
    EXPECT_FALSE(notifier().available());
    notifier().show({QStringLiteral("lost"), {}, 10, {}, {}});
    {
        Server server(m_bus, "body");
        ASSERT_TRUE(server.come());
        ASSERT_TRUE(eventually([&] { return notifier().available(); }));
    }
    ASSERT_TRUE(eventually([&] { return !notifier().available(); }));
}

} // namespace
} // namespace brightsweep
