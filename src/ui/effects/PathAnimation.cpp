#include "ui/effects/PathAnimation.h"

#include "foundation/Log.h"
#include "ui/Theme.h"
#include "ui/effects/EaseIn.h"

namespace brightsweep {
namespace {

constexpr int flightTime = 1000; // milliseconds
/// How far the arc swings out to the right.
constexpr QPointF swing(200.0, 0);

/// The frame of a widget in its parent, counted from the parent's lower edge.
QRectF frameFromBelow(const QWidget *widget) {
    QRectF frame = widget->geometry();
    if (const QWidget *parent = widget->parentWidget())
        frame.moveTop(parent->height() - frame.y() - frame.height());
    return frame;
}

} // namespace

PathAnimation::PathAnimation(QObject *parent) : QObject(parent) {
    m_flight.setDuration(flightTime);
    m_flight.setEasingCurve(easeIn());
    m_flight.setStartValue(0.0);
    m_flight.setEndValue(1.0);
    connect(&m_flight, &QVariantAnimation::valueChanged, this, [this](const QVariant &share) {
        setFrameOrigin(m_path.pointAtPercent(share.toDouble()));
    });
    connect(&m_flight, &QAbstractAnimation::finished, this, &PathAnimation::animationDidStop);
}

PathAnimation::~PathAnimation() {
    delete m_animatedIconView;
}

void PathAnimation::animateButtonSEL(const QWidget *start, const QWidget *endButton,
                                     const QPixmap &image, QWidget *contentView) {
    fly(start->geometry(), start->parentWidget(), endButton, image, contentView);
}

void PathAnimation::animateStartBtn(const QWidget *startButton, const QWidget *endButton,
                                    const QPixmap &image, QWidget *contentView) {
    animateButtonSEL(startButton, endButton, image, contentView);
}

void PathAnimation::animateBrowserSEL(const QWidget *browser, int column, const QWidget *endButton,
                                      const QPixmap &image, QWidget *contentView,
                                      const QRectF &rect) {
    fly(rect.translated(column * rect.width(), 0), browser, endButton, image, contentView);
}

void PathAnimation::animateTableView(const QWidget *table, const QWidget *endButton,
                                     QPointF startPoint, const QPixmap &image, int tag,
                                     QWidget *contentView) {
    fly(QRectF(startPoint, QSizeF(0, 0)), table, endButton, image, contentView);
    m_animatedIconView->setProperty("tag", tag);
}

QPainterPath PathAnimation::flightPath(const QRectF &start, const QRectF &end, double holderY,
                                       double contentHeight) const {
    const QPointF to = end.topLeft() + QPointF(0.25 * end.width(), 0.25 * end.height()) + endOffset;
    const QPointF from(start.x() + startOffset.x(),
                       holderY - start.y() - start.height() + contentHeight + startOffset.y());
    QPainterPath path(from);
    path.cubicTo(from + swing, to + swing, to);
    return path;
}

void PathAnimation::fly(const QRectF &start, const QWidget *holder, const QWidget *endButton,
                        const QPixmap &image, QWidget *contentView) {
    const double holderY = holder ? frameFromBelow(holder).y() : 0;
    m_path = flightPath(start, frameFromBelow(endButton), holderY, contentView->height());
    m_flight.stop();
    delete m_animatedIconView;
    m_animatedIconView = new ImageView(contentView);
    m_animatedIconView->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_animatedIconView->setPixmap(image);
    m_animatedIconView->resize(m_animatedIconView->sizeHint());
    m_animatedIconView->hide();
    setFrameOrigin(m_path.pointAtPercent(0));
    m_isFly = true;
    m_flight.start();
    animationDidStart();
}

void PathAnimation::animationDidStart() {
    if (!m_isFly)
        return;
    m_isFly = false;
    NSLog("animation start");
    if (theme::appearance().reducedMotion)
        return;
    m_animatedIconView->show();
    m_animatedIconView->raise();
}

void PathAnimation::animationDidStop() {
    NSLog("animation end");
    stopAnimation();
    Q_EMIT callBackDeleteItemWithIndex();
}

void PathAnimation::stopAnimation() {
    if (m_animatedIconView)
        m_animatedIconView->hide();
}

void PathAnimation::setFrameOrigin(QPointF origin) {
    if (!m_animatedIconView)
        return;
    const int height = m_animatedIconView->parentWidget()->height();
    m_animatedIconView->move(qRound(origin.x()),
                             height - qRound(origin.y()) - m_animatedIconView->height());
}

} // namespace brightsweep
