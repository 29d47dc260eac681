#include "platform/linux/SessionBus.h"

#include "foundation/CallQueue.h"
#include "foundation/Log.h"
#include "platform/linux/BusProbe.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds firstPause(250);
constexpr std::chrono::milliseconds longestPause(8'000);
// Longer than a bus that works ever takes; one that does not is left to its thread.
constexpr std::chrono::seconds patienceAtTheEnd(2);

constexpr char busService[] = "org.freedesktop.DBus";

QString newConnectionName() {
    static std::atomic<unsigned> number{0};
    return QStringLiteral("brightsweep-session-%1").arg(++number);
}

} // namespace

struct SessionBus::Attempt {
    const QString name = newConnectionName();
    std::mutex mutex;
    std::condition_variable ended;
    bool done = false;
    bool connected = false;
    CallQueue *queue = nullptr; ///< null once nobody wants the result
};

SessionBus::SessionBus(QObject *parent) : QObject(parent), m_pause(firstPause) {
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &SessionBus::attempt);
}

SessionBus::~SessionBus() {
    if (m_attempt) {
        std::unique_lock lock(m_attempt->mutex);
        m_attempt->ended.wait_for(lock, patienceAtTheEnd, [this] { return m_attempt->done; });
    }
    blockSignals(true);
    close();
}

void SessionBus::open() {
    if (m_open)
        return;
    m_open = true;
    if (!m_queue)
        m_queue = std::make_unique<CallQueue>();
    m_pause = firstPause;
    // Nobody is to wait once more for one that has just kept silent.
    if (sessionBusIsLeft())
        retryLater();
    else
        attempt();
}

void SessionBus::close() {
    m_open = false;
    m_retry.stop();
    if (const auto attempt = std::exchange(m_attempt, nullptr)) {
        const std::lock_guard lock(attempt->mutex);
        attempt->queue = nullptr;
        if (attempt->connected)
            QDBusConnection::disconnectFromBus(attempt->name);
    }
    if (const auto connection = std::exchange(m_connection, std::nullopt)) {
        QDBusConnection::disconnectFromBus(connection->name());
        Q_EMIT disconnected();
    }
}

void SessionBus::attempt() {
    const std::string address = sessionBusAddress();
    if (address.empty()) {
        retryLater();
        return;
    }
    m_attempt = std::make_shared<Attempt>();
    m_attempt->queue = m_queue.get();
    const auto work = [this, attempt = m_attempt, address] {
        const bool connected =
            !busIsSilent(address) &&
            QDBusConnection::connectToBus(QString::fromLocal8Bit(address.c_str()), attempt->name)
                .isConnected();
        const std::lock_guard lock(attempt->mutex);
        attempt->done = true;
        attempt->connected = connected;
        if (attempt->queue)
            attempt->queue->post([this, attempt] { settle(attempt); });
        if (!connected || !attempt->queue)
            QDBusConnection::disconnectFromBus(attempt->name);
        attempt->ended.notify_all();
    };
    try {
        std::thread(work).detach();
    } catch (const std::system_error &error) {
        NSLog("The session bus is not asked: %@", error.code());
        m_attempt->done = true;
        m_queue->post([this, attempt = m_attempt] { settle(attempt); });
    }
}

void SessionBus::settle(const std::shared_ptr<Attempt> &attempt) {
    if (attempt != m_attempt)
        return;
    m_attempt.reset();
    if (attempt->connected) {
        m_connection = QDBusConnection(attempt->name);
        begin();
    } else {
        retryLater();
    }
    for (const auto &[context, function] : std::exchange(m_waiting, {})) {
        if (context)
            function();
    }
}

void SessionBus::begin() {
    m_pause = firstPause;
    m_connection->connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                          QStringLiteral("org.freedesktop.DBus.Local"),
                          QStringLiteral("Disconnected"), this, SLOT(lose()));
    for (const Subscription &subscription : m_subscriptions)
        apply(subscription);
    // It may have gone before anybody listened.
    if (m_connection->isConnected())
        Q_EMIT connected();
    else
        lose();
}

