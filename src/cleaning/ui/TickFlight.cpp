#include "cleaning/ui/TickFlight.h"

#include "ui/effects/PathAnimation.h"

#include <QAbstractItemView>

namespace brightsweep {

namespace {

constexpr int flightsAtOnce = 4;

} // namespace

void flyTick(QWidget &panel, const QAbstractItemView &list, QPoint from, const QWidget &to,
             const QPixmap &icon) {
    if (!panel.isVisible() || icon.isNull() ||
        panel.findChildren<PathAnimation *>().size() >= flightsAtOnce)
        return;
    auto *const flight = new PathAnimation(&panel);
    QObject::connect(flight, &PathAnimation::callBackDeleteItemWithIndex, flight,
                     &QObject::deleteLater);
    const QPoint row = list.viewport()->mapTo(&panel, from);
    const int below = list.parentWidget()->height() - list.y() - list.height();
    flight->startOffset = QPointF(row.x(), panel.height() - row.y() - flyingSide) -
                          QPointF(from.x(), below - from.y() + panel.height());
    const QWidget *const bottom = to.parentWidget();
    flight->endOffset =
        QPointF(bottom->mapTo(&panel, QPoint()).x(),
                panel.height() - bottom->mapTo(&panel, QPoint(0, bottom->height())).y());
    flight->animateTableView(&list, &to, from, icon, 0, &panel);
}

} // namespace brightsweep
