#include "cleaning/FolderUtilities.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/ItemSizes.h"
#include "core/TaskStopper.h"
#include "core/UtilityFunction.h"
#include "platform/Platform.h"
#include "preferences/PreferenceViewController.h"
#include "results/CleanFileInfo.h"
#include "support/FaultPlatform.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <limits>
#include <random>

namespace brightsweep {
namespace {

using test::TestEnvironment;
using test::TestTree;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FolderUtilities, TheHomeTrashComesFirst) {
    TestTree home(TestEnvironment::current().home());
    home.directory(".local/share/Trash/files");
    const auto folders = FolderUtilities::getFolderPath(4);
    ASSERT_EQ(folders.size(), 1u);
    EXPECT_EQ(folders[0].path, home.path(".local/share/Trash/files"));
    EXPECT_TRUE(folders[0].isTrash);
}

TEST(FolderUtilities, ShowsAPlainFolderItselfAndElseWhatHoldsIt) {
    TestTree tree;
    tree.directory("folder");
    tree.directory("Program.app/Contents");
    tree.file("folder/file");
    EXPECT_EQ(FolderUtilities::getFolderFromFile(tree.path("folder")), tree.path("folder"));
    EXPECT_EQ(FolderUtilities::getFolderFromFile(tree.path("Program.app")), tree.top());
    EXPECT_EQ(FolderUtilities::getFolderFromFile(tree.path("folder/file")), tree.path("folder"));
    EXPECT_EQ(FolderUtilities::getFolderFromFile(tree.path("folder/gone")), tree.path("folder"));
}

TEST(ItemSizes, CountLogicalBytesOfEveryNameAndFollowNoLink) {
    TestTree tree;
    tree.file("outside/big", std::string(5000, 'x'));
    tree.file("item/a", std::string(10, 'x'));
    tree.hardLink("item/b", tree.path("item/a"));
    tree.link("item/link", tree.path("outside"));
    tree.sparseFile("item/deep/sparse", 1ull << 33);
    tree.socket("item/socket");
    tree.fifo("item/fifo");
    tree.file("item/line\nend/bad\xff", "12345");
    tree.link("link", tree.path("outside"));
    const std::uint64_t link = tree.path("outside").native().size();
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item")),
              10 + 10 + link + (1ull << 33) + 5);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item/a")), 10u);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("link")), link);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("gone")), 0u);
}

TEST(ItemSizes, KernelFileSystemsAndUnreadableFoldersCountNothing) {
    TestTree tree;
    tree.file("item/secret/file", "12345");
    tree.file("item/open", "123");
    test::FaultPlatform fault;
    fault.setFault([&](std::string_view call, const std::filesystem::path &path) {
        return call == "openDirectoryAt" && path.filename() == "secret"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item")), 3u);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath("/proc"), 0u);
}

TEST(ItemSizes, AreNothingWhileTheTaskStopperIsSet) {
    TestTree tree;
    tree.file("item/a", "12345");
    TaskStopper::sharedTaskStopper().setStopFlags(true);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item")), 0u);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item/a")), 0u);
    TaskStopper::sharedTaskStopper().setStopFlags(false);
    EXPECT_EQ(FolderUtilities::sizeOfItemAtPath(tree.path("item")), 5u);
}

TEST(CleanCategories, ReadTheirSelectionFromTheSettings) {
    EXPECT_EQ(getDefaultsValue().join(QLatin1Char(' ')), QStringLiteral("1 1 1 1 0 0"));
    PreferenceViewController::setCategoryClicked(5, 2);
    PreferenceViewController::setCategoryClicked(0, 0);
    EXPECT_EQ(getDefaultsValue().join(QLatin1Char(' ')), QStringLiteral("0 1 1 1 0 2"));
}

} // namespace
} // namespace brightsweep
