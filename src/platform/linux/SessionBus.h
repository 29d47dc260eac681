#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace brightsweep {

class CallQueue;

/// A connection of its own to the session bus, which is made again when the bus has gone and come
/// back. Connecting happens on another thread, so that a bus that hangs holds nobody up; everything
/// else, handlers included, belongs to the thread that made it. Nothing is started before open().
class SessionBus : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void(const QDBusMessage &)>;

    /// Which signals of others to hear, as long as `context` lives; an empty text matches all.
    struct Subscription {
        QPointer<QObject> context;
        QString path;
        QString interface;
        QString member;
        QString argument; ///< the first one
        Handler handler;
    };

    explicit SessionBus(QObject *parent = nullptr);
    ~SessionBus() override;

    /// Connects, and keeps connected until close().
    void open();
    void close();
    bool isConnected() const { return m_connection.has_value(); }
    /// Blocks until the attempt under way has ended or the time has come.
    bool waitForConnection(std::chrono::steady_clock::time_point until);
    /// Calls the function at once, or when the attempt under way has ended; whether there is a
    /// connection then is for it to see.
    void whenSettled(QObject *context, std::function<void()> function);
    /// Only while connected.
    QDBusConnection &connection() { return *m_connection; }

    /// Holds for this connection and all later ones.
    void subscribe(Subscription subscription);
    /// Sends without waiting. The answer, or the error that stands for it, comes unless `context`
    /// is gone by then. Without a connection nothing is sent and no answer comes.
    void call(const QDBusMessage &message, QObject *context, Handler answered);
    void send(const QDBusMessage &message);

Q_SIGNALS:
    void connected();
    void disconnected();
    /// An attempt to connect has failed; another one follows by itself.
    void failed();

private Q_SLOTS:
    void dispatch(const QDBusMessage &message);
    void lose();

private:
    struct Attempt;

    void attempt();
    void settle(const std::shared_ptr<Attempt> &attempt);
    void begin();
    void retryLater();
    void apply(const Subscription &subscription);

    bool m_open = false;
    std::optional<QDBusConnection> m_connection;
    std::shared_ptr<Attempt> m_attempt;
    std::unique_ptr<CallQueue> m_queue;
    std::vector<Subscription> m_subscriptions;
    std::vector<std::pair<QPointer<QObject>, std::function<void()>>> m_waiting;
    QTimer m_retry;
    std::chrono::milliseconds m_pause;
};

/// Follows who owns a name on the bus.
class BusName : public QObject {
    Q_OBJECT

public:
    BusName(SessionBus &bus, const QString &name);

    /// The unique name of the owner; empty without one.
    const QString &owner() const { return m_owner; }

Q_SIGNALS:
    void ownerChanged(const QString &owner);

private:
    void ask();
    void setOwner(const QString &owner);

    SessionBus &m_bus;
    const QString m_name;
    QString m_owner;
};

} // namespace brightsweep
