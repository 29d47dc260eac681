// Whatever the desktop's text size, no word is cut and none runs into another.
#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanPage.h"
#include "cleaning/ui/CleanProgressPanel.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/CleanStartPanel.h"
#include "cleaning/ui/ResultView.h"
#include "core/Texts.h"
#include "support/TestEnvironment.h"
#include "support/TextRecorder.h"
#include "ui/AlertSheet.h"
#include "ui/ElidedText.h"
#include "ui/Theme.h"
#include "volumes/BubbleController.h"
#include "volumes/StatusMenu.h"
#include "volumes/ui/BubbleWindow.h"
#include "volumes/ui/MAAttachedWindow.h"
#include "volumes/ui/StatusPopup.h"

#include <QApplication>
#include <QFontMetrics>

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

using testing::IsEmpty;

class LargeText : public testing::TestWithParam<std::tuple<double, QLocale>> {
protected:
    void SetUp() override { setReader(std::get<QLocale>(GetParam())); }
    // The widgets were made with the usual text: the change reaches them while they are shown.
    void enlarge() {
        theme::apply(*qApp, {false, false, std::get<double>(GetParam())});
        QApplication::processEvents();
    }
    void TearDown() override {
        setReader(QLocale::c());
        theme::apply(*qApp, {});
    }
    static void expectWhole(QWidget &widget, const QStringList &figures = {}) {
        widget.resize(widget.sizeHint());
        QApplication::processEvents();
        const test::TextRecorder drawn(widget);
        EXPECT_THAT(drawn.faults(), IsEmpty()) << widget.metaObject()->className();
        for (const QString &figure : figures)
            EXPECT_TRUE(drawn.shows(readersSize(figure))) << figure.toStdString();
    }
};

TEST_P(LargeText, StandsWholeOnEveryPanelOfTheCleanPage) {
    const test::TestTree home(test::TestEnvironment::current().home());
    test::CleanPage at;
    test::TestTree(home).sparseFile(".cache/big", 888'880'000'000);
    test::TestTree(home).sparseFile(".cache/" + std::string(250, 'w'), 888'880'000);
    CleanStartPanel start(at.page);
    CleanProgressPanel progress(at.page);
    CleanResultsPanel results(at.page);
    for (QWidget *const panel : std::initializer_list<QWidget *>{&start, &progress, &results})
        panel->show();
    enlarge();
    at.scan();
    expectWhole(start);
    results.findChild<OutlineView *>()->expandAll();
    expectWhole(progress, {QStringLiteral("889.77 GB")});
    expectWhole(results, {QStringLiteral("889.77 GB"), QStringLiteral("888.88 MB")});
    at.page.shouldSelectRowWithArray(2);
    expectWhole(results, {QStringLiteral("888.88 GB"), QStringLiteral("888.88 MB")});
}

TEST_P(LargeText, StandsWholeInThePopupAndOnSheets) {
    StatusMenu menu;
    menu.addHeader("LOCAL_STORAGE");
    MenuItem row;
    row.volumeSize = QStringLiteral("A volume with a name that is longer than others");
    row.u64FreeSpace = QStringLiteral("888.88 MB");
    row.u64TotalSpace = QStringLiteral("888.88 GB");
    row.bCanEject = true;
    menu.addRow(row);
    menu.addAction(MenuAction::LaunchAtLogin, QStringLiteral("Launch at login"), {}, true);
    menu.addAction(MenuAction::Quit, QStringLiteral("Quit Brightsweep"), QStringLiteral("q"), true);
    menu.finish();
    StatusPopup popup(menu);
    popup.toggle({});
    enlarge();
    const test::TextRecorder drawn(popup);
    EXPECT_THAT(drawn.faults(), IsEmpty());
    EXPECT_TRUE(drawn.shows(
        localizedText("FREE_OF").arg(QString(), readersSize(row.u64TotalSpace)).trimmed()));
    const QString freed = QStringLiteral("Freigegebener Platz: 888.88 GB");
    EXPECT_TRUE(
        test::TextRecorder(*showBubbleWindow({QStringLiteral("14"), freed}, 0)).shows(freed));
    AlertSheet *const sheet = AlertSheet::show(
        {QStringLiteral("warning.png"),
         QStringLiteral("Are you sure?"),
         QStringLiteral("A sentence that explains what will be lost, and how to get it back."),
         {{QStringLiteral("Remove"), true, {}}, {QStringLiteral("Cancel"), false, {}}},
         {}},
        nullptr);
    expectWhole(*sheet);
    delete sheet;
}

// Letters beside the ellipsis may be set apart or drawn together.
TEST(ElidedText, IsNeverWiderThanItsRoom) {
    const QString path = QStringLiteral("/tmp/fTefxiviiTVAjWfi5/quick/ffiT.fj/system");
    for (double size = 9; size < 20; size += 1) {
        const QFontMetrics metrics(theme::font(size));
        for (int room = metrics.horizontalAdvance(QChar(0x2026)); room < 300; ++room) {
            for (const auto mode : {Qt::ElideLeft, Qt::ElideMiddle, Qt::ElideRight}) {
                const QString cut = elidedText(metrics, path, mode, room);
                ASSERT_LE(metrics.horizontalAdvance(cut), room) << cut.toStdString();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, LargeText,
                         testing::Combine(testing::Values(1.0, 1.5, 2.0),
                                          testing::Values(QLocale::c(),
                                                          QLocale(QStringLiteral("de_DE")))));

} // namespace
} // namespace brightsweep
