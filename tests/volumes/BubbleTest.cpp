#include "core/UtilityObject.h"
#include "platform/Platform.h"
#include "support/FakeDesktop.h"
#include "support/ManualClock.h"
#include "volumes/BubbleController.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

using std::chrono::milliseconds;

class Bubbles : public testing::Test, public FastCleanBubbleDelegate {
protected:
    Bubbles() {
        QObject::connect(&controller, &BubbleController::bubbleShown,
                         [this](int, const Bubble &, int place) { places.push_back(place); });
        QObject::connect(&controller, &BubbleController::bubbleGone, [this] { ++gone; });
    }
    int show() { return controller.initBubbleViewWith({QStringLiteral("text"), {}}); }
    static int total() { return UtilityObject::getMyObject().totalBubbleCount; }
    static int live() { return UtilityObject::getMyObject().liveBubbleCount; }
    void fastCleantimerKillToDeleteDelegate() override { ++held; }
    void fastCleantimerBeginToBeleteBubbleViewDelegate() override { ++released; }

    ManualClock clock;
    BubbleController controller{clock};
    std::vector<int> places;
    int gone = 0;
    int held = 0;
    int released = 0;
};

TEST_F(Bubbles, StackUntilAllHaveGone) {
    show();
    clock.advance(milliseconds(2000));
    show();
    show();
    EXPECT_EQ(live(), 3);
    clock.advance(milliseconds(2999));
    EXPECT_EQ(gone, 0);
    clock.advance(milliseconds(1));
    EXPECT_EQ(gone, 1);
    // Not into the gap, but below the last.
    EXPECT_EQ(total(), 3);
    show();
    clock.advance(milliseconds(5000));
    EXPECT_EQ(gone, 4);
    EXPECT_EQ(live() + total(), 0);
    show();
    EXPECT_EQ(places, (std::vector<int>{0, 1, 2, 3, 0}));
}

TEST_F(Bubbles, HoldAndLetGo) {
    const int plain = show();
    const int fast = controller.fastCleaninitBubbleViewWith({}, this);
    for (const int bubble : {plain, fast})
        controller.mouseEnterAction(bubble);
    clock.advance(milliseconds(60'000));
    EXPECT_EQ(gone, 0);
    for (const int bubble : {plain, fast}) {
        controller.mouseExitAction(bubble);
        controller.mouseExitAction(bubble);
    }
    clock.advance(milliseconds(5000));
    EXPECT_EQ(gone, 2);
    EXPECT_EQ(live(), 0) << "counted once each";
    EXPECT_EQ(held, 1);
    EXPECT_EQ(released, 2);
    controller.mouseExitAction(plain);
    EXPECT_EQ(clock.waiting(), 0u);
}

TEST_F(Bubbles, GoOutAsNotificationsWithTheSameCounts) {
    auto *notifier = new FakeNotifier;
    Platform::current().notifier.reset(notifier);
    controller.setShownAsNotifications(true);
    controller.initBubbleViewWith({QStringLiteral("<b>"), QStringLiteral("& more")});
    ASSERT_EQ(notifier->shown.size(), 1u);
    EXPECT_EQ(notifier->shown[0].summary, QStringLiteral("<b>"));
    EXPECT_EQ(notifier->shown[0].body, QStringLiteral("& more"));
    EXPECT_EQ(notifier->shown[0].closeAfterMilliseconds, 5000);
    EXPECT_TRUE(places.empty());
    EXPECT_EQ(live(), 1);
    clock.advance(milliseconds(5000));
    EXPECT_EQ(live() + total(), 0);
}

TEST(BubblePlace, RightEdgeTenInsideAndSixtyApart) {
    const QRect available(100, 30, 800, 400);
    const QSize size(220, 50);
    EXPECT_EQ(BubbleController::topLeft(available, size, 0), QPoint(670, 40));
    EXPECT_EQ(BubbleController::topLeft(available, size, 1), QPoint(670, 100));
    EXPECT_EQ(BubbleController::topLeft(available, size, 50), QPoint(670, 380));
    EXPECT_EQ((Bubble{QStringLiteral("a"), {}}).width(), 220);
    EXPECT_EQ((Bubble{QStringLiteral("a"), QStringLiteral("b")}).width(), 280);
}

} // namespace
} // namespace brightsweep::test
