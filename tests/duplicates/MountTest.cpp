#include "duplicates/SearchSupport.h"
#include "platform/linux/OverlayLayers.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestTree.h"

#include <sys/mount.h>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace brightsweep::test {
namespace {

// Runs the function on a thread with mounts of its own; false where the system does not allow it.
bool withOwnMounts(const std::function<void()> &function) {
    bool allowed = false;
    std::thread([&] {
        allowed = enterPrivateMounts();
        if (allowed)
            function();
    }).join();
    return allowed;
}

// The same file by another way is not a second one; a hard link is.
TEST(Mounts, AFileIsNeverItsOwnDuplicate) {
    needRoot();
    TestTree tree;
    const std::string data = bytes(50'000, 1);
    tree.file("real/sub/f", data);
    tree.file("real/sub/A.app/m", data);
    tree.directory("bound");
    tree.file("single", "");
    tree.link("link", tree.path("real"));
    tree.link("up", tree.top());
    const bool allowed = withOwnMounts([&] {
        ASSERT_TRUE(bindMount(tree.path("real/sub"), tree.path("bound")));
        ASSERT_TRUE(bindMount(tree.path("real/sub/f"), tree.path("single")));
        EXPECT_EQ(search(tree.top(), {.limit = 1000}), Groups());
        // With a second name of its own it is found under these two, however often it is mounted.
        tree.hardLink("real/other", tree.path("real/sub/f"));
        const Groups groups = search(tree.top(), {.limit = 1000});
        ASSERT_EQ(groups.size(), 1u);
        ASSERT_EQ(groups[0].size(), 2u);
        int others = 0;
        for (const std::string &path : groups[0]) {
            EXPECT_NE(path, tree.path("single").native());
            others += path.ends_with("/other");
        }
        EXPECT_EQ(others, 1);
        ASSERT_EQ(::umount(tree.path("single").c_str()), 0);
        ASSERT_EQ(::umount(tree.path("bound").c_str()), 0);
    });
    EXPECT_TRUE(allowed);
}

TEST(Mounts, TheOptionsOfAnOverlayNameItsLayers) {
    const struct {
        const char *options;
        std::vector<std::string> layers;
    } rows[] = {
        {"rw,lowerdir=/a:/b,upperdir=/u,workdir=/w,index=off", {"/a", "/b", "/u", "/w"}},
        {"rw,lowerdir=/lo\\134:w\\134\\054\\040er\\134\\134x", {"/lo:w, er\\x"}},
        {"ro,lowerdir=/a::/data", {"/a", "/data"}},
        {"ro,lowerdir+=/a:b,datadir+=/d\\134e", {"/a:b", "/d\\e", "/de"}},
        {"rw,lowerdir=/a\\134", {"/a\\"}},
        {"rw,redirect_dir=on,lowerdir", {}},
        {"", {}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(overlayLayers(row.options), row.layers) << row.options;
}
} // namespace
} // namespace brightsweep::test
