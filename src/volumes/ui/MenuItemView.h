#pragma once

#include "volumes/ui/PopupButton.h"

#include <cstddef>

namespace brightsweep {

class MenuItem;
class StatusMenu;

/// One row of the popup: a volume or the memory, 280 wide and 50 high. It shows what the menu's row
/// holds and hands every act back to the menu, which outlives it. Names are drawn as plain text.
class MenuItemView : public PopupButton {
    Q_OBJECT

public:
    MenuItemView(StatusMenu &menu, std::size_t row, QWidget *parent);

    /// Takes over what the menu's row holds now.
    void updateFromRow();
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    const MenuItem &item() const;
    int figuresWidth() const;
    void paintFigures(QPainter &painter, const QRectF &place, bool lit) const;

    StatusMenu &m_menu;
    std::size_t m_row;
    PopupImageButton *backButton; ///< ejects a volume, frees memory
};

} // namespace brightsweep
