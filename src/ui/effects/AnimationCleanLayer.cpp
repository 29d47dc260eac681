#include "ui/effects/AnimationCleanLayer.h"

#include "ui/Theme.h"

#include <chrono>

namespace brightsweep {
namespace {

constexpr int lastFrame = 18;
constexpr int side = 30;
constexpr std::chrono::milliseconds frameTime{80};

// Shared by all and never reset at a start.
int frame = 0;

} // namespace

AnimationCleanLayer::AnimationCleanLayer(QWidget *parent)
    : QWidget(parent), m_animatedIconView(new ImageView(QStringLiteral("clean_1.png"), this)) {
    m_animatedIconView->setGeometry(0, 0, side, side);
}

AnimationCleanLayer::~AnimationCleanLayer() = default;

void AnimationCleanLayer::start() {
    if (m_timer)
        return;
    m_timer = std::make_unique<QTimer>();
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->setInterval(frameTime);
    connect(m_timer.get(), &QTimer::timeout, this, &AnimationCleanLayer::changeImage);
    m_timer->start();
}

void AnimationCleanLayer::stopTimer() {
    if (!m_timer)
        return;
    m_timer->stop();
    // It may be the timer whose tick this is.
    m_timer.release()->deleteLater();
}

void AnimationCleanLayer::changeImage() {
    ++frame;
    if (!theme::appearance().reducedMotion)
        m_animatedIconView->setImageName(QStringLiteral("clean_%1.png").arg(frame));
    if (frame == lastFrame) {
        frame = 0;
        animationDidStop();
    }
}

void AnimationCleanLayer::animationDidStop() {
    Q_EMIT callBackDeleteItemWithIndex();
}

QSize AnimationCleanLayer::sizeHint() const {
    return QSize(side, side);
}

} // namespace brightsweep
