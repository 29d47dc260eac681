#include "cleaning/BrowseFolderOperation.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/DeleteFolderOperation.h"

#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "removal/FakeRights.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"
#include "support/ChildProcess.h"
#include "support/FaultPlatform.h"
#include "support/NeedsRoot.h"
#include "support/Removals.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mount.h>

namespace brightsweep {
namespace {

using test::rootsOf;
using test::TestTree;
using testing::ElementsAre;
using testing::StartsWith;
using testing::UnorderedElementsAre;

std::shared_ptr<RemovalRun> newRun() {
    return RemovalRun::begin("test").run;
}

// Every notification of the quick clean, in words: name, last component of the path, size.
class Heard : public QObject {
public:
    Heard() {
        for (const QLatin1String name :
             {DSScanSingleFolder, DSScanOperationFinish, DSBeginFastClean, DSDeleteFileSuccess,
              DSDeleteFileFailed, DSFastCleanFinish, DSCleanCanceled}) {
            NotificationCenter::defaultCenter().addObserver(
                this, name, [this](const Notification &notification) { note(notification); });
        }
    }
    ~Heard() override { NotificationCenter::defaultCenter().removeObserver(this); }

    std::vector<std::string> words;

private:
    void note(const Notification &notification) {
        std::string text = notification.name.toStdString();
        for (const char *key : {"FolderPath", "FilePath"}) {
            const QVariant path = notification.userInfo.value(QLatin1String(key));
            if (path.isValid())
                text += " " + paths::lastComponent(paths::fromVariant(path));
        }
        for (const char *key : {"FolderSize", "FileCount", "FileSize"}) {
            const QVariant number = notification.userInfo.value(QLatin1String(key));
            if (number.isValid())
                text += " " + number.toString().toStdString();
        }
        words.push_back(text);
    }
};

TEST(BrowseFolderOperation, CountsEveryObjectFoldersIncluded) {
    TestTree tree;
    tree.file("one/a", "12345");
    tree.file("one/sub/b", "123");
    tree.file("file", "1234567");
    Heard heard;
    std::vector<RemovalRoot> folders = rootsOf({tree.path("one"), tree.path("file")});
    folders.push_back({tree.path("file"), folders[0].device, folders[0].inode});
    BrowseFolderOperation operation(folders);
    operation.main();
    // A plain file in the place of a folder counts 0.
    EXPECT_THAT(heard.words, ElementsAre("ScanSingleFolder one", "ScanSingleFolder file",
                                         "ScanOperationFinish 8 3"));
}

TEST(BrowseFolderOperation, TellsOfACancelAtEveryLevel) {
    TestTree tree;
    tree.file("one/sub/b", "123");
    {
        Heard heard;
        BrowseFolderOperation operation(rootsOf({tree.path("one")}));
        operation.cancel();
        operation.main();
        EXPECT_THAT(heard.words, ElementsAre("FastCleanCanceled"));
    }
    // Below "one", in "sub", and of the whole.
    Heard heard;
    BrowseFolderOperation operation(rootsOf({tree.path("one"), tree.path("one")}));
    test::FaultPlatform fault;
    fault.setFault([&](std::string_view call, const std::filesystem::path &path) {
        if (call == "readBlock" && path.filename() == "sub")
            operation.cancel();
        return std::error_code();
    });
    operation.main();
    EXPECT_THAT(heard.words, ElementsAre("ScanSingleFolder one", "FastCleanCanceled",
                                         "FastCleanCanceled", "FastCleanCanceled"));
}

TEST(DeleteFolderOperation, EmptiesFoldersAndKeepsThem) {
    TestTree tree;
    tree.file("folder/a", "12345");
    tree.file("folder/sub/b/c", "123");
    tree.file("outside/kept", "precious");
    tree.link("folder/link", tree.path("outside"));
    const auto outside = tree.snapshot("outside");
    Heard heard;
    auto folders = rootsOf({tree.path("folder")});
    folders.push_back({tree.path("missing"), 1, 1});
    DeleteFolderOperation(folders, newRun()).main();
    EXPECT_TRUE(tree.exists("folder"));
    EXPECT_TRUE(tree.snapshot("folder").empty());
    EXPECT_EQ(tree.snapshot("outside"), outside);
    EXPECT_EQ(heard.words.front(), "BeginFastClean");
    EXPECT_EQ(heard.words.back(), "FastCleanFinish");
    // A folder goes whole and tells only of itself, so three entries in all; without rights a
    // folder that is not there is told as failed, without a size.
    EXPECT_EQ(heard.words.size(), 2u + 3 + 1);
    EXPECT_THAT(heard.words, testing::Contains("DeleteFileSuccess a 5"));
    EXPECT_THAT(heard.words, testing::Contains("DeleteFileFailed missing"));
}

TEST(DeleteFolderOperation, WithoutRightsAFolderThatMayNotBeTouchedIsToldOnce) {
    TestTree tree;
    tree.file("folder/a");
    tree.file("folder/b");
    const auto before = tree.snapshot();
    test::FaultPlatform fault;
    fault.setFault([](std::string_view call, const std::filesystem::path &) {
        return call == "isDeletable" || call == "removeItem"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    Heard heard;
    DeleteFolderOperation(rootsOf({tree.path("folder")}), newRun()).main();
    EXPECT_THAT(heard.words,
                ElementsAre("BeginFastClean", "DeleteFileFailed folder", "FastCleanFinish"));
    EXPECT_EQ(tree.snapshot(), before);
}

// What lies in a folder that would not go whole is tried on its own.
TEST(DeleteFolderOperation, DescendsIntoWhatStays) {
    TestTree tree;
    tree.file("folder/stays/inner", "1");
    test::FaultPlatform fault;
    fault.setFault([](std::string_view call, const std::filesystem::path &path) {
        return call == "removeItem" && path.filename() == "stays"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    Heard heard;
    const auto folders = rootsOf({tree.path("folder")});
    DeleteFolderOperation operation(folders, newRun());
    EXPECT_FALSE(operation.cleanDeletableFolder(folders[0]));
    EXPECT_THAT(heard.words, ElementsAre("DeleteFileSuccess inner 1"));
    EXPECT_TRUE(tree.exists("folder/stays"));
}

// Neither what is mounted nor what it is mounted in goes, and the walk never enters it.
TEST(DeleteFolderOperation, LeavesWhatHoldsAVolumeWhole) {
    test::needRoot();
    TestTree tree;
    tree.file("folder/holder/sibling");
    tree.directory("folder/holder/mnt");
    tree.directory("folder/mounted");
    tree.file("folder/goes");
    tree.file("source/deep/kept");
    const auto source = tree.snapshot("source");
    EXPECT_EQ(0, test::runInChild([&] {
                  if (!test::enterPrivateMounts() ||
                      !test::bindMount(tree.path("source"), tree.path("folder/holder/mnt")) ||
                      ::mount("tmpfs", tree.path("folder/mounted").c_str(), "tmpfs", 0, nullptr) !=
                          0)
                      return 10;
                  tree.file("folder/mounted/kept");
                  Heard heard;
                  std::uint64_t count = 0;
                  const auto folders = rootsOf({tree.path("folder")});
                  BrowseFolderOperation(folders).sizeOfItemAtPath(folders[0], count);
                  DeleteFolderOperation(folders, newRun()).main();
                  const auto kept = tree.exists("folder/mounted/kept") &&
                                    tree.exists("folder/holder/sibling") &&
                                    tree.exists("folder/holder/mnt/deep/kept");
                  // holder, mnt, sibling, mounted, goes
                  return kept && count == 5 && !tree.exists("folder/goes") ? 0 : 1;
              }));
    EXPECT_EQ(tree.snapshot("source"), source);
}

// An entry that failed is told both ways, and what lies in it is tried on its own.
TEST(DeleteFolderOperation, WithRightsOnlyWhatTheToolLeftStays) {
    TestTree tree;
    tree.file("folder/goes");
    tree.file("folder/stays/inner");
    tree.file("beside/kept");
    const auto beside = tree.snapshot("beside");
    test::FakeRights &rights = test::FakeRights::install();
    rights.reply = [](const std::filesystem::path &path) {
        return path.filename() == "stays" ? PrivilegedReply{true, false, "rm: cannot remove"}
                                          : test::FakeRights::removeAsRoot(path);
    };
    auto &shared = NvAuthorization::shareNvAuthorization();
    ASSERT_TRUE(shared.allocAuthorization());
    const auto folders = rootsOf({tree.path("folder")});
    Heard heard;
    const test::AsOrdinaryUser user;
    ASSERT_TRUE(user);
    DeleteFolderOperation operation(folders, newRun());
    operation.main();
    shared.freeAuthorization();
    EXPECT_EQ(operation.tally().wentItems, 1u);
    EXPECT_EQ(operation.tally().stayed[std::size_t(StayReason::Other)], 1u);
    EXPECT_THAT(heard.words, UnorderedElementsAre("BeginFastClean", "DeleteFileSuccess goes 1",
                                                  StartsWith("DeleteFileFailed stays "),
                                                  StartsWith("DeleteFileSuccess stays "),
                                                  "DeleteFileSuccess inner 1", "FastCleanFinish"));
    EXPECT_EQ(tree.snapshot("folder").size(), 1u);
    EXPECT_EQ(tree.snapshot("beside"), beside);
}

TEST(DeleteFolderOperation, OpensWhatItsOwnerClosedAndClosesWhatStays) {
    test::needRoot();
    TestTree tree;
    tree.file("folder/closed/file");
    tree.file("folder/held/foreign/file");
    for (const char *own : {"", "folder", "folder/closed", "folder/closed/file", "folder/held"})
        ASSERT_EQ(::chown(tree.path(own).c_str(), test::ordinaryUser, test::ordinaryUser), 0);
    for (const char *closed : {"folder/closed", "folder/held"})
        tree.mode(closed, 0500);
    const auto held = tree.snapshot("folder/held");
    const auto folders = rootsOf({tree.path("folder")});
    const test::AsOrdinaryUser user;
    ASSERT_TRUE(user);
    DeleteFolderOperation(folders, newRun()).main();
    EXPECT_FALSE(tree.exists("folder/closed"));
    EXPECT_EQ(tree.snapshot("folder/held"), held);
    EXPECT_EQ(std::filesystem::status(tree.path("folder/held")).permissions(),
              std::filesystem::perms(0500));
}

TEST(DeleteFolderOperation, ACancelEndsItBetweenTwoEntries) {
    TestTree tree;
    for (int i = 0; i < 10; ++i)
        tree.file("folder/" + std::to_string(i));
    Heard heard;
    DeleteFolderOperation operation(rootsOf({tree.path("folder"), tree.path("folder")}), newRun());
    QObject context;
    NotificationCenter::defaultCenter().addObserver(
        &context, DSDeleteFileSuccess, [&](const Notification &) { operation.cancel(); });
    operation.main();
    EXPECT_EQ(tree.snapshot("folder").size(), 9u);
    EXPECT_EQ(std::count(heard.words.begin(), heard.words.end(), "FastCleanFinish"), 0);
    EXPECT_THAT(heard.words, testing::Contains("FastCleanCanceled"));
}

} // namespace
} // namespace brightsweep
