// What the clean page looks like and asks.
#include "CleanPageView.h"
#include "cleaning/CategoryListModel.h"
#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/FileIcons.h"
#include "cleaning/ui/LeftListView.h"
#include "cleaning/ui/ResultRowDelegate.h"
#include "removal/FakeRights.h"
#include "support/TextRecorder.h"
#include "ui/FocusFrame.h"
#include "ui/IconTheme.h"
#include "ui/Theme.h"

#include <QAccessible>
#include <QLabel>
#include <QStandardItemModel>
#include <QToolButton>

#include <cmath>

namespace brightsweep {
namespace {

using test::CleanPageView;
using test::FakeRights;
using State = NewMainViewController::State;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

struct SheetAnswer {
    const char *name; ///< null: a key
    Qt::Key key;
    std::set<unsigned> cleaned;
};

class DownloadsSheet : public CleanPageView, public testing::WithParamInterface<SheetAnswer> {};

TEST_P(DownloadsSheet, EachAnswerDoesWhatItSays) {
    at->tick({3, 5});
    before = at->machine.state();
    find<QPushButton>("cleanButton")->click();
    ASSERT_TRUE(sheet());
    const auto button = [&](const char *name) {
        return sheet()->findChild<QPushButton *>(QStringLiteral("alert.") + QLatin1String(name));
    };
    button("Open Downloads")->click();
    EXPECT_THAT(workspace->opened, ElementsAre(at->machine.home.path("Downloads")));
    ASSERT_TRUE(sheet());
    EXPECT_TRUE(button("Cancel")->isDefault());
    EXPECT_LT(button("Cancel")->x(), button("No")->x()) << "what removes stands at the right";
    const auto tip = [&](const char *name) { return button(name)->toolTip().toStdString(); };
    EXPECT_THAT(tip("Yes"), HasSubstr("all 6 ticked items"));
    EXPECT_THAT(tip("No"), HasSubstr("the other 4 items"));
    // Refused, as is whatever else the sheet stands before.
    at->page.clickScanBtn();
    at->page.shouldSelectRowWithArray(3);
    EXPECT_EQ(at->page.selectRowNum(), 0);
    EXPECT_EQ(at->page.state(), State::Warning);
    if (GetParam().name)
        answer(GetParam().name);
    else
        QTest::keyClick(button("Yes"), GetParam().key); // no yes by the keyboard alone
    test::waitUntil([&] { return at->page.state() == State::Results; });
    EXPECT_EQ(test::changes(before, at->machine.state()),
              at->machine.changesOf(GetParam().cleaned));
    EXPECT_EQ(ticked(), GetParam().name ? 0u : 6u);
}

INSTANTIATE_TEST_SUITE_P(Answers, DownloadsSheet,
                         testing::Values(SheetAnswer{"Yes", {}, {3, 5}}, SheetAnswer{"No", {}, {3}},
                                         SheetAnswer{nullptr, Qt::Key_Return, {}},
                                         SheetAnswer{nullptr, Qt::Key_Escape, {}}),
                         [](const auto &answer) {
                             return answer.param.name                    ? answer.param.name
                                    : answer.param.key == Qt::Key_Return ? "Enter"
                                                                         : "Closed";
                         });

TEST_F(CleanPageView, ResultsComeLargestFirstWithTheirShares) {
    test::TestTree(test::TestEnvironment::current().home()).sparseFile(".cache/large", 40'000);
    at->scan();
    CleanResultsPanel fresh(at->page);
    EXPECT_EQ(nameOf(leaf(0)), "large");
    EXPECT_NEAR(leaf(0).data(CleanOutlineModel::ShareRole).toDouble(), 0.4, 0.05);
    const QVariant spoken =
        panel->findChild<LeftListView *>()->model()->index(2, 0).data(Qt::AccessibleTextRole);
    EXPECT_THAT(spoken.toString().toStdString(), HasSubstr("User Caches, 1"));
    at->page.outline().toggle(leaf(1));
    auto *const left = QAccessible::queryAccessibleInterface(find<QWidget>("leftList"));
    for (const auto &[row, isTicked, isPartly] :
         {std::tuple(2, false, true), {3, false, false}, {0, false, false}}) {
        const QAccessible::State state = left->child(row)->state();
        EXPECT_EQ(state.checkable, row != 0);
        EXPECT_EQ(state.checked, isTicked) << row;
        EXPECT_EQ(left->child(row)->text(QAccessible::Name).contains(QStringLiteral("partly")),
                  isPartly)
            << row;
    }
    at->page.shouldSelectRowWithArray(2);
    QAbstractItemModel &list = at->page.list(1);
    EXPECT_EQ(nameOf(list.index(0, 0)), "large");
    EXPECT_NEAR(list.index(0, 0).data(CategoryListModel::ShareRole).toDouble(), 0.4, 0.05);
    QHeaderView &header = fresh.findChild<OutlineView *>()->checkHeader();
    for (const int column : {CleanOutlineModel::NameColumn, CleanOutlineModel::FileSize}) {
        const QPoint title(header.sectionViewportPosition(column) + 5, 5);
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, title);
    }
    EXPECT_EQ(header.sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(CleanPageView, AFilterOpensWhatMatchesAndEscClearsIt) {
    outline->collapse(group());
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(panel->focusWidget(), find<QLineEdit>("clean.filter"));
    filter("item 15");
    EXPECT_TRUE(outline->isExpanded(group()));
    EXPECT_TRUE(outline->isRowHidden(model().rowCount() - 1, {}));
    filter("no such name");
    const auto &told = *outline->parentWidget()
                            ->findChild<QWidget *>(QStringLiteral("empty"))
                            ->findChild<QLabel *>();
    test::waitUntil([&] { return told.isVisible(); });
    EXPECT_EQ(told.text(), QStringLiteral("No name matches the filter."));
    EXPECT_TRUE(
        outline->rect().contains(told.mapTo(outline->parentWidget(), QPoint()) - outline->pos()));
    press(Qt::Key_Escape);
    test::waitUntil([&] { return !told.isVisible(); });
    test::waitUntil([&] { return at->page.outline().model().filter().isEmpty(); });
    EXPECT_FALSE(outline->isExpanded(group())) << "as it was";
    EXPECT_FALSE(outline->isRowHidden(model().rowCount() - 1, {}));
}

TEST_F(CleanPageView, AnEmptyCategorySaysSoAndLeadsBack) {
    at->tick({3});
    find<QPushButton>("cleanButton")->click();
    test::waitUntil([&] { return at->page.outcome() == CleanOutcome::Cleaned; });
    // What was freed stands once, larger than all else.
    const CleanStyledText line = at->page.controls().stateTextField;
    EXPECT_TRUE(line.isOutcome);
    EXPECT_FALSE(find<QLabel>("clean.sum")->isVisible());
    const std::string freed =
        line.text.mid(line.accented[0].start, line.accented[0].length).toStdString();
    EXPECT_THAT(find<QLabel>("clean.description")->accessibleName().toStdString(),
                Not(HasSubstr(freed)));
    at->page.shouldSelectRowWithArray(4);
    auto *const act = find<QPushButton>("clean.outcomeAct");
    ASSERT_TRUE(act->isVisible());
    act->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(at->page.selectRowNum(), 0);
    EXPECT_FALSE(act->isVisible());
}

TEST_F(CleanPageView, OnlyTheKeyboardFramesAList) {
    auto *const left = find<QWidget>("leftList");
    outline->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(FocusFrame::isShown(*outline));
    left->setFocus(Qt::MouseFocusReason);
    outline->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(FocusFrame::isShown(*outline));
}

// A theme for a light desktop, on the program's dark ground.
TEST(FileIcons, WhatCouldNotBeSeenIsDrawnByOurOwnImages) {
    const test::TestTree themes(test::TestEnvironment::current().home());
    const std::string file = "/16x16/mimetypes/text-x-generic.svg";
    for (const auto &[theme, color] : {std::pair("pale", "#202028"), {"pale-dark", "#e0e0e0"}}) {
        test::TestTree(themes).file(std::string(theme) + "/index.theme",
                                    "[Icon Theme]\nName=x\nDirectories=16x16/mimetypes\n\n"
                                    "[16x16/mimetypes]\nSize=16\nType=Scalable\n");
        test::TestTree(themes).file(
            theme + file, "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                          "<rect width='16' height='16' fill='" +
                              std::string(color) + "'/></svg>");
    }
    const QString usual = QIcon::themeName();
    const QStringList places = QIcon::themeSearchPaths();
    QIcon::setThemeSearchPaths({paths::display(themes.path(""))});
    QIcon::setThemeName(QStringLiteral("pale"));
    FileIcons icons;
    const auto middle = [&] {
        return icons.icon("/x/notes.txt", false).pixmap(24, 24).toImage().pixelColor(2, 2);
    };
    EXPECT_NE(middle(), QColor(0x20, 0x20, 0x28)) << "our own";
    useDarkIconTheme();
    EXPECT_EQ(middle(), QColor(0xe0, 0xe0, 0xe0)) << "the dark sister";
    QIcon::setThemeSearchPaths(places);
    QIcon::setThemeName(usual);
}

double luminance(const QColor &color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF()) + 0.05;
}

// A row of a list of its own, with the reason as its fourth role.
TEST(ResultRow, AFailedOneKeepsItsNameAndSaysWhyReadably) {
    enum { Path = Qt::UserRole, Directory, Failure, Reason };
    ResultRowForm form;
    form.pathRole = Path;
    form.directoryRole = Directory;
    form.failureRole = Failure;
    form.reasonRole = Reason;
    QStandardItemModel model(1, 2);
    const QModelIndex row = model.index(0, form.nameColumn);
    model.setData(row, paths::toVariant("/x/" + std::string(200, 'n')), Path);
    model.setData(row, QString(300, u'f'), Failure);
    QTreeView view;
    view.setItemDelegate(new ResultRowDelegate(form, &view));
    view.setModel(&model);
    view.resize(420, 120);
    view.show();
    for (const bool isSelected : {false, true}) {
        for (const QString &reason : {QStringLiteral("FAILED_RIGHTS"), QString(300, u'r')}) {
            model.setData(row, reason, Reason);
            view.selectionModel()->select(row, isSelected ? QItemSelectionModel::Select
                                                          : QItemSelectionModel::Clear);
            const test::TextRecorder drawn(view);
            EXPECT_THAT(drawn.faults(), IsEmpty());
            ASSERT_GT(drawn.drawn().size(), 1u);
            const test::TextRecorder::Drawn &name = drawn.drawn()[0];
            const test::TextRecorder::Drawn &why = drawn.drawn()[1];
            EXPECT_EQ(why.text == QStringLiteral("needs admin"), reason.size() < 300);
            // A letter more would not fit.
            const double room = view.visualRect(row).right() - 2 * theme::grid - name.place.left();
            EXPECT_GT(name.place.width() + theme::textWidth({QStringLiteral("nn")}, 14, true),
                      0.6 * room);
            const auto grounds = isSelected ? std::vector{theme::selection()}
                                            : std::vector{theme::window(), theme::hover()};
            for (const QColor &ground : grounds)
                EXPECT_GT(luminance(why.color) / luminance(ground), 4.0);
        }
    }
}

TEST_F(CleanPageView, ThePadlockSaysThatNobodyCanBeAsked) {
    FakeRights::install().result = {RightsOutcome::NoAgent, 0, {}};
    auto *const lock = find<QToolButton>("lockButton");
    EXPECT_THAT(lock->toolTip().toStdString(), Not(HasSubstr("agent")));
    lock->click();
    test::waitUntil([&] { return lock->isEnabled(); });
    EXPECT_FALSE(lock->isChecked());
    EXPECT_THAT(lock->toolTip().toStdString(), HasSubstr("Start a polkit agent"));
    Q_EMIT at->page.showAlertForPrivilegesToClean();
    ASSERT_TRUE(sheet());
    QString words;
    for (const QLabel *const label : sheet()->findChildren<QLabel *>())
        words += label->text();
    EXPECT_THAT(words.toStdString(), HasSubstr("Start a polkit agent"));
}

} // namespace
} // namespace brightsweep
