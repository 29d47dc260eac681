#include "ui/ImageProvider.h"
#include "ui/Theme.h"
#include "ui/effects/Animation.h"
#include "ui/effects/PathAnimation.h"

#include <QApplication>
#include <QPushButton>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace brightsweep {
namespace {

/// A bar on a track of width 200.
class BarTest : public testing::Test {
protected:
    BarTest() {
        m_bar.setBottomImage(QStringLiteral("0.png"));
        m_bar.setPrograssImage(QStringLiteral("100.png"));
        m_bar.showStyle();
    }
    double x() const { return m_bar.prograssFrame().x(); }

    Animation m_bar;
};

TEST_F(BarTest, StartsEmptyAndShowsPercentagesWithoutLimit) {
    EXPECT_EQ(m_bar.bottomFrame().width(), 200);
    EXPECT_EQ(x(), -200);
    struct Case {
        std::uint64_t value;
        double x;
    };
    for (const Case &one :
         {Case{0, -200}, Case{50, -100}, Case{100, 0}, Case{250, 300}, Case{1, -198}})
        EXPECT_EQ((m_bar.baseNumberSetPrograss(one.value), x()), one.x) << one.value;
    m_bar.baseNumberSetPrograss(std::numeric_limits<std::uint64_t>::max());
    EXPECT_TRUE(std::isfinite(x()));
    m_bar.grab();
    m_bar.initZeroPrograss();
    EXPECT_EQ(m_bar.prograssFrame(), QRectF(-200, 0, 200, 6));
}

TEST_F(BarTest, AmountsAddUpAndOnlyTheExactTotalBeginsAnew) {
    m_bar.prograssMax = 400;
    m_bar.prograssShowDependChangeSize(100);
    EXPECT_EQ(x(), -150);
    m_bar.prograssShowDependChangeSize(300);
    EXPECT_EQ(x(), 0);
    EXPECT_EQ(m_bar.addNumber, 0U);
    m_bar.prograssShowDependChangeSize(500);
    EXPECT_EQ(x(), 50);
    EXPECT_EQ(m_bar.addNumber, 500U);
    m_bar.prograssMax = 0;
    m_bar.prograssShowDependChangeSize(1);
    EXPECT_EQ(x(), -200) << "nothing has no share";
}

TEST(Padlock, BlinksInEitherPhaseAndEndsClosed) {
    Animation first;
    Animation second;
    ImageView view(QStringLiteral("Lock.png"));
    QPushButton button;
    first.startUnlockAnimation(&view);
    first.startUnlockAnimation(&button); // one blink at a time
    second.startUnlockAnimation(&button);
    first.changeUnlockImage();
    const QString begun = view.imageName();
    first.changeUnlockImage();
    EXPECT_NE(view.imageName(), begun);
    // The phase is shared: a tick of another padlock turns this one's around.
    second.changeUnlockImage();
    EXPECT_EQ(button.icon().name(), begun);
    first.changeUnlockImage();
    EXPECT_NE(view.imageName(), begun);
    for (int tick = 0; tick < 2; ++tick) {
        first.changeUnlockImage();
        first.stopUnlockAnimation(&view);
        EXPECT_EQ(view.imageName(), QStringLiteral("Lock.png"));
        EXPECT_FALSE(first.isBlinking());
    }
    second.stopUnlockAnimation(&button);
    EXPECT_EQ(button.icon().name(), QStringLiteral("Lock.png"));
}

TEST(Padlock, MayGoWhileItBlinks) {
    Animation bar;
    auto *view = new ImageView;
    bar.startUnlockAnimation(view);
    delete view;
    bar.changeUnlockImage();
    EXPECT_TRUE(bar.isBlinking());
}

/// Two buttons in their own parents, on a page of 640 by 400.
class FlightTest : public testing::Test {
protected:
    FlightTest() {
        m_page.resize(640, 400);
        m_list.setGeometry(0, 30, 200, 300);
        m_bottom.setGeometry(200, 350, 440, 50);
        m_row.setGeometry(10, 40, 20, 20);
        m_button.setGeometry(100, 10, 80, 28);
        m_icon = pixmapNamed(QStringLiteral("file1.png"), QSize(32, 32), 1);
        QObject::connect(&m_flight, &PathAnimation::callBackDeleteItemWithIndex,
                         [this] { ++m_told; });
        m_page.show();
    }

