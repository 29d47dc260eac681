#include "ui/effects/HoverButton.h"

#include "ui/ImageProvider.h"

namespace brightsweep {

HoverButton::HoverButton(QWidget *parent) : QToolButton(parent) {
    setProperty("flat", true);
}

void HoverButton::setNormalImage(const QString &name) {
    m_normalImage = name;
    showNamed(name);
}

void HoverButton::setHoverImage(const QString &name) {
    m_hoverImage = name;
}

void HoverButton::enterEvent(QEnterEvent *event) {
    if (isEnabled())
        showNamed(m_hoverImage);
    QToolButton::enterEvent(event);
}

void HoverButton::leaveEvent(QEvent *event) {
    if (isEnabled())
        showNamed(m_normalImage);
    QToolButton::leaveEvent(event);
}

void HoverButton::showNamed(const QString &name) {
    m_shown = name;
    setIcon(imageNamed(name));
}

} // namespace brightsweep
