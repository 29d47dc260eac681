#include "loginitems/ui/LoginItemView.h"
#include "core/UKLoginItemRegistry.h"
#include "loginitems/LoginItemController.h"
#include "loginitems/ui/LoginItemsPanel.h"
#include "support/FakeLoginItems.h"
#include "support/WaitUntil.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

constexpr int longAgo = 0;
constexpr int justNow = 60'000; // milliseconds within which two clicks are one gesture

class LoginItemTable : public testing::Test {
protected:
    LoginItemTable() {
        become({"a", "b", "c", "d"});
        page = std::make_unique<LoginItemController>();
        view = std::make_unique<LoginItemView>(*page);
        view->resize(900, 400);
        view->show();
        settle();
    }
    ~LoginItemTable() override { QApplication::setDoubleClickInterval(usual); }

    void become(const Names &names) {
        std::vector<LoginItemEntry> entries;
        for (const std::string &name : names)
            entries.push_back({.file = name, .path = "/bin/" + name, .name = name});
        items.become(entries);
    }
    void settle() {
        waitUntil([this] { return !page->isWaiting(); });
    }
    QPoint place(int row, int column) {
        return view->visualRect(page->model().index(row, column)).center();
    }
    void click(int row, int column, int interval) {
        QApplication::setDoubleClickInterval(interval);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place(row, column));
        settle();
    }

    const int usual = QApplication::doubleClickInterval();
    FakeLoginItems &items = FakeLoginItems::install();
    std::unique_ptr<LoginItemController> page;
    std::unique_ptr<LoginItemView> view;
};

TEST_F(LoginItemTable, NeverRemovesARowThatHasMovedBelowThePointer) {
    QApplication::setDoubleClickInterval(longAgo);
    const QPoint second = place(1, LoginItemModel::deleteItem);
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, second);
    become({"b", "c", "d"});
    waitUntil([&] { return page->allLoginItemsInfo().size() == 3; });
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, second);
    settle();
    EXPECT_THAT(items.calls(), IsEmpty());
    click(1, LoginItemModel::deleteItem, justNow);
    EXPECT_THAT(items.calls(), IsEmpty()) << "the rows have only just moved";
    click(1, LoginItemModel::deleteItem, longAgo);
    EXPECT_THAT(items.calls(), ElementsAre("remove c"));
    click(1, LoginItemModel::deleteItem, justNow);
    EXPECT_THAT(items.calls(), ElementsAre("remove c")) << "the second click of two";
}

TEST_F(LoginItemTable, TheSelectedRowIsALittleHigherAndStaysBelowThePointer) {
    const auto place = [&](int row) { return view->visualRect(page->model().index(row, 0)); };
    view->setCurrentIndex(page->model().index(0, 0));
    const QPoint at = place(1).topLeft();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(view->indexAt(at).row(), 1);
    EXPECT_EQ(place(1).height(), theme::height(36));
    EXPECT_EQ(place(0).height(), theme::height(34));
}

TEST_F(LoginItemTable, AFailureIsGoneWhenThePageIsLeft) {
    LoginItemsPanel panel(*page);
    panel.show();
    items.fail("remove", std::errc::permission_denied);
    page->delLoginItem(0);
    settle();
    auto *const words = panel.findChild<QLabel *>(QStringLiteral("login.failed"));
    EXPECT_TRUE(words->isVisible());
    panel.hide();
    panel.show();
    EXPECT_FALSE(words->isVisible());
}

// Some displays tell a held key as one that is let go and pressed again at the same time.
TEST_F(LoginItemTable, AHeldDeleteTakesOneRow) {
    view->setCurrentIndex(page->model().index(1, 0));
    QElapsedTimer time;
    QTest::keyPress(view.get(), Qt::Key_Delete);
    settle();
    for (int repeat = 0; repeat < 5; ++repeat) {
        QTest::keyRelease(view.get(), Qt::Key_Delete);
        QTest::keyPress(view.get(), Qt::Key_Delete);
        settle();
    }
    EXPECT_THAT(items.calls(), testing::SizeIs(1));
    QTest::keyRelease(view.get(), Qt::Key_Delete);
    time.start();
    waitUntil([&] { return time.elapsed() > 100; });
    QTest::keyPress(view.get(), Qt::Key_Delete);
    settle();
    EXPECT_THAT(items.calls(), testing::SizeIs(2));
}

TEST_F(LoginItemTable, ADoubleClickIsOneClickAndTwoPlacesAreTwo) {
    QApplication::setDoubleClickInterval(justNow);
    const QPoint box = place(0, LoginItemModel::checkBox);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, box);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, box);
    settle();
    EXPECT_THAT(items.calls(), ElementsAre("hide a"));
    click(2, LoginItemModel::checkBox, justNow);
    EXPECT_THAT(items.calls(), ElementsAre("hide a", "hide c"));
}

} // namespace
} // namespace brightsweep::test
