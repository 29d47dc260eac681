#include "platform/linux/SoftwareCentres.h"

#include "platform/linux/BusProbe.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace brightsweep {

namespace {

constexpr int answerMilliseconds = 1'000;

} // namespace

void tellSoftwareCentres() {
    const std::string address = systemBusAddress();
    if (!busListens(address) || busIsSilent(address))
        return;
    const QString name = QStringLiteral("brightsweep-packages");
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
        auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.PackageKit"),
                                                      QStringLiteral("/org/freedesktop/PackageKit"),
                                                      QStringLiteral("org.freedesktop.PackageKit"),
                                                      QStringLiteral("StateHasChanged"));
        message.setArguments({QStringLiteral("cache-update")});
        message.setAutoStartService(false);
        bus.call(message, QDBus::Block, answerMilliseconds);
    }
    QDBusConnection::disconnectFromBus(name);
}

} // namespace brightsweep
