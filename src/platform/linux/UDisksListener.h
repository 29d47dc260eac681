#pragma once

#include "foundation/CallQueue.h"

#include <QObject>

#include <functional>

namespace brightsweep {

/// Hears on the system bus that UDisks2 has come, gone or changed what it knows, so that
/// nobody has to ask. Belongs to a thread with an event loop; only follow() may be called by
/// others.
class UDisksListener : public QObject {
    Q_OBJECT
public:
    /// `following` is called once a connection is listened to, `changed` for all that is heard.
    UDisksListener(std::function<void()> following, std::function<void()> changed);
    ~UDisksListener() override;

    /// Listens on the connection of that name from now on.
    void follow(const QString &connection);

private Q_SLOTS:
    void hear();

private:
    void listen(const QString &connection);

    const std::function<void()> m_following;
    const std::function<void()> m_changed;
    CallQueue m_queue;
};

} // namespace brightsweep
