#include "platform/StatusItem.h"

#include "desktop/PrivateBus.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "platform/linux/LinuxStatusItem.h"
#include "platform/linux/StatusNotifierObject.h"

#include <QDBusVariant>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <csignal>

namespace brightsweep {
namespace {

using test::callInLoop;
using test::eventually;
using test::PlayedService;
using test::PrivateBus;

constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";
constexpr char itemInterface[] = "org.kde.StatusNotifierItem";

// The tray's side: keeps which items are registered, and says whether it shows them.
class Watcher : public PlayedService {
public:
    explicit Watcher(const PrivateBus &bus, bool withHost = true)
        : PlayedService(bus, "/StatusNotifierWatcher"), m_host(withHost) {
        answer = [this](const QDBusMessage &call) {
            return call.member() == QLatin1String("Get")
                       ? call.createReply(QVariant::fromValue(QDBusVariant(m_host)))
                       : call.createReply();
        };
    }

    bool come() { return takeName(watcherName); }
    bool go() { return giveNameBack(watcherName); }
    void setHost(bool present) {
        m_host = present;
        emitSignal(watcherName,
                   present ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered");
    }
    int registrations() const { return count("RegisterStatusNotifierItem"); }
    QString item() const {
        return callsOf("RegisterStatusNotifierItem").last().arguments().value(0).toString();
    }
    QDBusMessage callItem(const char *interface, const char *method,
                          const QVariantList &arguments) {
        return callInLoop(connection, item(), QLatin1String(LinuxStatusItem::path),
                          QLatin1String(interface), QLatin1String(method), arguments);
    }
    QVariantMap properties() {
        const auto reply =
            callItem("org.freedesktop.DBus.Properties", "GetAll", {QLatin1String(itemInterface)});
        return qdbus_cast<QVariantMap>(reply.arguments().value(0));
    }
    StatusToolTip toolTip() {
        return qdbus_cast<StatusToolTip>(properties().value(QStringLiteral("ToolTip")));
    }

private:
    bool m_host;
};

class StatusItemTest : public testing::Test {
protected:
    StatusItem &item() { return *Platform::current().statusItem; }
    void TearDown() override { Platform::setCurrent(makeNullPlatform("at the end")); }

    PrivateBus m_bus;
};

TEST_F(StatusItemTest, HostBeforeTheItem) {
    Watcher watcher(m_bus);
    ASSERT_TRUE(watcher.come());
    std::vector<bool> told;
    item().setHostHandler([&](bool present) { told.push_back(present); });
    item().setTitle(QStringLiteral("12 GB free"));
    item().setToolTip(QStringLiteral("Disk & <b>"), QStringLiteral("a < b"));
    item().setImages({{1, 2, std::string("\xff\x01\x02\x03\x80\x04\x05\x06", 8)}});
    item().setShown(true);
    ASSERT_TRUE(eventually([&] { return watcher.registrations() > 0; }));
    ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));
    EXPECT_EQ(told, std::vector<bool>{true});

    const QVariantMap properties = watcher.properties();
    EXPECT_EQ(properties.value(QStringLiteral("Title")), QStringLiteral("12 GB free"));
    EXPECT_EQ(properties.value(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_EQ(properties.value(QStringLiteral("ItemIsMenu")), false);
    EXPECT_FALSE(properties.contains(QStringLiteral("Menu")));
    const auto images = qdbus_cast<StatusPixmaps>(properties.value(QStringLiteral("IconPixmap")));
    ASSERT_EQ(images.size(), 1);
    EXPECT_EQ(images[0], (StatusPixmap{1, 2, QByteArray("\xff\x01\x02\x03\x80\x04\x05\x06", 8)}));
    EXPECT_EQ(watcher.toolTip().title, QStringLiteral("Disk & <b>"));
}

TEST_F(StatusItemTest, HostAfterTheItemAndAgain) {
    std::vector<bool> told;
    item().setHostHandler([&](bool present) { told.push_back(present); });
    item().setShown(true);
    Watcher watcher(m_bus, false);
    EXPECT_FALSE(item().hostPresent());
    ASSERT_TRUE(watcher.come());
    ASSERT_TRUE(eventually([&] { return watcher.registrations() == 1; }));
    ASSERT_TRUE(eventually([&] { return watcher.count("Get") > 0; }));
    EXPECT_TRUE(told.empty());

    watcher.setHost(true);
    ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));
    ASSERT_TRUE(eventually([&] { return watcher.registrations() == 2; }));
    watcher.setHost(false);
    ASSERT_TRUE(eventually([&] { return !item().hostPresent(); }));
    watcher.setHost(true);
    ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));

    ASSERT_TRUE(watcher.go());
    ASSERT_TRUE(eventually([&] { return !item().hostPresent(); }));
    const int before = watcher.registrations();
    ASSERT_TRUE(watcher.come());
    ASSERT_TRUE(eventually([&] { return watcher.registrations() == before + 1; }));
    ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false, true}));
}

