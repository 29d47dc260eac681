#include "app/ui/MainWindow.h"
#include "app/AppPrefsWindowController.h"
#include "app/Resident.h"
#include "app/ui/AboutPanel.h"
#include "app/ui/ApplicationViews.h"
#include "app/ui/PanelPages.h"
#include "app/ui/PanelToolBar.h"
#include "cleaning/CleanPage.h"
#include "foundation/UserDefaults.h"
#include "support/NeedsRoot.h"
#include "ui/AlertSheet.h"
#include "ui/Theme.h"
#include "volumes/ui/CustomStatusItemView.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace brightsweep {
namespace {

using testing::ElementsAre;

class MainWindowTest : public testing::Test {
protected:
    void SetUp() override { open(); }
    void open() {
        window = std::make_unique<MainWindow>(controller,
                                              [this](const QString &identifier, QWidget *parent) {
                                                  made += identifier;
                                                  return makePanelPage(identifier, {}, parent);
                                              });
    }
    PanelToolBarItem *item(const char *identifier) {
        return window->findChild<PanelToolBarItem *>(QStringLiteral("toolbar.") +
                                                     QLatin1String(identifier));
    }

    AppPrefsWindowController controller;
    std::unique_ptr<MainWindow> window;
    QStringList made;
};

TEST_F(MainWindowTest, TheToolbarStandsInTheOrderOfTheTable) {
    controller.showWindow();
    QCoreApplication::processEvents();
    auto items = window->findChildren<PanelToolBarItem *>();
    std::sort(items.begin(), items.end(),
              [](const QWidget *a, const QWidget *b) { return a->x() < b->x(); });
    QStringList names;
    for (const PanelToolBarItem *each : items) {
        if (each->isVisible())
            names += each->text() + u'|' + each->accessibleName();
        EXPECT_NE(each->focusPolicy() & Qt::TabFocus, 0);
    }
    EXPECT_THAT(
        names,
        ElementsAre(
            QStringLiteral("Fast Clean|Fast Clean"), QStringLiteral("Duplicates|Duplicates"),
            QStringLiteral("Disk Usage|Disk Usage"), QStringLiteral("Uninstall|Uninstall"),
            QStringLiteral("Free Memory|Free Memory"), QStringLiteral("Login Items|Login Items"),
            QStringLiteral("|Preferences"), QStringLiteral("|Help"), QStringLiteral("|Menu")));
    const int gap = item("preferences")->x() - item("login_items")->geometry().right();
    EXPECT_GT(gap, 40) << "the flexible space";
    EXPECT_EQ(QAccessible::queryAccessibleInterface(window.get())->role(), QAccessible::Window);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Brightsweep"));
}

TEST_F(MainWindowTest, PanelsAreMadeWhenFirstShownAndKept) {
    controller.showWindow();
    EXPECT_THAT(made, ElementsAre(QStringLiteral("Scan")));
    EXPECT_TRUE(item("Scan")->isChecked());
    const QWidget *const first = window->currentPanel();
    item("memory")->click();
    EXPECT_THAT(made, ElementsAre(QStringLiteral("Scan"), QStringLiteral("memory")));
    EXPECT_TRUE(item("memory")->isChecked());
    EXPECT_FALSE(item("Scan")->isChecked());
    QTest::keyClick(item("Scan"), Qt::Key_Return);
    EXPECT_EQ(window->currentPanel(), first);
    EXPECT_EQ(made.size(), 2);
    item("Scan")->click();
    EXPECT_TRUE(item("Scan")->isChecked()) << "a second press leaves it checked";
    item("memory")->toggle(); // as assistive programs press
    EXPECT_EQ(controller.currentPanel(), QStringLiteral("memory"));
    item("Scan")->toggle();
    QSignalSpy help(&controller, &DBPrefsWindowController::helpRequested);
    item("Help")->click();
    EXPECT_EQ(help.size(), 1);
    EXPECT_EQ(window->currentPanel(), first);
    EXPECT_TRUE(item("Scan")->isChecked()) << "help is no panel";
}

TEST_F(MainWindowTest, ASecondWindowComesBackToThePageAndTheSizeLastUsed) {
    controller.showWindow();
    item("disk_usage")->click();
    window->resize(window->size() + QSize(0, 40));
    QCoreApplication::processEvents();
    const QSize size = window->size();
    window->close();
    EXPECT_FALSE(controller.isVisible());
    made.clear();
    window.reset();
    UserDefaults::resetStandardUserDefaults();
    AppPrefsWindowController second;
    MainWindow again(second, [this](const QString &identifier, QWidget *parent) {
        made += identifier;
        return makePanelPage(identifier, {}, parent);
    });
    second.showWindow();
    EXPECT_THAT(made, ElementsAre(QStringLiteral("disk_usage")));
    EXPECT_EQ(again.size(), size);
}

TEST_F(MainWindowTest, APanelLargerThanTheWindowMovesNoUpperEdge) {
    struct Large : QWidget {
        using QWidget::QWidget;
        QSize sizeHint() const override { return {700, 480}; }
    };
    MainWindow small(controller, [](const QString &identifier, QWidget *parent) {
        QWidget *const panel = identifier == QStringLiteral("Scan")
                                   ? new QWidget(parent)
                                   : static_cast<QWidget *>(new Large(parent));
        return panel;
    });
    controller.showWindow();
    controller.setCrossFade(false);
    small.resize(600, 300);
    const QPoint corner = small.pos();
    controller.displayViewForIdentifier(QStringLiteral("memory"), true);
    auto *const growing = small.findChild<QPropertyAnimation *>();
    EXPECT_EQ(growing->state(), QAbstractAnimation::Running) << "without a cross-fade, too";
    growing->setCurrentTime(growing->duration());
    EXPECT_EQ(small.pos(), corner);
    EXPECT_GE(small.width(), 700);
    EXPECT_GE(small.height(), 480);
}

TEST_F(MainWindowTest, OpensAt1080By680AndStaysOnTheScreenWhenTextGrows) {
    controller.showWindow();
    const QRect room = window->screen()->availableGeometry();
    EXPECT_EQ(window->size(), QSize(1080, 680).boundedTo(room.size()));
    EXPECT_LE((window->frameGeometry().center() - room.center()).manhattanLength(), 10);
    window->move(room.bottomRight() - QPoint(40, 400));
    window->resize(500, 400);
    theme::apply(*qApp, {false, false, 1.1});
    const QRect frame = window->frameGeometry();
    EXPECT_GE(frame.left(), room.left());
    EXPECT_LE(frame.right(), room.right());
    EXPECT_LE(frame.bottom(), room.bottom());
    theme::apply(*qApp, {});
}

TEST_F(MainWindowTest, WithoutATrayTheToolbarHasThePopup) {
    controller.showWindow();
    EXPECT_FALSE(item("popup")->isVisible());
    window->setPopupButtonShown(true);
    EXPECT_TRUE(item("popup")->isVisible());
    QSignalSpy asked(window.get(), &MainWindow::popupRequested);
    item("popup")->click();
    EXPECT_EQ(asked.size(), 1);
}

using QuickCleanQuestion = test::Resident;

TEST_F(QuickCleanQuestion, NamesEachCategoryInALineAndTakesHalfTheScreenAtMost) {
    test::needRoot();
    const test::CleanableMachine machine;
    test::CleanPage::store("111111");
    test::FakeStatusItem tray;
    CustomStatusItemView statusItem(*item, tray);
    ApplicationViews views(make(), statusItem);
    for (const double scale : {1.0, 2.0}) {
        theme::apply(*qApp, {false, false, scale});
        AlertSheet *sheet = nullptr;
        for (QWidget *const window : QApplication::topLevelWidgets()) {
            if (auto *act = window->findChild<QAction *>(QStringLiteral("menu.Quick Clean…")))
                act->trigger();
        }
        for (QWidget *const window : QApplication::topLevelWidgets())
            sheet = sheet ? sheet : qobject_cast<AlertSheet *>(window);
        ASSERT_TRUE(sheet);
        EXPECT_LE(sheet->frameGeometry().height(), sheet->screen()->availableSize().height() / 2);
        const auto *const words = sheet->findChild<QScrollArea *>();
        EXPECT_TRUE(scale > 1 || words->viewport()->height() >= words->widget()->height());
        int lines = 0;
        for (const QLabel *const label : sheet->findChildren<QLabel *>())
            lines += int(label->text().count(QStringLiteral(": ")));
        EXPECT_EQ(lines, int(categoryCount)) << scale;
        delete sheet;
    }
    theme::apply(*qApp, {});
}

TEST(AlertSheetTest, EscapeCallsOffAndEnterRemovesNothing) {
    const struct {
        int key;
        const char *answer;
    } cases[] = {{Qt::Key_Escape, "off"}, {Qt::Key_Return, "cancel"}, {Qt::Key_Enter, "cancel"}};
    for (const bool removingHasFocus : {false, true}) {
        for (const auto &each : cases) {
            std::string answer;
            AlertSheet *const sheet =
                AlertSheet::show({{},
                                  QStringLiteral("<b>Sure</b> & certain?"),
                                  {},
                                  {{QStringLiteral("Cancel"), false, [&] { answer = "cancel"; }},
                                   {QStringLiteral("R&move"), true, [&] { answer = "removed"; }}},
                                  [&] { answer = "off"; }},
                                 nullptr);
            for (const QLabel *label : sheet->findChildren<QLabel *>())
                EXPECT_EQ(label->textFormat(), Qt::PlainText);
            auto *const remove = sheet->findChild<QPushButton *>(QStringLiteral("alert.R&move"));
            EXPECT_EQ(remove->text(), QStringLiteral("R&&move"));
            if (removingHasFocus)
                remove->setFocus();
            QTest::keyClick(removingHasFocus ? static_cast<QWidget *>(remove) : sheet,
                            Qt::Key(each.key));
            EXPECT_EQ(answer, each.answer) << removingHasFocus;
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
}

TEST(AlertSheetTest, TheAnswerGivenIsTheOneCarriedOut) {
    int removed = 0;
    bool calledOff = false;
    AlertSheet *const sheet =
        AlertSheet::show({{},
                          QStringLiteral("Sure?"),
                          {},
                          {{QStringLiteral("Cancel"), false, {}},
                           {QStringLiteral("Remove"), true, [&] { ++removed; }}},
                          [&] { calledOff = true; }},
                         nullptr);
    sheet->findChild<QPushButton *>(QStringLiteral("alert.Remove"))->click();
    EXPECT_EQ(removed, 1);
    EXPECT_FALSE(calledOff);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace
} // namespace brightsweep
