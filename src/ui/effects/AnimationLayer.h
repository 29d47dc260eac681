#pragma once

#include "ui/ImageView.h"

#include <QTimer>
#include <QVariantAnimation>

namespace brightsweep {

/// A file that flies over and over along a straight way to its end, in a view of its own. Main
/// thread. With reduced motion the file lies still and the signal keeps its times.
class AnimationLayer : public QWidget {
    Q_OBJECT

public:
    explicit AnimationLayer(QWidget *parent = nullptr);

    void startAnimation();
    /// The flight under way still ends, and still tells.
    void stopAnimation();
    /// One flight of 1.5 seconds; from where to where is fixed, whatever the controls are.
    void animateButtonSEL(QWidget *start, QWidget *end);

    QSize sizeHint() const override;
    bool isAning() const { return m_isAning; }
    bool isStoped() const { return m_isStoped; }
    /// What drives the flight, and the pause of 0.3 seconds after it.
    QVariantAnimation &flight() { return m_flight; }
    QTimer &pause() { return m_pause; }

Q_SIGNALS:
    /// After each flight and its pause.
    void callBackDeleteItemWithIndex();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void animationDidStart();
    void animationDidStop();
    void setFrameOrigin(QPointF origin);

    ImageView *m_aim;
    ImageView *m_animatedIconView;
    QVariantAnimation m_flight;
    QTimer m_pause;
    QPointF m_origin;
    bool m_isAning = false;
    bool m_isStoped = false;
};

} // namespace brightsweep
