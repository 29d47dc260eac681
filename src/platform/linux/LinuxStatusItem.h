#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/SessionBus.h"

#include <QObject>

#include <memory>

namespace brightsweep {

class StatusNotifierObject;

/// The item as an object on the session bus, on a connection of its own: closing that is what takes
/// the item away. It is registered with each watcher that comes, and again with each host.
class LinuxStatusItem final : public QObject, public StatusItem {
    Q_OBJECT

public:
    static constexpr char path[] = "/StatusNotifierItem";

    explicit LinuxStatusItem(std::shared_ptr<SessionBus> bus);
    ~LinuxStatusItem() override;

    bool hostPresent() const override { return m_hostPresent; }
    void setShown(bool shown) override;
    void setImages(std::vector<StatusImage> images) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &title, const QString &text) override;
    void setActivatedHandler(std::function<void(const StatusActivation &)> handler) override;
    void setHostHandler(std::function<void(bool present)> handler) override;

private:
    void watch();
    void registerItem();
    void askForHost();
    void setHostPresent(bool present);

    std::shared_ptr<SessionBus> m_bus; ///< hears of watchers, also while nothing is shown
    SessionBus m_ownBus;
    std::unique_ptr<BusName> m_watcher;
    QObject m_holder;
    StatusNotifierObject *m_object; ///< of m_holder
    std::vector<StatusImage> m_images;
    bool m_hostPresent = false;
    std::function<void(bool)> m_hostHandler;
};

} // namespace brightsweep
