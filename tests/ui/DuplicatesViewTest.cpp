// The results panel of the duplicates page over a real search.

#include "duplicates/ui/DuplicatesView.h"
#include "core/SettingKeys.h"
#include "duplicates/RecentFolders.h"
#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/PreviewLoader.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"
#include "ui/AlertSheet.h"
#include "ui/FilterField.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

using test::waitUntil;
using Model = DuplicateOutlineModel;
using State = SameFileDeleteViewController::State;

class DuplicatesPageView : public testing::Test {
protected:
    void SetUp() override {
        UserDefaults::standardUserDefaults().setObject(DSDuplicationLimit, 0);
        tree.file("a/small.txt", std::string(1'000, 's'));
        tree.file("b/small.txt", std::string(1'000, 's'));
        for (const char *name : {"a/large.mp3", "b/large\nname.mp3", "c/\xff.mp3"})
            tree.file(name, std::string(50'000, 'l'));
        page.viewDragAction(tree.top());
        waitUntil([&] { return page.state() == State::Results; });
        panel.show();
        panel.activateWindow();
        QApplication::processEvents();
        outline = panel.findChild<DuplicatesView *>();
        model = static_cast<Model *>(outline->model());
        outline->setFocus();
    }
    QStringList names() const {
        QStringList names;
        for (int row = 0; row < model->rowCount(); ++row)
            names += model->index(row, Model::FileSize).data().toString();
        return names;
    }
    void answer(const char *label) {
        auto *const sheet = panel.findChild<AlertSheet *>();
        ASSERT_TRUE(sheet);
        for (auto *const button : sheet->findChildren<QPushButton *>()) {
            if (button->text() == QLatin1String(label))
                return button->click();
        }
        FAIL() << label;
    }

    test::TestTree tree;
    SameFileDeleteViewController page;
    DuplicatesResultsPanel panel{page};
    DuplicatesView *outline = nullptr;
    Model *model = nullptr;
};

TEST_F(DuplicatesPageView, RowsFollowOrderListAndFilter) {
    const QAbstractItemModelTester tester(model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_THAT(recentFolders(), testing::ElementsAre(tree.top()));
    EXPECT_EQ(model->wastedBytes() / 4'096, 27u) << "in whole blocks";
    // What wastes most comes first, until another order is asked for; what is open stays open.
    EXPECT_EQ(names(), QStringList({QStringLiteral("150.00 KB"), QStringLiteral("2.00 KB")}));
    EXPECT_TRUE(outline->isExpanded(model->index(0, 0)));
    model->didClickTableColumn(Model::FileSize);
    EXPECT_EQ(names(), QStringList({QStringLiteral("2.00 KB"), QStringLiteral("150.00 KB")}));
    EXPECT_TRUE(outline->isExpanded(model->index(1, 0)));
    page.setFilter(QStringLiteral("/b/"));
    EXPECT_EQ(model->rowCount(model->index(1, 0)), 1);
    page.setFilter({});
    model->refViewBgColor(3);
    EXPECT_EQ(names(), QStringList({QStringLiteral("150.00 KB")}));
}

TEST_F(DuplicatesPageView, TheKeyboardTicksAsksAndKeepsItsPlace) {
    QTest::keyClick(outline, Qt::Key_Space);
    EXPECT_EQ(page.selection().count(), 2u);
    // The last file of a group is asked about, and stays unless the answer is OK.
    page.setSelectState(model->nodeOf(model->index(2, 0, model->index(0, 0))));
    answer("Cancel");
    EXPECT_EQ(page.selection().count(), 2u);
    const auto before = tree.snapshot();
    QTest::keyClick(outline, Qt::Key_Delete);
    QTest::keyClick(panel.findChild<AlertSheet *>(), Qt::Key_Return);
    EXPECT_EQ(tree.snapshot(), before) << "Enter is no yes to a removal";
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTest::keyClick(outline, Qt::Key_Delete);
    answer("Remove");
    waitUntil([&] { return page.state() == State::Results; });
    EXPECT_EQ(tree.snapshot().size(), before.size() - 2);
    EXPECT_EQ(names(), QStringList({QStringLiteral("2.00 KB")}));
    EXPECT_EQ(outline->currentIndex().row(), 0);
    EXPECT_EQ(panel.focusWidget(), outline) << "the keyboard goes on there";
}

TEST_F(DuplicatesPageView, ANarrowHeadingKeepsTheSumAndTheButtons) {
    panel.setMinimumSize(1, 1);
    panel.resize(640, 300);
    QApplication::processEvents();
    const auto *const sum = panel.findChild<QLabel *>(QStringLiteral("duplicates.wasted"));
    EXPECT_GE(sum->width(), sum->sizeHint().width());
    const auto *const details = panel.findChild<QWidget *>(QStringLiteral("duplicates.details"));
    EXPECT_LE(details->mapTo(&panel, details->rect().bottomRight()).x(), panel.width());
    EXPECT_GT(details->x(), panel.findChild<FilterField *>()->geometry().right());
}

TEST_F(DuplicatesPageView, TheKeyboardNeverLeavesForWhatLiesAround) {
    QWidget window;
    QHBoxLayout parts(&window);
    QPushButton toolbar(QStringLiteral("toolbar"));
    DuplicatesResultsPanel within(page);
    parts.addWidget(&toolbar);
    parts.addWidget(&within);
    window.show();
    within.findChild<QPushButton *>(QStringLiteral("folderButton"))->setFocus();
    page.viewDragAction(tree.top());
    EXPECT_NE(window.focusWidget(), &toolbar);
    waitUntil([&] { return page.state() == State::Results; });
    EXPECT_EQ(window.focusWidget(), within.findChild<DuplicatesView *>());
}

TEST_F(DuplicatesPageView, ThePaneLooksAtTheCurrentFile) {
    QImage drawn(400, 300, QImage::Format_RGB32);
    drawn.fill(Qt::red);
    for (const char *name : {"d/<b>picture.png", "e/picture.png"})
        ASSERT_TRUE(drawn.save(QFile::decodeName(tree.file(name, "").c_str())));
    QSignalSpy loaded(panel.findChild<PreviewLoader *>(), &PreviewLoader::loaded);
    panel.resize(1'200, 700);
    page.viewDragAction(tree.top());
    waitUntil([&] { return page.state() == State::Results; });
    page.setFilter(QStringLiteral("<b>"));
    outline->setCurrentIndex(model->index(0, 0, model->index(0, 0)));
    waitUntil([&] { return !loaded.empty() && !loaded.last()[2].value<QImage>().isNull(); });
    const auto *const paths = panel.findChild<QLabel *>(QStringLiteral("duplicates.pane.paths"));
    EXPECT_TRUE(paths->text().contains(QStringLiteral("<b>d/&#8203;&lt;b&gt;picture.png</b>")))
        << paths->text().toStdString();
}

} // namespace
} // namespace brightsweep
