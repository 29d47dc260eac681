#include "platform/linux/UDisksListener.h"

#include <QDBusConnection>

#include <utility>

namespace brightsweep {

namespace {

struct Heard {
    const char *path; ///< empty for any
    const char *interface;
    const char *signal;
    const char *argument; ///< the first one; empty for any
};

// No sender is named: the library would wait for the bus to tell who that is.
constexpr Heard signalsHeard[] = {
    {"/org/freedesktop/UDisks2", "org.freedesktop.DBus.ObjectManager", "InterfacesAdded", ""},
    {"/org/freedesktop/UDisks2", "org.freedesktop.DBus.ObjectManager", "InterfacesRemoved", ""},
    {"", "org.freedesktop.DBus.Properties", "PropertiesChanged", "org.freedesktop.UDisks2.Block"},
    {"", "org.freedesktop.DBus.Properties", "PropertiesChanged", "org.freedesktop.UDisks2.Drive"},
    {"", "org.freedesktop.DBus", "NameOwnerChanged", "org.freedesktop.UDisks2"},
    {"/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", ""},
};

} // namespace

UDisksListener::UDisksListener(std::function<void()> following, std::function<void()> changed)
    : m_following(std::move(following)), m_changed(std::move(changed)) {}

UDisksListener::~UDisksListener() = default;

void UDisksListener::follow(const QString &connection) {
    m_queue.post([this, connection] { listen(connection); });
}

void UDisksListener::listen(const QString &connection) {
    QDBusConnection bus(connection);
    // It may have gone again meanwhile.
    if (!bus.isConnected())
        return;
    for (const Heard &heard : signalsHeard) {
        const QString argument = QLatin1String(heard.argument);
        bus.connect({}, QLatin1String(heard.path), QLatin1String(heard.interface),
                    QLatin1String(heard.signal),
                    argument.isEmpty() ? QStringList() : QStringList(argument), {}, this,
                    SLOT(hear()));
    }
    m_following();
}

void UDisksListener::hear() {
    m_changed();
}

} // namespace brightsweep
