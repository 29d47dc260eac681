#include "platform/linux/InstanceObject.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>

namespace brightsweep {

namespace {

// The methods of the interface, and which argument holds the platform data.
constexpr struct {
    const char *name;
    int platformData;
} methods[] = {{"Activate", 0}, {"Open", 1}, {"ActivateAction", 2}};

// The second one is what desktops said before they knew the first.
constexpr const char *tokenKeys[] = {"activation-token", "desktop-startup-id"};

} // namespace

InstanceObject::InstanceObject(InstanceRequests &requests) : m_requests(requests) {
    m_thread.start();
    moveToThread(&m_thread);
}

InstanceObject::~InstanceObject() {
    m_thread.quit();
    m_thread.wait();
}

QVariantMap InstanceObject::platformData(const std::string &token) {
    QVariantMap data;
    if (token.empty())
        return data;
    for (const char *key : tokenKeys)
        data.insert(QLatin1String(key), QString::fromStdString(token));
    return data;
}

std::string InstanceObject::tokenOf(const QVariantMap &platformData) {
    for (const char *key : tokenKeys) {
        const QString token = platformData.value(QLatin1String(key)).toString();
        if (!token.isEmpty())
            return token.toStdString();
    }
    return {};
}

bool InstanceObject::handleMessage(const QDBusMessage &message, const QDBusConnection &connection) {
    if (!message.interface().isEmpty() && message.interface() != QLatin1String(interface))
        return false;
    const auto method = std::find_if(std::begin(methods), std::end(methods), [&](const auto &row) {
        return message.member() == QLatin1String(row.name);
    });
    if (method == std::end(methods))
        return false;
    const QVariant data = message.arguments().value(method->platformData);
    m_requests.add(tokenOf(qdbus_cast<QVariantMap>(data)),
                   [connection, reply = message.createReply()] { connection.send(reply); });
    return true;
}

QString InstanceObject::introspect(const QString &) const {
    return QStringLiteral("<interface name=\"org.freedesktop.Application\">"
                          "<method name=\"Activate\">"
                          "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>"
                          "</method>"
                          "<method name=\"Open\">"
                          "<arg name=\"uris\" type=\"as\" direction=\"in\"/>"
                          "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>"
                          "</method>"
                          "<method name=\"ActivateAction\">"
                          "<arg name=\"action_name\" type=\"s\" direction=\"in\"/>"
                          "<arg name=\"parameter\" type=\"av\" direction=\"in\"/>"
                          "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/>"
                          "</method>"
                          "</interface>");
}

} // namespace brightsweep
