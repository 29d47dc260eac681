#include "CleanPage.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CustomTableView.h"
#include "core/ParseFileLog.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "removal/NvAuthorization.h"
#include "support/FaultPlatform.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>

namespace brightsweep {
namespace {

using State = NewMainViewController::State;
using test::CleanPage;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::int64_t recorded() {
    return ParseFileLog().getSize(nullptr);
}

TEST(CleanPage, AScanGoesThroughItsPanelsAndTicksWhatIsStored) {
    test::needRoot();
    CleanPage::store("102010");
    CleanPage at;
    EXPECT_TRUE(at.page.controls().stateTextHidden);
    EXPECT_EQ(at.page.view4FastClean(), 0);
    at.page.clickScanBtn();
    EXPECT_EQ(at.page.state(), State::Scanning);
    EXPECT_TRUE(at.page.row(0).isCheckBoxHidden());
    at.waitFor(State::Results);
    EXPECT_THAT(at.heard, ElementsAre("QC_FastClean", "DATA_FastClean"));
    EXPECT_EQ(at.page.view4FastClean(), 2);
    EXPECT_EQ(at.page.outcome(), CleanOutcome::Found);
    // A part comes back as all.
    EXPECT_EQ(CleanPage::stored(), "101010");
    const std::size_t ticked =
        at.machine.items[0].size() + at.machine.items[2].size() + at.machine.items[4].size();
    std::size_t all = 0;
    for (const auto &items : at.machine.items)
        all += items.size();
    EXPECT_EQ(at.page.selectCount2Clean(), ticked);
    EXPECT_FALSE(at.page.controls().stateTextHidden);
    EXPECT_THAT(at.line(), testing::StartsWith(std::to_string(ticked) + " of " +
                                               std::to_string(all) + " selected, "));
    EXPECT_TRUE(at.page.controls().cleanButton.enabled);
    EXPECT_FALSE(at.page.row(0).isCheckBoxHidden());
}

TEST(CleanPage, SettingsThatCannotBeReadTickNothing) {
    test::TestTree home(test::TestEnvironment::current().home());
    const auto file = home.file(".config/com.norvmac.DeskSweeperPro.conf", "damaged");
    CleanPage at;
    at.scan();
    EXPECT_THAT(at.page.notice().toStdString(), testing::StartsWith("The settings cannot be read"));
    EXPECT_EQ(at.page.selectCount2Clean(), 0u);
    // What the user ticks by hand is cleaned, but it takes the place of no settings.
    at.page.row(1).checkBoxAction();
    EXPECT_EQ(CleanPage::stored(), "010000");
    home.file(".config/com.norvmac.DeskSweeperPro.conf", "UserCaches=0\nUserTrash=1\n");
    at.scan();
    EXPECT_EQ(at.page.notice(), QString());
    EXPECT_EQ(CleanPage::stored(), "111110");
}

// Nothing is stored before there are rows: to look at the overview is no choice.
TEST(CleanPage, ARowChangeBeforeAScanStoresNothing) {
    CleanPage::store("120110");
    CleanPage at;
    UtilityFunction::callSelectNotificationForMainWindowLeft(0);
    NotificationCenter::defaultCenter().post(QStringLiteral("cleanShowSelectNumInBottom"));
    EXPECT_EQ(CleanPage::stored(), "120110");
}

TEST(CleanPage, AStopIsFinalAndThePageOffersARestart) {
    CleanPage::store("111111");
    CleanPage at;
    bool asked = false;
    QObject::connect(&at.page, &NewMainViewController::restartRequested, &at.page,
                     [&] { asked = true; });
    at.page.clickScanBtn();
    at.page.clickStopScanBtn();
    EXPECT_EQ(at.page.state(), State::Stopping);
    EXPECT_TRUE(at.page.controls().stopTextShown);
    at.waitFor(State::Results);
    EXPECT_EQ(at.page.outcome(), CleanOutcome::Stopped);
    at.page.clickBackBtn();
    at.scan();
    EXPECT_TRUE(at.page.outline().tree().groups().empty());
    EXPECT_EQ(at.page.outcome(), CleanOutcome::Stopped);
    ASSERT_TRUE(at.page.needsRestart());
    UtilityFunction::callSelectNotificationForMainWindowLeft(0);
    EXPECT_EQ(CleanPage::stored(), "111111") << "what was not reached is no choice";
    at.page.restart();
    EXPECT_TRUE(asked);
}

// The scan action that means stop marks the workers, and they run on.
TEST(CleanPage, TheScanActionDuringAScanEndsNothing) {
    test::needRoot();
    CleanPage at;
    at.page.clickScanBtn();
    NotificationCenter::defaultCenter().post(QStringLiteral("scanItemGetScanBtn"));
    EXPECT_FALSE(at.page.controls().scanButton.enabled);
    at.waitFor(State::Results);
    EXPECT_FALSE(at.page.needsRestart());
    EXPECT_EQ(at.page.outline().tree().groups().size(), 6u);
    EXPECT_TRUE(at.page.controls().scanButton.enabled);
}

TEST(CleanPage, AScanThatEndsBehindAnotherPageChangesNoPanel) {
    test::CleanableMachine machine;
    NewMainViewController::Surroundings elsewhere;
    elsewhere.selectedItem = [] { return QStringLiteral("Memory"); };
    NewMainViewController page(elsewhere);
    std::vector<QString> panels;
    QObject::connect(&page, &NewMainViewController::displayPanel, &page,
                     [&](const QString &panel) { panels.push_back(panel); });
    page.clickScanBtn();
    test::waitUntil([&] { return page.state() == State::Results; });
    EXPECT_THAT(panels, ElementsAre(QStringLiteral("QC_FastClean")));
    EXPECT_EQ(page.view4FastClean(), 2);
}

TEST(CleanPage, ACleanTakesTheTickedRowsAndTellsWhatWent) {
    CleanPage::store("010100");
    CleanPage at;
    at.scan();
    const auto machine = at.machine.state();
    at.page.cleanButtonActionInfo();
    EXPECT_EQ(at.page.state(), State::Cleaning);
    EXPECT_FALSE(at.page.controls().backButton.enabled);
    at.page.shouldSelectRowWithArray(2); // dropped
    EXPECT_FALSE(at.page.customTableView().shouldSelectRow(2));
    at.page.clickBackBtn(); // refused
    at.waitFor(State::Results);
    EXPECT_EQ(at.page.selectRowNum(), 0);
    EXPECT_EQ(at.page.customTableView().clickRow(), 0);
    EXPECT_EQ(test::changes(machine, at.machine.state()), at.machine.changesOf({1, 3}));
    EXPECT_THAT(at.line(), testing::EndsWith(" is cleaned"));
    EXPECT_EQ(at.page.outcome(), CleanOutcome::Cleaned);
    EXPECT_THAT(at.heard, Not(Contains("privileges!")));
    // What a clean has emptied was ticked, and will be at the next scan.
    EXPECT_EQ(CleanPage::stored(), "010100");
    EXPECT_FALSE(at.page.list(1).selectButton());
    EXPECT_TRUE(at.page.row(1).isCheckBoxHidden());
    EXPECT_EQ(at.page.row(1).animation(), V3MainListView::Animation::Finished);
    EXPECT_FALSE(at.page.controls().cleanButton.enabled);
}

TEST(CleanPage, WhatIsUntickedInThePreferencesStays) {
    CleanPage::store("010001");
    CleanPage at;
    PreferenceViewController preferences(
        {[&] { return at.page.state() == State::Results; }, {}, {}});
    preferences.changeUserDownloads(); // before a scan it is in use, in this test
    EXPECT_EQ(CleanPage::stored(), "010001");
    at.scan();
    preferences.changeUserDownloads();
    EXPECT_EQ(CleanPage::stored(), "010000");
    EXPECT_EQ(preferences.category(6), Qt::Unchecked);
    const auto machine = at.machine.state();
    at.page.cleanButtonActionInfo(); // without a question, as no download is ticked
    at.waitFor(State::Results);
    EXPECT_EQ(test::changes(machine, at.machine.state()), at.machine.changesOf({1}));
}

// The page adds words up, which round; the history takes the bytes.
TEST(CleanPage, TheHistoryTakesBytesAndThePageSumsOfWords) {
    CleanPage::store("010000");
    CleanPage at;
    at.machine.home.sparseFile(".cache/odd", 7'004'999);
    at.scan();
    at.page.cleanButtonActionInfo();
    at.waitFor(State::Results);
    EXPECT_GT(recorded(), 7'004'999);
    EXPECT_LT(recorded(), 7'100'000);
    EXPECT_NE(std::uint64_t(recorded()), at.page.showCleanedSize());
}

TEST(CleanPage, ACleanOfNothingTickedSaysSo) {
    CleanPage::store("000000");
    ParseFileLog().setSize(5, QDateTime::currentDateTime());
    // Before the page, whose search for what is in use goes on after a scan.
    test::FaultPlatform recording;
    CleanPage at;
    at.scan();
    EXPECT_FALSE(at.page.controls().cleanButton.enabled);
    EXPECT_EQ(CleanPage::stored(), "000000");
    const auto before = at.machine.state();
    at.page.cleanButtonActionInfo();
    at.waitFor(State::Results);
    EXPECT_EQ(at.line(), "0.00 KB is cleaned");
    EXPECT_THAT(test::changes(before, at.machine.state()), IsEmpty());
    EXPECT_EQ(recording.count("removeItem"), 0u);
    EXPECT_EQ(recorded(), 5) << "that of the clean before";
}

TEST(CleanPage, TheLeftListShowsWhatIsCountedAndAClickDoesTheOpposite) {
    CleanPage::store("010000");
    CleanPage at;
    CustomTableView &left = at.page.customTableView();
    const auto box = [&](int row) {
        return left.index(row, 0).data(CustomTableView::CheckImageRole).toString().toStdString();
    };
    at.page.clickScanBtn();
    left.checkBoxClicked(2);
    at.page.row(3).checkBoxAction();
    at.waitFor(State::Results);
    EXPECT_EQ(CleanPage::stored(), "010000") << "nothing is stored while a scan runs";
    EXPECT_EQ(box(2), "option_yes.png");
    CategoryListModel &list = at.page.list(1);
    list.setData(list.index(0, 0), {}, Qt::CheckStateRole);
    const std::size_t rows = at.machine.items[1].size();
    for (const auto &[image, stored, ticked] : {std::tuple{"option_a.png", "020000", rows - 1},
                                                {"option_no.png", "000000", 0},
                                                {"option_yes.png", "010000", rows}}) {
        EXPECT_EQ(box(2), image);
        EXPECT_EQ(CleanPage::stored(), stored);
        EXPECT_EQ(at.page.selectCount2Clean(), ticked);
        EXPECT_EQ(at.page.row(1).isTicked(), ticked > 0);
        left.checkBoxClicked(2);
    }
}

TEST(CleanPage, AQuickCleanMakesTheListOutOfDate) {
    CleanPage at;
    const auto ends = [](int items) {
        NotificationCenter::defaultCenter().post(QStringLiteral("quickCleanEnded"), nullptr,
                                                 {{QStringLiteral("object"), items}});
    };
    ends(1);
    EXPECT_FALSE(at.page.isOutdated()) << "there is no list yet";
    at.scan();
    ends(0);
    EXPECT_FALSE(at.page.isOutdated());
    ends(1);
    EXPECT_TRUE(at.page.isOutdated());
    at.scan();
    EXPECT_FALSE(at.page.isOutdated());
}

struct FailureCase {
    const char *name;
    const char *stored;
    const char *stuck; // the name of the item that cannot go
    int row;           // 0: a clean of all
    bool alert;
};

class CleanPageFailures : public testing::TestWithParam<FailureCase> {};

TEST_P(CleanPageFailures, TheAlertComesForTheRightOnes) {
    CleanPage::store(GetParam().stored);
    test::FaultPlatform fault;
    CleanPage at;
    fault.setFault([&](std::string_view call, const std::filesystem::path &path) {
        return call == "removeItem" && path.filename() == GetParam().stuck
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    at.scan();
    at.page.shouldSelectRowWithArray(GetParam().row);
    at.page.cleanButtonAction();
    if (at.page.state() == State::Warning) {
        if (GetParam().row == 0)
            at.page.alertWindowYesButtonAction();
        else
            at.page.downloadAlertEnded(1);
    }
    at.waitFor(State::Results);
    // After a clean of all it waits for the last reload.
    const auto alerts = [&] { return std::count(at.heard.begin(), at.heard.end(), "privileges!"); };
    EXPECT_EQ(alerts(), GetParam().alert && GetParam().row != 0 ? 1 : 0);
    at.clock.advance(std::chrono::milliseconds(199));
    EXPECT_EQ(alerts(), GetParam().alert && GetParam().row != 0 ? 1 : 0);
    at.clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(alerts(), GetParam().alert ? 1 : 0);
    // The row is still there, ticked, with its reason.
    bool found = false;
    CleanOutlineModel &model = at.page.outline().model();
    for (int group = 0; group < model.rowCount(); ++group) {
        const QModelIndex parent = model.index(group, 0);
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex leaf = model.index(row, 0, parent);
            if (!leaf.data(Qt::AccessibleTextRole)
                     .toString()
                     .contains(QLatin1String(GetParam().stuck)))
                continue;
            found = true;
            EXPECT_EQ(leaf.data(Qt::CheckStateRole), Qt::Checked);
            EXPECT_FALSE(leaf.data(CleanOutlineModel::FailureRole).toString().isEmpty());
        }
    }
    EXPECT_TRUE(found);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, CleanPageFailures,
    testing::Values(FailureCase{"CachesInAll", "010001", "browser", 0, true},
                    FailureCase{"DownloadsInAll", "010001", "image.iso", 0, false},
                    FailureCase{"DownloadsAlone", "010001", "image.iso", 6, true},
                    FailureCase{"CachesAlone", "010000", "browser", 2, true}),
    [](const auto &each) { return each.param.name; });

TEST(CleanPage, AnAlertThatIsStillToComeGoesWithThePage) {
    CleanPage::store("010000");
    const test::CleanableMachine machine;
    test::FaultPlatform fault;
    fault.setFault([](std::string_view call, const std::filesystem::path &) {
        return call == "removeItem" ? std::make_error_code(std::errc::permission_denied)
                                    : std::error_code();
    });
    test::ManualClock clock;
    auto page = std::make_unique<NewMainViewController>(
        NewMainViewController::Surroundings{.clock = &clock});
    page->clickScanBtn();
    test::waitUntil([&] { return page->state() == State::Results; });
    page->cleanButtonActionInfo();
    test::waitUntil([&] { return page->state() == State::Results; });
    EXPECT_EQ(clock.waiting(), 1u);
    page.reset();
    EXPECT_EQ(clock.waiting(), 0u);
}

TEST(CleanPage, OneCategoryIsCleanedAloneAndTheDownloadsAskFirst) {
    CleanPage::store("111111");
    CleanPage at;
    at.scan();
    const std::size_t all = at.page.selectCount2Clean();
    const auto machine = at.machine.state();
    at.page.shouldSelectRowWithArray(6);
    EXPECT_TRUE(at.page.controls().cleanButton.hidden);
    EXPECT_FALSE(at.page.controls().oneListCleanButton.hidden);
    EXPECT_THAT(at.line(), HasSubstr("2 of 2 selected"));
    at.page.cleanButtonAction();
    EXPECT_THAT(at.heard, Contains("downloads alone?"));
    at.page.alertWindowYesButtonAction(); // the answer to another question
    EXPECT_EQ(at.page.state(), State::Warning);
    at.page.downloadAlertEnded(0);
    EXPECT_EQ(at.page.state(), State::Results);
    EXPECT_EQ(at.page.selectCount2Clean(), all);
    at.page.shouldSelectRowWithArray(2);
    at.page.cleanButtonAction();
    at.waitFor(State::Results);
    EXPECT_EQ(test::changes(machine, at.machine.state()), at.machine.changesOf({1}));
    EXPECT_THAT(at.line(), testing::EndsWith(" is cleaned"));
}

TEST(CleanPage, WhatVanishesOrGrowsBeforeTheCleanBringsNoTotalBelowNothing) {
    CleanPage::store("010000");
    CleanPage at;
    at.scan();
    std::filesystem::remove_all(at.machine.home.path(".cache/browser"));
    at.machine.home.sparseFile(".cache/two\nlines", 50'000'000);
    at.page.cleanButtonActionInfo();
    at.waitFor(State::Results);
    EXPECT_EQ(at.page.list(1).rowCount(), 0);
    EXPECT_EQ(UtilityFunction::getVolSpaceFromString(at.page.row(1).sizeLabel()), 0u);
    EXPECT_LT(at.page.showCleanedSize(), 100'000u) << "no more than was shown";
    EXPECT_GE(recorded(), 50'000'000);
}

// The first text is the capacity, so that the sentence reads true.
TEST(CleanPage, TheOverviewTellsOfTheLastCleanAndTheStartupDisk) {
    ParseFileLog().setSize(2'000'000, QDateTime(QDate(2026, 3, 15), QTime(10, 22, 33)));
    NewMainViewController page;
    NotificationCenter::defaultCenter().post(
        QStringLiteral("FreeTotleArr"), nullptr,
        {{QStringLiteral("object"),
          QVariantList{QStringLiteral("500.00 GB"), QStringLiteral("20.00 GB")}}});
    const CleanHeading heading = page.heading();
    EXPECT_EQ(heading.description.text,
              QStringLiteral("2.00 MB space has been recovered since last clean 03/15/2026 "
                             "10:22:33. The capacity of startup disk is 500.00 GB, and 20.00 GB is "
                             "available."));
    EXPECT_EQ(heading.description.accented, (std::vector<CleanStyledText::Span>{{0, 7, 18, true}}));
    // Without a clean before there is nothing to tell of one.
    EXPECT_EQ(cleanPageTexts::recoveredLine(0, QDateTime::currentDateTime(), QStringLiteral("5 GB"),
                                            QStringLiteral("2 GB"))
                  .text,
              QStringLiteral("The capacity of startup disk is 5 GB, and 2 GB is available."));
}

TEST(CleanPage, TheCountLineMarksItsNumbers) {
    const CleanStyledText line = cleanPageTexts::countLine(12, 345, 6'700'000);
    EXPECT_EQ(line.text, QStringLiteral("12 of 345 selected, 6.70 MB will free up."));
    const std::vector<QString> expected = {QStringLiteral("12"), QStringLiteral("345"),
                                           QStringLiteral("6.70 MB")};
    ASSERT_EQ(line.accented.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(line.text.mid(line.accented[i].start, line.accented[i].length), expected[i]);
    EXPECT_EQ(line.accented[1].start, 2 + 4);
    EXPECT_EQ(line.accented[2].start, 2 + 3 + 15);
}

TEST(CleanPage, RowsOfTheLeftListShowTheirPartsAndTheirHeadings) {
    CleanPage at;
    const struct {
        int row;
        int box;
        bool overview, uninstall, disk;
        const char *titleKey, *image;
    } cases[] = {
        {0, -1, true, false, false, "TITLE_CLEAN_SYS_MYMAC", "my_mac_b.png"},
        {1, 0, false, false, false, "TITLE_CLEAN_SYS_CACHES", "system_caches_b.png"},
        {2, 1, false, false, false, "TITLE_CLEAN_USR_CACHES", "user_caches_b.png"},
        {6, 5, false, false, false, "TITLE_CLEAN_DOWNLOADS", "download_b.png"},
        {7, -1, false, false, false, "", ""},
        {8, -1, false, true, false, "TITLE_UNINSTALL", "uninstall_b.png"},
        {9, -1, false, false, true, "TITLE_FREESPACE_MONITOR", "disk_b.png"},
    };
    for (const auto &each : cases) {
        UtilityFunction::callSelectNotificationForMainWindowLeft(each.row);
        const CleanPageParts &parts = at.page.parts();
        EXPECT_EQ(parts.row, each.row);
        EXPECT_EQ(parts.box, each.box) << each.row;
        EXPECT_EQ(parts.v3MainView, each.overview) << each.row;
        EXPECT_EQ(parts.uninstallTextField, each.uninstall) << each.row;
        EXPECT_EQ(parts.diskSizeView, each.disk) << each.row;
        EXPECT_EQ(at.page.heading().title,
                  *each.titleKey ? localizedText(each.titleKey) : QString())
            << each.row;
        EXPECT_EQ(at.page.heading().image, QLatin1String(each.image)) << each.row;
    }
}

TEST(CleanPage, GoesAwayInTheMiddleOfAScanAndOfAClean) {
    CleanPage::store("111110");
    const test::CleanableMachine machine;
    for (const bool cleaning : {false, true}) {
        auto page = std::make_unique<NewMainViewController>();
        page->clickScanBtn();
        if (cleaning) {
            test::waitUntil([&] { return page->state() == State::Results; });
            page->cleanButtonActionInfo();
            EXPECT_EQ(page->state(), State::Cleaning);
        }
    }
}

} // namespace
} // namespace brightsweep
