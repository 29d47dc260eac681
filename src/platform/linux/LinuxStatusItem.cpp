#include "platform/linux/LinuxStatusItem.h"

#include "foundation/Log.h"
#include "platform/linux/StatusNotifierObject.h"

#include <QDBusVariant>

#include <utility>

namespace brightsweep {

namespace {

constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";
constexpr char watcherPath[] = "/StatusNotifierWatcher";
constexpr const char *hostSignals[] = {"StatusNotifierHostRegistered",
                                       "StatusNotifierHostUnregistered"};

QDBusMessage watcherCall(const char *interface, const char *method) {
    auto message =
        QDBusMessage::createMethodCall(QLatin1String(watcherName), QLatin1String(watcherPath),
                                       QLatin1String(interface), QLatin1String(method));
    message.setAutoStartService(false);
    return message;
}

} // namespace

LinuxStatusItem::LinuxStatusItem(std::shared_ptr<SessionBus> bus)
    : m_bus(std::move(bus)), m_object(new StatusNotifierObject(&m_holder)) {
    connect(&m_ownBus, &SessionBus::connected, this, [this] {
        m_ownBus.connection().registerObject(QLatin1String(path), &m_holder);
        registerItem();
    });
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::watch() {
    if (m_watcher)
        return;
    m_watcher = std::make_unique<BusName>(*m_bus, QLatin1String(watcherName));
    connect(m_watcher.get(), &BusName::ownerChanged, this, [this](const QString &owner) {
        if (owner.isEmpty()) {
            setHostPresent(false);
            return;
        }
        registerItem();
        askForHost();
    });
    for (const char *signal : hostSignals) {
        m_bus->subscribe({this, QLatin1String(watcherPath), QLatin1String(watcherName),
                          QLatin1String(signal), QString(), [this](const QDBusMessage &) {
                              registerItem();
                              askForHost();
                          }});
    }
    m_bus->open();
}

void LinuxStatusItem::registerItem() {
    if (!m_ownBus.isConnected() || !m_watcher || m_watcher->owner().isEmpty())
        return;
    auto message = watcherCall(watcherName, "RegisterStatusNotifierItem");
    message << m_ownBus.connection().baseService();
    m_ownBus.call(message, this, [](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage)
            NSLog("the tray refuses the status item: %@", reply.errorMessage());
    });
}

void LinuxStatusItem::askForHost() {
    auto message = watcherCall("org.freedesktop.DBus.Properties", "Get");
    message << QLatin1String(watcherName) << QStringLiteral("IsStatusNotifierHostRegistered");
    m_bus->call(message, this, [this](const QDBusMessage &reply) {
        const auto value = qvariant_cast<QDBusVariant>(reply.arguments().value(0));
        setHostPresent(!m_watcher->owner().isEmpty() && value.variant().toBool());
    });
}

void LinuxStatusItem::setHostPresent(bool present) {
    if (std::exchange(m_hostPresent, present) != present && m_hostHandler)
        m_hostHandler(present);
}

void LinuxStatusItem::setShown(bool shown) {
    watch();
    if (shown)
        m_ownBus.open();
    else
        m_ownBus.close();
}

void LinuxStatusItem::setImages(std::vector<StatusImage> images) {
    if (images == m_images)
        return;
    m_images = std::move(images);
    m_object->images.clear();
    for (const StatusImage &image : m_images)
        m_object->images.append({image.width, image.height, QByteArray::fromStdString(image.argb)});
    Q_EMIT m_object->NewIcon();
}

void LinuxStatusItem::setTitle(const QString &title) {
    if (std::exchange(m_object->title, title) != title)
        Q_EMIT m_object->NewTitle();
}

void LinuxStatusItem::setToolTip(const QString &title, const QString &text) {
    const StatusToolTip toolTip{QString(), {}, title, text.toHtmlEscaped()};
    if (std::exchange(m_object->toolTip, toolTip) != toolTip)
        Q_EMIT m_object->NewToolTip();
}

void LinuxStatusItem::setActivatedHandler(std::function<void(const StatusActivation &)> handler) {
    m_object->activated = std::move(handler);
}

void LinuxStatusItem::setHostHandler(std::function<void(bool present)> handler) {
    m_hostHandler = std::move(handler);
    watch();
}

} // namespace brightsweep
