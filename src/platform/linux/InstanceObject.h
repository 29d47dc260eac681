#pragma once

#include "platform/linux/InstanceRequests.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>

namespace brightsweep {

/// The application's object on the bus, with the desktop's interface for applications. It hears
/// calls on a thread of its own, so that a start in progress answers.
class InstanceObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    static constexpr char path[] = "/com/norvmac/DeskSweeperPro";
    static constexpr char interface[] = "org.freedesktop.Application";

    explicit InstanceObject(InstanceRequests &requests);
    ~InstanceObject() override;

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

    /// The call that carries a request.
    static QDBusMessage message(const InstanceRequest &request);

private:
    InstanceRequests &m_requests;
    QThread m_thread;
};

} // namespace brightsweep
