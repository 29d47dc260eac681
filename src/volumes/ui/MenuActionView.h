#pragma once

#include "volumes/ui/PopupButton.h"

#include <cstddef>

namespace brightsweep {

class StatusMenu;

/// One of the fixed entries below the rows, with its tick and its shortcut. The menu outlives it.
class MenuActionView : public PopupButton {
    Q_OBJECT

public:
    MenuActionView(StatusMenu &menu, std::size_t entry, QWidget *parent);

    void updateFromEntry();
    QSize sizeHint() const override;

Q_SIGNALS:
    void activated();

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString text() const;

    StatusMenu &m_menu;
    std::size_t m_entry;
    QString m_shortcut;
    bool m_settingState = false;
};

} // namespace brightsweep
