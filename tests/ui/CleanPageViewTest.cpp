// The rules of the clean page's views; the page's own are tested without a screen.
#include "CleanPageView.h"
#include "cleaning/CategoryListModel.h"
#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/ComputerSheet.h"
#include "cleaning/ui/FileIcons.h"
#include "cleaning/ui/HiddenTicksNotice.h"
#include "cleaning/ui/LeftListView.h"
#include "support/NeedsRoot.h"
#include "ui/Theme.h"
#include "ui/effects/PathAnimation.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QToolButton>

namespace brightsweep {
namespace {

using test::CleanPageView;
using State = NewMainViewController::State;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(CleanPageView, SpaceTicksAndEnterShowsAndNeverRemoves) {
    before = at->machine.state();
    outline->setCurrentIndex(leaf(0));
    const std::size_t all = ticked();
    press(Qt::Key_Space);
    EXPECT_EQ(ticked(), all - 1);
    press(Qt::Key_Return);
    EXPECT_THAT(workspace->revealed, SizeIs(1));
    outline->setCurrentIndex(group());
    press(Qt::Key_Enter);
    EXPECT_FALSE(outline->isExpanded(group()));
    auto *const clean = find<QPushButton>("cleanButton");
    ASSERT_TRUE(clean->isEnabled());
    clean->setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_EQ(at->page.state(), State::Results);
    EXPECT_THAT(gone(), IsEmpty());
}

// A look at a file on a server that does not answer would hold the window up.
TEST_F(CleanPageView, IconsGoByWhatTheScanKnows) {
    test::TestTree home(test::TestEnvironment::current().home());
    home.directory(".cache/0 holiday.jpg");
    home.file(".cache/1 holiday.jpg");
    home.link(".cache/2 link", home.path("Documents"));
    at->scan();
    outline->expand(group());
    const CategoryListModel &list = at->page.list(1);
    for (int row = 0; row < 3; ++row) {
        const std::string name = nameOf(leaf(row));
        EXPECT_EQ(leaf(row).data(CleanOutlineModel::IsDirectoryRole).toBool(), row == 0) << name;
        const auto place = list.rowOf(home.path(".cache/" + name).native());
        ASSERT_TRUE(place) << name;
        EXPECT_EQ(list.index(*place, 0).data(CategoryListModel::IsDirectoryRole).toBool(), row == 0)
            << name;
    }
    FileIcons icons;
    const auto drawn = [&](const std::filesystem::path &path, bool isDirectory) {
        return icons.icon(path, isDirectory).pixmap(24, 24).toImage();
    };
    const QImage folder = drawn("/gone/holiday", true);
    const QImage picture = drawn("/gone/holiday.jpg", false);
    EXPECT_NE(folder, picture);
    EXPECT_EQ(drawn(home.path(".cache/0 holiday.jpg"), true), folder);
    EXPECT_EQ(drawn(home.path(".cache/0 holiday.jpg"), false), picture);
    EXPECT_NE(drawn("/gone/holiday", false), picture);
    EXPECT_FALSE(drawn("/gone/holiday", false).isNull());
}

TEST_F(CleanPageView, SeveralRowsBecomeAllTickedAndThenNone) {
    const std::size_t caches = ticked();
    outline->selectAll(); // the groups that are closed stand for their items
    press(Qt::Key_Space);
    EXPECT_GT(ticked(), caches);
    EXPECT_EQ(at->page.outline().allSelectState(), TickState::All);
    press(Qt::Key_Space);
    EXPECT_EQ(ticked(), 0u);

    at->page.shouldSelectRowWithArray(2);
    auto *const list = panel->findChild<CategoryView *>();
    list->setFocus();
    list->setCurrentIndex(list->model()->index(0, 0));
    press(Qt::Key_Space);
    EXPECT_EQ(ticked(), 1u);
    list->selectAll();
    press(Qt::Key_Space);
    EXPECT_EQ(ticked(), std::size_t(list->model()->rowCount())) << "not one by one the other way";
    press(Qt::Key_Space);
    EXPECT_EQ(ticked(), 0u);
}

TEST_F(CleanPageView, CopiesThePathsOfTheSelection) {
    outline->setCurrentIndex(leaf(1));
    outline->selectionModel()->select(leaf(2),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    press(Qt::Key_C, Qt::ControlModifier);
    const QString cache = paths::display(test::TestEnvironment::current().home() / ".cache/");
    EXPECT_EQ(QApplication::clipboard()->text().count(cache), 2);
}

TEST_F(CleanPageView, TheMenuActsOnTheRowUnderThePointer) {
    const QModelIndex row = leaf(3);
    for (const bool isByKey : {false, true}) {
        if (isByKey) {
            outline->setCurrentIndex(row);
            press(Qt::Key_F10, Qt::ShiftModifier);
        } else {
            const QPoint place = outline->visualRect(row).center();
            QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                    outline->viewport()->mapToGlobal(place));
            QApplication::sendEvent(outline->viewport(), &event);
        }
        auto *const menu = outline->findChild<QMenu *>();
        ASSERT_TRUE(menu);
        ASSERT_EQ(menu->actions().size(), 3);
        menu->actions().at(0)->trigger();
        menu->actions().at(1)->trigger();
        delete menu;
        EXPECT_EQ(nameOf(row), workspace->opened.back().filename());
        EXPECT_EQ(workspace->opened, workspace->revealed);
    }
}

// A filter hides rows, not their ticks.
TEST_F(CleanPageView, WhatAFilterHidesIsToldOf) {
    auto *const notice = panel->findChild<HiddenTicksNotice *>();
    EXPECT_FALSE(notice->isVisible());
    const std::size_t all = ticked();
    outline->setCurrentIndex(leaf(5));
    filter("item 15");
    EXPECT_EQ(model().rowCount(group()), 10);
    EXPECT_TRUE(outline->currentIndex().isValid());
    ASSERT_TRUE(notice->isVisible());
    EXPECT_EQ(
        find<QLabel>("clean.hiddenTicks")->text(),
        QStringLiteral("The filter hides %1 ticked items. Clean removes them too.").arg(all - 10));
    // Only what is shown is ticked or unticked.
    Q_EMIT outline->checkHeader().checkBoxClicked(false);
    EXPECT_EQ(ticked(), all - 10);
    find<QPushButton>("clean.showAll")->click();
    test::waitUntil([&] { return at->page.outline().model().filter().isEmpty(); });
    EXPECT_FALSE(notice->isVisible());
    EXPECT_EQ(panel->focusWidget(), outline);
    EXPECT_EQ(model().rowCount(group()), int(all));
}

TEST_F(CleanPageView, ATickFliesOnceFromItsRow) {
    const auto expectFlightFrom = [&](const QAbstractItemView &view, const QModelIndex &row) {
        const auto flights = panel->findChildren<PathAnimation *>();
        ASSERT_EQ(flights.size(), 1);
        const QPoint start = view.viewport()->mapTo(panel.get(), view.visualRect(row).topLeft());
        EXPECT_LE((flights[0]->animatedIconView()->pos() - start).manhattanLength(), 8);
        flights[0]->flight().setCurrentTime(flights[0]->flight().duration() - 1);
        auto *const trash = find<QLabel>("trashFileNumTF");
        const QPoint end = trash->mapTo(panel.get(), QPoint());
        EXPECT_LE((flights[0]->animatedIconView()->pos() - end).manhattanLength(), 80);
        delete flights[0];
    };
    at->page.outline().setAllSelectOrNoSelect(false);
    qDeleteAll(panel->findChildren<PathAnimation *>());
    outline->setCurrentIndex(leaf(3));
    press(Qt::Key_Space);
    expectFlightFrom(*outline, leaf(3));
    at->page.shouldSelectRowWithArray(2);
    auto *const list = panel->findChild<CategoryView *>();
    QApplication::processEvents();
    const QModelIndex row = list->model()->index(2, 0);
    list->model()->setData(row, {}, Qt::CheckStateRole);
    expectFlightFrom(*list, row);
}

TEST_F(CleanPageView, WhatTheUserOpenedAndClosedStaysSo) {
    test::needRoot();
    EXPECT_TRUE(outline->isExpanded(model().index(0, 0)));
    outline->collapse(model().index(0, 0));
    outline->setCurrentIndex(leaf(40));
    const QPersistentModelIndex current = outline->currentIndex();
    const int place = outline->verticalScrollBar()->value();
    ASSERT_GT(place, 0);
    const auto expectSame = [&](const char *after) {
        EXPECT_FALSE(outline->isExpanded(model().index(0, 0))) << after;
        EXPECT_TRUE(outline->isExpanded(group())) << after;
        EXPECT_EQ(outline->currentIndex(), current) << after;
        EXPECT_EQ(outline->verticalScrollBar()->value(), place) << after;
        EXPECT_EQ(panel->focusWidget(), outline) << after;
    };
    press(Qt::Key_Space);
    expectSame("a tick");
    panel->hide();
    panel->show();
    QApplication::processEvents();
    expectSame("another page");
    at->tick({1, 5});
    find<QPushButton>("cleanButton")->click();
    ASSERT_TRUE(sheet());
    QTest::keyClick(sheet(), Qt::Key_Escape);
    test::waitUntil([&] { return at->page.state() == State::Results; });
    expectSame("a clean that was called off");
    outline->sortByColumn(CleanOutlineModel::NameColumn, Qt::DescendingOrder);
    EXPECT_EQ(outline->currentIndex(), current);
    EXPECT_TRUE(outline->isExpanded(group()));
}

// The ticked rows go; the keyboard stays where they were.
TEST_F(CleanPageView, ACleanLeavesTheKeyboardInTheOutline) {
    at->page.outline().setAllSelectOrNoSelect(false);
    outline->setCurrentIndex(leaf(7));
    press(Qt::Key_Space);
    EXPECT_EQ(find<QLabel>("clean.sum")->text(), QStringLiteral("1.00 KB"));
    EXPECT_EQ(find<QLabel>("trashFileNumTF")->text(), QStringLiteral("1"));
    const std::string went = nameOf(leaf(7));
    const std::string next = nameOf(leaf(8));
    before = at->machine.state();
    auto *const clean = find<QPushButton>("cleanButton");
    clean->setFocus();
    press(Qt::Key_Space);
    test::waitUntil([&] { return at->page.outcome() == CleanOutcome::Cleaned; });
    EXPECT_THAT(gone(), ElementsAre(went));
    EXPECT_EQ(panel->focusWidget(), outline);
    EXPECT_TRUE(outline->isExpanded(group()));
    EXPECT_EQ(nameOf(outline->currentIndex()), next);
}

TEST_F(CleanPageView, ACleanOfOneCategoryKeepsItsPlace) {
    at->page.shouldSelectRowWithArray(2);
    auto *const list = panel->findChild<CategoryView *>();
    at->page.list(1).setNoCheckBoxSelect();
    list->sortByColumn(CategoryListModel::Name, Qt::AscendingOrder);
    list->setCurrentIndex(list->model()->index(50, 0));
    const std::string current = nameOf(list->currentIndex());
    QApplication::processEvents();
    const int place = list->verticalScrollBar()->value();
    ASSERT_GT(place, 0);
    list->model()->setData(list->model()->index(3, 0), {}, Qt::CheckStateRole);
    before = at->machine.state();
    auto *const left = panel->findChild<LeftListView *>();
    find<QPushButton>("oneListCleanButton")->click();
    QTest::mouseClick(left->viewport(), Qt::LeftButton, {},
                      left->visualRect(left->model()->index(4, 0)).center());
    EXPECT_EQ(left->selectionModel()->selectedIndexes(),
              QModelIndexList{left->model()->index(2, 0)});
    test::waitUntil([&] { return at->page.outcome() == CleanOutcome::Cleaned; });
    EXPECT_THAT(gone(), SizeIs(1));
    EXPECT_EQ(nameOf(list->currentIndex()), current);
    EXPECT_EQ(list->verticalScrollBar()->value(), place);
}

TEST_F(CleanPageView, ASelectedRowHasNoSeamsAtAnyScale) {
    panel->resize(panel->width() + 1, panel->height()); // columns at odd places
    QApplication::processEvents();
    QWidget *const rows = outline->viewport();
    for (const qreal scale : {1.0, 1.25, 1.5, 1.75}) {
        for (const QModelIndex &row : {group(), leaf(0)}) {
            outline->setCurrentIndex(row);
            QImage image((QSizeF(rows->size()) * scale).toSize(), QImage::Format_RGB32);
            image.setDevicePixelRatio(scale);
            rows->render(&image, {}, {}, QWidget::DrawChildren | QWidget::DrawWindowBackground);
            // Below the row's upper edge and above all words.
            const int y = int((outline->visualRect(row).top() + 3) * scale);
            for (int x = 1; x < image.width() - 1; ++x)
                ASSERT_EQ(image.pixelColor(x, y), theme::selection()) << x << " at " << scale;
        }
    }
}

TEST_F(CleanPageView, EveryControlIsReachedAndNamed) {
    for (QWidget *const widget : panel->findChildren<QWidget *>()) {
        const bool isControl = qobject_cast<QAbstractButton *>(widget) ||
                               qobject_cast<QLineEdit *>(widget) ||
                               qobject_cast<ResultView *>(widget);
        if (!isControl || !widget->isVisible() || qobject_cast<QLineEdit *>(widget->parent()))
            continue;
        auto *const button = qobject_cast<QAbstractButton *>(widget);
        EXPECT_FALSE(widget->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
            << widget->objectName().toStdString();
        EXPECT_FALSE(widget->objectName().isEmpty()) << widget->metaObject()->className();
        EXPECT_TRUE(widget->focusPolicy() & Qt::TabFocus) << widget->objectName().toStdString();
    }
}

TEST_F(CleanPageView, TheFactsOfTheMachineAreOnASheet) {
    find<QPushButton>("clean.computer")->click();
    const QPointer<ComputerSheet> facts = panel->findChild<ComputerSheet *>();
    ASSERT_TRUE(facts);
    int rows = 0;
    for (const QLabel *const label : facts->findChildren<QLabel *>())
        rows += label->accessibleName().isEmpty() ? 0 : 1;
    EXPECT_EQ(rows, 7);
    QTest::keyClick(facts, Qt::Key_Escape);
    EXPECT_TRUE(!facts || !facts->isVisible());
}

} // namespace
} // namespace brightsweep
