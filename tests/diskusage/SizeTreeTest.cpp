#include "diskusage/RecordingCanvas.h"
#include "diskusage/Trees.h"
#include "foundation/NotificationCenter.h"
#include "support/FaultPlatform.h"
#include "support/NeedsRoot.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <condition_variable>
#include <limits>
#include <mutex>
#include <thread>

namespace brightsweep {
namespace {

using test::forEachNode;
using test::scan;
using test::sizesOf;
using test::TestTree;
using test::Tree;

// What the tree is by its definition: path by path, one entry after the other.
std::int64_t define(const std::string &path, bool isTop,
                    std::map<std::string, std::int64_t> &sizes) {
    std::int64_t total = 0;
    DIR *directory = ::opendir(path.c_str());
    while (const dirent *entry = ::readdir(directory)) {
        const std::string name = entry->d_name;
        if (name.back() == '.')
            continue;
        if (entry->d_type == DT_DIR) {
            if (!isTop || name != "Volumes")
                total += define(path + name + "/", false, sizes);
            continue;
        }
        struct stat status;
        if (::lstat((path + name).c_str(), &status) == 0)
            total += status.st_size;
    }
    ::closedir(directory);
    sizes[path] = total;
    return total;
}

std::map<std::string, std::int64_t> defined(const TestTree &tree) {
    std::map<std::string, std::int64_t> sizes;
    define(tree.top().native() + "/", true, sizes);
    return sizes;
}

void expectSorted(AllDir &root) {
    forEachNode(root, [](AllDir &node) {
        std::int64_t before = std::numeric_limits<std::int64_t>::max();
        for (auto &slot : node.ppChildren()) {
            EXPECT_LE(slot.load()->iSize, before) << slot.load()->szPath();
            before = slot.load()->iSize;
            EXPECT_EQ(slot.load()->pParent, &node);
        }
    });
}

TEST(SizeTree, CountsWhatTheDefinitionCounts) {
    TestTree tree;
    tree.sparseFile("plain/file", 1000);
    tree.sparseFile("plain/.hidden/file", 20);
    tree.sparseFile("plain/ends in a point.", 1 << 20);
    tree.sparseFile("folder./inside", 1 << 20);
    tree.sparseFile("...", 1 << 20);
    tree.sparseFile("Volumes/left out", 1 << 20);
    tree.sparseFile("plain/Volumes/counted", 300);
    tree.directory("empty");
    tree.sparseFile("line\nend \xff\xfe/" + std::string(255, 'n'), 7);
    tree.hardLink("plain/again", tree.path("plain/file"));
    tree.link("plain/to a folder", tree.path("plain"));
    tree.link("dangling", "nowhere");
    tree.fifo("pipe");
    tree.socket("socket");
    const Tree root = scan(tree.top());
    EXPECT_EQ(sizesOf(*root), defined(tree));
    AllDir *plain = nullptr;
    ASSERT_EQ(root->Find(tree.path("plain").native() + "/", &plain), 1);
    EXPECT_EQ(plain->iSize,
              std::int64_t(1000 + 20 + 300 + 1000 + tree.path("plain").native().size()));
    EXPECT_EQ(root->ppChildren()[0].load(), plain);
    AllDir *none = nullptr;
    for (const char *wrong : {"plain", "plain/.hidden/", "nothing/", "Volumes/", ""})
        EXPECT_EQ(root->Find(tree.path(wrong).native(), &none), -1) << wrong;
    EXPECT_EQ(none, nullptr);
}

TEST(SizeTree, IsTheDefinedOneForRandomTreesAndUsesLittleStorage) {
    std::mt19937_64 random(7);
    TestTree tree;
    std::vector<std::string> folders{"."};
    for (int i = 0; i < 3000; ++i) {
        folders.push_back(folders[random() % folders.size()] + "/d" + std::to_string(i));
        tree.directory(folders.back());
        if (random() % 2)
            tree.sparseFile(folders[random() % folders.size()] + "/f", random() % 5000);
    }
    const Tree root = scan(tree.top());
    const auto expected = defined(tree);
    EXPECT_EQ(sizesOf(*root), expected);
    expectSorted(*root);
    std::size_t names = 0;
    forEachNode(*root, [&](AllDir &node) { names += std::string_view(node.name()).size() + 1; });
    EXPECT_LE(root->storage(), expected.size() * 160 + names);
}

TEST(SizeTree, ReadsFoldersOfManyEntriesAndOfManyLevels) {
    TestTree tree;
    constexpr unsigned many = 3000;
    for (unsigned i = 0; i < many; ++i) {
        tree.directory("wide/d" + std::to_string(i));
        tree.sparseFile("wide/f" + std::to_string(i), 2);
    }
    constexpr unsigned levels = 10000;
    const auto deepest = tree.deepChain("deep", levels);
    const Tree root = scan(tree.top());
    EXPECT_EQ(root->iSize, 2 * many);
    unsigned nodes = 0;
    std::size_t longest = 0;
    forEachNode(*root, [&](AllDir &node) {
        ++nodes;
        if (node.iChildCount() == 0)
            longest = std::max(longest, node.szPath().size());
    });
    EXPECT_GE(nodes, 1 + 1 + many + levels);
    EXPECT_GT(longest, 2 * (levels - 1));
    // Nodes that were never painted all cover the angle 0.
    AllDir *found = nullptr;
    EXPECT_EQ(root->Find(10.0, 0.0, &found), -2);
}

struct Posted {
    Posted() {
        auto &center = NotificationCenter::defaultCenter();
        for (const char *name : {"GetDirTotalLevel", "NeedUpdateProgress"}) {
            center.addObserver(&context, QString::fromLatin1(name), [this](const Notification &n) {
                EXPECT_EQ(n.object, nullptr);
                EXPECT_EQ(std::this_thread::get_id(), thread);
                names.push_back(n.name.toStdString());
                if (n.userInfo.contains(QStringLiteral("DirLevels")))
                    levels = n.userInfo[QStringLiteral("DirLevels")].toLongLong();
            });
        }
    }
    ~Posted() { NotificationCenter::defaultCenter().removeObserver(&context); }
    std::vector<std::string> expected(std::size_t count) const {
        std::vector<std::string> all(count, "NeedUpdateProgress");
        all.insert(all.begin(), "GetDirTotalLevel");
        return all;
    }

