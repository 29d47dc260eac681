#pragma once

#include <QPointer>
#include <QRectF>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>

namespace brightsweep {

/// A progress bar of two images, a fill that slides inside a track, and the blink of a padlock. The
/// bar is set by percentage, by tenths, by amounts that add up, or runs by itself on a timer. Main
/// thread. It starts empty and shows nothing before showStyle().
class Animation : public QWidget {
    Q_OBJECT

public:
    explicit Animation(QWidget *parent = nullptr);
    ~Animation() override;

    /// Puts track and fill in, each at the size of its image.
    void showStyle();
    void setBottomImage(const QString &name);
    void setPrograssImage(const QString &name);

    /// Shows a percentage. Nothing limits it to 100.
    void baseNumberSetPrograss(std::uint64_t value);
    /// Shows a step of ten, from right to left; the maximum has no part in it.
    void baseNumberSetPrograssMax(std::uint64_t maximum, std::uint64_t index);
    /// Adds an amount and shows its share of prograssMax. Only reaching prograssMax exactly begins
    /// anew; a step past it does not.
    void prograssShowDependChangeSize(std::uint64_t amount);
    /// Puts the bar at empty.
    void initZeroPrograss();

    /// Runs updateprograss() every timeSize seconds; nothing where the timer runs already.
    void start();
    /// Calls `target` every timeSize seconds; nothing where the timer runs already.
    void startUpdatePrograss();
    void stopTimer();
    /// Ends the timer-driven mode and puts the fill back.
    void stop();
    /// Starts the run-down.
    void minishPrograss();
    /// One tick of the timer-driven mode.
    void updateprograss();

    /// Lets a padlock, an image view or a button, blink every 0.4 seconds; nothing where it blinks
    /// already. With reduced motion it stays lit instead.
    void startUnlockAnimation(QWidget *view);
    /// The padlock is shown closed afterwards, whether it was blinking or not.
    void stopUnlockAnimation(QWidget *view);
    /// One tick of the blink.
    void changeUnlockImage();

    QSize sizeHint() const override;

    /// What startUpdatePrograss() asks.
    std::function<void()> target;
    std::uint64_t miniValue = 0;
    std::uint64_t prograssMax = 0;
    std::uint64_t addNumber = 0;
    float timeSize = 0.02F; // seconds
    bool isAdd = true;
    bool isFinished = false;
    /// Wraps: negative positions are near the top of its range.
    std::uint64_t goPrograss = static_cast<std::uint64_t>(initialPrograss);

    /// Where the fill stands; x may lie far out of sight.
    QRectF prograssFrame() const { return m_prograssFrame; }
    QRectF bottomFrame() const { return m_bottomFrame; }
    bool isRunning() const { return m_timer != nullptr; }
    bool isBlinking() const { return m_unlockTimer != nullptr; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    static constexpr std::int64_t initialPrograss = -310;

    double trackWidth() const { return m_bottomFrame.width(); }
    void moveFill(double x);
    void run(void (Animation::*tick)());
    void askTarget();

    QString m_bottomImage;
    QString m_prograssImage;
    QRectF m_prograssFrame;
    QRectF m_bottomFrame;
    std::unique_ptr<QTimer> m_timer;
    std::unique_ptr<QTimer> m_unlockTimer;
    QPointer<QWidget> m_padlock;
};

} // namespace brightsweep
