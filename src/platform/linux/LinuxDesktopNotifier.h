#pragma once

#include "platform/DesktopNotifier.h"
#include "platform/linux/SessionBus.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace brightsweep {

/// Notifications by the desktop's service on the session bus. The service is asked once what it can
/// do, and again when another one takes its place.
class LinuxDesktopNotifier final : public QObject, public DesktopNotifier {
    Q_OBJECT

public:
    explicit LinuxDesktopNotifier(std::shared_ptr<SessionBus> bus);
    ~LinuxDesktopNotifier() override;

    bool available() override;
    void show(const DesktopNotification &notification) override;

private:
    struct Shown {
        QString server; ///< the service's unique name; another one counts anew
        std::function<void(const std::string &token)> action;
        std::string token;
    };

    void watch();
    void askWhatItCan();
    void askWhetherItCanBeStarted();
    void flush();
    void notify(const DesktopNotification &notification);
    void close(std::uint32_t number, const QString &server);
    Shown *find(const QDBusMessage &signal);

    std::shared_ptr<SessionBus> m_bus;
    std::unique_ptr<BusName> m_server;
    bool m_canBeStarted = false;
    std::optional<QStringList> m_capabilities; ///< none while unknown
    bool m_asking = false;
    std::vector<DesktopNotification> m_waiting; ///< for the bus or the capabilities
    std::map<std::uint32_t, Shown> m_shown;     ///< those with an action, by number
};

} // namespace brightsweep
