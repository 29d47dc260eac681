#include "helper/HelperProcess.h"
#include "support/LockHolder.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <fstream>
#include <memory>

namespace brightsweep {
namespace {

using helper::RemovePath;
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
    const RemovePath removal = test::removalBelow(tree.path("folder"), "item");
    const std::string good = helper::encodeRequest({process.token(), Verb::RemovePath, removal});
    std::string unknown = good;
    unknown[wrong.size()] = 99;
    const struct {
        std::string payload;
        const char *words;
    } cases[] = {
        {helper::encodeRequest({wrong, Verb::RemovePath, removal}), "wrong token"},
        {helper::encodeRequest({Token{}, Verb::RemovePath, removal}), "wrong token"},
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
        const auto reply = process.reply();
        ASSERT_TRUE(reply);
        EXPECT_FALSE(reply->performed);
        EXPECT_EQ(reply->output, row.words);
    }
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(isRemoved(process.remove(removal)));
}

TEST(Helper, EndsAtAStreamThatCannotBeRead) {
    TestTree tree;
    tree.file("folder/item");
    const auto before = tree.snapshot();
    {
        HelperProcess process;
        process.sendBytes("\xff\xff\xff\x7f");
        EXPECT_EQ(process.reply().value_or(Reply{}).output, "oversized frame");
        EXPECT_FALSE(process.reply());
        EXPECT_EQ(process.finish(), 1);
    }
    HelperProcess process;
    const RemovePath removal = test::removalBelow(tree.path("folder"), "item");
    const auto whole =
        helper::frame(helper::encodeRequest({process.token(), Verb::RemovePath, removal}));
    process.sendBytes(whole.substr(0, whole.size() - 1));
    EXPECT_EQ(process.finish(), 1);
    EXPECT_FALSE(process.reply());
    EXPECT_EQ(tree.snapshot(), before);
}

TEST(Helper, RefusesWhatMustStay) {
    auto &environment = TestEnvironment::current();
    TestTree all(environment.root());
    all.file("work/folder/item");
    all.file("home/.cache/item");
    all.file("home/.local/share/Trash/files/item");
    for (const char *place : {"system/etc", "system/usr/bin", "system/var/log/apt",
                              "system/var/lib/private", "system/boot/efi"})
        all.file(std::string(place) + "/item");
    all.link("work/home", environment.home());
    const auto root = environment.root();
    const RemovePath right = test::removalBelow(root / "work", "folder/item");
    RemovePath otherDirectory = right;
    ++otherDirectory.inode;
    RemovePath notAbsolute = right;
    notAbsolute.root = "work";
    RemovePath missing = right;
    missing.root += "/missing";

    const RemovePath refused[] = {
        otherDirectory,
        notAbsolute,
        missing,
        test::removalBelow(root / "work", ""),
        test::removalBelow(root / "work", "."),
        test::removalBelow(root / "work", "folder/.."),
        test::removalBelow(root / "work", "../home"),
        test::removalBelow(root / "work", "./folder"),
        test::removalBelow(root / "work", "folder//item"),
        test::removalBelow(root / "work", "folder/item/"),
        test::removalBelow(root / "work", "/folder/item"),
        test::removalBelow(root / "work", std::string("folder\0/item", 12)),
        test::removalBelow(root / "work", "home/.cache/item"), // through a link
        test::removalBelow("/", "no-such-item-anywhere"),
        test::removalBelow(root, "home"),
        test::removalBelow(root / "home", ".cache"),
        test::removalBelow(root / "home", ".local"),
        test::removalBelow(root / "home/.local/share/Trash", "files"),
        test::removalBelow(root / "work/home", ".cache"), // the root itself reached by a link
        test::removalBelow(root, "system"),
        test::removalBelow(root / "system", "etc"),
        test::removalBelow(root / "system", "usr/bin"),
        test::removalBelow(root / "system", "boot/efi"),
        test::removalBelow(root / "system/var/log", "apt"),
        test::removalBelow(root / "system/var", "lib"),
        test::removalBelow("/proc", "sys/no-such-item"),
    };
    HelperProcess process;
    const auto before = all.snapshot();
    for (const RemovePath &removal : refused) {
        const Reply reply = process.remove(removal);
        EXPECT_FALSE(reply.performed) << removal.root << " " << removal.relative;
        EXPECT_NE(reply.output, "");
    }
    EXPECT_EQ(all.snapshot(), before);
    // What lies in those places may go.
    EXPECT_TRUE(isRemoved(process.remove(root / "work", "folder/item")));
    EXPECT_TRUE(isRemoved(process.remove(root / "home/.cache", "item")));
    EXPECT_TRUE(isRemoved(process.remove(root / "system/var/log/apt", "item")));
    // The prefix is the caller's own only where nobody has gained rights.
    HelperProcess gained({"PKEXEC_UID=0"});
    EXPECT_TRUE(isRemoved(gained.remove(root / "system", "etc")));
}

TEST(Helper, GuardsAPlaceThatIsReachedByABindMount) {
    test::enterPrivateMounts();
    TestTree tree;
    auto &environment = TestEnvironment::current();
    std::filesystem::create_directories(environment.system() / "var/log/apt");
    const Mounted bound((environment.system() / "var/log").c_str(), tree.directory("bound"),
                        nullptr, MS_BIND);
    HelperProcess process;
    EXPECT_EQ(process.remove(tree.path("bound"), "apt").output, "the place is protected");
    EXPECT_TRUE(std::filesystem::exists(environment.system() / "var/log/apt"));
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
    // What has gone before, or lay in what has gone, counts as removed.
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), "missing")));
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder"), "missing/below")));
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
    // The root of a removal may be as deep.
    const auto above = lowest.substr(0, lowest.size() - 4);
    auto removal = test::removalBelow(tree.path("folder"), "d");
    removal.root += '/' + above;
    int descriptor = ::open(tree.path("folder").c_str(), O_PATH | O_DIRECTORY);
    for (std::size_t i = 0; i <= above.size() / 2; ++i) {
        const int next = ::openat(descriptor, "d", O_PATH | O_DIRECTORY);
        ::close(descriptor);
        descriptor = next;
    }
    struct stat status {};
    ASSERT_EQ(::fstat(descriptor, &status), 0);
    removal.inode = status.st_ino;
    EXPECT_TRUE(isRemoved(process.remove(removal)));
    EXPECT_NE(::fstatat(descriptor, "d", &status, AT_SYMLINK_NOFOLLOW), 0);
    ::close(descriptor);
}

