#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/FindDuplicateApp.h"
#include "duplicates/SearchSupport.h"
#include "support/ChildProcess.h"
#include "support/FaultPlatform.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <new>
#include <thread>

namespace brightsweep::test {
namespace {

void buildStages(TestTree &tree) {
    for (unsigned i = 0; i < 30; ++i) {
        for (const char *copy : {"a", "b"}) {
            tree.file(copy + std::string("/f") + std::to_string(i), bytes(20'000 + i, i));
            tree.file(copy + std::to_string(i) + ".app/m", bytes(30'000 + i, i));
        }
    }
}

// A stop at any call leaves the first groups of the full result, and nothing more is opened.
TEST(Stages, AStopAnywhereLeavesAPrefix) {
    TestTree tree;
    buildStages(tree);
    const Groups full = search(tree.top());
    ASSERT_EQ(full.size(), 60u);
    FaultPlatform platform;
    std::size_t longest = 0;
    for (const unsigned threads : {1u, 3u}) {
        unsigned all = 0;
        platform.setFault([&](std::string_view, const std::filesystem::path &) {
            ++all;
            return std::error_code();
        });
        search(tree.top());
        for (unsigned stopAt = 1; stopAt < all; stopAt += all / 25) {
            duplicateFind stopped(threads);
            stopped.setSearchOption(true, true);
            unsigned calls = 0;
            unsigned late = 0;
            platform.setFault([&](std::string_view call, const std::filesystem::path &) {
                if (++calls == stopAt)
                    stopped.stopSearch();
                else if (calls > stopAt && call == "openListedFile")
                    ++late;
                return std::error_code();
            });
            stopped.searchDuplicateFileAtPath(tree.top(), 0);
            const Groups groups = groupsOf(stopped);
            ASSERT_LE(groups.size(), full.size());
            EXPECT_TRUE(std::equal(groups.begin(), groups.end(), full.begin())) << stopAt;
            EXPECT_LE(late, threads) << stopAt;
            if (groups.size() < full.size())
                longest = std::max(longest, groups.size());
        }
    }
    EXPECT_GT(longest, 30u) << "no stop came in the compare stage";
    EXPECT_LT(longest, 60u);
}

// Wherever the memory runs out, all threads end, and what had been found by then is a prefix.
TEST(Stages, AnExceptionAnywhereEndsTheSearch) {
    TestTree tree;
    buildStages(tree);
    const Groups full = search(tree.top());
    FaultPlatform platform;
    for (const unsigned threads : {1u, 3u}) {
        for (unsigned failAt = 1, calls = failAt; calls >= failAt; failAt += 37) {
            calls = 0;
            platform.setFault([&](std::string_view, const std::filesystem::path &) {
                if (++calls == failAt)
                    throw std::bad_alloc();
                return std::error_code();
            });
            duplicateFind failing(threads);
            failing.setSearchOption(true, true);
            try {
                failing.searchDuplicateFileAtPath(tree.top(), 0);
                EXPECT_LT(calls, failAt);
            } catch (const std::bad_alloc &) {
                EXPECT_GE(calls, failAt);
            }
            const Groups groups = groupsOf(failing);
            ASSERT_LE(groups.size(), full.size());
            EXPECT_TRUE(std::equal(groups.begin(), groups.end(), full.begin())) << failAt;
        }
    }
}

// While one thread reads, the others wait for what it will find.
TEST(Stages, AnExceptionIsNotWaitedFor) {
    TestTree tree;
    for (const char *name : {"a", "b"})
        tree.file(name, bytes(1'900'000, 1));
    FaultPlatform platform;
    unsigned reads = 0;
    platform.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "readCachedAt" && ++reads == 10)
            throw std::bad_alloc();
        return std::error_code();
    });
    duplicateFind failing(3);
    failing.setSearchOption(true, true);
    EXPECT_THROW(failing.searchDuplicateFileAtPath(tree.top(), 0), std::bad_alloc);
}

// Where the file system does not tell of the hole, the stop comes between two blocks.
TEST(Stages, AStopWithinALargeFile) {
    TestTree tree;
    tree.sparseFile("a", std::uint64_t(1) << 40);
    tree.sparseFile("b", std::uint64_t(1) << 40);
    tree.sparseFile("A.app/m", std::uint64_t(1) << 40);
    tree.sparseFile("B.app/m", std::uint64_t(1) << 40);
    FaultPlatform platform;
    for (const bool inBundles : {true, false}) {
        if (!inBundles)
            removeTree(tree.path("B.app"));
        duplicateFind search;
        search.setSearchOption(true, true);
        unsigned reads = 0;
        platform.setFault([&](std::string_view call, const std::filesystem::path &) {
            if (call == "nextData" && ++reads == 20)
                search.stopSearch();
            return call == "nextData" ? std::make_error_code(std::errc::not_supported)
                                      : std::error_code();
        });
        search.searchDuplicateFileAtPath(tree.top(), 0);
        EXPECT_EQ(groupsOf(search), Groups());
        EXPECT_LT(reads, 40u);
    }
}

// For an owner who cannot wait for a file that does not answer.
TEST(Stages, WhatIsFoundCanBeHadWhileTheSearchHangs) {
    TestTree tree;
    buildStages(tree);
    const Groups full = search(tree.top());
    FaultPlatform platform;
    std::promise<void> release;
    const auto released = release.get_future().share();
    std::atomic<bool> hangs{false};
    std::atomic<unsigned> opened{0};
    duplicateFind hanging(1);
    hanging.setSearchOption(true, true);
    platform.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "openListedFile" && ++opened == 100) {
            hangs = true;
            released.wait();
        }
        return std::error_code();
    });
    std::thread searching([&] { hanging.searchDuplicateFileAtPath(tree.top(), 0); });
    EXPECT_TRUE(eventually([&] { return hangs.load(); }));
    const Groups groups = groupsOf(hanging);
    EXPECT_GT(groups.size(), 10u);
    EXPECT_LT(groups.size(), full.size());
    EXPECT_TRUE(std::equal(groups.begin(), groups.end(), full.begin()));
    release.set_value();
    searching.join();
    EXPECT_EQ(groupsOf(hanging), full);
}

