#include "core/SettingKeys.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "loginitems/LoginItemController.h"
#include "platform/LoginItemError.h"
#include "support/FakeDesktop.h"
#include "support/FakeLoginItems.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"
#include "volumes/VolumeNotifications.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QUrl>

#include <gmock/gmock.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class LoginItemPage : public testing::Test {
protected:
    LoginItemPage() {
        Platform::current().workspace.reset(workspace);
        Registry::setPause([] {});
        items.become({{.file = "a.desktop", .path = "/bin/a", .name = "A"},
                      {.file = "b.desktop", .path = "/bin/b"},
                      {.file = "com.norvmac.DeskSweeperPro.desktop", .path = "/bin/own"},
                      {.file = "gone.desktop", .path = "/bin/gone", .missing = true},
                      {.file = "m.desktop", .path = "/bin/m", .name = "msng"}},
                     {{.file = "sound.desktop"}});
        NotificationCenter::defaultCenter().addObserver(&observer,
                                                        refMenuItemWhenDeleteAndAddNotification,
                                                        [this](const Notification &) { ++menus; });
        page = std::make_unique<LoginItemController>(
            LoginItemController::Surroundings{[this] { return isOpen; }});
        QObject::connect(page.get(), &LoginItemController::failed,
                         [this](const QString &words) { failures += words; });
        QObject::connect(page.get(), &LoginItemController::failureIsOver,
                         [this] { failures.clear(); });
        tester = std::make_unique<QAbstractItemModelTester>(
            &page->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        settle();
    }
    ~LoginItemPage() override {
        tester.reset();
        page.reset();
        Registry::setPause(nullptr);
    }

    using Registry = UKLoginItemRegistry;
    void settle() {
        waitUntil([this] { return !page->isWaiting(); });
    }
    Names files() const {
        Names files;
        for (const auto &row : page->allLoginItemsInfo())
            files.push_back(row->entry.file.substr(0, row->entry.file.find('.')) +
                            (row->bIsSelected ? " hidden" : ""));
        return files;
    }
    // What has been asked of the list since the last time.
    Names calls() {
        Names all = items.calls();
        const Names fresh(all.begin() + std::ptrdiff_t(seen), all.end());
        seen = all.size();
        return fresh;
    }

    FakeLoginItems &items = FakeLoginItems::install();
    FakeWorkspace *const workspace = new FakeWorkspace;
    QObject observer;
    std::unique_ptr<LoginItemController> page;
    std::unique_ptr<QAbstractItemModelTester> tester;
    QStringList failures;
    std::size_t seen = 0;
    int menus = 0;
    bool isOpen = true;
};

TEST_F(LoginItemPage, RemovesByFileAndClearsTheFlagForItsOwnRowOnly) {
    EXPECT_THAT(files(), ElementsAre("a", "b", "com", "gone"));
    EXPECT_EQ(page->allLoginItemsInfo()[1]->name, QStringLiteral("/bin/b"));
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setObject(DSLoginCheckKey, 1);
    isOpen = false;
    page->delLoginItem(0);
    isOpen = true;
    page->delLoginItem(9);
    EXPECT_THAT(calls(), IsEmpty());
    // Another program changes the list before the click arrives.
    page->delLoginItem(1);
    settle();
    EXPECT_THAT(calls(), ElementsAre("remove b.desktop"));
    EXPECT_TRUE(menus == 0 && defaults.integerForKey(DSLoginCheckKey) == 1);
    page->delLoginItem(1);
    settle();
    EXPECT_TRUE(menus == 1 && defaults.integerForKey(DSLoginCheckKey) == 0);
    items.fail("remove", std::errc::permission_denied);
    page->delLoginItem(0);
    settle();
    EXPECT_THAT(files(), ElementsAre("a", "gone"));
    EXPECT_EQ(failures, QStringList(QStringLiteral("A: Permission denied")));
}