void SessionBus::whenSettled(QObject *context, std::function<void()> function) {
    if (m_attempt)
        m_waiting.emplace_back(context, std::move(function));
    else
        function();
}

bool SessionBus::waitForConnection(std::chrono::steady_clock::time_point until) {
    if (const auto attempt = m_attempt) {
        std::unique_lock lock(attempt->mutex);
        attempt->ended.wait_until(lock, until, [&] { return attempt->done; });
        if (!attempt->done)
            return false;
        lock.unlock();
        settle(attempt);
    }
    return isConnected();
}

void SessionBus::lose() {
    if (!m_connection || m_connection->isConnected())
        return;
    QDBusConnection::disconnectFromBus(m_connection->name());
    m_connection.reset();
    Q_EMIT disconnected();
    if (m_open)
        m_retry.start(m_pause);
}

void SessionBus::retryLater() {
    m_retry.start(m_pause);
    m_pause = std::min(m_pause * 2, longestPause);
    Q_EMIT failed();
}

void SessionBus::subscribe(Subscription subscription) {
    if (m_connection)
        apply(subscription);
    m_subscriptions.push_back(std::move(subscription));
}

void SessionBus::apply(const Subscription &subscription) {
    // No sender is named: the library would wait for the bus to tell who that is.
    const QStringList arguments =
        subscription.argument.isEmpty() ? QStringList() : QStringList(subscription.argument);
    m_connection->connect({}, subscription.path, subscription.interface, subscription.member,
                          arguments, {}, this, SLOT(dispatch(QDBusMessage)));
}

void SessionBus::dispatch(const QDBusMessage &message) {
    const QVariant first = message.arguments().value(0);
    // A handler may subscribe in turn.
    for (std::size_t i = 0; i < m_subscriptions.size(); ++i) {
        const Subscription &wanted = m_subscriptions[i];
        if (wanted.context && wanted.interface == message.interface() &&
            wanted.member == message.member() &&
            (wanted.path.isEmpty() || wanted.path == message.path()) &&
            (wanted.argument.isEmpty() || wanted.argument == first.toString())) {
            const Handler handler = wanted.handler;
            handler(message);
        }
    }
}

void SessionBus::call(const QDBusMessage &message, QObject *context, Handler answered) {
    if (!m_connection)
        return;
    auto *watcher = new QDBusPendingCallWatcher(m_connection->asyncCall(message), context);
    connect(watcher, &QDBusPendingCallWatcher::finished, context,
            [answered = std::move(answered)](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                answered(finished->reply());
            });
}

void SessionBus::send(const QDBusMessage &message) {
    if (m_connection)
        m_connection->send(message);
}

BusName::BusName(SessionBus &bus, const QString &name) : m_bus(bus), m_name(name) {
    connect(&bus, &SessionBus::connected, this, &BusName::ask);
    connect(&bus, &SessionBus::disconnected, this, [this] { setOwner({}); });
    bus.subscribe({this, QString(), QLatin1String(busService), QStringLiteral("NameOwnerChanged"),
                   name, [this](const QDBusMessage &message) {
                       setOwner(message.arguments().value(2).toString());
                   }});
    ask();
}

void BusName::ask() {
    auto question = QDBusMessage::createMethodCall(
        QLatin1String(busService), QStringLiteral("/org/freedesktop/DBus"),
        QLatin1String(busService), QStringLiteral("GetNameOwner"));
    question << m_name;
    m_bus.call(question, this, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ReplyMessage)
            setOwner(reply.arguments().value(0).toString());
    });
}

void BusName::setOwner(const QString &owner) {
    if (owner == m_owner)
        return;
    m_owner = owner;
    Q_EMIT ownerChanged(owner);
}

} // namespace brightsweep
