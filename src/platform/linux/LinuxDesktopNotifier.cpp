#include "platform/linux/LinuxDesktopNotifier.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"

#include <QTimer>

#include <utility>

namespace brightsweep {

namespace {

constexpr char service[] = "org.freedesktop.Notifications";
constexpr char objectPath[] = "/org/freedesktop/Notifications";
constexpr char busService[] = "org.freedesktop.DBus";
// Both lead to the one action: a click on the whole notification, and its button.
constexpr const char *actionKeys[] = {"default", "open"};
// Nobody reads a pile of old news.
constexpr std::size_t mostWaiting = 16;

QDBusMessage serviceCall(const char *method) {
    return QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(objectPath),
                                          QLatin1String(service), QLatin1String(method));
}

} // namespace

LinuxDesktopNotifier::LinuxDesktopNotifier(std::shared_ptr<SessionBus> bus)
    : m_bus(std::move(bus)) {}

LinuxDesktopNotifier::~LinuxDesktopNotifier() = default;

void LinuxDesktopNotifier::watch() {
    if (m_server)
        return;
    m_server = std::make_unique<BusName>(*m_bus, QLatin1String(service));
    connect(m_server.get(), &BusName::ownerChanged, this, [this] {
        m_capabilities.reset();
        m_shown.clear();
    });
    connect(m_bus.get(), &SessionBus::connected, this, [this] {
        askWhetherItCanBeStarted();
        flush();
    });
    connect(m_bus.get(), &SessionBus::disconnected, this, [this] {
        m_canBeStarted = false;
        m_asking = false;
        m_capabilities.reset();
        m_shown.clear();
    });
    connect(m_bus.get(), &SessionBus::failed, this, [this] {
        for (const DesktopNotification &lost : std::exchange(m_waiting, {}))
            NSLog("no session bus to show: %@", lost.body);
    });
    const auto hear = [this](const char *signal, SessionBus::Handler handler) {
        m_bus->subscribe({this, QLatin1String(objectPath), QLatin1String(service),
                          QLatin1String(signal), QString(), std::move(handler)});
    };
    hear("ActivationToken", [this](const QDBusMessage &signal) {
        if (Shown *const shown = find(signal))
            shown->token = signal.arguments().value(1).toString().toStdString();
    });
    hear("ActionInvoked", [this](const QDBusMessage &signal) {
        Shown *const shown = find(signal);
        if (!shown)
            return;
        const Shown invoked = std::move(*shown);
        m_shown.erase(signal.arguments().value(0).toUInt());
        invoked.action(invoked.token);
    });
    hear("NotificationClosed", [this](const QDBusMessage &signal) {
        if (find(signal))
            m_shown.erase(signal.arguments().value(0).toUInt());
    });
    m_bus->open();
    askWhetherItCanBeStarted();
}

bool LinuxDesktopNotifier::available() {
    watch();
    return !m_server->owner().isEmpty() || m_canBeStarted;
}

void LinuxDesktopNotifier::show(const DesktopNotification &notification) {
    watch();
    if (m_waiting.size() == mostWaiting)
        m_waiting.erase(m_waiting.begin());
    m_waiting.push_back(notification);
    flush();
}

void LinuxDesktopNotifier::flush() {
    if (m_waiting.empty() || !m_bus->isConnected())
        return;
    if (!m_capabilities) {
        askWhatItCan();
        return;
    }
    for (const DesktopNotification &notification : std::exchange(m_waiting, {}))
        notify(notification);
}

void LinuxDesktopNotifier::askWhatItCan() {
    if (std::exchange(m_asking, true))
        return;
    m_bus->call(serviceCall("GetCapabilities"), this, [this](const QDBusMessage &reply) {
        m_asking = false;
        if (reply.type() == QDBusMessage::ErrorMessage) {
            for (const DesktopNotification &lost : std::exchange(m_waiting, {}))
                NSLog("nobody shows \"%@\": %@", lost.body, reply.errorMessage());
            return;
        }
        m_capabilities = reply.arguments().value(0).toStringList();
        flush();
    });
}

void LinuxDesktopNotifier::askWhetherItCanBeStarted() {
    const auto question = QDBusMessage::createMethodCall(
        QLatin1String(busService), QStringLiteral("/org/freedesktop/DBus"),
        QLatin1String(busService), QStringLiteral("ListActivatableNames"));
    m_bus->call(question, this, [this](const QDBusMessage &reply) {
        m_canBeStarted = reply.arguments().value(0).toStringList().contains(QLatin1String(service));
    });
}

void LinuxDesktopNotifier::notify(const DesktopNotification &notification) {
    const bool marked = m_capabilities->contains(QStringLiteral("body-markup"));
    QStringList actions;
    if (!notification.actionLabel.isEmpty() &&
        m_capabilities->contains(QStringLiteral("actions"))) {
        for (const char *key : actionKeys)
            actions << QLatin1String(key) << notification.actionLabel;
    }
    const int life = notification.closeAfterMilliseconds;
    QVariantMap hints{{QStringLiteral("desktop-entry"), QString::fromLatin1(bundleIdentifier)}};
    if (life > 0)
        hints.insert(QStringLiteral("transient"), true);
    auto message = serviceCall("Notify");
    message << QStringLiteral("Brightsweep") << 0u << QString::fromLatin1(bundleIdentifier)
            << notification.summary
            << (marked ? notification.body.toHtmlEscaped() : notification.body) << actions << hints
            << (life > 0 ? life : -1);
    m_bus->call(message, this, [this, life, notification](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            NSLog("cannot show \"%@\": %@", notification.body, reply.errorMessage());
            return;
        }
        const std::uint32_t number = reply.arguments().value(0).toUInt();
        // Later versions of Qt do not say who replied.
        const QString server = reply.service().isEmpty() ? m_server->owner() : reply.service();
        if (notification.action)
            m_shown[number] = {server, notification.action, {}};
        // Some services take the time for a suggestion.
        if (life > 0)
            QTimer::singleShot(life, this, [this, number, server] { close(number, server); });
    });
}

void LinuxDesktopNotifier::close(std::uint32_t number, const QString &server) {
    if (server != m_server->owner())
        return;
    m_shown.erase(number);
    auto message = serviceCall("CloseNotification");
    message << number;
    message.setAutoStartService(false);
    m_bus->send(message);
}

LinuxDesktopNotifier::Shown *LinuxDesktopNotifier::find(const QDBusMessage &signal) {
    const auto found = m_shown.find(signal.arguments().value(0).toUInt());
    return found != m_shown.end() && found->second.server == signal.service() ? &found->second
                                                                              : nullptr;
}

} // namespace brightsweep
