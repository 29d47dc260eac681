#include "CleanPage.h"

#include "cleaning/CategoryListModel.h"
#include "core/CheckImage.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/FileHolders.h"
#include "platform/Platform.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

using test::CleanPage;
using Tester = QAbstractItemModelTester;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

// Only the caches, with files of the given sizes.
class Outline {
public:
    explicit Outline(const std::vector<std::pair<std::string, std::uint64_t>> &files) {
        CleanPage::store("010000");
        const test::TestTree home(test::TestEnvironment::current().home());
        for (const auto &[name, size] : files)
            test::TestTree(home).sparseFile(".cache/" + name, size);
        QObject::connect(&page, &NewMainViewController::flyToTrash, &page,
                         [this](const QVariant &, const QModelIndex &) { ++flights; });
        scan();
    }
    void scan() {
        page.clickScanBtn();
        test::waitUntil([&] { return page.state() == NewMainViewController::State::Results; });
    }
    void clean() {
        page.cleanButtonActionInfo();
        test::waitUntil([&] { return page.state() == NewMainViewController::State::Results; });
    }
    CleanOutlineModel &model() { return page.outline().model(); }
    QModelIndex group() { return model().index(0, 0); }
    QModelIndex leaf(const std::string &name) {
        for (int row = 0; row < model().rowCount(group()); ++row) {
            const QModelIndex index = model().index(row, 0, group());
            const auto path = paths::fromVariant(index.data(CleanOutlineModel::PathRole));
            if (paths::lastComponent(path) == name)
                return index;
        }
        return {};
    }
    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (int row = 0; row < model().rowCount(group()); ++row)
            all.push_back(paths::lastComponent(paths::fromVariant(
                model().index(row, 0, group()).data(CleanOutlineModel::PathRole))));
        return all;
    }
    void untickAll() { page.outline().setAllSelectOrNoSelect(false); }
    bool click(const QModelIndex &index) {
        return model().setData(index, Qt::Checked, Qt::CheckStateRole);
    }
    std::string shown(const QModelIndex &index, int column) {
        return index.siblingAtColumn(column).data().toString().toStdString();
    }

    const char *checkImageOf(const QModelIndex &index) {
        return checkImage(index.data(Qt::CheckStateRole).value<Qt::CheckState>());
    }

    NewMainViewController page;
    int flights = 0;
};