TEST(Stages, AStopWhileNamesAreToldApart) {
    TestTree tree;
    const auto file = tree.file("f", "many names");
    for (int i = 0; i < 200; ++i)
        tree.hardLink("d/" + std::to_string(i), file);
    duplicateFind search;
    search.setSearchOption(true, true);
    unsigned looks = 0;
    FaultPlatform platform;
    platform.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "isMountPoint" && ++looks == 20)
            search.stopSearch();
        return std::error_code();
    });
    search.searchDuplicateFileAtPath(tree.top(), 0);
    EXPECT_EQ(looks, 20u);
}

TEST(Stages, ProgressAndPath) {
    TestTree tree;
    for (const char *name : {"A.app/m", "B.app/m", "C.app/m"})
        tree.file(name, "bundle");
    for (unsigned i = 0; i < 4; ++i)
        tree.file("d/" + std::to_string(i), bytes(20'000, i / 2));
    DuplicateFilesOpt opt(1);
    EXPECT_EQ(opt.getProgress(), 0u);
    EXPECT_EQ(opt.getCurrentSearchFile(), "");
    std::vector<std::uint32_t> bundles;
    std::vector<std::uint32_t> files;
    FaultPlatform platform;
    platform.setFault([&](std::string_view call, const std::filesystem::path &path) {
        if (call == "openDirectoryAt") {
            EXPECT_EQ(opt.getProgress(), 0u);
        } else if (call == "openListedFile" && path.filename() == "m") {
            bundles.push_back(opt.getProgress());
            EXPECT_TRUE(opt.getCurrentSearchFile().ends_with(".app"));
        } else if (call == "openListedFile") {
            files.push_back(opt.getProgress());
            EXPECT_EQ(std::filesystem::path(opt.getCurrentSearchFile()).parent_path(),
                      tree.path("d"));
        }
        return std::error_code();
    });
    opt.beginSearchAtPath(tree.top(), 0);
    EXPECT_THAT(bundles, testing::Each(0u));
    EXPECT_THAT(files, testing::Each(50u));
    EXPECT_EQ(opt.getProgress(), 100u);
    // One object serves one search.
    const std::string path = opt.getCurrentSearchFile();
    opt.beginSearchAtPath("/", 0);
    EXPECT_EQ(opt.getCurrentSearchFile(), path);
}

TEST(Stages, BundleProgressFalls) {
    TestTree tree;
    std::vector<std::string> paths;
    for (std::size_t pair = 0; pair < 3; ++pair) {
        for (const char *side : {"a", "b"}) {
            const std::string name = side + std::to_string(pair) + ".app";
            tree.file(name + "/m", bytes(10 + pair, 1));
            paths.push_back(tree.path(name));
        }
    }
    FindDuplicateApp finder(1);
    std::vector<std::uint32_t> seen;
    finder.FindAppInArray(paths, [&](const AppList &) { seen.push_back(finder.m_Progress()); });
    EXPECT_THAT(seen, testing::ElementsAre(0u, 66u, 33u));
    EXPECT_EQ(finder.m_Progress(), 0u);
}

TEST(Stages, Bundles) {
    TestTree tree;
    tree.file("1/A.app/Contents/x", "xxx");
    tree.file("1/A.app/Contents/y", "yy");
    tree.file("1/A.app/empty", "");
    tree.file("2/Rearranged.app/y2", "xxx");
    tree.file("2/Rearranged.app/deep/x2", "yy");
    tree.file("2/Rearranged.app/deep/empty", "");
    tree.file("3/SameSize.app/x", "xxxy");
    tree.file("3/SameSize.app/y", "y");
    tree.file("3/SameSize.app/empty", "");
    tree.file("4/Fifo.app/x", "xxx");
    tree.file("4/Fifo.app/y", "yy");
    tree.fifo("4/Fifo.app/empty");
    tree.link("again", tree.path("1"));
    const auto groups = unordered(search(tree.top(), {.limit = 2}));
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].size(), 2u);
    EXPECT_EQ(groups[0][groups[0][1].ends_with("A.app") ? 0 : 1], tree.path("2/Rearranged.app"));
}

