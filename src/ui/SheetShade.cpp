#include "ui/SheetShade.h"

#include <QDialog>
#include <QEvent>
#include <QPainter>

namespace brightsweep {

SheetShade::SheetShade(QDialog &sheet) : QWidget(sheet.parentWidget()->window()) {
    setObjectName(QStringLiteral("shade"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
    connect(&sheet, &QDialog::finished, this, &QObject::deleteLater);
    connect(&sheet, &QObject::destroyed, this, &QObject::deleteLater);
    raise();
    show();
}

bool SheetShade::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void SheetShade::paintEvent(QPaintEvent *) {
    constexpr QColor dark(0, 0, 0, 120);
    QPainter(this).fillRect(rect(), dark);
}

void shade(QDialog &sheet) {
    if (sheet.parentWidget())
        new SheetShade(sheet);
}

} // namespace brightsweep
