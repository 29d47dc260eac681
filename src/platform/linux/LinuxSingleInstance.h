#pragma once

#include "platform/SingleInstance.h"
#include "platform/linux/InstanceRequests.h"

#include <QObject>

#include <chrono>
#include <memory>

namespace brightsweep {

class InstanceObject;
class InstanceSocket;
class SessionBus;

/// One instance by the program's name on the session bus; by a lock and a socket where there is no
/// bus, also while the bus is away. The name is taken again when the bus comes back.
class LinuxSingleInstance final : public QObject, public SingleInstance {
    Q_OBJECT

public:
    explicit LinuxSingleInstance(std::shared_ptr<SessionBus> bus);
    ~LinuxSingleInstance() override;

    InstanceOutcome claim(bool activate, const InstanceRequest &request) override;
    void setActivateHandler(std::function<void(const InstanceRequest &)> handler) override;

private:
    using Deadline = std::chrono::steady_clock::time_point;

    InstanceOutcome find(bool activate, const InstanceRequest &request, Deadline until);
    InstanceOutcome claimName(bool activate, const InstanceRequest &request, Deadline until);
    InstanceOutcome claimSocket(bool activate, const InstanceRequest &request, Deadline until);
    void registerObject();
    void takeNameAgain();

    std::shared_ptr<SessionBus> m_bus;
    InstanceRequests m_requests;
    std::unique_ptr<InstanceObject> m_object;
    std::unique_ptr<InstanceSocket> m_socket;
    bool m_first = false;
};

} // namespace brightsweep
