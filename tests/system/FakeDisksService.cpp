// Plays the disks service for one block device that it says is a stick on usb with an unlocked
// part. Arguments: the device's number, and a file that gets a line for each method called; a
// question for all that it knows is a byte in the file of that name and ".asked". While one with
// ".refuse" exists, unmounting is refused, and while one with ".keep-METHOD" exists, that method of
// the drive is.

#include "linux/MountTable.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <sys/mount.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

QString named(const char *name) {
    return QStringLiteral("org.freedesktop.UDisks2.%1").arg(QLatin1String(name));
}

class FakeDisks : public QDBusVirtualObject {
public:
    FakeDisks(quint64 device, std::string log) : m_device(device), m_log(std::move(log)) {}

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        if (message.member() == QLatin1String("GetManagedObjects")) {
            std::ofstream(m_log + ".asked", std::ios::app) << '.';
            return bus.send(message.createReply(QVariant::fromValue(objects())));
        }
        const std::string interface =
            message.interface().section(QLatin1Char('.'), -1).toStdString();
        std::ofstream(m_log, std::ios::app)
            << interface << "." << message.member().toStdString() << "\n";
        if (message.member() == QLatin1String("Unmount")) {
            if (std::filesystem::exists(m_log + ".refuse"))
                return bus.send(message.createErrorReply(named("Error.DeviceBusy"),
                                                         QStringLiteral("target is busy")));
            unmount();
        }
        if (std::filesystem::exists(m_log + ".keep-" + message.member().toStdString()))
            return bus.send(
                message.createErrorReply(named("Error.NotAuthorized"), QStringLiteral("kept")));
        return bus.send(message.createReply());
    }

private:
    Objects objects() const {
        const QDBusObjectPath none(QStringLiteral("/"));
        const QDBusObjectPath block(QStringLiteral("/org/freedesktop/UDisks2/block_devices/one"));
        const QDBusObjectPath plain(QStringLiteral("/org/freedesktop/UDisks2/block_devices/two"));
        const QDBusObjectPath drive(QStringLiteral("/org/freedesktop/UDisks2/drives/stick"));
        const auto facts = [](quint64 number, const QDBusObjectPath &owner,
                              const QDBusObjectPath &backing) {
            return QVariantMap{
                {QStringLiteral("DeviceNumber"), number},
                {QStringLiteral("Drive"), QVariant::fromValue(owner)},
                {QStringLiteral("CryptoBackingDevice"), QVariant::fromValue(backing)},
                {QStringLiteral("IdLabel"), QStringLiteral("Stick")}};
        };
        return {
            {block,
             {{named("Block"), facts(m_device, drive, none)},
              {named("Filesystem"), {}},
              {named("Encrypted"), {}}}},
            {plain, {{named("Block"), facts(0, none, block)}}},
            {drive,
             {{named("Drive"),
               {{QStringLiteral("Ejectable"), true},
                {QStringLiteral("Removable"), false},
                {QStringLiteral("MediaRemovable"), ::access((m_log + ".fixed").c_str(), F_OK) != 0},
                {QStringLiteral("ConnectionBus"), QStringLiteral("usb")},
                {QStringLiteral("Optical"), false},
                {QStringLiteral("CanPowerOff"), true}}}}}};
    }

    void unmount() const {
        for (const brightsweep::Mount &mount : brightsweep::currentMounts()) {
            if (::makedev(mount.deviceMajor, mount.deviceMinor) == m_device)
                ::umount2(mount.mountPoint.c_str(), UMOUNT_NOFOLLOW);
        }
    }

    const quint64 m_device;
    const std::string m_log;
};

} // namespace

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    FakeDisks disks(std::stoull(argv[1]), argv[2]);
    auto bus = QDBusConnection::systemBus();
    if (!bus.registerVirtualObject(QStringLiteral("/org/freedesktop/UDisks2"), &disks,
                                   QDBusConnection::SubPath) ||
        !bus.registerService(QStringLiteral("org.freedesktop.UDisks2")))
        return 1;
    return QCoreApplication::exec();
}
