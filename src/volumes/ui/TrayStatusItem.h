#pragma once

#include "platform/StatusItem.h"

#include <QAbstractNativeEventFilter>
#include <QIcon>
#include <QObject>
#include <QTimer>

#include <memory>

class QSystemTrayIcon;

namespace brightsweep {

/// The status item of desktops that embed a window of the program in their tray. It takes a place
/// there as soon as there is a tray. Main thread.
class TrayStatusItem : public QObject, public StatusItem, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit TrayStatusItem(QObject *parent = nullptr);
    ~TrayStatusItem() override;

    bool hostPresent() const override;
    void setShown(bool shown) override;
    void setImages(std::vector<StatusImage> images) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &title, const QString &text) override;
    void setActivatedHandler(std::function<void(const StatusActivation &)> handler) override;
    void setHostHandler(std::function<void(bool present)> handler) override;

private:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *) override;
    void renew();
    void tellOfHost(bool present);
    void activated();
    QString toolTip() const;

    QIcon m_icon;
    QString m_title;
    QString m_toolTipTitle;
    QString m_toolTipText;
    std::function<void(const StatusActivation &)> m_activated;
    std::function<void(bool present)> m_hostChanged;
    bool m_shown = false;
    bool m_hostSeen = false;
    std::unique_ptr<QSystemTrayIcon> m_tray; ///< while it is shown and there is a tray
    QTimer m_watch; ///< looks for a tray soon after it may have come or gone
};

} // namespace brightsweep
