#include "platform/linux/UDisks.h"

#include "platform/linux/BusProbe.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingReply>

#include <sys/sysmacros.h>

#include <array>
#include <chrono>
#include <limits>
#include <string_view>
#include <thread>

#ifdef __SANITIZE_THREAD__
// The libraries hand things from one of their threads to another by locks that ThreadSanitizer
// cannot see, since they are not built with it.
extern "C" const char *__tsan_default_options();
extern "C" const char *__tsan_default_options() {
    return "ignore_noninstrumented_modules=1";
}
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions() {
    return "race:libQt6DBus.so\n"
           "race:libdbus-1.so\n"
           "deadlock:libdbus-1.so\n";
}
#endif

namespace brightsweep {

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

constexpr int answerMilliseconds = 5000;
constexpr int endlessMilliseconds = std::numeric_limits<int>::max();
// A pending call cannot be waited for together with a stop.
constexpr std::chrono::milliseconds slice(5);

constexpr std::array<std::string_view, 3> externalBuses = {"usb", "ieee1394", "sdio"};

QString service() {
    return QStringLiteral("org.freedesktop.UDisks2");
}
QString interfaceName(const char *name) {
    return service() + QLatin1Char('.') + QLatin1String(name);
}

QString newConnectionName() {
    static std::atomic<unsigned> count{0};
    return QStringLiteral("brightsweep-volumes-%1").arg(++count);
}

bool flag(const QVariantMap &properties, const char *name) {
    return properties.value(QLatin1String(name)).toBool();
}

QString objectPath(const QVariantMap &properties, const char *name) {
    return properties.value(QLatin1String(name)).value<QDBusObjectPath>().path();
}

UDisksDrive driveOf(const QVariantMap &properties) {
    UDisksDrive drive;
    drive.ejectable = flag(properties, "Ejectable");
    drive.removable = flag(properties, "Removable") || flag(properties, "MediaRemovable");
    drive.optical = flag(properties, "Optical");
    drive.canPowerOff = flag(properties, "CanPowerOff");
    const std::string bus =
        properties.value(QStringLiteral("ConnectionBus")).toString().toStdString();
    for (const std::string_view external : externalBuses)
        drive.external = drive.external || bus == external;
    return drive;
}

UDisksBlock blockOf(const QString &path, const Interfaces &interfaces) {
    const QVariantMap properties = interfaces.value(interfaceName("Block"));
    UDisksBlock block;
    block.path = path;
    const auto number = properties.value(QStringLiteral("DeviceNumber")).toULongLong();
    block.number = {::major(number), ::minor(number)};
    block.drive = objectPath(properties, "Drive");
    block.cryptoBacking = objectPath(properties, "CryptoBackingDevice");
    block.label = properties.value(QStringLiteral("IdLabel")).toString().toStdString();
    block.encrypted = interfaces.contains(interfaceName("Encrypted"));
    block.loop = interfaces.contains(interfaceName("Loop"));
    return block;
}

// The errors of a service that is there but has not answered.
bool isSilence(QDBusError::ErrorType error) {
    return error == QDBusError::NoReply || error == QDBusError::Timeout ||
           error == QDBusError::TimedOut || error == QDBusError::Disconnected;
}

} // namespace

const UDisksBlock *UDisksSnapshot::block(DeviceNumber number) const {
    for (const UDisksBlock &candidate : blocks) {
        if (candidate.number == number)
            return &candidate;
    }
    return nullptr;
}

const UDisksDrive *UDisksSnapshot::drive(DeviceNumber disk) const {
    const UDisksBlock *const found = block(disk);
    const auto drive = found ? drives.find(found->drive) : drives.end();
    return drive == drives.end() ? nullptr : &drive->second;
}

UDisks::UDisks()
    : m_name(newConnectionName()),
      m_busWasSilent(busIsSilent(systemBusAddress())),
      m_connection(m_busWasSilent
                       ? QDBusConnection(m_name)
                       : QDBusConnection::connectToBus(QDBusConnection::SystemBus, m_name)) {}

UDisks::~UDisks() {
    QDBusConnection::disconnectFromBus(m_name);
}

std::optional<UDisksSnapshot> UDisks::snapshot(const std::atomic<bool> &stop) {
    const auto message = QDBusMessage::createMethodCall(
        service(), QStringLiteral("/org/freedesktop/UDisks2"),
        QStringLiteral("org.freedesktop.DBus.ObjectManager"), QStringLiteral("GetManagedObjects"));
    const QDBusPendingCall pending = m_connection.asyncCall(message, answerMilliseconds);
    while (!pending.isFinished()) {
        if (stop)
            return std::nullopt;
        std::this_thread::sleep_for(slice);
    }
    const QDBusMessage reply = pending.reply();
    m_offered = reply.type() != QDBusMessage::ErrorMessage || isSilence(QDBusError(reply).type());
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    const auto objects = qdbus_cast<Objects>(reply.arguments().constFirst());
    UDisksSnapshot snapshot;
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        if (object->contains(interfaceName("Block")))
            snapshot.blocks.push_back(blockOf(object.key().path(), *object));
        if (object->contains(interfaceName("Drive")))
            snapshot.drives[object.key().path()] = driveOf(object->value(interfaceName("Drive")));
    }
    return snapshot;
}

UDisksError UDisks::call(const QString &object, const char *interface, const char *method) {
    auto message = QDBusMessage::createMethodCall(service(), object, interfaceName(interface),
                                                  QLatin1String(method));
    message << QVariantMap();
    message.setInteractiveAuthorizationAllowed(true);
    const QDBusMessage reply = m_connection.call(message, QDBus::Block, endlessMilliseconds);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return {};
    // Without a bus there is no name either.
    return {reply.errorName().isEmpty() ? QStringLiteral("org.freedesktop.DBus.Error.Failed")
                                        : reply.errorName(),
            reply.errorMessage()};
}

} // namespace brightsweep
