#include "desktop/PrivateBus.h"

#include "foundation/FileDescriptor.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDBusPendingCall>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace brightsweep::test {

namespace {

constexpr char configuration[] = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

bool accepts(const std::filesystem::path &path) {
    const FileDescriptor caller(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    return ::connect(caller.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) ==
           0;
}

QString newName() {
    static int number = 0;
    return QStringLiteral("played-%1").arg(++number);
}

} // namespace

PrivateBus::PrivateBus()
    : m_socket(TestEnvironment::current().root() / "runtime" / "bus"),
      m_configuration(TestEnvironment::current().root() / "bus.conf") {
    std::ofstream(m_configuration) << configuration;
    start();
}

PrivateBus::~PrivateBus() = default;

std::string PrivateBus::address() const {
    return "unix:path=" + m_socket.native();
}

void PrivateBus::start() {
    m_daemon = std::make_unique<RunningProgram>(std::vector<std::string>{
        "dbus-daemon", "--nofork", "--nopidfile", "--config-file=" + m_configuration.native(),
        "--address=" + address()});
    if (!eventually([this] { return accepts(m_socket); }))
        throw std::runtime_error("the bus does not come up");
}

void PrivateBus::stop() {
    m_daemon.reset();
    ::unlink(m_socket.c_str());
}

PlayedService::PlayedService(const PrivateBus &bus, const char *path)
    : connection(QDBusConnection::connectToBus(QString::fromStdString(bus.address()), newName())),
      m_path(QLatin1String(path)) {
    if (!connection.registerVirtualObject(m_path, this))
        throw std::runtime_error("no bus for the played service");
}

PlayedService::~PlayedService() {
    connection.unregisterObject(m_path);
    QDBusConnection::disconnectFromBus(connection.name());
}

bool PlayedService::takeName(const char *name) {
    return connection.registerService(QLatin1String(name));
}

bool PlayedService::giveNameBack(const char *name) {
    return connection.unregisterService(QLatin1String(name));
}

void PlayedService::emitSignal(const char *interface, const char *name,
                               const QVariantList &arguments) {
    auto signal = QDBusMessage::createSignal(m_path, QLatin1String(interface), QLatin1String(name));
    signal.setArguments(arguments);
    connection.send(signal);
}

QList<QDBusMessage> PlayedService::callsOf(const char *method) const {
    QList<QDBusMessage> found;
    for (const QDBusMessage &call : m_calls) {
        if (call.member() == QLatin1String(method))
            found.append(call);
    }
    return found;
}

bool PlayedService::handleMessage(const QDBusMessage &message, const QDBusConnection &from) {
    m_calls.append(message);
    return from.send(answer ? answer(message) : message.createReply());
}

QDBusMessage callInLoop(QDBusConnection &from, const QString &service, const QString &path,
                        const QString &interface, const QString &method,
                        const QVariantList &arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall call = from.asyncCall(message);
    eventually([&] { return call.isFinished(); });
    return call.reply();
}

} // namespace brightsweep::test
