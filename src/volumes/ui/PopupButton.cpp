#include "volumes/ui/PopupButton.h"

#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace brightsweep {

namespace {

constexpr int imageSide = 16;
constexpr int ringRadius = 6;

} // namespace

PopupButton::PopupButton(QWidget *parent) : QAbstractButton(parent) {
    // The mouse presses without taking the keyboard's place.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void PopupButton::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void PopupButton::paintGround(QPainter &painter, QColor lit) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (isEnabled() && (underMouse() || isDown())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(lit);
        painter.drawRoundedRect(box, ringRadius, ringRadius);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.drawRoundedRect(box, ringRadius, ringRadius);
    }
}

void PopupImageButton::setImageName(const QString &name) {
    if (m_imageName == name)
        return;
    m_imageName = name;
    update();
}

void PopupImageButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintGround(painter, QColor(255, 255, 255, 46));
    QRectF image(0, 0, theme::height(imageSide), theme::height(imageSide));
    image.moveCenter(QRectF(rect()).center());
    paintImage(painter, m_imageName, image);
}

} // namespace brightsweep
