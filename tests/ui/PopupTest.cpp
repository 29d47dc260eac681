#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "volumes/BubbleController.h"
#include "volumes/StatusMenu.h"
#include "volumes/VolumeNotifications.h"
#include "volumes/ui/BubbleWindow.h"
#include "volumes/ui/MAAttachedWindow.h"
#include "volumes/ui/MenuActionView.h"
#include "volumes/ui/MenuItemView.h"
#include "volumes/ui/StatusPopup.h"

#include <QApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using testing::ElementsAre;

MenuItem volume(const QString &name, int number, int index, bool canEject = false) {
    MenuItem item;
    item.myStorage = item.volType = canEject ? 4 : 0;
    item.ViewTag = index;
    item.title = QString::number(number);
    item.volRefNumber = std::int16_t(number);
    item.volumeSize = name;
    item.u64TotalSpace = QStringLiteral("100.00 GB");
    item.u64FreeSpace = QStringLiteral("40.00 GB");
    item.nTotalSize = 100;
    item.nFreeSize = 40;
    item.errorValue = QStringLiteral("10");
    item.bCanEject = canEject;
    item.volRootDir = "/media/" + name.toStdString();
    item.toolTip = QString::fromStdString(item.volRootDir.string());
    item.setPrograssImage();
    return item;
}

class PopupTest : public testing::Test {
protected:
    void build(const QStringList &images = {QStringLiteral("Disk")}) {
        menu.removeItems();
        menu.addHeader("LOCAL_STORAGE");
        menu.addRow(volume(QStringLiteral("/"), 1, 0));
        menu.addHeader("DISK_IMAGE");
        int number = 2;
        for (const QString &name : images) {
            menu.addRow(volume(name, number, number - 1, true));
            ++number;
        }
        menu.addSeparator();
        menu.addAction(MenuAction::EjectAll, QStringLiteral("Eject All"), QStringLiteral("e"),
                       true);
        menu.addAction(MenuAction::LaunchAtLogin, QStringLiteral("Launch at login"), {}, true);
        menu.addAction(MenuAction::Quit, QStringLiteral("Quit Brightsweep"), QStringLiteral("q"),
                       true);
        menu.finish();
    }
    template <typename Widget>
    Widget *find(const char *name) {
        return popup.findChild<Widget *>(QString::fromUtf8(name));
    }
    void turn() { QCoreApplication::processEvents(); }

    StatusMenu menu;
    StatusPopup popup{menu};
};

TEST_F(PopupTest, StandsBesideTheClickAndWithinTheScreen) {
    const QRect screen(0, 0, 1280, 900);
    const struct {
        QPoint click;
        QSize size;
        QRect place;
    } cases[] = {
        {{640, 868}, {280, 300}, {500, 568, 280, 300}}, // above an item at the bottom
        {{640, 32}, {280, 300}, {500, 32, 280, 300}},   // below one at the top
        {{1279, 890}, {280, 300}, {996, 590, 280, 300}}, {{0, 0}, {280, 300}, {4, 4, 280, 300}},
        {{1279, 0}, {280, 2000}, {996, 4, 280, 720}}, // at most 80% of the height
    };
    for (const auto &each : cases)
        EXPECT_EQ(StatusPopup::place(each.size, each.click, screen), each.place)
            << each.click.x() << ' ' << each.click.y();
    const QRect second(1280, 100, 800, 600);
    EXPECT_TRUE(second.contains(StatusPopup::place({280, 900}, {2079, 690}, second)));
}

TEST_F(PopupTest, ABubbleLeavesItFree) {
    build();
    popup.toggle({});
    const auto bubble = showBubbleWindow({QStringLiteral("Stick is full"), {}}, 0);
    EXPECT_FALSE(bubble->geometry().intersects(popup.geometry()));
    popup.hide();
    const auto earlier = showBubbleWindow({QStringLiteral("Stick is full"), {}}, 0);
    EXPECT_GT(earlier->x(), bubble->x());
    popup.toggle({});
    EXPECT_EQ(earlier->x(), bubble->x());
}

