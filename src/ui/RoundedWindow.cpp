#include "ui/RoundedWindow.h"

#include <QPainterPath>
#include <QPainterPathStroker>
#include <QRegion>
#include <QWidget>

namespace brightsweep {

void clipWindow(QWidget &window, const QPainterPath &shape) {
    QPainterPathStroker stroker;
    stroker.setWidth(2);
    window.setMask(QRegion(shape.united(stroker.createStroke(shape)).toFillPolygon().toPolygon()));
}

} // namespace brightsweep
