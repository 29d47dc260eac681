#include "duplicates/getFileList.h"
#include "support/ChildProcess.h"
#include "support/FaultPlatform.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Listing {
    bool listed = false;
    std::vector<std::string> files; // relative to the root
    std::vector<std::string> bundles;
};

Listing list(const std::filesystem::path &root, std::uint64_t limit, bool hidden = true,
             bool system = true) {
    getFileList lister;
    lister.setM_bSearchHiddenFile(hidden);
    lister.setM_bSearchSystemDirectory(system);
    FileList files;
    std::vector<std::string> bundles;
    Listing listing;
    listing.listed = lister.getListAtPath(root, files, bundles, limit);
    for (const auto &file : files)
        listing.files.push_back(file->filePathName.substr(root.native().size() + 1));
    for (const std::string &bundle : bundles)
        listing.bundles.push_back(bundle.substr(root.native().size() + 1));
    return listing;
}

TEST(FileList, LinksCountOnlyAtTheFirstLevel) {
    TestTree outside;
    TestTree tree(outside.path("root"));
    outside.file("other/big", std::string(5000, 'x'));
    outside.file("other/deep/big", std::string(5000, 'x'));
    outside.link("other/deep/up", outside.path("other"));
    tree.link("folder", outside.path("other"));
    tree.link("file", outside.path("other/big"));
    tree.link("dangling", "nowhere");
    tree.link("sub/folder", outside.path("other"));
    tree.link("sub/file", outside.path("other/big"));
    EXPECT_THAT(list(tree.top(), 1000).files,
                UnorderedElementsAre("folder/big", "folder/deep/big"));
    // The size of a link is that of its text.
    EXPECT_THAT(list(tree.top(), 8).files,
                UnorderedElementsAre("folder/big", "folder/deep/big", "file"));
}

TEST(FileList, AHiddenRootHidesAllBelow) {
    TestTree tree;
    tree.file(".d/e/f", "x");
    EXPECT_THAT(list(tree.path(".d"), 0, false).files, IsEmpty());
    EXPECT_THAT(list(tree.path(".d"), 0, true).files, ElementsAre("e/f"));
}

TEST(FileList, NeitherAnExtensionAloneNorWhatLiesInABundleIsOne) {
    TestTree tree;
    tree.file("x/.app/f", "x");
    tree.file("x/A.app/Contents/B.app/f", "x");
    const auto all = list(tree.top(), 0);
    EXPECT_THAT(all.bundles, ElementsAre("x/A.app"));
    EXPECT_THAT(all.files, ElementsAre("x/.app/f"));
}

TEST(FileList, ADirectoryOfABundleCountsWithItsOwnSize) {
    TestTree tree;
    tree.file("Top.app/f", "x");
    tree.file("x/Deep.app/f", "x");
    ASSERT_GT(std::filesystem::directory_entry(tree.path("x")).exists(), 0);
    // A directory directly under the root is not listed itself.
    EXPECT_THAT(list(tree.top(), 2).bundles, ElementsAre("x/Deep.app"));
}

TEST(FileList, ARootInsideABundleIsThatBundle) {
    TestTree tree;
    tree.file("A.app/Contents/f", std::string(10, 'x'));
    getFileList lister;
    FileList files;
    std::vector<std::string> bundles;
    EXPECT_TRUE(lister.getListAtPath(tree.path("A.app/Contents"), files, bundles, 5));
    EXPECT_THAT(files, IsEmpty());
    EXPECT_THAT(bundles, ElementsAre(tree.path("A.app").native()));
}

TEST(FileList, SystemWords) {
    test::needRoot();
    const char *system[] = {"/Library", "/library/x", "/LIBRARY", "/Volumes",
                            "/sbin",    "/usr/share", "/proc",    "/nix"};
    const char *others[] = {"/Users/a/Library", "/home", "/", "/Applications", "/srv"};
    for (const char *path : system)
        EXPECT_TRUE(getFileList::IsSystemDirectory(path)) << path;
    for (const char *path : others)
        EXPECT_FALSE(getFileList::IsSystemDirectory(path)) << path;
    // With the system left out, "/" is walked without what plays its role.
    EXPECT_EQ(0, test::runInChild([] {
                  TestTree root(TestEnvironment::current().root() / "another root");
                  for (const char *place :
                       {"usr", "lib", "lib32", "lib64", "libx32", "boot", "etc", "opt", "var",
                        "run", "dev", "proc", "sys", "snap", "nix", "home"})
                      root.file(std::string(place) + "/x/f", "x");
                  if (::chroot(root.top().c_str()) != 0)
                      return 1;
                  getFileList lister;
                  lister.setM_bSearchSystemDirectory(false);
                  FileList files;
                  std::vector<std::string> bundles;
                  lister.getListAtPath("/", files, bundles, 0);
                  return files.size() == 1 && files[0]->filePathName == "/home/x/f" ? 0 : 2;
              }));
    // The rule holds for the very root only.
    TestTree tree;
    tree.file("Library/f", "x");
    EXPECT_THAT(list(tree.top(), 0, true, false).files, ElementsAre("Library/f"));
}

TEST(FileList, SpecialFilesAndUnreadableFolders) {
    TestTree tree;
    tree.fifo("a/fifo");
    tree.socket("a/socket");
    tree.file("a/f", "x");
    tree.file("closed/f", "x");
    FaultPlatform platform;
    platform.setFault([](std::string_view call, const std::filesystem::path &path) {
        return call == "openDirectoryAt" && path.filename() == "closed"
                   ? std::make_error_code(std::errc::permission_denied)
                   : std::error_code();
    });
    const auto listing = list(tree.top(), 0);
    EXPECT_TRUE(listing.listed);
    EXPECT_THAT(listing.files, ElementsAre("a/f"));
    EXPECT_FALSE(list(tree.path("a/f"), 0).listed);
    EXPECT_FALSE(list(tree.path("missing"), 0).listed);
}

TEST(FileList, StoppedItStillSucceedsWithNothing) {
    TestTree tree;
    tree.file("a/f", "x");
    getFileList *running = nullptr;
    FaultPlatform platform;
    platform.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "openDirectoryAt")
            running->stopSearch();
        return std::error_code();
    });
    getFileList lister;
    running = &lister;
    FileList files;
    std::vector<std::string> bundles;
    EXPECT_TRUE(lister.getListAtPath(tree.top(), files, bundles, 0));
    EXPECT_THAT(files, IsEmpty());
    platform.setFault({});
    EXPECT_TRUE(lister.getListAtPath(tree.top(), files, bundles, 0));
    EXPECT_EQ(files.size(), 1u);
    EXPECT_EQ(lister.m_CurrentPath(), tree.path("a").native());
}

TEST(FileList, DeepTreesAndHostileNames) {
    TestTree tree;
    tree.deepChain("deep", 3000);
    tree.file(std::string("deep/") + std::string(255, '\xfe'), "x");
    EXPECT_THAT(list(tree.top(), 0).files, ElementsAre("deep/" + std::string(255, '\xfe')));
}

} // namespace
} // namespace brightsweep::test
