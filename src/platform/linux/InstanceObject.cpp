#include "platform/linux/InstanceObject.h"

#include "foundation/Identity.h"

#include <QDBusArgument>
#include <QDBusConnection>

#include <algorithm>
#include <filesystem>
#include <optional>

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
constexpr QLatin1String fileScheme("file://");

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

// By the bytes of the URL: a name need not be valid UTF-8. Whatever is no local file is none.
std::optional<std::filesystem::path> fileOf(const QString &url) {
    const qsizetype path = url.startsWith(fileScheme) ? url.indexOf(u'/', fileScheme.size()) : -1;
    if (path < 0)
        return std::nullopt;
    return QByteArray::fromPercentEncoding(url.mid(path).toLatin1()).toStdString();
}

std::optional<std::filesystem::path> duplicatesOf(const QDBusMessage &message) {
    const QVariant first = message.arguments().value(0);
    if (message.member() == QLatin1String("Open"))
        return fileOf(first.toStringList().value(0));
    if (message.member() == QLatin1String("ActivateAction") && first.toString() == findDuplicates)
        return std::filesystem::path();
    return std::nullopt;
}

std::optional<std::filesystem::path> usageOf(const QDBusMessage &message) {
    if (message.member() != QLatin1String("ActivateAction") ||
        message.arguments().value(0).toString() != showUsage)
        return std::nullopt;
    const auto parameters = qdbus_cast<QVariantList>(message.arguments().value(1));
    return fileOf(parameters.value(0).toString()).value_or(std::filesystem::path());
}

QString urlOf(const std::filesystem::path &file) {
    const auto bytes = QByteArray::fromStdString(file.native());
    return fileScheme + QString::fromLatin1(bytes.toPercentEncoding(QByteArray("/")));
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
    const bool opens = request.duplicates && !request.duplicates->empty();
    const bool acts = request.duplicates || request.usage;
    const char *const method = opens ? "Open" : acts ? "ActivateAction" : "Activate";
    auto message =
        QDBusMessage::createMethodCall(QString::fromLatin1(bundleIdentifier), QLatin1String(path),
                                       QLatin1String(interface), QLatin1String(method));
    if (opens) {
        message << QStringList(urlOf(*request.duplicates));
    } else if (request.duplicates) {
        message << QString(findDuplicates) << QVariantList();
    } else if (request.usage) {
        QVariantList parameters;
        if (!request.usage->empty())
            parameters.append(urlOf(*request.usage));
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
    m_requests.add(
        {tokenOf(qdbus_cast<QVariantMap>(data)), duplicatesOf(message), usageOf(message)},
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
