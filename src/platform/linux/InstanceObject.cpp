#include "platform/linux/InstanceObject.h"

#include "foundation/Identity.h"
#include "foundation/Paths.h"

#include <QDBusArgument>
#include <QDBusConnection>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace brightsweep {

namespace {

// The methods of the interface, and which argument holds the platform data.
constexpr struct {
    const char *name;
    int platformData;
} methods[] = {{"Activate", 0}, {"Open", 1}, {"ActivateAction", 2}};

// The second one is what desktops said before they knew the first.
constexpr const char *tokenKeys[] = {"activation-token", "desktop-startup-id"};
// Actions of the desktop entry. The second one may have a URL as its parameter.
constexpr QLatin1String findDuplicates("find-duplicates");
constexpr QLatin1String showUsage("show-disk-usage");

QVariantMap platformData(const std::string &token) {
    QVariantMap data;
    if (token.empty())
        return data;
    for (const char *key : tokenKeys)
        data.insert(QLatin1String(key), QString::fromStdString(token));
    return data;
}

std::string tokenOf(const QVariantMap &platformData) {
    for (const char *key : tokenKeys) {
        const QString token = platformData.value(QLatin1String(key)).toString();
        if (!token.isEmpty())
            return token.toStdString();
    }
    return {};
}

// What the message asks for, without its token. Whatever is no local file is no folder.
InstanceRequest requestOf(const QDBusMessage &message) {
    const QVariant first = message.arguments().value(0);
    if (message.member() == QLatin1String("Open")) {
        const auto file = paths::fromFileUrl(first.toStringList().value(0));
        return file ? InstanceRequest{{}, RequestedPage::Duplicates, *file} : InstanceRequest{};
    }
    if (message.member() != QLatin1String("ActivateAction"))
        return {};
    if (first.toString() == findDuplicates)
        return {{}, RequestedPage::Duplicates};
    if (first.toString() != showUsage)
        return {};
    const auto parameters = qdbus_cast<QVariantList>(message.arguments().value(1));
    return {{},
            RequestedPage::Usage,
            paths::fromFileUrl(parameters.value(0).toString()).value_or(std::filesystem::path())};
}

} // namespace

InstanceObject::InstanceObject(InstanceRequests &requests) : m_requests(requests) {
    m_thread.start();
    moveToThread(&m_thread);
}

InstanceObject::~InstanceObject() {
    m_thread.quit();
    m_thread.wait();
}

QDBusMessage InstanceObject::message(const InstanceRequest &request) {
    const bool isDuplicates = request.page == RequestedPage::Duplicates;
    const bool opens = isDuplicates && !request.folder.empty();
    const bool acts = request.page != RequestedPage::None;
    const char *const method = opens ? "Open" : acts ? "ActivateAction" : "Activate";
    auto message =
        QDBusMessage::createMethodCall(QString::fromLatin1(bundleIdentifier), QLatin1String(path),
                                       QLatin1String(interface), QLatin1String(method));
    if (opens) {
        message << QStringList(paths::toFileUrl(request.folder));
    } else if (isDuplicates) {
        message << QString(findDuplicates) << QVariantList();
    } else if (acts) {
        QVariantList parameters;
        if (!request.folder.empty())
            parameters.append(paths::toFileUrl(request.folder));
        message << QString(showUsage) << parameters;
    }
    message << platformData(request.activationToken);
    message.setAutoStartService(false);
    return message;
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
    InstanceRequest request = requestOf(message);
    request.activationToken = tokenOf(qdbus_cast<QVariantMap>(data));
    m_requests.add(std::move(request),
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
