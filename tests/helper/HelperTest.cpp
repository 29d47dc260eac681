#include "helper/HelperProcess.h"
#include "support/ChildProcess.h"
#include "support/LockHolder.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <fstream>
#include <memory>

namespace brightsweep {
namespace {

using helper::RemoveItems;
using helper::Replies;
using helper::Reply;
using helper::Request;
using helper::Token;
using helper::Verb;
using test::HelperProcess;
using test::TestEnvironment;
using test::TestTree;

bool isRemoved(const Reply &reply) {
    return reply.performed && reply.gone && reply.output.empty();
}

class Mounted {
public:
    Mounted(const char *source, std::filesystem::path place, const char *type, unsigned long flags)
        : m_place(std::move(place)) {
        if (::mount(source, m_place.c_str(), type, flags, nullptr) != 0)
            throw std::runtime_error("mount " + m_place.native());
    }
    ~Mounted() { ::umount2(m_place.c_str(), MNT_DETACH); }

private:
    std::filesystem::path m_place;
};

// A folder that even root cannot change, on a file system that knows such.
bool setImmutable(const std::filesystem::path &folder, bool immutable) {
    const FileDescriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    int flags = 0;
    if (!directory || ::ioctl(directory.get(), FS_IOC_GETFLAGS, &flags) != 0)
        return false;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    return ::ioctl(directory.get(), FS_IOC_SETFLAGS, &flags) == 0;
}

TEST(Helper, HandsOutAFreshTokenAndEndsWithItsInput) {
    HelperProcess one;
    HelperProcess other;
    EXPECT_NE(one.token(), Token{});
    EXPECT_NE(one.token(), other.token());
    EXPECT_EQ(one.finish(), 0);
}

TEST(Helper, RefusesEveryFrameThatIsNoRequestAndGoesOn) {
    TestTree tree;
    tree.file("folder/item");
    HelperProcess process;
    Token wrong = process.token();
    wrong[31] ^= 1;
    const RemoveItems removal = test::removalBelow(tree.path("folder"), "item");
    const std::string good = helper::encodeRequest({process.token(), Verb::RemoveItems, removal});
    std::string unknown = good;
    unknown[wrong.size()] = 99;
    const struct {
        std::string payload;
        const char *words;
    } cases[] = {
        {helper::encodeRequest({wrong, Verb::RemoveItems, removal}), "wrong token"},
        {helper::encodeRequest({Token{}, Verb::RemoveItems, removal}), "wrong token"},
        {"", "wrong token"},
        {std::string(1000, '\xff'), "wrong token"},
        {unknown, "unknown verb"},
        {good.substr(0, good.size() - 1), "malformed request"},
        {good + "x", "malformed request"},
        {good.substr(0, wrong.size() + 1), "malformed request"},
    };
    const auto before = tree.snapshot();
    for (const auto &row : cases) {
        process.sendBytes(helper::frame(row.payload));
        EXPECT_EQ(process.replies(), Replies({{false, false, row.words}}));
    }
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(isRemoved(process.remove(removal).front()));
}

TEST(Helper, EndsAtAStreamThatCannotBeRead) {
    TestTree tree;
    tree.file("folder/item");
    const auto before = tree.snapshot();
    {
        HelperProcess process;
        process.sendBytes("\xff\xff\xff\x7f");
        EXPECT_EQ(process.replies(), Replies({{false, false, "oversized frame"}}));
        EXPECT_FALSE(process.replies());
        EXPECT_EQ(process.finish(), 1);
    }
    HelperProcess process;
    const RemoveItems removal = test::removalBelow(tree.path("folder"), "item");
    const auto whole =
        helper::frame(helper::encodeRequest({process.token(), Verb::RemoveItems, removal}));
    process.sendBytes(whole.substr(0, whole.size() - 1));
    EXPECT_EQ(process.finish(), 1);
    EXPECT_FALSE(process.replies());
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Helper, RefusesWhatMustStay) {
    test::needRoot();
    auto &environment = TestEnvironment::current();
    TestTree all(environment.root());
    all.file("work/folder/item");
    all.file("home/.cache/item");
    all.file("home/.local/share/Trash/files/item");
    for (const char *place : {"system/usr/bin", "system/var/log/apt", "system/boot/efi"})
        all.file(std::string(place) + "/item");
    all.link("work/home", environment.home());
    ASSERT_EQ(::chown(all.file("work/strangers").c_str(), 4711, 4711), 0);
    const auto root = environment.root();
    const RemoveItems right = test::removalBelow(root / "work", "folder/item");
    const auto changed = [&](auto change) {
        RemoveItems other = right;
        change(other);
        return other;
    };
    const RemoveItems refused[] = {
        changed([](RemoveItems &other) { ++other.inode; }),
        changed([](RemoveItems &other) { ++other.device; }),
        changed([](RemoveItems &other) { other.root = "work"; }),
        changed([](RemoveItems &other) { other.root += "/missing"; }),
        changed([](RemoveItems &other) { other.root += "/../work"; }),
        changed([&](RemoveItems &other) { other.root = "/proc/self/root" + other.root; }),
        changed([](RemoveItems &other) { other.way = "folder/.."; }),
        changed([](RemoveItems &other) { other.way = "./folder"; }),
        changed([](RemoveItems &other) { other.way = "/folder"; }),
        changed([](RemoveItems &other) { other.way = "folder/"; }),
        changed([](RemoveItems &other) { other.way = std::string("folder\0", 7); }),
        changed([](RemoveItems &other) { other.items[0].name = ""; }),
        changed([](RemoveItems &other) { other.items[0].name = ".."; }),
        changed([](RemoveItems &other) { other.items[0].name = "../folder"; }),
        // Something else than what was looked at.
        changed([](RemoveItems &other) { ++other.items[0].device; }),
        changed([](RemoveItems &other) { ++other.items[0].inode; }),
        changed([](RemoveItems &other) { other.items[0].type = S_IFDIR; }),
        changed([](RemoveItems &other) { ++other.items[0].size; }),
        changed([](RemoveItems &other) { ++other.items[0].changed; }),
        test::removalBelow(root / "work", "home/.cache/item"), // through a link
        test::removalBelow(root / "work", "strangers"),
        test::removalBelow("/", "no-such-item-anywhere"),
        test::removalBelow(root, "home"),
        test::removalBelow(root / "home", ".cache"),
        test::removalBelow(root / "home", ".local"),
        test::removalBelow(root / "home/.local/share/Trash", "files"),
        test::removalBelow(root / "work/home", ".cache"), // the root itself reached by a link
        test::removalBelow(root, "system"),
        test::removalBelow(root / "system", "usr"),
        test::removalBelow(root / "system", "boot/efi"),
        test::removalBelow(root / "system/var/log", "apt"),
        test::removalBelow("/usr", "share"),
        test::removalBelow("/etc", "hostname"), // part of the system
        test::removalBelow("/proc", "sys/kernel"),
    };
    HelperProcess process;
    const auto before = all.snapshot();
    for (const RemoveItems &removal : refused) {
        const Reply reply = process.remove(removal).front();
        EXPECT_FALSE(reply.performed) << removal.root << " " << removal.way;
        EXPECT_NE(reply.output, "");
    }
    EXPECT_EQ(all.snapshot(), before);
    // What lies in those places may go.
    EXPECT_TRUE(isRemoved(process.remove(right).front()));
    EXPECT_TRUE(isRemoved(process.remove(root / "home/.cache", "item")));
    EXPECT_TRUE(isRemoved(process.remove(root / "system/var/log/apt", "item")));
}

TEST(Helper, TakesSeveralItemsAndTellsThemApart) {
    TestTree tree;
    std::vector<std::string> names;
    for (int i = 0; i < 256; ++i)
        names.push_back("item" + std::to_string(i));
    for (const std::string &name : names)
        tree.file("folder/" + name + "/file");
    tree.file("folder/kept");
    HelperProcess process;
    RemoveItems removal = test::removalOf(tree.path("folder"), "", names);
    removal.items[5].changed += 1;
    const Replies replies = process.remove(removal);
    ASSERT_EQ(replies.size(), names.size());
    for (std::size_t i = 0; i < replies.size(); ++i)
        EXPECT_EQ(isRemoved(replies[i]), i != 5) << replies[i].output;
    EXPECT_EQ(replies[5].output, "changed since it was found");
    EXPECT_TRUE(tree.exists("folder/item5/file"));
    EXPECT_EQ(tree.snapshot("folder").size(), 3u);
    // After a word of the tool the rest is tried alone.
    tree.file("batch/good");
    tree.file("batch/bad/file");
    const auto bad = tree.path("batch/bad");
    ASSERT_TRUE(setImmutable(bad, true));
    const Replies told = process.remove(test::removalOf(tree.path("batch"), "", {"bad", "good"}));
    EXPECT_TRUE(told[0].performed && !told[0].gone && !told[0].output.empty());
    EXPECT_TRUE(isRemoved(told[1]));
    EXPECT_TRUE(setImmutable(bad, false));
}

TEST(Helper, IsHeardOnlyByWhoeverStartedIt) {
    TestTree tree;
    tree.file("folder/item");
    HelperProcess process;
    const RemoveItems removal = test::removalBelow(tree.path("folder"), "item");
    // A child has the socket and the token, as a thief would.
    const pid_t thief = ::fork();
    if (thief == 0) {
        process.sendRequest(Verb::RemoveItems, removal);
        ::_exit(0);
    }
    ::waitpid(thief, nullptr, 0);
    EXPECT_FALSE(process.replies());
    EXPECT_EQ(process.finish(), 1);
    EXPECT_TRUE(tree.exists("folder/item"));
}

TEST(Helper, StopsWithinAnItemAndEndsWithItsStarter) {
    TestTree tree;
    for (int i = 0; i < 5; ++i)
        tree.deepChain("folder/item/" + std::to_string(i), 9'000);
    HelperProcess process;
    process.sendRequest(Verb::RemoveItems, test::removalBelow(tree.path("folder"), "item"));
    process.sendRequest(Verb::Stop);
    const auto stopped = process.replies();
    ASSERT_TRUE(stopped);
    EXPECT_FALSE(stopped->front().gone);
    EXPECT_EQ(stopped->front().output, "stopped");
    EXPECT_TRUE(tree.exists("folder/item"));
    // A stop without anything to stop is passed over.
    process.sendRequest(Verb::Stop);
    process.sendRequest(Verb::RemoveItems, test::removalBelow(tree.path("folder"), "item"));
    EXPECT_EQ(process.finish(), 0);
    EXPECT_TRUE(tree.exists("folder/item")) << "the tool went on after its starter";
}

TEST(Helper, RemovesWhateverTheName) {
    TestTree tree;
    tree.directory("folder");
    HelperProcess process;
    for (const std::string name :
         {"-v", "--", "-rf", "*", "$HOME", "a\nb", " ", "\xff\xfe", "...", "a;b'\""}) {
        tree.file("folder/" + name);
        tree.file("beside/" + name);
        EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), name))) << name;
        EXPECT_FALSE(tree.exists("folder/" + name)) << name;
        EXPECT_TRUE(tree.exists("beside/" + name)) << name;
    }
    const std::string longest(255, 'n');
    tree.file("folder/" + longest + "/" + longest);
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), longest)));
    // A link goes, not what it leads to.
    tree.link("folder/link", tree.path("beside"));
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), "link")));
    EXPECT_TRUE(tree.exists("beside/-v"));
    // What has gone before counts as removed.
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), "missing")));
}