TEST(CleanOutline, TicksFollowTheRulesOfLeavesAndGroups) {
    Outline at({{"a", 1'000}, {"b", 2'000}, {"c", 3'000}});
    Tester tester(&at.model(), Tester::FailureReportingMode::Fatal);
    EXPECT_EQ(at.shown(at.group(), CleanOutlineModel::allSelectNum), "3/3");
    EXPECT_STREQ(at.checkImageOf(at.group()), "option_yes.png");

    at.click(at.leaf("a"));
    EXPECT_EQ(at.shown(at.group(), CleanOutlineModel::allSelectNum), "2/3");
    EXPECT_STREQ(at.checkImageOf(at.group()), "option_a.png");
    EXPECT_EQ(at.page.controls().allSelect, TickState::Part);
    EXPECT_EQ(at.page.selectCount2Clean(), 2u);
    EXPECT_EQ(at.page.allSelectTotalSize(), 5'000u);
    EXPECT_EQ(CleanPage::stored(), "020000");
    EXPECT_EQ(at.flights, 0) << "nothing flies when a tick goes";

    at.click(at.group()); // a part goes to none
    EXPECT_EQ(at.page.selectCount2Clean(), 0u);
    EXPECT_EQ(CleanPage::stored(), "000000");
    EXPECT_FALSE(at.page.controls().cleanButton.enabled);
    at.click(at.leaf("b"));
    EXPECT_EQ(at.flights, 1);
    at.page.outline().setTicked({at.leaf("b")}, true); // nothing to change
    EXPECT_EQ(at.flights, 1);
    EXPECT_EQ(at.page.list(1).rowCount(), 3);
    at.click(at.leaf("a"));
    at.click(at.leaf("c"));
    EXPECT_EQ(at.page.controls().allSelect, TickState::All);
    EXPECT_TRUE(at.page.list(1).selectButton());
    EXPECT_EQ(CleanPage::stored(), "010000");
    at.page.outline().setAllSelectOrNoSelect(false);
    EXPECT_EQ(at.page.controls().allSelect, TickState::None);
    EXPECT_EQ(at.page.controls().trashFileNumTF, QStringLiteral("0"));
}

TEST(CleanOutline, PlacesSurviveRebuildSortAndFilter) {
    Outline at({{"alpha", 3'000}, {"beta", 1'000}, {"gamma", 2'000}, {"delta", 4'000}});
    Tester tester(&at.model(), Tester::FailureReportingMode::Fatal);
    const QPersistentModelIndex group = at.group();
    const QPersistentModelIndex beta = at.leaf("beta").siblingAtColumn(2);
    const QPersistentModelIndex gamma = at.leaf("gamma");
    const auto nameOf = [](const QModelIndex &index) {
        return paths::lastComponent(paths::fromVariant(index.data(CleanOutlineModel::PathRole)));
    };
    at.model().sort(CleanOutlineModel::FileSize, Qt::DescendingOrder);
    EXPECT_THAT(at.names(), ElementsAre("delta", "alpha", "gamma", "beta"));
    EXPECT_EQ(nameOf(beta), "beta");
    at.model().sort(CleanOutlineModel::NameColumn);
    EXPECT_THAT(at.names(), ElementsAre("alpha", "beta", "delta", "gamma"));
    at.model().setFilter(QStringLiteral("ETA"));
    EXPECT_THAT(at.names(), ElementsAre("beta"));
    at.model().setFilter(QString());
    EXPECT_EQ(nameOf(beta), "beta");
    EXPECT_EQ(beta.column(), 2);
    // A scan makes every row anew.
    at.scan();
    EXPECT_EQ(nameOf(beta), "beta");
    EXPECT_THAT(at.names(), ElementsAre("alpha", "beta", "delta", "gamma"));
    EXPECT_TRUE(group.isValid());
    at.untickAll();
    at.click(at.leaf("beta"));
    at.clean();
    EXPECT_FALSE(beta.isValid());
    EXPECT_TRUE(group.isValid());
    EXPECT_THAT(at.names(), ElementsAre("alpha", "delta", "gamma"));
}

// Nothing may go that the user did not see when he ticked.
TEST(CleanOutline, UnderAFilterGroupAndHeaderReachOnlyWhatIsShown) {
    Outline at({{"log-1", 1}, {"log-2", 1}, {"precious", 1}});
    at.untickAll();
    at.model().setFilter(QStringLiteral("log"));
    at.page.outline().setAllSelectOrNoSelect(true);
    EXPECT_EQ(at.page.selectCount2Clean(), 2u);
    at.click(at.group());
    EXPECT_EQ(at.page.selectCount2Clean(), 0u);
    at.click(at.group());
    EXPECT_EQ(at.page.selectCount2Clean(), 2u);
    at.clean();
    at.model().setFilter(QString());
    EXPECT_THAT(at.names(), ElementsAre("precious"));
}

TEST(CleanOutline, SumsAreThoseOfTheWords) {
    Outline at({{"a", 1'004'999}, {"b", 1'004'999}});
    EXPECT_EQ(at.page.allSelectTotalSize(), 2'000'000u);
    EXPECT_EQ(at.shown(at.group(), CleanOutlineModel::FileSize), "2.00 MB");
    EXPECT_THAT(at.page.controls().stateTextField.text.toStdString(),
                testing::EndsWith("2.00 MB will free up."));
}

TEST(CleanOutline, HostileNamesAreShownAsPlainText) {
    Outline at({{"<b>bold&", 1}, {"bad\xff", 1}, {"two\nlines", 1}});
    const QString tip = at.leaf("<b>bold&").data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains(QStringLiteral("&lt;b&gt;bold&amp;"))) << tip.toStdString();
    EXPECT_TRUE(at.leaf("bad\xff")
                    .siblingAtColumn(CleanOutlineModel::NameColumn)
                    .data()
                    .toString()
                    .endsWith(QStringLiteral("bad\uFFFD")));
    EXPECT_EQ(at.leaf("two\nlines").isValid(), true);
    EXPECT_FALSE(at.shown(at.leaf("bad\xff"), CleanOutlineModel::ModifyDate).empty());
    EXPECT_EQ(at.shown(at.group(), CleanOutlineModel::ModifyDate), "");
}

// A file of this name is what the programs of the fake hold.
class FakeHolders final : public FileHolders {
public:
    explicit FakeHolders(std::vector<HeldFile> held) : m_held(std::move(held)) {}
    std::vector<HeldFile> heldFiles() override { return m_held; }
    std::vector<FileIdentity> writtenFiles() override { return {}; }

private:
    std::vector<HeldFile> m_held;
};

TEST(CleanOutline, MarksWhatARunningProgramHolds) {
    const auto cache = test::TestEnvironment::current().home() / ".cache";
    test::TestTree(cache).file("browser/deep/page");
    Platform::current().holders = std::make_unique<FakeHolders>(std::vector<HeldFile>{
        {(cache / "browser/deep/page").native(), "netscape"},
        {(cache / "browser-old").native(), "other"},
        {cache.native(), "shell"},
        {"/", "init"},
    });
    Outline at({{"free", 1}});
    const auto holder = [&](const char *name) {
        return at.leaf(name).data(CleanOutlineModel::HolderRole).toString().toStdString();
    };
    test::waitUntil([&] { return !holder("browser").empty(); });
    EXPECT_EQ(holder("browser"), "netscape");
    EXPECT_EQ(holder("free"), "");
    CategoryListModel &list = at.page.list(1);
    const auto row = list.rowOf((cache / "browser").native());
    ASSERT_TRUE(row);
    EXPECT_EQ(list.index(*row, 0).data(CategoryListModel::HolderRole).toString(),
              QStringLiteral("netscape"));
    EXPECT_TRUE(at.leaf("browser")
                    .data(Qt::ToolTipRole)
                    .toString()
                    .contains(QStringLiteral("In use by netscape")));
}

TEST(CategoryList, ATickStoresTheStateOfItsCategoryAndFliesOnce) {
    CleanPage::store("000011");
    CleanPage at;
    at.scan();
    at.page.shouldSelectRowWithArray(4); // the user's logs
    CategoryListModel &list = at.page.list(3);
    Tester tester(&list, Tester::FailureReportingMode::Fatal);
    std::vector<QPersistentModelIndex> flights;
    QObject::connect(&at.page, &NewMainViewController::flyToTrash, &at.page,
                     [&](const QVariant &, const QModelIndex &from) { flights.push_back(from); });
    const QModelIndex tick = list.index(2, CategoryListModel::checkBox);
    ASSERT_TRUE(list.setData(tick, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(CleanPage::stored(), "000211");
    EXPECT_THAT(flights, ElementsAre(tick));
    EXPECT_FALSE(list.selectButton());
    EXPECT_THAT(at.line(), testing::StartsWith("1 of 4 selected"));
    list.setData(tick, Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_EQ(flights.size(), 1u);
    list.setTicked({list.index(0, 0), list.index(1, 0)}, true);
    EXPECT_EQ(flights.size(), 2u);
    list.cleanShowSelectNumInBottom(true);
    EXPECT_EQ(flights.size(), 3u);
    EXPECT_TRUE(list.selectButton());
    EXPECT_EQ(CleanPage::stored(), "000111");
}

TEST(CategoryList, AnEmptyListIsNothing) {
    ScanViewController controller;
    CategoryListModel list(controller, 3);
    CleanPage::store("111111");
    list.getSelectAllOrNull();
    list.setAllCheckBoxSelect();
    EXPECT_FALSE(list.selectButton());
    EXPECT_EQ(CleanPage::stored(), "111111");
}

TEST(CategoryList, SortsByTheSizesAsShownAndKeepsPlaces) {
    Outline at({{"a", 5}, {"b", 3'000}, {"c", 4}, {"d", 9'000'000}});
    CategoryListModel &list = at.page.list(1);
    Tester tester(&list, Tester::FailureReportingMode::Fatal);
    list.sort(CategoryListModel::Name, Qt::AscendingOrder);
    const QPersistentModelIndex big = list.index(3, CategoryListModel::Name);
    list.sort(CategoryListModel::Size, Qt::DescendingOrder);
    std::vector<std::string> names;
    for (int row = 0; row < list.rowCount(); ++row)
        names.push_back(list.index(row, CategoryListModel::Name).data().toString().toStdString());
    // 4 and 5 bytes show the same and keep their order.
    EXPECT_THAT(names, ElementsAre("d", "b", "a", "c"));
    EXPECT_EQ(big.row(), 0);
}

} // namespace
} // namespace brightsweep
