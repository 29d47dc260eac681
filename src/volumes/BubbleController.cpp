#include "volumes/BubbleController.h"

#include "core/UtilityObject.h"
#include "platform/DesktopNotifier.h"
#include "platform/Platform.h"

#include <algorithm>

namespace brightsweep {

QString Bubble::text() const {
    if (firstLine.isEmpty() || secondLine.isEmpty())
        return firstLine + secondLine;
    return firstLine + QLatin1Char('\n') + secondLine;
}

BubbleController::BubbleController(Clock &clock, QObject *parent)
    : QObject(parent), m_clock(clock) {}

BubbleController::~BubbleController() {
    while (!m_live.empty())
        deleteBubbleView(m_live.begin()->first);
}

void BubbleController::showAsNotification(const Bubble &content) {
    DesktopNotification notification;
    notification.summary = content.firstLine;
    notification.body = content.secondLine;
    notification.closeAfterMilliseconds = int(lifetime.count());
    Platform::current().notifier->show(notification);
}

int BubbleController::initBubbleViewWith(const Bubble &content) {
    return fastCleaninitBubbleViewWith(content, nullptr);
}

int BubbleController::fastCleaninitBubbleViewWith(const Bubble &content,
                                                  FastCleanBubbleDelegate *delegate) {
    const int bubble = ++m_last;
    m_live[bubble].delegate = delegate;
    UtilityObject &counts = UtilityObject::getMyObject();
    const int place = counts.totalBubbleCount++;
    ++counts.liveBubbleCount;
    if (m_notifications)
        showAsNotification(content);
    else
        Q_EMIT bubbleShown(bubble, content, place);
    timerBeginToBeleteBubbleView(bubble);
    return bubble;
}

void BubbleController::timerBeginToBeleteBubbleView(int bubble) {
    const auto found = m_live.find(bubble);
    if (found == m_live.end())
        return;
    m_clock.cancel(found->second.timer);
    found->second.timer = m_clock.callAfter(lifetime, [this, bubble] { deleteBubbleView(bubble); });
}

void BubbleController::timerKillToDelete(int bubble) {
    const auto found = m_live.find(bubble);
    if (found != m_live.end())
        m_clock.cancel(std::exchange(found->second.timer, 0));
}

void BubbleController::deleteBubbleView(int bubble) {
    const auto found = m_live.find(bubble);
    if (found == m_live.end())
        return;
    m_clock.cancel(found->second.timer);
    m_live.erase(found);
    UtilityObject &counts = UtilityObject::getMyObject();
    if (--counts.liveBubbleCount == 0)
        counts.totalBubbleCount = 0;
    Q_EMIT bubbleGone(bubble);
}

void BubbleController::mouseEnterAction(int bubble) {
    const auto found = m_live.find(bubble);
    if (found != m_live.end() && found->second.delegate)
        found->second.delegate->fastCleantimerKillToDeleteDelegate();
    timerKillToDelete(bubble);
}

void BubbleController::mouseExitAction(int bubble) {
    const auto found = m_live.find(bubble);
    if (found != m_live.end() && found->second.delegate)
        found->second.delegate->fastCleantimerBeginToBeleteBubbleViewDelegate();
    timerBeginToBeleteBubbleView(bubble);
}

QPoint BubbleController::topLeft(const QRect &available, const QSize &size, int place) {
    const int right = available.x() + available.width();
    const int bottom = available.y() + available.height();
    const int y = available.y() + edgeDistance + stackDistance * place;
    return {right - edgeDistance - size.width(), std::min(y, bottom - size.height())};
}

} // namespace brightsweep