TEST(Helper, RemovesTreesAndPathsOfAnyDepth) {
    TestTree tree;
    HelperProcess process;
    tree.deepChain("folder/deep", 10'000);
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), "deep")));
    EXPECT_FALSE(tree.exists("folder/deep"));

    tree.deepChain("folder/d", 2'500);
    std::string lowest = "d";
    for (int level = 1; level < 2'500; ++level)
        lowest += "/d";
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), lowest)));
    EXPECT_TRUE(tree.exists("folder/d/d/d"));
}

TEST(Helper, LeavesATreeWithAMountInItWhole) {
    test::needRoot();
    ASSERT_TRUE(test::enterPrivateMounts());
    TestTree tree;
    tree.file("folder/tree/kept");
    tree.file("folder/tree/a/b/below the mount");
    const Mounted mount("tmpfs", tree.path("folder/tree/a/b"), "tmpfs", 0);
    tree.file("folder/tree/a/b/file");
    HelperProcess process;
    const auto before = tree.snapshot();
    for (const char *relative : {"tree", "tree/a", "tree/a/b"}) {
        const Reply reply = process.remove(tree.path("folder"), relative);
        EXPECT_FALSE(reply.performed);
        EXPECT_EQ(reply.output, "holds another volume");
    }
    EXPECT_EQ(process.remove(tree.path("folder"), "tree/a/b/file").output,
              "lies on another volume");
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder/tree"), "kept")));
    // The kernel does not tell that a mount point has another path now, and the tool takes what is
    // on the same device for its own.
    tree.file("precious/file");
    const Mounted bound(tree.path("precious").c_str(), tree.directory("folder/old/bound"), nullptr,
                        MS_BIND);
    EXPECT_EQ(process.remove(tree.path("folder"), "old").output, "holds another volume");
    std::filesystem::rename(tree.path("folder/old"), tree.path("folder/new"));
    EXPECT_FALSE(process.remove(tree.path("folder"), "new").gone);
    EXPECT_TRUE(tree.exists("precious/file"));
    std::filesystem::rename(tree.path("folder/new"), tree.path("folder/old")); // to be unmounted
}

