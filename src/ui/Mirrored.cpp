#include "ui/Mirrored.h"

#include <QGuiApplication>
#include <QStyle>

namespace brightsweep {

QRect mirrored(const QRect &row, const QRect &part) {
    return QStyle::visualRect(QGuiApplication::layoutDirection(), row, part);
}

QRectF mirrored(const QRectF &row, const QRectF &part) {
    return QGuiApplication::isLeftToRight()
               ? part
               : part.translated(row.left() + row.right() - part.left() - part.right(), 0);
}

} // namespace brightsweep
