#include "CleanPage.h"

#include "cleaning/CustomComInfoView.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/NewLeftCustomTableView.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

#include <thread>

namespace brightsweep {
namespace {

using test::CleanPage;
using testing::ElementsAre;

std::string text(const QAbstractItemModel &model, int row, int role) {
    return model.index(row, 0).data(role).toString().toStdString();
}

// The rows that "shouldSelectRow" was posted for.
class Selected : public QObject {
public:
    Selected() {
        NotificationCenter::defaultCenter().addObserver(
            this, QStringLiteral("shouldSelectRow"), [this](const Notification &notification) {
                rows.push_back(notification.userInfo.value(QStringLiteral("object"))
                                   .toList()
                                   .value(1)
                                   .toInt());
            });
    }
    ~Selected() override { NotificationCenter::defaultCenter().removeObserver(this); }
    std::vector<int> rows;
};

TEST(V3MainListView, AClickMakesAPartWhole) {
    CleanPage::store("012000");
    V3MainListView row({}, {}, {}, {}, 2, false);
    row.checkBoxAction();
    EXPECT_EQ(CleanPage::stored(), "011000");
    row.checkBoxAction();
    EXPECT_EQ(CleanPage::stored(), "010000");
    EXPECT_FALSE(row.isTicked());
}

TEST(V3MainListView, TakesTheNewestSizeOverOnTheMainThread) {
    V3MainListView row({}, {}, {}, {}, 1, false);
    std::vector<std::string> labels;
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, QStringLiteral("refNewTableViewSizeLabel"), [&](const Notification &) {
            row.initSizeLable();
            labels.push_back(row.sizeLabel().toStdString());
        });
    std::thread([&] {
        for (int i = 1; i <= 1000; ++i)
            row.observeFoundText(QStringLiteral("KVO_CONTEXT_USER_CACHES"), QString::number(i));
        row.observeFoundText(QStringLiteral("KVO_CONTEXT_NOBODY"), QStringLiteral("x"));
    }).join();
    test::waitUntil([&] { return !labels.empty(); });
    EXPECT_THAT(labels, ElementsAre("1000"));
}

TEST(CustomTableView, RefusesTheRowWithoutAPageAndKeepsTheOthers) {
    CustomTableView table;
    QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Fatal);
    Selected selected;
    EXPECT_FALSE(table.shouldSelectRow(7));
    EXPECT_TRUE(table.shouldSelectRow(4));
    EXPECT_THAT(selected.rows, ElementsAre(4));
    EXPECT_EQ(text(table, 4, CustomTableView::BackgroundImageRole), "list_hover.png");
    EXPECT_EQ(text(table, 3, CustomTableView::BackgroundImageRole), "");
    EXPECT_EQ(text(table, 2, CustomTableView::BackgroundImageRole), "list.png");
    EXPECT_EQ(getLeftCellTitle(6), QStringLiteral("User Downloads"));
    EXPECT_EQ(getLeftCellTitle(7), QStringLiteral("My Mac"));
}

TEST(CustomTableView, AddsItsSizesUpAndShowsTheShareThatWent) {
    CustomTableView table;
    EXPECT_EQ(table.getTotalSize(), QStringLiteral("0.00KB"));
    table.setIsCleanInfo(true);
    // Nothing selected is no number, and shows as nothing.
    EXPECT_EQ(table.getTotalSizeImage(), QStringLiteral("0_progress_bar.png"));
    table.observeFoundText(QStringLiteral("KVO_CONTEXT_SYS_CACHES"), QStringLiteral("3.00 MB"));
    table.observeFoundText(QStringLiteral("KVO_CONTEXT_USER_LOGS"), QStringLiteral("1.00 MB"));
    EXPECT_EQ(table.getTotalSize(), QStringLiteral("4.00 MB"));
    table.setIsCleanInfo(true);
    table.setSelectTotalSize(2'000'000);
    const struct {
        const char *left;
        const char *image;
    } steps[] = {
        {"3.00 MB", "0_progress_bar.png"},   {"2.50 MB", "25_progress_bar.png"},
        {"1.00 MB", "100_progress_bar.png"}, {"0.10 MB", "100_progress_bar.png"},
        {"9.00 MB", "0_progress_bar.png"},
    };
    for (const auto &step : steps) {
        table.observeFoundText(QStringLiteral("KVO_CONTEXT_SYS_CACHES"), QLatin1String(step.left));
        EXPECT_EQ(table.getTotalSizeImage(), QLatin1String(step.image)) << step.left;
    }
    table.setTotalSelectNum(CustomTableView::cleanIsFinished);
    EXPECT_EQ(table.getTotalSizeImage(), QStringLiteral("100_progress_bar.png"));
}

TEST(CustomTableView, IsTickedInEveryLanguageByTheSameNames) {
    for (const auto &[language, caches] :
         {std::pair{"de_DE", "Benutzer-Caches"}, std::pair{"zh_CN", "用户缓存"}}) {
        setReader(QLocale(QLatin1String(language)));
        CleanPage::store("000000");
        CustomTableView table;
        EXPECT_EQ(text(table, 2, Qt::DisplayRole), caches);
        for (int row = 1; row < table.rowCount(); ++row)
            table.checkBoxClicked(row);
        EXPECT_EQ(CleanPage::stored(), "111111") << language;
        EXPECT_EQ(getLeftCellTitle(2), QStringLiteral("User Caches"));
        table.observeFoundText(QStringLiteral("KVO_CONTEXT_USER_CACHES"),
                               QStringLiteral("1.50 MB"));
        EXPECT_EQ(table.getTotalSize(), QStringLiteral("1.50 MB")) << "to be read again";
    }
    setReader(QLocale::c());
}

TEST(CustomTableView, ACheckBoxTellsOfTheStateBeforeAndStoresTheOther) {
    CleanPage::store("020000");
    CustomTableView table;
    QVariant heard;
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, QStringLiteral("updateSelectNumber"), [&](const Notification &notification) {
            heard = notification.userInfo.value(QStringLiteral("object"));
        });
    EXPECT_EQ(text(table, 2, CustomTableView::CheckImageRole), "option_a.png");
    table.checkBoxClicked(2);
    EXPECT_EQ(CleanPage::stored(), "000000");
    EXPECT_EQ(text(table, 2, CustomTableView::CheckImageRole), "option_no.png");
    EXPECT_EQ(heard.toStringList().join(QString()), QStringLiteral("000000"));
    table.checkBoxClicked(2);
    EXPECT_EQ(CleanPage::stored(), "010000");
    table.checkBoxClicked(0);
    table.checkBoxClicked(7);
    EXPECT_EQ(CleanPage::stored(), "010000");
}

TEST(CustomComInfoView, TellsTheMachinesFactsInOrder) {
    const CustomComInfoView table;
    EXPECT_EQ(table.rows()[3].titleText, QStringLiteral("Memory:"));
    EXPECT_TRUE(table.rows()[3].valueText.endsWith(QStringLiteral(" GB")) ||
                table.rows()[3].valueText.endsWith(QStringLiteral(" MB")));
    EXPECT_EQ(table.rows()[4].valueText, QStringLiteral("Linux"));
    EXPECT_EQ(table.rows()[5].iconImage, QStringLiteral("os_rdease.png"));
    for (const ComputerInfoCell &row : table.rows())
        EXPECT_FALSE(row.valueText.contains(QChar(0))) << row.titleText.toStdString();
}

} // namespace
} // namespace brightsweep