// Hidden members count whatever the setting says; the first of a group is listed last.
TEST(Stages, BundlesCountHiddenMembers) {
    TestTree tree;
    for (const char *name : {"A.app", "B.app", "C.app"})
        tree.file(name + std::string("/m"), "same");
    tree.file("A.app/.h", "x");
    tree.file("B.app/.h", "x");
    tree.file("C.app/.h", "y");
    std::vector<std::string> paths;
    for (const char *name : {"A.app", "C.app", "B.app"})
        paths.push_back(tree.path(name));
    FindDuplicateApp finder(1);
    std::vector<AppList> groups;
    finder.FindAppInArray(paths, groups);
    ASSERT_EQ(groups.size(), 1u);
    ASSERT_EQ(groups[0].size(), 2u);
    EXPECT_EQ(groups[0][0]->DirectoryName, "B.app");
    EXPECT_EQ(groups[0][1]->DirectoryName, "A.app");
}

TEST(Stages, TheTree) {
    TestTree tree;
    tree.file("A.app/m", "bundle");
    tree.file("B.app/m", "bundle");
    for (const char *name : {"one.tar.gz", "two.TXT", "three"})
        tree.file(std::string("d/") + name, bytes(5000, 1));
    DuplicateFilesOpt opt;
    std::shared_ptr<SimpleTreeNode> root;
    EXPECT_FALSE(opt.getDuplicateFiles(root));
    opt.beginSearchAtPath(tree.top(), 2);
    const Groups groups = search(tree.top(), {.limit = 2});
    ASSERT_TRUE(opt.getDuplicateFiles(root));
    EXPECT_EQ(root->data().name(), "Root");
    ASSERT_EQ(root->numberOfChildren(), 2);
    const auto data = [](const TreeNode::Pointer &node) {
        return static_cast<SimpleTreeNode &>(*node).data();
    };
    const auto bundles = root->childAtIndex(0);
    EXPECT_EQ(data(bundles).extendName(), "APP");
    EXPECT_EQ(data(bundles).fileSize(), 12u);
    EXPECT_EQ(tree.path(data(bundles).name()).native(), groups[0].back());
    EXPECT_EQ(data(bundles->firstChild()).iconRep().find('/'), std::string::npos);
    // The first entry of the list names the group and is its last leaf.
    const auto files = root->childAtIndex(1);
    EXPECT_EQ(tree.path("d/" + data(files).name()).native(), groups[1].front());
    EXPECT_EQ(data(files->lastChild()).name(), groups[1].front());
    EXPECT_EQ(data(files->firstChild()).name(), groups[1][1]);
    EXPECT_EQ(data(files).fileSize(), 15'000u);
    EXPECT_TRUE(data(files->firstChild()).ModificationDate().has_value());

    DuplicateFilesOpt none;
    none.beginSearchAtPath(tree.path("d/three"), 0);
    auto untouched = root;
    EXPECT_FALSE(none.getDuplicateFiles(untouched));
    EXPECT_EQ(untouched, root);
}

// The search tells them apart by their heads.
TEST(Stages, NeighboursOfOneChecksumAreOneGroupOfTheTree) {
    TestTree tree;
    for (const char *name : {"1", "2"})
        tree.file(name, bytes(6000, 2));
    for (const char *name : {"3", "4"})
        tree.file(name, forgedTwin(bytes(6000, 2), 0));
    DuplicateFilesOpt opt;
    opt.beginSearchAtPath(tree.top(), 0);
    std::shared_ptr<SimpleTreeNode> root;
    ASSERT_TRUE(opt.getDuplicateFiles(root));
    ASSERT_EQ(root->numberOfChildren(), 1);
    EXPECT_EQ(root->childAtIndex(0)->numberOfChildren(), 4);
}

} // namespace
} // namespace brightsweep::test
