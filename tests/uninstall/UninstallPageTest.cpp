#include "core/UtilityObject.h"
#include "foundation/Identity.h"
#include "foundation/NotificationCenter.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/FakeRights.h"
#include "removal/NvAuthorization.h"
#include "support/ChildProcess.h"
#include "support/FakeApplicationSource.h"
#include "support/FaultPlatform.h"
#include "support/ManualClock.h"
#include "support/NeedsRoot.h"
#include "support/WaitUntil.h"
#include "uninstall/LeftBehindModel.h"
#include "uninstall/UninstallAppsController.h"
#include "uninstall/UninstallListModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

namespace brightsweep {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Page = UninstallAppsController;
using State = Page::State;

const std::string failure = "Failed to uninstall the selected application(s). Please refe...";
const std::string success = "Selected application(s) were uninstalled successfully.";

class UninstallPage : public testing::Test {
protected:
    UninstallPage() {
        Platform::setCurrent(makeLinuxPlatform());
        installAll(ApplicationKind::Snap);
        UtilityObject::getMyObject().isOpenLocked = false;
    }
    ~UninstallPage() override {
        NvAuthorization::shareNvAuthorization().freeAuthorization();
        UtilityObject::getMyObject().isOpenLocked = false;
        m_page.reset();
        Platform::setCurrent(makeNullPlatform("at the end"));
    }

    void installAll(ApplicationKind kind) {
        auto source = std::make_unique<test::FakeApplicationSource>(kind);
        m_source = source.get();
        Platform::current().applications.clear();
        Platform::current().applications.push_back(std::move(source));
        for (const char *name : {"Zed", "alpha", "Gimp", "Base"})
            install(name, std::string_view(name) == "Base");
    }
    void install(const std::string &name, bool isSystem) {
        InstalledApplication application;
        application.kind = m_source->kind();
        application.key = application.name = name;
        application.ids = {"org." + name};
        application.path = m_folder / name;
        application.partOfSystem = isSystem;
        m_source->installed.push_back(application);
    }
    Page &list() {
        Page::Surroundings surroundings;
        surroundings.clock = &m_clock;
        m_page = std::make_unique<Page>(std::move(surroundings));
        QObject::connect(m_page.get(), &Page::askToUninstall,
                         [this](const QString &text) { m_asked = text.toStdString(); });
        m_page->beginSearchApps();
        wait(State::Ready);
        return *m_page;
    }
    void wait(State state) {
        ASSERT_TRUE(test::eventually([&] { return m_page->state() == state; }));
    }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto &item : m_page->allApplications())
            names.push_back((item->bIsSelected ? "+" : "") + item->name.toStdString());
        return names;
    }
    std::string joined() const {
        std::string all;
        for (const auto &name : names())
            all += (all.empty() ? "" : " ") + name;
        return all;
    }
    std::string text() const { return m_page->uninstallTextField().text.toStdString(); }

    const std::filesystem::path m_folder = test::TestEnvironment::current().work();
    test::ManualClock m_clock;
    test::FakeApplicationSource *m_source;
    std::string m_asked;
    std::unique_ptr<Page> m_page;
};

