#include "ui/effects/AnimationLayer.h"

#include "ui/Theme.h"
#include "ui/effects/EaseIn.h"

#include <chrono>

namespace brightsweep {
namespace {

// Counted from the lower left corner.
constexpr QPointF flightStart(380, 190);
constexpr QPointF flightEnd(100, 190);
constexpr QPointF rest(380, 200);
constexpr QPointF aim(84, 174);
constexpr QSize layerSize(440, 260);
constexpr int flightTime = 1500; // milliseconds
constexpr std::chrono::milliseconds pauseTime{300};

} // namespace

AnimationLayer::AnimationLayer(QWidget *parent)
    : QWidget(parent),
      m_aim(new ImageView(QStringLiteral("y_big.png"), this)),
      m_animatedIconView(new ImageView(QStringLiteral("file.png"), this)) {
    m_flight.setDuration(flightTime);
    m_flight.setEasingCurve(easeIn());
    m_flight.setStartValue(flightStart);
    m_flight.setEndValue(flightEnd);
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseTime);
    connect(&m_flight, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        if (!theme::appearance().reducedMotion)
            setFrameOrigin(value.toPointF());
    });
    connect(&m_flight, &QAbstractAnimation::finished, this, [this] {
        if (!theme::appearance().reducedMotion)
            setFrameOrigin(rest);
        m_pause.start();
    });
    connect(&m_pause, &QTimer::timeout, this, &AnimationLayer::animationDidStop);
    resize(layerSize);
    setFrameOrigin(flightStart);
}

void AnimationLayer::startAnimation() {
    m_isStoped = false;
    animateButtonSEL(nullptr, nullptr);
}

void AnimationLayer::stopAnimation() {
    m_isStoped = true;
}

void AnimationLayer::animateButtonSEL(QWidget *, QWidget *) {
    m_pause.stop();
    m_flight.stop();
    m_flight.start();
    animationDidStart();
}

void AnimationLayer::animationDidStart() {
    m_isAning = true;
}

void AnimationLayer::animationDidStop() {
    if (!m_isStoped)
        animateButtonSEL(nullptr, nullptr);
    Q_EMIT callBackDeleteItemWithIndex();
}

QSize AnimationLayer::sizeHint() const {
    return layerSize;
}

void AnimationLayer::setFrameOrigin(QPointF origin) {
    m_origin = origin;
    const auto place = [this](ImageView *view, QPointF at) {
        view->move(at.toPoint().x(), height() - at.toPoint().y() - view->height());
    };
    place(m_animatedIconView, origin);
    place(m_aim, aim);
}

void AnimationLayer::resizeEvent(QResizeEvent *) {
    setFrameOrigin(m_origin);
}

} // namespace brightsweep
