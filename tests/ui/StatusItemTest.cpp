#include "volumes/ui/CustomStatusItemView.h"

#include "support/FakeDesktop.h"

#include <QApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using test::FakeStatusItem;

TEST(StatusItemViewTest, TakesTheTrayOnlyWhileTheDesktopShowsNoItems) {
    FakeStatusItem desktop;
    FakeStatusItem tray;
    desktop.host = false;
    CustomStatusItemView view(desktop, tray);
    QSignalSpy hosts(&view, &CustomStatusItemView::hostChanged);
    view.setShown(true);
    EXPECT_TRUE(desktop.shown);
    EXPECT_FALSE(tray.shown) << "the desktop has not answered yet";
    ASSERT_TRUE(hosts.wait());
    EXPECT_TRUE(tray.shown);
    desktop.setHost(true);
    EXPECT_FALSE(tray.shown);
    desktop.setHost(false);
    EXPECT_TRUE(tray.shown);
    EXPECT_EQ(hosts.size(), 1);
    tray.setHost(false);
    EXPECT_EQ(hosts.size(), 2);
    EXPECT_FALSE(view.hostPresent());
    view.setShown(false);
    EXPECT_FALSE(tray.shown || desktop.shown);
}

TEST(StatusItemViewTest, BothFormsGetEverything) {
    FakeStatusItem desktop;
    FakeStatusItem tray;
    CustomStatusItemView view(desktop, tray);
    int activations = 0;
    view.setActivatedHandler([&](const StatusActivation &) { ++activations; });
    view.setTitle(QStringLiteral("title"));
    view.setToolTip({}, QStringLiteral("tip"));
    view.setImages(CustomStatusItemView::drawnImages(QStringLiteral("42%.png")));
    for (FakeStatusItem *item : {&desktop, &tray}) {
        EXPECT_EQ(item->title, QStringLiteral("title"));
        EXPECT_EQ(item->toolTip, QStringLiteral("\ntip"));
        EXPECT_EQ(item->images.size(), 5U);
        item->activated({});
    }
    EXPECT_EQ(activations, 2);
}

TEST(StatusItemViewTest, ImagesAreAlphaFirstAndNotPremultiplied) {
    const auto images = CustomStatusItemView::drawnImages(QStringLiteral("42%-1.png"));
    ASSERT_EQ(images.size(), 5U);
    EXPECT_EQ(images.front().width, 16);
    EXPECT_EQ(images.back().height, 48);
    const StatusImage &image = images.back();
    ASSERT_EQ(image.argb.size(), std::size_t(48 * 48 * 4));
    const auto byte = [&](std::size_t at) { return unsigned(std::uint8_t(image.argb[at])); };
    std::size_t red = 0;
    for (std::size_t at = 0; at < image.argb.size(); at += 4)
        red += byte(at) == 255 && byte(at + 1) > 200 && byte(at + 2) < 80 && byte(at + 3) < 80;
    EXPECT_GT(red, 100U) << "the warning form is red";
    EXPECT_EQ(byte(0), 0U) << "the corner is empty";
    EXPECT_TRUE(CustomStatusItemView::drawnImages(QStringLiteral("none")).empty());
}

} // namespace
} // namespace brightsweep
