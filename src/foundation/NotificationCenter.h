#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace brightsweep {

/// One posted notification. `object` is only an identity and may be null.
struct Notification {
    QString name;
    const QObject *object = nullptr;
    QVariantMap userInfo;
};

/// Delivers named notifications to whoever observes the name, at once and on the posting thread.
///
/// Every call is safe from every thread. An observer is bound to a context object and is dropped
/// when that object dies; a context that other threads may post to calls removeObserver() first in
/// its own destructor, which waits for a delivery to it under way on another thread. Observers may
/// be added and removed while a notification is being delivered: one that is removed gets no
/// further call, one that is added gets the next notification.
class NotificationCenter {
public:
    using Handler = std::function<void(const Notification &)>;

    static NotificationCenter &defaultCenter();

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;

    /// `object`, when not null, restricts the observer to that poster.
    void addObserver(QObject *context, const QString &name, Handler handler,
                     const QObject *object = nullptr);
    /// Removes every observer of the context, or only that of one name.
    void removeObserver(QObject *context, const QString &name = QString());
    /// Calls the handlers in the order in which they were added.
    void post(const QString &name, const QObject *object = nullptr,
              const QVariantMap &userInfo = {});

private:
    struct Observer;
    using Observers = std::vector<std::shared_ptr<Observer>>;

    std::mutex m_mutex;
    Observers m_observers;
};

} // namespace brightsweep