TEST_F(UninstallPage, ShowsTheRowsWithTheirTicks) {
    Page &page = list();
    UninstallListModel model(page);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_THAT(names(), ElementsAre("alpha", "Base", "Gimp", "Zed"));
    EXPECT_FALSE(page.uninstallButton());
    model.setData(model.index(2, 0), Qt::Checked, Qt::CheckStateRole);
    page.tick(1);
    EXPECT_EQ(page.uninstallTextField().selected, 2u);
    EXPECT_STREQ(page.uninstallImage(), "uninstallButton.png");
    NotificationCenter::defaultCenter().post(changeSelectCellNotification, nullptr,
                                             {{QStringLiteral("UninstallRowNumber"), 2}});
    EXPECT_THAT(names(), ElementsAre("alpha", "+Gimp", "Zed"));
    EXPECT_EQ(page.hiddenSelectedCount(), 1u);
    EXPECT_EQ(page.uninstallTextField().total, 3u);
    page.selectAllList(true);
    EXPECT_TRUE(page.selectButton());
    page.setFilter(QStringLiteral("ORG.Z"));
    EXPECT_THAT(names(), ElementsAre("+Zed"));
    EXPECT_EQ(page.getAllSelectApp().size(), 1u) << "what the search hides stays";
    EXPECT_EQ(page.hiddenSelectedCount(), 3u);
    page.setFilter({});
    page.changeSelectCell(Page::AllApplications);
    page.sort(Page::SortKey::Name, true);
    EXPECT_THAT(names(), ElementsAre("+Zed", "+Gimp", "+Base", "+alpha"));
}

TEST_F(UninstallPage, FollowsTheMachineAndKeepsTicks) {
    Page &page = list();
    page.changeSelectCell(99);
    page.tick(3);
    install("New", false);
    std::erase_if(m_source->installed, [](const auto &one) { return one.name == "Gimp"; });
    page.setShown(true);
    ASSERT_TRUE(test::eventually([&] { return page.countOfRow(2) == 3 && names()[2] == "New"; }));
    EXPECT_THAT(names(), ElementsAre("alpha", "Base", "New", "+Zed"));
    EXPECT_EQ(page.uninstallTextField().selected, 1u);
}

TEST_F(UninstallPage, CutsLongWordsInTheDetails) {
    const std::string name28(28, 'n');
    install(name28, false);
    install(name28 + "o", false);
    install(std::string(90, 'p'), false);
    Page &page = list();
    const auto shown = [&](const char *filter, int row) {
        page.setFilter(QLatin1String(filter));
        page.cellClickOfView(row);
        EXPECT_TRUE(test::eventually([&] { return !page.details().size.isNull(); }));
        return page.details();
    };
    EXPECT_EQ(shown("nnn", 0).name.toStdString(), name28);
    EXPECT_EQ(shown("nnno", 0).name.toStdString(), name28 + "...");
    EXPECT_EQ(page.details().nameTip.size(), 29);
    EXPECT_EQ(shown("ppp", 0).path.size(), 73);
}

struct Flow {
    const char *what;
    int row;            ///< at the left
    const char *ticked; ///< names
    ApplicationKind kind;
    std::vector<UninstallOutcome> each; ///< of the attempts in turn, then Removed
    bool granted;
    bool succeeds;
    int requests;
    std::size_t attempts;
    const char *left; ///< in row 0 afterwards
};

