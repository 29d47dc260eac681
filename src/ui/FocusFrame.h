#pragma once

#include <QObject>

class QWidget;

namespace brightsweep {

/// Marks every list that the keyboard has brought the focus to, by the property "keyboardFocus",
/// which the style sheet frames: a click needs no frame to tell where it was. Installed on the
/// application. Main thread.
class FocusFrame : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    static bool isShown(const QWidget &widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace brightsweep