TEST_F(LoginItemPage, AFailureIsToldUntilSomethingWorksOrTheListChanges) {
    const std::function<void()> over[] = {
        [&] { page->openButtonAction(0); },
        [&] { page->viewButtonAction(0); },
        [&] { page->changeHideState(0); },
        [&] { page->addPaths({"/new"}); },
        [&] { page->setSystemItemStarted("sound.desktop", false); },
        [&] {
            items.become({{.file = "a", .path = "/a"}, {.file = "b", .path = "/b"}});
        },
        [&] { page->delLoginItem(1); },
    };
    for (const auto &act : over) {
        items.fail("remove", std::errc::permission_denied, 1);
        page->delLoginItem(0);
        settle();
        EXPECT_EQ(failures.size(), 1) << &act - over;
        act();
        EXPECT_TRUE(eventually([&] { return !page->isWaiting() && failures.isEmpty(); }))
            << &act - over;
    }
    // What was added or removed beside it is told by the watch as well, any time later.
    items.become({{.file = "c", .path = "/c"}, {.file = "fine.desktop", .path = "/fine"}});
    waitUntil([this] { return files() == Names{"c", "fine"}; });
    items.fail("add", std::errc::no_space_on_device, 1);
    page->delLoginItem(1);
    page->addPaths({"/full", "/fine"});
    settle();
    items.become({{.file = "c", .path = "/c2"}, {.file = "fine.desktop", .path = "/fine"}});
    waitUntil([this] { return page->allLoginItemsInfo()[0]->path == "/c2"; });
    EXPECT_EQ(failures.size(), 1);
    items.become({});
    waitUntil([this] { return files().empty(); });
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(LoginItemPage, AddsWhatIsChosenOrDroppedAndCorrectsWhatFailed) {
    int asked = 0;
    QObject::connect(page.get(), &LoginItemController::askForLoginItems, [&] { ++asked; });
    isOpen = false;
    QObject::connect(page.get(), &LoginItemController::askForLoginFolder, [&] { ++asked; });
    page->addLoginItems();
    page->addLoginFolder();
    EXPECT_EQ(asked, 0);
    // A drop does not ask the gate.
    QMimeData files;
    files.setUrls({QUrl(QStringLiteral("file:///x%20y")), QUrl(QStringLiteral("https://x/y"))});
    EXPECT_TRUE(page->model().dropMimeData(&files, Qt::CopyAction, 0, 0, {}));
    settle();
    EXPECT_EQ(page->allLoginItemsInfo().back()->path, "/x y");
    QMimeData words;
    words.setText(QStringLiteral("/bin/z"));
    EXPECT_FALSE(page->model().dropMimeData(&words, Qt::CopyAction, 0, 0, {}));
    isOpen = true;
    page->addLoginItems();
    page->addLoginFolder();
    EXPECT_EQ(asked, 2);
    items.fail("add", std::errc::no_space_on_device, 1);
    std::size_t most = 0;
    QObject::connect(&page->model(), &QAbstractItemModel::modelReset,
                     [&] { most = std::max(most, page->allLoginItemsInfo().size()); });
    page->addPaths({"/full", "/fine"});
    settle();
    EXPECT_EQ(most, 7u);
    EXPECT_EQ(page->allLoginItemsInfo().back()->path, "/fine");
    EXPECT_EQ(failures, QStringList(QStringLiteral("/full: No space left on device")));
    EXPECT_THAT(calls(), ElementsAre("add /x y", "add /full", "add /fine"));
}

TEST_F(LoginItemPage, FlipsTheFlagThatTheEntryHasNow) {
    LoginItemModel &model = page->model();
    items.become({{.file = "a.desktop", .path = "/bin/a", .hidden = true},
                  {.file = "gone.desktop", .path = "/bin/gone", .missing = true}});
    // The table has not heard of it yet.
    model.setData(model.index(0, LoginItemModel::checkBox), Qt::Checked, Qt::CheckStateRole);
    settle();
    EXPECT_THAT(calls(), ElementsAre("show a.desktop"));
    model.setData(model.index(0, LoginItemModel::checkBox), Qt::Checked, Qt::CheckStateRole);
    model.setData(model.index(1, LoginItemModel::checkBox), Qt::Checked, Qt::CheckStateRole);
    settle();
    EXPECT_THAT(calls(), ElementsAre("hide a.desktop", "hide gone.desktop"));
    EXPECT_THAT(files(), ElementsAre("a hidden", "gone hidden"));
    // The row of a missing program has gone meanwhile, or others have.
    items.become({{.file = "gone.desktop", .path = "/bin/gone", .missing = true}});
    page->changeHideState(1);
    settle();
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(files(), ElementsAre("gone"));
}

TEST_F(LoginItemPage, ShowsAnotherOrderUntilTheListChanges) {
    page->shouldSelectRow(1);
    page->delLoginItem(0);
    settle();
    EXPECT_THAT(calls(), ElementsAre("remove a.desktop"));
    EXPECT_EQ(page->selectRow(), 0);
    items.become({{.file = "a.desktop", .path = "/bin/a"},
                  {.file = "b.desktop", .path = "/bin/b"},
                  {.file = "com.desktop", .path = "/bin/own"},
                  {.file = "gone.desktop", .path = "/bin/gone"}});
    waitUntil([this] { return files().size() == 4; });
    EXPECT_EQ(page->selectRow(), 1) << "where the entry is now";
    std::unique_ptr<QMimeData> dragged(
        page->model().mimeData({page->model().index(0, 1), page->model().index(2, 1)}));
    page->model().dropMimeData(dragged.get(), Qt::CopyAction, -1, -1, page->model().index(3, 0));
    EXPECT_THAT(files(), ElementsAre("b", "a", "com", "gone"));
    EXPECT_THAT(calls(), IsEmpty());
    items.become({{.file = "a.desktop", .path = "/a"}, {.file = "b.desktop", .path = "/b"}},
                 {{.file = "x", .hidden = true}});
    waitUntil([this] { return files() == Names{"a", "b"}; });
    ASSERT_EQ(page->systemItems().size(), 1u);
    page->setSystemItemStarted("x", true);
    settle();
    EXPECT_FALSE(page->systemItems()[0].hidden);
    EXPECT_THAT(calls(), ElementsAre("on x"));
}

TEST_F(LoginItemPage, OpensByTheEntryAndRevealsWhatHasNothingToStart) {
    page->openButtonAction(0);
    settle();
    EXPECT_THAT(calls(), ElementsAre("start a.desktop"));
    EXPECT_THAT(workspace->revealed, IsEmpty());
    items.failWith("start", LoginItemError::NothingToStart);
    page->openButtonAction(0);
    settle();
    page->viewButtonAction(1);
    EXPECT_THAT(workspace->revealed, ElementsAre("/autostart/a.desktop", "/bin/b"));
}

TEST_F(LoginItemPage, WaitsForASlowHomeBesideTheWindow) {
    std::atomic<bool> answers = false;
    Registry::setPause([&] {
        while (!answers)
            std::this_thread::yield();
    });
    items.fail("items", std::errc::timed_out, 1);
    page->updateLoginItemsList();
    page->updateLoginItemsList();
    EXPECT_TRUE(page->isWaiting());
    EXPECT_EQ(files().size(), 4u);
    answers = true;
    settle();
    items.fail("items", std::errc::io_error);
    page->updateLoginItemsList();
    EXPECT_EQ(page->readProblem(), QString());
    settle();
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(page->readProblem(), QStringLiteral("Input/output error"));
}

} // namespace
} // namespace brightsweep::test
