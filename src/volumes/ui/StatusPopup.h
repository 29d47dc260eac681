#pragma once

#include "platform/StatusItem.h"

#include <QElapsedTimer>
#include <QRect>
#include <QWidget>

#include <vector>

class QScrollArea;

namespace brightsweep {

class MenuActionView;
class MenuItemView;
class StatusMenu;

/// The status item's menu as a window: the rows under their headers, then the fixed entries. No
/// QMenu, since that would grab the keyboard that a password dialog needs.
///
/// It closes by Esc and when it loses activation. New figures are shown in place; a rebuild closes
/// it and, where it was open, opens it again in the same place. Its rows exist only while it is
/// open. Main thread; the menu outlives it.
class StatusPopup : public QWidget {
    Q_OBJECT

public:
    explicit StatusPopup(StatusMenu &menu, QWidget *parent = nullptr);
    ~StatusPopup() override;

    /// Opens it beside the click, or closes it where it is open.
    void toggle(const StatusActivation &activation);

    /// Where a popup of that size goes: beside the point, towards the middle of the screen, and
    /// within the available area, of which it takes 80% of the height at most.
    static QRect place(const QSize &size, const QPoint &point, const QRect &available);
    void setVisible(bool visible) override;

Q_SIGNALS:
    void opened();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;
    void hideEvent(QHideEvent *event) override;

private:
    void open();
    void build();
    void clear();
    void addEntry(std::size_t index);
    void rebuilt();
    void closeRequested();

    StatusMenu &m_menu;
    QScrollArea *m_area;
    QWidget *m_content = nullptr;
    std::vector<MenuItemView *> m_rows;
    std::vector<std::pair<std::size_t, MenuActionView *>> m_actions;
    StatusActivation m_activation;
    bool m_reopens = false; ///< closed in favour of a rebuild that is about to come
    bool m_isHiding = false;
    QElapsedTimer m_sinceDeactivation; ///< that closed it
};

} // namespace brightsweep
