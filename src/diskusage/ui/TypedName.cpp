#include "diskusage/ui/TypedName.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>

namespace brightsweep {

TypedName::TypedName(QAbstractItemView &view) : QObject(&view), m_view(view) {
    view.installEventFilter(this);
}

bool TypedName::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto &key = static_cast<QKeyEvent &>(*event);
    const bool isLetter = !key.text().isEmpty() && key.text().front().isPrint() &&
                          (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if (!isLetter)
        m_lastTyped.invalidate();
    const bool isTyping =
        m_lastTyped.isValid() && m_lastTyped.elapsed() < QApplication::keyboardInputInterval();
    const bool isBlank = key.key() == Qt::Key_Space;
    if (isLetter && (!isBlank || isTyping))
        m_lastTyped.start();
    if (!isLetter || !isBlank || !isTyping)
        return false;
    m_view.keyboardSearch(key.text());
    return true;
}

} // namespace brightsweep
