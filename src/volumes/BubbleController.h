#pragma once

#include "core/Clock.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <chrono>
#include <map>

namespace brightsweep {

/// What a bubble says: one line or two, plain text.
struct Bubble {
    QString firstLine;
    QString secondLine;

    static constexpr int height = 50;
    /// Wider where there are two lines.
    int width() const { return firstLine.isEmpty() || secondLine.isEmpty() ? 220 : 280; }
    QString text() const;
};

/// Hears of the mouse over a bubble of the quick clean.
class FastCleanBubbleDelegate {
public:
    virtual ~FastCleanBubbleDelegate() = default;
    virtual void fastCleantimerKillToDeleteDelegate() = 0;
    virtual void fastCleantimerBeginToBeleteBubbleViewDelegate() = 0;
};

/// The bubbles on screen: their places, their numbers and their end. A view shows one window for
/// each, which takes no focus; where windows cannot be placed the text goes out as a notification.
/// The counts are those of UtilityObject and shared by all bubbles. Main thread.
class BubbleController : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds lifetime{5000};
    static constexpr int stackDistance = 60;
    static constexpr int edgeDistance = 10;
    /// The window level of a bubble: above others.
    static constexpr int windowLevelKey = 9;

    explicit BubbleController(Clock &clock = Clock::eventLoop(), QObject *parent = nullptr);
    ~BubbleController() override;

    /// Notifications in the place of windows, from the next bubble on.
    void setShownAsNotifications(bool notifications) { m_notifications = notifications; }

    /// Sends the bubble's text out as a notification that goes after `lifetime`.
    static void showAsNotification(const Bubble &content);

    /// Shows a bubble below all that are or were on screen since the last time none was; it goes
    /// after `lifetime`. Gives its number, which names it below.
    int initBubbleViewWith(const Bubble &content);
    /// The same for the quick clean. The delegate, which may be null, outlives the bubble.
    int fastCleaninitBubbleViewWith(const Bubble &content, FastCleanBubbleDelegate *delegate);

    void timerBeginToBeleteBubbleView(int bubble);
    void timerKillToDelete(int bubble);
    /// Takes it away. When it was the last one the next bubble starts at the top again.
    void deleteBubbleView(int bubble);

    // Hold a bubble and let it go. No view sends them: every bubble goes after its time, whether
    // or not the mouse rests on it.
    void mouseEnterAction(int bubble);
    void mouseExitAction(int bubble);

    /// Where the window of that size stands at a place of the stack, counted from 0, in an area
    /// whose y grows downwards: the right edge 10 inside, the lower edge not below the area.
    static QPoint topLeft(const QRect &available, const QSize &size, int place);

Q_SIGNALS:
    void bubbleShown(int bubble, const brightsweep::Bubble &content, int place);
    void bubbleGone(int bubble);

private:
    struct Live {
        FastCleanBubbleDelegate *delegate = nullptr;
        Clock::Handle timer = 0;
    };

    Clock &m_clock;
    std::map<int, Live> m_live;
    int m_last = 0;
    bool m_notifications = false;
};

} // namespace brightsweep