TEST_F(UninstallPage, RemovesWhatIsTickedAndTriesAgainOnlyWithNewRights) {
    using O = UninstallOutcome;
    constexpr auto snap = ApplicationKind::Snap;
    constexpr auto package = ApplicationKind::Package;
    constexpr auto lacking = O::NeedsRights;
    const Flow flows[] = {
        {"own rights do", 0, "Gimp Base", snap, {}, true, true, 0, 2, "alpha Zed"},
        {"the system row asks first", 1, "Base", snap, {}, true, true, 1, 1, "alpha Gimp Zed"},
        {"and is called off", 1, "Base", snap, {}, false, false, 1, 0, "alpha +Base Gimp Zed"},
        {"packages ask for more", 0, "Gimp", package, {}, true, true, 1, 1, "alpha Base Zed"},
        {"called off", 0, "Gimp", package, {}, false, false, 1, 0, "alpha Base +Gimp Zed"},
        {"again with rights", 0, "Gimp Zed", snap, {lacking}, true, true, 1, 3, "alpha Base"},
        {"refused", 0, "Gimp Zed", snap, {lacking}, false, false, 1, 2, "alpha Base +Gimp"},
        {"twice", 0, "Gimp", snap, {lacking, lacking}, true, false, 1, 2, "alpha Base +Gimp Zed"},
        {"a script", 0, "Gimp Zed", snap, {O::Failed}, true, false, 0, 2, "alpha Base +Gimp"},
        {"both", 0, "Gimp Zed", snap, {O::Failed, lacking}, true, false, 1, 3, "alpha Base +Gimp"},
    };
    for (const Flow &flow : flows) {
        SCOPED_TRACE(flow.what);
        m_page.reset();
        NvAuthorization::shareNvAuthorization().freeAuthorization();
        UtilityObject::getMyObject().isOpenLocked = false;
        auto &rights = test::FakeRights::install();
        rights.result.outcome = flow.granted ? RightsOutcome::Granted : RightsOutcome::Dismissed;
        installAll(flow.kind);
        std::size_t attempt = 0;
        m_source->answer = [&](const RemovalPlan &plan) {
            const O outcome = attempt < flow.each.size() ? flow.each[attempt] : O::Removed;
            ++attempt;
            return RemovalResult{outcome,
                                 {},
                                 outcome == O::Removed ? std::vector{plan.application.key}
                                                       : std::vector<std::string>()};
        };
        Page &page = list();
        page.changeSelectCell(flow.row);
        const std::string_view ticked = flow.ticked;
        for (int row = 0; const auto &name : names()) {
            if (ticked.find(name) != ticked.npos)
                page.tick(row);
            ++row;
        }
        page.uninstallButtonAction();
        wait(State::Asking);
        EXPECT_EQ(m_source->removals.size(), 0u) << "nothing before the answer";
        EXPECT_EQ(m_asked.starts_with("System"), ticked.find("Base") != ticked.npos);
        page.alertEnded(1);
        wait(State::Ready);
        EXPECT_EQ(text(), flow.succeeds ? success : failure);
        EXPECT_EQ(rights.requests, flow.requests);
        if (!flow.granted) {
            EXPECT_THAT(page.uninstallTextField().notice.toStdString(), HasSubstr("was closed"));
        }
        if (flow.each == std::vector{lacking, lacking}) {
            EXPECT_EQ(page.failureOf(*page.allApplications()[2]).toStdString(),
                      "could not be removed");
        }
        if (rights.isAlive) {
            EXPECT_EQ(rights.purpose == RightsPurpose::FilesAndPackages, flow.kind == package);
        }
        EXPECT_EQ(m_source->removals.size(), flow.attempts);
        page.changeSelectCell(Page::AllApplications);
        EXPECT_EQ(joined(), flow.left);
    }
}

TEST_F(UninstallPage, TellsWhatKeptAnApplicationAndNeverRemovesItself) {
    test::needRoot();
    install(bundleIdentifier, false);
    m_source->installed.back().ids = {bundleIdentifier};
    m_source->installed.back().version = programVersion;
    m_source->adjust = [](RemovalPlan &plan) {
        if (plan.application.name == "Gimp")
            plan.blocker = Blocker::Essential;
    };
    test::TestTree home(test::TestEnvironment::current().home());
    home.file(".config/zed/settings");
    test::FaultPlatform faults;
    faults.setFault([](std::string_view call, const std::filesystem::path &path) {
        return call == "removeItem" && path.filename() == "zed"
                   ? std::make_error_code(std::errc::io_error)
                   : std::error_code();
    });
    Page &page = list();
    page.selectAllList(true);
    page.uninstallButtonAction();
    page.stopPlanning();
    wait(State::Ready);
    page.uninstallButtonAction();
    wait(State::Asking);
    page.alertEnded(0);
    EXPECT_EQ(page.state(), State::Ready);
    EXPECT_TRUE(m_source->removals.empty());
    page.selectAllList(false);
    page.tick(int(page.allApplications().size()) - 1);
    page.uninstallButtonAction();
    wait(State::Asking);
    {
        const test::LogCapture log;
        page.alertEnded(1);
        wait(State::Ready);
        EXPECT_THAT(log.text(), HasSubstr("Zed has gone, but for " +
                                          home.path(".config/zed").native() + ": Input"));
    }
    EXPECT_EQ(text(), "Uninstalled. Some of what was left behind could not be removed.");
    EXPECT_EQ(page.uninstallTextField().notice.toStdString(),
              "Zed: it went, and left behind: ~/.config/zed (Input/output error)");
    page.selectAllList(true);
    page.uninstallButtonAction();
    wait(State::Asking);
    page.alertEnded(1);
    wait(State::Ready);
    EXPECT_THAT(names(), ElementsAre(std::string("+") + bundleIdentifier, "+Gimp"));
    EXPECT_EQ(m_source->removals.size(), 3u);
    EXPECT_EQ(page.failureOf(*page.allApplications()[1]).toStdString(),
              "the system cannot do without it");
    const std::string tip = page.uninstallTextField().toolTip.toStdString();
    EXPECT_THAT(tip, HasSubstr("this is the program that you are using"));
    EXPECT_EQ(text(), failure);
}