TEST(Helper, SendsTheBeginningOfWhatTheToolSays) {
    test::needRoot();
    TestTree tree;
    const std::string name(200, 'n');
    tree.file("folder/" + name + "/file");
    ASSERT_TRUE(setImmutable(tree.path("folder/" + name), true));
    HelperProcess process;
    const Reply reply = process.remove(tree.path("folder"), name);
    EXPECT_TRUE(setImmutable(tree.path("folder/" + name), false));
    EXPECT_TRUE(reply.performed);
    EXPECT_FALSE(reply.gone);
    EXPECT_EQ(reply.output.size(), 128u);
    EXPECT_TRUE(reply.output.starts_with("rm: cannot remove './nnn")) << reply.output;
}

TEST(Helper, TakesNothingFromAnArchiveThatAptHolds) {
    TestTree tree(TestEnvironment::current().system());
    // The caches may well lie elsewhere.
    const auto archives = tree.directory("data/apt/archives");
    tree.directory("var");
    tree.link("var/cache", "../data");
    tree.file("data/apt/archives/lock", "");
    tree.file("data/apt/archives/one.deb");
    tree.file("data/apt/archives/partial/two.deb");
    auto holder = std::make_unique<test::LockHolder>(archives / "lock");
    HelperProcess process;
    const auto before = tree.snapshot();
    EXPECT_EQ(process.remove(archives, "one.deb").output, "Device or resource busy");
    EXPECT_EQ(process.remove(archives, "partial/two.deb").output, "Device or resource busy");
    EXPECT_EQ(tree.snapshot(), before);
    holder.reset();
    EXPECT_TRUE(isRemoved(process.remove(archives, "one.deb")));
    EXPECT_FALSE(process.remove(archives, "lock").performed);
    EXPECT_FALSE(process.remove(archives, "partial").performed);
}

TEST(Helper, DropsTheCaches) {
    test::needRoot();
    ASSERT_TRUE(test::enterPrivateMounts());
    TestTree tree;
    const auto file = tree.file("drop_caches", "");
    const Mounted bound(file.c_str(), "/proc/sys/vm/drop_caches", nullptr, MS_BIND);
    HelperProcess process;
    process.sendRequest(Verb::DropCaches);
    EXPECT_EQ(process.replies(), Replies({{true, false, {}}}));
    std::string text;
    std::ifstream(file) >> text;
    EXPECT_EQ(text, "3");
}

} // namespace
} // namespace brightsweep
