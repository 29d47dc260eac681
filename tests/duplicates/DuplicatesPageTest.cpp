// The duplicates page without its screen, on real searches and removals.

#include "core/SettingKeys.h"
#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/FreedBytes.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "support/ChildProcess.h"
#include "support/FaultPlatform.h"
#include "support/ManualClock.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mount.h>

#include <atomic>
#include <thread>

namespace brightsweep {
namespace {

using test::waitUntil;
using testing::ElementsAre;
using Page = SameFileDeleteViewController;
using State = Page::State;

class DuplicatesPage : public testing::Test {
protected:
    void SetUp() override {
        UserDefaults &defaults = UserDefaults::standardUserDefaults();
        defaults.setObject(DSDuplicationLimit, 0);
        defaults.setObject(DSDuplicatesUnit, 0);
        QObject::connect(&page, &Page::displayPanel, &page,
                         [this](const QString &panel) { heard.push_back(panel.toStdString()); });
        QObject::connect(&page, &Page::askAboutLastFile, &page,
                         [this] { heard.push_back("the last?"); });
        QObject::connect(&page, &Page::askToRemove, &page, [this] { heard.push_back("remove?"); });
        for (const char *folder : {"one/", "two/", "three/"}) {
            for (const char *name : {"text.TXT", "packed.tar.gz", "bare"}) {
                if (folder != std::string("three/") || name == std::string("text.TXT"))
                    tree.file(std::string(folder) + name, std::string(1'000, name[0]));
            }
        }
    }
    void search() {
        page.viewDragAction(tree.top());
        waitUntil([&] { return page.state() == State::Results; });
    }
    void remove(Page::Act act = Page::Act::Remove) {
        page.removeBtnClicked();
        page.removalAnswered(act);
        waitUntil([&] { return page.state() == State::Results; });
    }
    TreeNode::Pointer group(const std::string &extension) {
        for (const auto &each : page.treeData()->children()) {
            if (dataOf(*each).extendName() == extension)
                return each;
        }
        return nullptr;
    }
    std::vector<int> groupsOfRows() {
        std::vector<int> counts;
        for (int row = 0; row < 7; ++row) {
            page.refViewBgColor(row);
            counts.push_back(page.treeData() ? page.treeData()->numberOfChildren() : -1);
        }
        page.refViewBgColor(0);
        return counts;
    }

    test::TestTree tree;
    test::ManualClock clock;
    Page page{{.clock = &clock}};
    std::vector<std::string> heard;
};

TEST_F(DuplicatesPage, ShowsSevenLists) {
    int posted = 0;
    NotificationCenter::defaultCenter().addObserver(
        &page, QStringLiteral("changeViewActionForDuplicate"), [&](const auto &) { ++posted; });
    search();
    EXPECT_THAT(heard, ElementsAre("QC_Duplicates", "DATA_Duplicates"));
    // All, documents, and "gz" among the others; what has no extension is in no class.
    EXPECT_THAT(groupsOfRows(), ElementsAre(3, 1, 0, 0, 0, 0, 1));
    EXPECT_EQ(page.bytesOfRow(0), 5'000u);
    EXPECT_EQ(page.bytesOfRow(1), 3'000u);
    EXPECT_EQ(page.sizeOfRow(2), QStringLiteral("0.0KB"));
    EXPECT_EQ(page.title(), QStringLiteral("7 files in work."));
    page.refViewBgColor(1);
    EXPECT_EQ(page.title(), QStringLiteral("3 files in Documents."));
    // The title's text is what the search button searches: no folder, and so nothing.
    page.searchBtnClicked();
    waitUntil([&] { return page.state() == State::Results; });
    EXPECT_FALSE(page.treeData());
    EXPECT_EQ(posted, 1);
    page.backButtonAction();
    EXPECT_EQ(page.state(), State::Start);
    EXPECT_EQ(heard.back(), "duplicates_file");
}

TEST_F(DuplicatesPage, NamesOfOneFileFreeNothingWhileOneStays) {
    for (const char *name : {"four/text.TXT", "five/text.TXT"})
        tree.hardLink(name, tree.path("one/text.TXT"));
    search();
    const auto text = group("TXT");
    ASSERT_EQ(text->numberOfChildren(), 5);
    const std::uint64_t block = leafOf(*text->firstChild()).searched().stored;
    EXPECT_EQ(wastedBy(*text), 2 * block);
    std::uint64_t freed = 0;
    for (const char *folder : {"one", "four", "two", "five"}) {
        for (const auto &leaf : text->children()) {
            if (dataOf(*leaf).name() == tree.path(folder).native() + "/text.TXT")
                page.setSelectState(leaf);
        }
        freed = freed * 10 + page.freedBySelection() / block;
    }
    EXPECT_EQ(freed, 12u) << "after each tick: 0, 0, 1, 2";
    // A copy whose blocks stay anyway is the one to keep; so is one with a name elsewhere.
    for (const auto &leaf : text->children()) {
        if (leafOf(*leaf).names() == 1)
            leafOf(*leaf).setFreed(0);
    }
    EXPECT_EQ(wastedBy(*text), block);
    QString refusal = QStringLiteral("none");
    QObject::connect(&page, &Page::sharingAnswered, [&](const QString &told) { refusal = told; });
    page.askWhetherShareable();
    waitUntil([&] { return refusal != QLatin1String("none"); });
    std::filesystem::create_hard_link(tree.path("one/text.TXT"),
                                      test::TestEnvironment::current().home() / "text.TXT");
    search();
    EXPECT_EQ(wastedBy(*group("TXT")), 2 * block);
}

// A file system in memory has no trash of its own, and nothing is copied to another.
TEST_F(DuplicatesPage, SaysWhetherThereIsATrash) {
    test::needRoot();
    test::TestTree memory(test::TestEnvironment::current().home() / "memory");
    ASSERT_TRUE(test::enterPrivateMounts());
    ASSERT_EQ(::mount("none", memory.top().c_str(), "tmpfs", 0, nullptr), 0);
    for (const char *name : {"one", "two"})
        memory.file(name, "the same");
    std::vector<bool> answers;
    QObject::connect(&page, &Page::trashAnswered, [&](bool has) { answers.push_back(has); });
    for (const auto &top : {tree.top(), memory.top()}) {
        page.viewDragAction(top);
        waitUntil([&] { return page.state() == State::Results; });
        page.setSelectState(page.treeData()->childAtIndex(0));
        page.askWhetherShareable();
        waitUntil([&, known = answers.size()] { return answers.size() > known; });
    }
    EXPECT_THAT(answers, ElementsAre(true, false));
    ::umount2(memory.top().c_str(), MNT_DETACH);
}

TEST_F(DuplicatesPage, AStoppedSearchReturnsToTheStart) {
    page.viewDragAction(tree.top());
    page.stopScanBtnClicked();
    EXPECT_EQ(page.state(), State::Stopping);
    waitUntil([&] {
        clock.advance(std::chrono::milliseconds(100));
        return page.state() == State::Start;
    });
    EXPECT_THAT(heard, ElementsAre("QC_Duplicates", "duplicates_file"));
    EXPECT_EQ(page.view4Duplicates(), 0);
}

TEST_F(DuplicatesPage, AStopHoldsForASearchThatHasNotBegun) {
    DuplicateFilesOpt search;
    search.stopSearch();
    search.beginSearchAtPath(tree.top(), 0);
    std::shared_ptr<SimpleTreeNode> groups;
    EXPECT_FALSE(search.getDuplicateFiles(groups));
}

// Whoever quits does not wait until everything is compared.
TEST_F(DuplicatesPage, GoesWhileItComparesAndLeavesTheFile) {
    test::TestTree large(test::TestEnvironment::current().work() / "large");
    for (const char *name : {"one", "two"})
        large.file(name, std::string(16'000'000, 'l'));
    std::atomic<bool> isRemoving{false};
    std::atomic<unsigned> reads{0};
    test::FaultPlatform platform;
    platform.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (isRemoving && call == "readAt" && ++reads > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return std::error_code();
    });
    auto other = std::make_unique<Page>(Page::Surroundings{.clock = &clock});
    other->viewDragAction(large.top());
    waitUntil([&] { return other->state() == State::Results; });
    other->setSelectState(other->treeData()->childAtIndex(0)->childAtIndex(0));
    other->removeBtnClicked();
    isRemoving = true;
    other->removalAnswered(Page::Act::Remove);
    waitUntil([&] { return reads > 0; });
    other.reset();
    EXPECT_TRUE(large.exists("one") && large.exists("two"));
}

TEST_F(DuplicatesPage, RemovesWhatIsTickedAndTakesGroupsOfOneOff) {
    search();
    page.setSelectState(group("gz"));
    const auto text = group("TXT");
    page.setSelectState(text->childAtIndex(1));
    EXPECT_EQ(page.selectionMessage(), QStringLiteral("2 of 7 selected."));
    EXPECT_EQ(page.controls().allSelectState, Qt::PartiallyChecked);
    page.refViewBgColor(6);
    const auto before = tree.snapshot();
    const auto gone = page.selection().allSelectNumArr();
    ASSERT_EQ(gone.size(), 2u);
    remove();
    auto expected = before;
    for (const auto &leaf : gone)
        expected.erase(dataOf(*leaf).name().substr(tree.top().native().size() + 1));
    EXPECT_EQ(tree.snapshot(), expected);
    EXPECT_EQ(page.report().done, 2u);
    EXPECT_EQ(page.report().bytesFreed, 8'192u);
    EXPECT_TRUE(page.selection().isEmpty());
    EXPECT_EQ(dataOf(*text).showSelectNumStr(), "0/2");
    EXPECT_THAT(groupsOfRows(), ElementsAre(2, 1, 0, 0, 0, 0, 0));
    EXPECT_EQ(page.bytesOfRow(6), 0u);
    EXPECT_EQ(page.bytesOfRow(1), 2'000u);
    // A whole group goes only after the question, answered so.
    page.setSelectState(text);
    const auto last = text->lastChild();
    for (const bool ok : {false, true}) {
        page.setSelectState(last);
        EXPECT_EQ(heard.back(), "the last?");
        page.alertEnded(ok);
        EXPECT_EQ(dataOf(*last).selectNum(), ok ? 1 : 0);
    }
    remove();
    EXPECT_THAT(groupsOfRows(), ElementsAre(1, 0, 0, 0, 0, 0, 0));
    for (const char *folder : {"one", "two", "three"})
        EXPECT_FALSE(tree.exists(std::string(folder) + "/text.TXT"));
}

TEST_F(DuplicatesPage, WhatStayedStaysTickedWithItsReason) {
    search();
    page.tickAllBut(KeepRule::ShortestPath);
    EXPECT_EQ(page.selection().count(), 4u);
    page.undoTicks();
    EXPECT_TRUE(page.selection().isEmpty());
    page.tickAllBut(KeepRule::Last);
    const auto text = group("TXT");
    // Without the copy that was to stay, both others do.
    std::filesystem::remove(dataOf(*text->lastChild()).name());
    remove(Page::Act::Trash);
    EXPECT_EQ(page.report().done, 2u);
    EXPECT_EQ(page.report().failed, 2u);
    EXPECT_EQ(page.report().bytesFreed, 0u);
    EXPECT_EQ(page.selection().count(), 2u);
    EXPECT_EQ(page.failureOf(text->firstChild().get()),
              QStringLiteral("no other copy of it is left"));
    EXPECT_EQ(dataOf(*text).showSelectNumStr(), "2/3");
    EXPECT_TRUE(page.controls().remove);
    // The page does nothing that its state does not allow.
    page.stopRemoveBtnClicked();
    page.removalAnswered(Page::Act::Remove);
    page.setSelectState(text);
    EXPECT_EQ(page.state(), State::Removing);
    EXPECT_EQ(page.selection().count(), 2u);
    waitUntil([&] { return page.state() == State::Results; });
}

} // namespace
} // namespace brightsweep