    QWidget m_page;
    QWidget m_list{&m_page};
    QWidget m_bottom{&m_page};
    QWidget m_row{&m_list};
    QWidget m_button{&m_bottom};
    QPixmap m_icon;
    PathAnimation m_flight;
    int m_told = 0;
};

TEST_F(FlightTest, TheArcSwingsOutToTheRight) {
    const QPainterPath path =
        m_flight.flightPath(QRectF(10, 40, 20, 20), QRectF(100, 12, 80, 28), 70, 400);
    ASSERT_EQ(path.elementCount(), 4);
    EXPECT_EQ(QPointF(path.elementAt(0)), QPointF(160, 390)); // 70 - 40 - 20 + 400 - 20
    EXPECT_EQ(QPointF(path.elementAt(1)), QPointF(360, 390));
    EXPECT_EQ(QPointF(path.elementAt(2)), QPointF(520, 34));
    EXPECT_EQ(QPointF(path.elementAt(3)), QPointF(320, 34));
}

TEST_F(FlightTest, EveryEntryFliesOneSecondFromItsPlaceAndTellsItsEnd) {
    // The list's lower edge is 70 above the page's; the button's is 12 above its bar's.
    struct Entry {
        std::function<void()> fly;
        QPointF start;
    };
    const Entry entries[] = {
        {[&] { m_flight.animateButtonSEL(&m_row, &m_button, m_icon, &m_page); }, {160, 390}},
        {[&] { m_flight.animateTableView(&m_list, &m_button, QPointF(5, 80), m_icon, 7, &m_page); },
         {155, 370}},
    };
    for (const Entry &entry : entries) {
        entry.fly();
        const ImageView *icon = m_flight.animatedIconView();
        ASSERT_NE(icon, nullptr);
        EXPECT_TRUE(icon->isVisible());
        EXPECT_FALSE(m_flight.isFly());
        EXPECT_EQ(m_flight.flight().duration(), 1000);
        EXPECT_EQ(
            icon->geometry(),
            QRect(QPoint(int(entry.start.x()), 400 - int(entry.start.y()) - 32), QSize(32, 32)));
        const int began = icon->x();
        m_flight.flight().setCurrentTime(200);
        EXPECT_LT(icon->x() - began, 60) << "slow at first"; // evenly it would be 112
        m_flight.flight().setCurrentTime(1000);
        EXPECT_EQ(icon->pos(), QPoint(320, 400 - 34 - 32));
        EXPECT_FALSE(icon->isVisible());
    }
    EXPECT_EQ(m_told, 2);
    EXPECT_EQ(m_flight.animatedIconView()->property("tag").toInt(), 7);
    EXPECT_EQ(m_page.findChildren<ImageView *>().size(), 1) << "each flight takes its icon along";
}

TEST_F(FlightTest, ReducedMotionShowsNothingAndKeepsItsTime) {
    theme::apply(*qApp, {false, true, 1.0});
    m_flight.animateButtonSEL(&m_row, &m_button, m_icon, &m_page);
    EXPECT_FALSE(m_flight.animatedIconView()->isVisible());
    m_flight.flight().setCurrentTime(999);
    EXPECT_EQ(m_told, 0);
    m_flight.flight().setCurrentTime(1000);
    EXPECT_EQ(m_told, 1);
    theme::apply(*qApp, {});
}

TEST_F(FlightTest, ThePageMayGoFirst) {
    auto page = std::make_unique<QWidget>();
    m_flight.animateButtonSEL(&m_row, &m_button, m_icon, page.get());
    page.reset();
    EXPECT_EQ(m_flight.animatedIconView(), nullptr);
    m_flight.flight().setCurrentTime(1000);
    EXPECT_EQ(m_told, 1);
}

} // namespace
} // namespace brightsweep
