#include "volumes/ui/MAAttachedWindow.h"

#include "ui/RoundedWindow.h"
#include "ui/Theme.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <array>

namespace brightsweep {

namespace {

// The directions of the sides, from the point.
constexpr std::array<std::array<int, 2>, 4> directions = {{{-1, 0}, {0, 1}, {1, 0}, {0, -1}}};

const std::array<int, 2> &directionOf(int side) {
    return directions[std::size_t(side >= 0 && side < 4 ? side : MAAttachedWindow::Below)];
}

QRectF rectangleBeside(const QPointF &point, const QSizeF &size, double distance, int side) {
    const auto [x, y] = directionOf(side);
    QRectF rectangle(QPointF(), size);
    rectangle.moveCenter(
        point + QPointF(x * (size.width() / 2 + distance), y * (size.height() / 2 + distance)));
    return rectangle;
}

QScreen *screenAt(const QPointF &point) {
    QScreen *const screen = QGuiApplication::screenAt(point.toPoint());
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

MAAttachedWindow::MAAttachedWindow(QWidget *view, const QPointF &attachedToPoint, QWidget *inWindow,
                                   int onSide, double atDistance)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput),
      _view(view),
      _window(inWindow),
      _point(attachedToPoint),
      _side(onSide),
      _distance(atDistance) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    view->setParent(this);
    updateGeometryFromPoint();
}

void MAAttachedWindow::setPoint(const QPointF &point) {
    _point = point;
    updateGeometryFromPoint();
}

void MAAttachedWindow::setHasArrow(bool hasArrow) {
    m_hasArrow = hasArrow;
    updateGeometryFromPoint();
}

int MAAttachedWindow::bestSideForAutomaticPosition(const QPointF &point, const QSizeF &size,
                                                   const QRectF &visibleFrame) {
    for (const int side : {Below, Above, Right, Left}) {
        if (visibleFrame.contains(rectangleBeside(point, size, 0, side)))
            return side;
    }
    return Below;
}

void MAAttachedWindow::updateGeometryFromPoint() {
    const QPointF point = _window ? QPointF(_window->mapToGlobal(_point)) : _point;
    // The arrow's inset is kept on every side, so that the view stays in the middle.
    const double inset = viewMargin + borderWidth / 2 + arrowInset();
    const QSizeF size = QSizeF(_view->size()) + QSizeF(2 * inset, 2 * inset);
    const QScreen *const screen = _side == Automatic ? screenAt(point) : nullptr;
    if (screen)
        _side = bestSideForAutomaticPosition(point, size + QSizeF(2 * _distance, 2 * _distance),
                                             screen->availableGeometry());
    const QRectF frame = rectangleBeside(point, size, _distance, _side);
    setFixedSize(size.toSize());
    move(frame.topLeft().toPoint());
    _view->move(QPointF(inset, inset).toPoint());
    update();
}

void MAAttachedWindow::appendArrow(QPainterPath &path, const QRectF &panel) const {
    // Back towards the point, from the middle of the edge that faces it.
    const auto [x, y] = directionOf(_side);
    const QPointF away(x, y);
    const QPointF along(y, x);
    const QPointF edge = panel.center() - QPointF(x * panel.width() / 2, y * panel.height() / 2);
    QPainterPath arrow(edge - along * (arrowBaseWidth / 2));
    arrow.lineTo(edge - away * arrowHeight);
    arrow.lineTo(edge + along * (arrowBaseWidth / 2));
    arrow.closeSubpath();
    path = path.united(arrow);
}

QPainterPath MAAttachedWindow::backgroundPath() const {
    const double inset = arrowInset() + borderWidth / 2;
    const QRectF panel = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    QPainterPath path;
    path.addRoundedRect(panel, cornerRadius, cornerRadius);
    if (m_hasArrow)
        appendArrow(path, panel);
    return path;
}

void MAAttachedWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, borderWidth));
    painter.setBrush(theme::appearance().highContrast ? QColor(Qt::black)
                                                      : QColor(26, 26, 26, 191));
    painter.drawPath(backgroundPath());
}

void MAAttachedWindow::resizeEvent(QResizeEvent *) {
    clipWindow(*this, backgroundPath());
}

} // namespace brightsweep
