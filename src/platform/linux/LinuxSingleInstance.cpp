#include "platform/linux/LinuxSingleInstance.h"

#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/SmallFile.h"
#include "platform/linux/InstanceObject.h"
#include "platform/linux/InstanceSocket.h"
#include "platform/linux/SessionBus.h"

#include <QDBusError>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::chrono::seconds patience(2);
// For a first one that is found at the last moment, or a lock that is free.
constexpr milliseconds leastPatience(100);

// The answers of the bus to who asks for a name.
enum NameReply : unsigned { Owner = 1, AlreadyOwner = 4 };
constexpr unsigned doNotQueue = 4;

QDBusMessage nameRequest() {
    auto request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << QString::fromLatin1(bundleIdentifier) << doNotQueue;
    return request;
}

bool isOwned(const QDBusMessage &reply) {
    const unsigned answer = reply.arguments().value(0).toUInt();
    return answer == Owner || answer == AlreadyOwner;
}

} // namespace

LinuxSingleInstance::LinuxSingleInstance(std::shared_ptr<SessionBus> bus) : m_bus(std::move(bus)) {
    connect(m_bus.get(), &SessionBus::connected, this, &LinuxSingleInstance::takeNameAgain);
    connect(m_bus.get(), &SessionBus::disconnected, this, [this] {
        if (m_first)
            claimSocket(false, {}, steady_clock::now());
    });
}

LinuxSingleInstance::~LinuxSingleInstance() {
    if (m_object && m_bus->isConnected())
        m_bus->connection().unregisterObject(QLatin1String(InstanceObject::path));
}

InstanceOutcome LinuxSingleInstance::claim(bool activate, const InstanceRequest &request) {
    const auto outcome = find(activate, request, steady_clock::now() + patience);
    m_first = outcome == InstanceOutcome::First;
    if (outcome == InstanceOutcome::Hanging)
        writeAll(STDERR_FILENO, "Brightsweep is already running but does not answer.\n");
    return outcome;
}

InstanceOutcome LinuxSingleInstance::find(bool activate, const InstanceRequest &request,
                                          Deadline until) {
    m_bus->open();
    if (m_bus->waitForConnection(until)) {
        const auto outcome = claimName(activate, request, until);
        if (outcome != InstanceOutcome::Failed)
            return outcome;
    }
    return claimSocket(activate, request, std::max(until, steady_clock::now() + leastPatience));
}

InstanceOutcome LinuxSingleInstance::claimName(bool activate, const InstanceRequest &request,
                                               Deadline until) {
    const auto ask = [&](const QDBusMessage &message) {
        const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
        return m_bus->connection().call(message, QDBus::Block,
                                        int(std::max(left, milliseconds(1)).count()));
    };
    // A start that finds the name finds the object too.
    registerObject();
    while (steady_clock::now() < until) {
        const auto reply = ask(nameRequest());
        if (reply.type() != QDBusMessage::ReplyMessage) {
            NSLog("no name on the session bus: %@", reply.errorMessage());
            return InstanceOutcome::Failed;
        }
        if (isOwned(reply))
            return InstanceOutcome::First;
        if (!activate)
            return InstanceOutcome::PassedOn;
        const auto answer = ask(InstanceObject::message(request));
        if (answer.type() == QDBusMessage::ReplyMessage)
            return InstanceOutcome::PassedOn;
        // The first one may have ended just now.
        const auto error = QDBusError(answer).type();
        if (error == QDBusError::NoReply || error == QDBusError::TimedOut ||
            error == QDBusError::Timeout) {
            if (steady_clock::now() >= until)
                return InstanceOutcome::Hanging;
        } else if (error != QDBusError::ServiceUnknown) {
            NSLog("the running program refuses: %@", answer.errorMessage());
            return InstanceOutcome::Failed;
        }
    }
    return InstanceOutcome::Hanging;
}

InstanceOutcome LinuxSingleInstance::claimSocket(bool activate, const InstanceRequest &request,
                                                 Deadline until) {
    if (m_socket)
        return InstanceOutcome::First;
    auto socket = std::make_unique<InstanceSocket>(m_requests);
    const auto outcome = socket->claim(activate, request, until);
    if (outcome == InstanceOutcome::First)
        m_socket = std::move(socket);
    return outcome;
}

void LinuxSingleInstance::registerObject() {
    if (!m_object)
        m_object = std::make_unique<InstanceObject>(m_requests);
    m_bus->connection().registerVirtualObject(QLatin1String(InstanceObject::path), m_object.get());
}

void LinuxSingleInstance::takeNameAgain() {
    if (!m_first)
        return;
    registerObject();
    m_bus->call(nameRequest(), this, [](const QDBusMessage &reply) {
        if (!isOwned(reply))
            NSLog("the program's name on the session bus is taken");
    });
}

void LinuxSingleInstance::setActivateHandler(std::function<void(const InstanceRequest &)> handler) {
    m_requests.setHandler(std::move(handler));
}

} // namespace brightsweep