TEST_F(PopupTest, NewFiguresKeepTheRowAndTheFocus) {
    build();
    popup.toggle({});
    auto *const row = find<MenuItemView>("row.2");
    auto *const eject = find<QAbstractButton>("eject.2");
    eject->setFocus(Qt::TabFocusReason);
    const QRect place = popup.geometry();
    MenuItem item = menu.rows()[1];
    item.u64FreeSpace = QStringLiteral("5.00 GB");
    item.isEjecting = true;
    menu.setRow(menu.rows()[1], item);
    EXPECT_EQ(find<MenuItemView>("row.2"), row);
    EXPECT_EQ(popup.geometry(), place);
    EXPECT_EQ(row->accessibleName(), item.volumeSize + QStringLiteral(", Ejecting…"));
    EXPECT_FALSE(eject->isEnabled());
}

TEST_F(PopupTest, AWarningIsToldInWordsToo) {
    build();
    popup.toggle({});
    for (int i = 0; i < 2; ++i) {
        MenuItem full = menu.rows()[std::size_t(i)];
        full.nFreeSize = 10;
        menu.setRow(menu.rows()[std::size_t(i)], full);
    }
    EXPECT_EQ(find<QWidget>("row.1")->accessibleDescription(),
              QStringLiteral("Low, ") + menu.rows()[0].toolTip);
    // An image never warns.
    EXPECT_EQ(find<QWidget>("row.2")->accessibleDescription(), menu.rows()[1].toolTip);
}

TEST_F(PopupTest, ARebuildOpensItAgainAndACloseDoesNot) {
    build();
    popup.toggle({700, 32, true, {}});
    const QPoint place = popup.pos();
    menu.cancelTracking();
    EXPECT_FALSE(popup.isVisible());
    build({QStringLiteral("Disk"), QStringLiteral("Second")});
    EXPECT_TRUE(popup.isVisible());
    EXPECT_EQ(popup.pos(), place);
    EXPECT_NE(find<QWidget>("row.3"), nullptr);
    turn();
    EXPECT_TRUE(popup.isVisible());

    menu.cancelTracking();
    turn();
    build();
    EXPECT_FALSE(popup.isVisible()) << "what closed it was no rebuild";
    EXPECT_FALSE(menu.isMenuVisible());
    // A rebuild while it is closed does not open it either.
    menu.cancelTracking();
    build();
    EXPECT_FALSE(popup.isVisible());
}

TEST_F(PopupTest, ClosesByEscapeByASecondClickAndWithoutActivation) {
    build();
    popup.toggle({});
    QTest::keyClick(&popup, Qt::Key_Escape);
    EXPECT_FALSE(popup.isVisible());
    popup.toggle({});
    popup.toggle({});
    EXPECT_FALSE(popup.isVisible());
    popup.toggle({});
    EXPECT_TRUE(popup.isVisible());
    QEvent deactivated(QEvent::WindowDeactivate);
    QApplication::sendEvent(&popup, &deactivated);
    EXPECT_FALSE(popup.isVisible());
    // The press that took the activation away was on the item itself.
    popup.toggle({});
    EXPECT_FALSE(popup.isVisible());
}

TEST_F(PopupTest, EverythingIsReachedAndPressedByKeys) {
    build();
    popup.toggle({});
    popup.activateWindow();
    turn();
    QStringList stops;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &popup,
                        Qt::Key_Tab);
        if (popup.focusWidget())
            stops += popup.focusWidget()->objectName();
    }
    EXPECT_THAT(stops, ElementsAre(QStringLiteral("row.1"), QStringLiteral("row.2"),
                                   QStringLiteral("eject.2"), QStringLiteral("action.Eject All"),
                                   QStringLiteral("action.Launch at login"),
                                   QStringLiteral("action.Quit Brightsweep")));
    std::string opened;
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, openFinderWhenClickItemsNotification, [&](const Notification &notification) {
            opened =
                paths::fromVariant(notification.userInfo.value(QStringLiteral("object"))).string();
        });
    QTest::keyClick(find<QWidget>("row.2"), Qt::Key_Return);
    EXPECT_EQ(opened, "/media/Disk");

    QSignalSpy ejected(&menu, &StatusMenu::ejectRequested);
    QTest::keyClick(find<QWidget>("eject.2"), Qt::Key_Space);
    ASSERT_EQ(ejected.size(), 1);
    EXPECT_EQ(ejected[0][0].toInt(), 2);
    EXPECT_FALSE(popup.isVisible()) << "rights may be asked for";
}

