#pragma once

#include <QAbstractButton>

namespace brightsweep {

/// What can be pressed in the popup: flat, lit under the mouse, with a ring while the keyboard is
/// on it. A Tab stop; the arrow keys go on from it, Space and Enter press. Main thread.
class PopupButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit PopupButton(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintGround(QPainter &painter, QColor lit) const;
};

/// A small button with an image and no text.
class PopupImageButton : public PopupButton {
    Q_OBJECT

public:
    explicit PopupImageButton(QWidget *parent) : PopupButton(parent) {}
    void setImageName(const QString &name);

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString m_imageName;
};

} // namespace brightsweep