TEST(Helper, LeavesATreeWithAMountInItWhole) {
    test::enterPrivateMounts();
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
        EXPECT_EQ(reply.output, "Device or resource busy");
    }
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(isRemoved(process.remove(tree.path("folder/tree"), "kept")));
}

TEST(Helper, SendsTheBeginningOfWhatTheToolSays) {
    test::enterPrivateMounts();
    TestTree tree;
    tree.file("folder/" + std::string(200, 'n'));
    const auto folder = tree.path("folder");
    const Mounted bound(folder.c_str(), folder, nullptr, MS_BIND);
    const Mounted readOnly(folder.c_str(), folder, nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY);
    HelperProcess process;
    const Reply reply = process.remove(folder, std::string(200, 'n'));
    EXPECT_TRUE(reply.performed);
    EXPECT_FALSE(reply.gone);
    EXPECT_EQ(reply.output.size(), 128u);
    EXPECT_TRUE(reply.output.starts_with("rm: cannot remove './nnn")) << reply.output;
}

TEST(Helper, TakesNothingFromAnArchiveThatAptHolds) {
    TestTree tree(TestEnvironment::current().system());
    const auto archives = tree.directory("var/cache/apt/archives");
    tree.file("var/cache/apt/archives/lock", "");
    tree.file("var/cache/apt/archives/one.deb");
    tree.file("var/cache/apt/archives/partial/two.deb");
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
    test::enterPrivateMounts();
    TestTree tree;
    const auto file = tree.file("drop_caches", "");
    const Mounted bound(file.c_str(), "/proc/sys/vm/drop_caches", nullptr, MS_BIND);
    HelperProcess process;
    process.sendBytes(
        helper::frame(helper::encodeRequest({process.token(), Verb::DropCaches, {}})));
    EXPECT_TRUE(process.reply().value_or(Reply{}).performed);
    std::string text;
    std::ifstream(file) >> text;
    EXPECT_EQ(text, "3");
}

} // namespace
} // namespace brightsweep
