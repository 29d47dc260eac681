#include "foundation/NotificationCenter.h"

#include <algorithm>
#include <condition_variable>
#include <thread>

namespace brightsweep {

// A delivery marks itself in `running`, so that a removal on another thread can wait for its end
// without holding a lock during the handler: two observers that post to one another on two
// threads must not block each other.
struct NotificationCenter::Observer {
    const QObject *context = nullptr;
    QString name;
    const QObject *object = nullptr;
    Handler handler;
    QMetaObject::Connection contextDestroyed;

    std::mutex mutex;
    std::condition_variable idle;
    bool removed = false;
    std::vector<std::thread::id> running;

    void deliver(const Notification &notification) {
        const auto self = std::this_thread::get_id();
        {
            const std::lock_guard lock(mutex);
            if (removed)
                return;
            running.push_back(self);
        }
        handler(notification);
        {
            const std::lock_guard lock(mutex);
            running.erase(std::find(running.begin(), running.end(), self));
        }
        idle.notify_all();
    }

    void remove() {
        const auto self = std::this_thread::get_id();
        std::unique_lock lock(mutex);
        removed = true;
        idle.wait(lock, [&] {
            return std::all_of(running.begin(), running.end(),
                               [&](std::thread::id id) { return id == self; });
        });
    }
};

NotificationCenter &NotificationCenter::defaultCenter() {
    // Never destroyed: workers may post until the process ends.
    static auto *center = new NotificationCenter;
    return *center;
}

NotificationCenter::NotificationCenter() = default;

NotificationCenter::~NotificationCenter() {
    for (const auto &observer : m_observers)
        QObject::disconnect(observer->contextDestroyed);
}

void NotificationCenter::addObserver(QObject *context, const QString &name, Handler handler,
                                     const QObject *object) {
    auto observer = std::make_shared<Observer>();
    observer->context = context;
    observer->name = name;
    observer->object = object;
    observer->handler = std::move(handler);
    observer->contextDestroyed = QObject::connect(context, &QObject::destroyed,
                                                  [this, context] { removeObserver(context); });
    const std::lock_guard lock(m_mutex);
    m_observers.push_back(std::move(observer));
}

void NotificationCenter::removeObserver(QObject *context, const QString &name) {
    Observers removed;
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_observers, [&](const std::shared_ptr<Observer> &observer) {
            const bool matches =
                observer->context == context && (name.isEmpty() || observer->name == name);
            if (matches)
                removed.push_back(observer);
            return matches;
        });
    }
    for (const auto &observer : removed) {
        QObject::disconnect(observer->contextDestroyed);
        observer->remove();
    }
}

void NotificationCenter::post(const QString &name, const QObject *object,
                              const QVariantMap &userInfo) {
    Observers receivers;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto &observer : m_observers) {
            if (observer->name == name && (!observer->object || observer->object == object))
                receivers.push_back(observer);
        }
    }
    if (receivers.empty())
        return;
    const Notification notification{name, object, userInfo};
    for (const auto &observer : receivers)
        observer->deliver(notification);
}

} // namespace brightsweep
