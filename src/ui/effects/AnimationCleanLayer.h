#pragma once

#include "ui/ImageView.h"

#include <QTimer>

#include <memory>

namespace brightsweep {

/// A loop of 18 frames, one every 0.08 seconds. Main thread. The frame number is shared by all such
/// views and goes on where it stopped. With reduced motion the picture stands still and the signal
/// keeps its times.
class AnimationCleanLayer : public QWidget {
    Q_OBJECT

public:
    explicit AnimationCleanLayer(QWidget *parent = nullptr);
    ~AnimationCleanLayer() override;

    /// Nothing where it runs already.
    void start();
    void stopTimer();
    /// One tick: shows the next frame.
    void changeImage();

    QSize sizeHint() const override;
    const QString &imageName() const { return m_animatedIconView->imageName(); }
    bool isAning() const { return m_timer != nullptr; }

Q_SIGNALS:
    /// Once a cycle, after the last frame has been shown.
    void callBackDeleteItemWithIndex();

private:
    void animationDidStop();

    ImageView *m_animatedIconView;
    std::unique_ptr<QTimer> m_timer;
};

} // namespace brightsweep