TEST_F(UninstallPage, RemovesOnlyWhatWasTickedOfWhatWasLeftBehind) {
    test::needRoot();
    test::TestTree home(test::TestEnvironment::current().home());
    home.file("snap/gone/data", "12345");
    home.file("snap/other/data");
    home.file("snap/alpha/data");
    const auto locked = home.path("snap/other/data").native();
    ASSERT_EQ(test::runProgram({"/usr/bin/chattr", "+i", locked}).status, 0);
    Page &page = list();
    page.changeSelectCell(Page::LeftBehindRow);
    auto &behind = page.leftBehind();
    ASSERT_TRUE(test::eventually([&] { return behind.isReady(); }));
    LeftBehindModel model(behind);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(model.rowCount(), 2) << "what is installed leaves nothing";
    EXPECT_EQ(behind.tickedCount(), 0u);
    behind.removeButtonAction();
    EXPECT_TRUE(behind.isReady()) << "nothing is ticked";
    const int gone = behind.items()[0].path.filename() == "gone" ? 0 : 1;
    EXPECT_EQ(test::runProgram({"/usr/bin/chattr", "-i", locked}).status, 0);
    behind.tick({1 - gone}, true);
    EXPECT_EQ(behind.tickedCount(), 0u) << "it could not go";
    model.setData(model.index(gone, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(behind.tickedBytes(), 5u);
    const auto before = home.snapshot("snap");
    behind.removeButtonAction();
    page.uninstallButtonAction();
    EXPECT_EQ(page.state(), State::Ready) << "one question at a time";
    behind.alertEnded(false);
    EXPECT_EQ(home.snapshot("snap"), before);
    test::FakeRights::install().result.outcome = RightsOutcome::Denied;
    test::FaultPlatform faults;
    faults.setFault([](std::string_view call, const std::filesystem::path &) {
        return call == "removeItem" ? std::make_error_code(std::errc::permission_denied)
                                    : std::error_code();
    });
    behind.removeButtonAction();
    behind.alertEnded(true);
    ASSERT_TRUE(test::eventually([&] { return behind.isReady(); }));
    EXPECT_THAT(behind.refusal().toStdString(), HasSubstr("were denied"));
    EXPECT_EQ(home.snapshot("snap"), before);
    faults.setFault({});
    behind.removeButtonAction();
    behind.alertEnded(true);
    ASSERT_TRUE(test::eventually([&] { return behind.isReady(); }));
    EXPECT_EQ(behind.message().toStdString(), "1 item removed, 0.00 KB freed.");
    EXPECT_FALSE(home.exists("snap/gone"));
    EXPECT_TRUE(home.exists("snap/other/data") && home.exists("snap/alpha/data"));
    EXPECT_EQ(model.rowCount(), 1);
}

} // namespace
} // namespace brightsweep