TEST_F(PopupTest, TheTickIsTheMenusAndKeepsItOpen) {
    build();
    popup.toggle({});
    QSignalSpy triggered(&menu, &StatusMenu::actionTriggered);
    auto *const tick = find<QAbstractButton>("action.Launch at login");
    tick->toggle(); // as assistive programs press
    EXPECT_EQ(triggered.size(), 1);
    EXPECT_FALSE(tick->isChecked());
    EXPECT_TRUE(popup.isVisible());
    menu.setChecked(MenuAction::LaunchAtLogin, true);
    EXPECT_TRUE(tick->isChecked());
    find<QAbstractButton>("action.Quit Brightsweep")->click();
    EXPECT_FALSE(popup.isVisible());
    EXPECT_EQ(triggered.size(), 2);
}

TEST_F(PopupTest, NamesAreShownAsTheyAre) {
    const QString rightToLeft =
        QString::fromUtf8("\u05d0\u05d1\u05d2 \u0627\u0644\u0642\u0631\u0635");
    const QStringList names{QStringLiteral("<b>bold</b>"), QStringLiteral("A&B %1 100%"),
                            rightToLeft, QString(200, u'W'), QStringLiteral("two\nlines")};
    build(names);
    popup.toggle({});
    // What stands right of the text, and the rows' places, do not depend on a name.
    const auto edge = [&](int number) {
        auto *const row = find<MenuItemView>(("row." + std::to_string(number)).c_str());
        const QImage image = row->grab().toImage();
        const int column = image.width() * 244 / 280;
        return image.copy(column, 0, image.width() - column, image.height());
    };
    for (int i = 0; i < names.size(); ++i) {
        const int number = i + 2;
        auto *const row = find<MenuItemView>(("row." + std::to_string(number)).c_str());
        ASSERT_NE(row, nullptr);
        EXPECT_TRUE(row->accessibleName().startsWith(names[i]));
        EXPECT_EQ(edge(number), edge(2)) << names[i].toStdString();
        EXPECT_EQ(row->height(), row->sizeHint().height());
    }
    EXPECT_TRUE(find<QWidget>("row.2")->toolTip().contains(
        QStringLiteral("/media/&lt;b&gt;bold&lt;/b&gt;")));
    MenuItem plain = volume(QStringLiteral("bold"), 2, 1, true);
    const QImage marked = find<MenuItemView>("row.2")->grab().toImage();
    menu.setRow(menu.rows()[1], plain);
    EXPECT_NE(find<MenuItemView>("row.2")->grab().toImage(), marked);
}

TEST_F(PopupTest, TwentyVolumesScrollWithinTheScreen) {
    QStringList names;
    for (int i = 0; i < 20; ++i)
        names += QStringLiteral("Volume %1").arg(i);
    build(names);
    popup.toggle({});
    const QRect available = QApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(available.contains(popup.geometry()));
    EXPECT_LE(popup.height(), available.height() * 8 / 10);
    const auto *last = find<QWidget>("action.Quit Brightsweep");
    find<QWidget>("row.1")->setFocus();
    EXPECT_TRUE(last->visibleRegion().isEmpty());
    QTest::keyClick(&popup, Qt::Key_Up);
    EXPECT_EQ(popup.focusWidget(), last);
    EXPECT_FALSE(last->visibleRegion().isEmpty());
    EXPECT_EQ(find<QWidget>("row.1")->width(), find<MenuItemView>("row.1")->sizeHint().width());
}

} // namespace
} // namespace brightsweep
