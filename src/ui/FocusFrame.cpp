#include "ui/FocusFrame.h"

#include <QAbstractItemView>
#include <QFocusEvent>
#include <QStyle>

namespace brightsweep {

namespace {

constexpr char byKeyboardProperty[] = "keyboardFocus";

} // namespace

bool FocusFrame::isShown(const QWidget &widget) {
    return widget.hasFocus() && widget.property(byKeyboardProperty).toBool();
}

bool FocusFrame::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn) {
        auto *const list = qobject_cast<QAbstractItemView *>(watched);
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        // The focus that a window or a menu gives back is as it was.
        if (list && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            const bool byKeyboard = reason == Qt::TabFocusReason ||
                                    reason == Qt::BacktabFocusReason ||
                                    reason == Qt::ShortcutFocusReason;
            if (list->property(byKeyboardProperty).toBool() != byKeyboard) {
                list->setProperty(byKeyboardProperty, byKeyboard);
                list->style()->unpolish(list);
                list->style()->polish(list);
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace brightsweep
