#include "ui/effects/EaseIn.h"

#include <QPointF>

namespace brightsweep {

QEasingCurve easeIn() {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.42, 0), QPointF(1, 1), QPointF(1, 1));
    return curve;
}

} // namespace brightsweep
