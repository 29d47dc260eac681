#pragma once

#include "platform/DesktopHints.h"
#include "platform/linux/SessionBus.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QVariantMap>

#include <map>
#include <memory>
#include <string_view>

namespace brightsweep {

/// Hints by the settings portal on the session bus, which passes on the desktops' own keys too, and
/// by the settings file of the desktop that keeps them there. Nothing is asked before the first
/// call.
class LinuxDesktopHints final : public QObject, public DesktopHints {
    Q_OBJECT

public:
    explicit LinuxDesktopHints(std::shared_ptr<SessionBus> bus);
    ~LinuxDesktopHints() override;

    Hints hints() const override;
    void setChangedHandler(std::function<void()> handler) override;

    /// The value of a key in a group of a settings file; empty without one.
    static std::string_view settingOf(std::string_view text, std::string_view group,
                                      std::string_view key);

private:
    void start();
    void askPortal();
    void readFile();
    void update();

    std::shared_ptr<SessionBus> m_bus;
    std::unique_ptr<BusName> m_portal;
    std::unique_ptr<QFileSystemWatcher> m_files;
    std::map<QString, QVariantMap> m_values; ///< of the portal, by namespace and key
    bool m_fileStopsAnimation = false;
    Hints m_hints;
    std::function<void()> m_changed;
};

} // namespace brightsweep
