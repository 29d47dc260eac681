#pragma once

#include "platform/StatusItem.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <optional>
#include <vector>

namespace brightsweep {

/// The status item in whichever of two forms there is a place for: the desktop's own items first,
/// else a window embedded in a tray. Both outlive it. Main thread.
class CustomStatusItemView : public QObject, public StatusItem {
    Q_OBJECT

public:
    CustomStatusItemView(StatusItem &desktopItem, StatusItem &trayItem, QObject *parent = nullptr);
    ~CustomStatusItemView() override;

    bool hostPresent() const override;
    void setShown(bool shown) override;
    void setImages(std::vector<StatusImage> images) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &title, const QString &text) override;
    void setActivatedHandler(std::function<void(const StatusActivation &)> handler) override;
    void setHostHandler(std::function<void(bool present)> handler) override;

    /// An image by name in the sizes that trays use; empty where the name has none.
    static std::vector<StatusImage> drawnImages(const QString &name);

Q_SIGNALS:
    /// Also when it is first known.
    void hostChanged(bool present);

private:
    void chooseForm();

    StatusItem &m_desktopItem;
    StatusItem &m_trayItem;
    std::function<void(bool present)> m_hostHandler;
    QTimer m_answer;
    bool m_shown = false;
    std::optional<bool> m_hostSeen;
};

} // namespace brightsweep