    QObject context;
    std::thread::id thread = std::this_thread::get_id();
    std::vector<std::string> names;
    qlonglong levels = -1;
};

TEST(SizeTree, PostsTheNumberOfTopFoldersAndEachOfThem) {
    TestTree tree;
    for (int i = 0; i < 60; ++i) // enough for helpers to start
        tree.directory("t" + std::to_string(i) + "/below");
    tree.directory("Volumes");
    {
        Posted posted;
        scan(tree.top());
        EXPECT_EQ(posted.levels, 60);
        EXPECT_EQ(posted.names, posted.expected(60));
    }
    Posted posted;
    const Tree missing = scan(tree.path("missing"));
    EXPECT_EQ(posted.names, posted.expected(0));
    EXPECT_EQ(posted.levels, 0);
    EXPECT_EQ(missing->iSize, 0);
    EXPECT_EQ(missing->iChildCount(), 0);
    AllDir::bStopScan = true;
    const Tree stopped(W32AllDir::newRoot());
    EXPECT_EQ(stopped->ListAllDir(tree.top().native() + "/", true), 0);
    EXPECT_EQ(stopped->szPath(), "");
    EXPECT_EQ(posted.names.size(), 1u);
    AllDir::bStopScan = false;
}

TEST(SizeTree, AFolderThatCannotBeReadIsAnEmptyNode) {
    TestTree tree;
    tree.sparseFile("locked/file", 10);
    tree.sparseFile("breaks off/file", 20);
    tree.sparseFile("open/file", 30);
    test::FaultPlatform faults;
    faults.setFault([&](std::string_view call, const std::filesystem::path &path) {
        if ((call == "openDirectoryAt" && path.filename() == "locked") ||
            (call == "readBlock" && path.filename() == "breaks off"))
            return std::make_error_code(std::errc::permission_denied);
        return std::error_code();
    });
    const Tree root = scan(tree.top());
    EXPECT_EQ(root->iSize, 30);
    EXPECT_EQ(root->iChildCount(), 3);
    AllDir *locked = nullptr;
    ASSERT_EQ(root->Find(tree.path("locked").native() + "/", &locked), 1);
    EXPECT_EQ(locked->iSize, 0);
    EXPECT_EQ(locked->iChildCount(), 0);
}

// Mounts are walked like folders, but for those that hold no storage.
TEST(SizeTree, EntersOtherVolumesButNotTheKernels) {
    test::needRoot();
    TestTree tree;
    const auto memory = tree.directory("memory");
    const auto kernel = tree.directory("kernel");
    ASSERT_EQ(::mount("none", memory.c_str(), "tmpfs", 0, nullptr), 0);
    ASSERT_EQ(::mount("none", kernel.c_str(), "proc", 0, nullptr), 0);
    // The largest file there is, twice: the sum stays at what a size can say.
    const std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    tree.sparseFile("memory/a/one", largest - 4096);
    tree.sparseFile("memory/b/two", largest - 4096);
    const Tree root = scan(tree.top());
    EXPECT_EQ(::umount(memory.c_str()), 0);
    EXPECT_EQ(::umount(kernel.c_str()), 0);
    EXPECT_EQ(root->iSize, std::int64_t(largest));
    const auto sizes = sizesOf(*root);
    EXPECT_EQ(sizes.size(), 5u);
    EXPECT_EQ(sizes.at(memory.native() + "/a/"), std::int64_t(largest - 4096));
    EXPECT_EQ(sizes.at(kernel.native() + "/"), 0);
}

// Holds a scan before the second of its top folders is read.
class HeldScan {
public:
    explicit HeldScan(const TestTree &tree) {
        m_faults.setFault([this, top = tree.top()](std::string_view call, const auto &path) {
            if (call == "readBlock" && path.parent_path() == top && path != m_first) {
                if (m_first.empty()) {
                    m_first = path;
                } else {
                    std::unique_lock lock(m_mutex);
                    m_held = true;
                    m_changed.notify_all();
                    m_changed.wait(lock, [this] { return m_released; });
                }
            }
            return std::error_code();
        });
        AllDir::bStopScan = false;
        m_thread =
            std::thread([this, path = tree.top().native() + "/"] { root->ListAllDir(path, true); });
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_held; });
    }
    void finish() {
        {
            const std::lock_guard lock(m_mutex);
            m_released = true;
            m_changed.notify_all();
        }
        m_thread.join();
    }