TEST_F(StatusItemTest, BusRestarts) {
    {
        Watcher watcher(m_bus);
        ASSERT_TRUE(watcher.come());
        item().setTitle(QStringLiteral("kept"));
        item().setShown(true);
        ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));
    }
    m_bus.stop();
    ASSERT_TRUE(eventually([&] { return !item().hostPresent(); }));
    item().setToolTip(QStringLiteral("set meanwhile"), {});
    m_bus.start();
    Watcher watcher(m_bus);
    ASSERT_TRUE(watcher.come());
    ASSERT_TRUE(eventually([&] { return watcher.registrations() > 0; }));
    ASSERT_TRUE(eventually([&] { return item().hostPresent(); }));
    EXPECT_EQ(watcher.properties().value(QStringLiteral("Title")), QStringLiteral("kept"));
    EXPECT_EQ(watcher.toolTip().title, QStringLiteral("set meanwhile"));
}

TEST_F(StatusItemTest, ClicksBringTheirPlaceAndToken) {
    Watcher watcher(m_bus);
    ASSERT_TRUE(watcher.come());
    std::vector<StatusActivation> clicks;
    item().setActivatedHandler([&](const StatusActivation &click) { clicks.push_back(click); });
    item().setShown(true);
    ASSERT_TRUE(eventually([&] { return watcher.registrations() > 0; }));
    const struct {
        const char *method;
        int x, y;
        const char *token;
    } cases[] = {{"Activate", 1900, 12, "token-1"},
                 {"SecondaryActivate", -40, 0, ""},
                 {"ContextMenu", 0, 0, "token-2"},
                 {"Activate", 0, 0, ""}};
    for (const auto &one : cases) {
        SCOPED_TRACE(one.method);
        clicks.clear();
        if (*one.token)
            watcher.callItem(itemInterface, "ProvideXdgActivationToken",
                             {QLatin1String(one.token)});
        const auto reply = watcher.callItem(itemInterface, one.method, {one.x, one.y});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage);
        ASSERT_TRUE(eventually([&] { return !clicks.empty(); }));
        EXPECT_EQ(clicks[0].x, one.x);
        EXPECT_EQ(clicks[0].y, one.y);
        EXPECT_EQ(clicks[0].hasPosition, one.x != 0 || one.y != 0);
        EXPECT_EQ(clicks[0].token, one.token);
    }
    EXPECT_EQ(watcher.callItem(itemInterface, "Scroll", {120, QStringLiteral("vertical")}).type(),
              QDBusMessage::ReplyMessage);
}

TEST_F(StatusItemTest, ToolTipIsPlainText) {
    Watcher watcher(m_bus);
    ASSERT_TRUE(watcher.come());
    item().setShown(true);
    ASSERT_TRUE(eventually([&] { return watcher.registrations() > 0; }));
    const struct {
        QString text;
        QString sent;
    } cases[] = {
        {QStringLiteral("<b>Disk</b>"), QStringLiteral("&lt;b&gt;Disk&lt;/b&gt;")},
        {QStringLiteral("100% %n %1"), QStringLiteral("100% %n %1")},
        {QStringLiteral("Tom & \"Jerry\""), QStringLiteral("Tom &amp; &quot;Jerry&quot;")},
        {QString::fromUtf8("\u05d0\u05d1\u05d2 \u202e123"),
         QString::fromUtf8("\u05d0\u05d1\u05d2 \u202e123")},
        {QString(200, QLatin1Char('x')), QString(200, QLatin1Char('x'))},
        {QString(QChar(0xd800)) + QLatin1Char('a'), QStringLiteral("?a")},
        {QStringLiteral("two\nlines"), QStringLiteral("two\nlines")},
        {QString(), QString()},
    };
    for (const auto &one : cases) {
        item().setToolTip(QStringLiteral("title"), one.text);
        EXPECT_EQ(watcher.toolTip().text.toStdString(), one.sent.toStdString());
    }
}

} // namespace
} // namespace brightsweep