    const Tree root{W32AllDir::newRoot()};

private:
    test::FaultPlatform m_faults;
    std::filesystem::path m_first;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_held = false;
    bool m_released = false;
    std::thread m_thread;
};

TEST(SizeTree, GrowsWhileItIsPainted) {
    TestTree tree;
    for (const char *top : {"a", "b", "c"})
        tree.sparseFile(std::string(top) + "/x/y/z/w/file", 1000);
    HeldScan held(tree);
    RecordingCanvas canvas;
    const ChartCanvas::Use use(canvas);
    held.root->Paint(360, 0, 1, 0, false);
    // The first folder is complete: it takes the whole circle, down to the last ring.
    EXPECT_EQ(held.root->iSize, 1000);
    ASSERT_EQ(canvas.sectors.size(), 5u);
    for (const auto &sector : canvas.sectors)
        EXPECT_EQ(sector.sweep, 360);
    held.finish();
    canvas.clear();
    held.root->Paint(360, 0, 1, 0, false);
    EXPECT_EQ(held.root->iSize, 3000);
    EXPECT_EQ(canvas.sectors.size(), 1u + 3 * 4);
    EXPECT_EQ(canvas.sectors[1].sweep, 120);
}

TEST(SizeTree, AStopKeepsWhatWasCounted) {
    TestTree tree;
    for (const char *top : {"a", "b", "c"})
        tree.sparseFile(std::string(top) + "/x/file", 1000);
    HeldScan held(tree);
    AllDir::bStopScan = true;
    held.finish();
    AllDir::bStopScan = false;
    EXPECT_EQ(held.root->iSize, 1000);
    EXPECT_EQ(held.root->iChildCount(), 3);
    expectSorted(*held.root);
    EXPECT_EQ(held.root->ppChildren()[1].load()->iSize, 0);
}

TEST(SizeTree, FreeAllOfAnInnerNodeTakesItOut) {
    TestTree tree;
    tree.sparseFile("a/b/file", 10);
    tree.sparseFile("c/file", 5);
    const Tree root = scan(tree.top());
    AllDir *const a = root->ppChildren()[0];
    AllDir *const b = a->ppChildren()[0];
    a->FreeAll();
    EXPECT_EQ(root->iChildCount(), 2);
    EXPECT_EQ(root->ppChildren()[0].load(), nullptr);
    b->FreeAll(); // below what has gone already
    EXPECT_EQ(sizesOf(*root).size(), 2u);
    AllDir *const unnamed = root->newAllDir();
    EXPECT_EQ(unnamed->szPath(), "");
    EXPECT_EQ(unnamed->iSize, 0);
    EXPECT_EQ(unnamed->pParent, root.get());
}

} // namespace
} // namespace brightsweep
