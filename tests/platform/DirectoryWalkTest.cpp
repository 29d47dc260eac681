#include "platform/DirectoryWalk.h"

#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <mutex>
#include <new>
#include <set>

namespace brightsweep {
namespace {

using test::TestTree;

// Enters everything and counts.
class CountingVisitor : public DirectoryWalk::Visitor {
public:
    explicit CountingVisitor(DirectoryWalk *&w) : walk(w) {}
    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        for (const DirectoryEntry &entry : block.entries()) {
            if (entry.type == EntryType::Directory)
                walk->enter(directory, entry.nameView(), nullptr);
            const std::lock_guard lock(mutex);
            ++seen;
            bytes += entry.size;
        }
    }
    void read(DirectoryWalk::Directory &, std::error_code error) override {
        const std::lock_guard lock(mutex);
        ++directories;
        errors += error ? 1 : 0;
    }
    void left(DirectoryWalk::Directory &directory) override {
        const std::lock_guard lock(mutex);
        ++leftDirectories;
        lastLeft = directory.parent() ? "inner" : "root";
    }

    DirectoryWalk *&walk;
    std::mutex mutex;
    std::uint64_t bytes = 0;
    unsigned seen = 0;
    unsigned directories = 0;
    unsigned leftDirectories = 0;
    unsigned errors = 0;
    std::string lastLeft;
};

CountingVisitor *walkAll(const std::filesystem::path &path, unsigned threads,
                         CountingVisitor &visitor, const std::atomic<bool> *stop = nullptr) {
    FileOperations &files = *Platform::current().files;
    DirectoryWalk walk(files, visitor, {WantedAttributes::NonDirectories, threads, stop});
    visitor.walk = &walk;
    auto root = files.openDirectory(path);
    walk.addRoot(std::make_shared<const OpenDirectory>(std::move(*root)), nullptr);
    walk.run();
    visitor.walk = nullptr;
    return &visitor;
}

TEST(DirectoryWalk, SeesEverythingOnceWithAnyNumberOfThreads) {
    TestTree tree;
    for (int i = 0; i < 200; ++i)
        tree.sparseFile("a" + std::to_string(i % 17) + "/b" + std::to_string(i) + "/f", 10);
    tree.link("a0/loop", tree.top());
    tree.fifo("a1/pipe");
    for (const unsigned threads : {1u, 2u, 5u}) {
        DirectoryWalk *walk = nullptr;
        CountingVisitor visitor(walk);
        walkAll(tree.top(), threads, visitor);
        EXPECT_EQ(visitor.directories, 1u + 17 + 200);
        EXPECT_EQ(visitor.leftDirectories, visitor.directories);
        EXPECT_EQ(visitor.seen, 17u + 200 + 200 + 2);
        EXPECT_EQ(visitor.bytes, 2000u + tree.top().native().size());
        EXPECT_EQ(visitor.errors, 0u);
        EXPECT_EQ(visitor.lastLeft, "root");
    }
}

// A comb: at each level a directory that leads on and one that is left for later, so that every
// level must be found again on the way up.
TEST(DirectoryWalk, FindsItsWayBackUpADeepTreeWithFewDescriptors) {
    TestTree tree;
    constexpr unsigned levels = 3000;
    tree.deepChain("comb", levels);
    FileOperations &files = *Platform::current().files;
    auto current = files.openDirectory(tree.path("comb"));
    for (unsigned level = 1; level < levels; ++level) {
        ASSERT_EQ(::mkdirat(current->descriptor.get(), "z", 0755), 0);
        current = files.openDirectoryAt(*current, "d");
        ASSERT_TRUE(current);
    }
    for (const unsigned threads : {1u, 3u}) {
        DirectoryWalk *walk = nullptr;
        CountingVisitor visitor(walk);
        walkAll(tree.path("comb"), threads, visitor);
        EXPECT_EQ(visitor.directories, 2 * levels - 1);
        EXPECT_EQ(visitor.errors, 0u);
    }
}

// At the limit a directory is closed and opened again; one that has been exchanged meanwhile is
// not taken for it.
TEST(DirectoryWalk, HoldsItselfToTheDescriptorsThatThereAre) {
    TestTree tree;
    for (int i = 0; i < 40; ++i)
        tree.deepChain("d" + std::to_string(i), 60);
    EXPECT_EQ(0, test::runInChild([&] {
                  const rlimit few{24, 24};
                  ::setrlimit(RLIMIT_NOFILE, &few);
                  DirectoryWalk *walk = nullptr;
                  CountingVisitor visitor(walk);
                  walkAll(tree.top(), 2, visitor);
                  return visitor.errors == 0 && visitor.directories == 1 + 40 * 60 ? 0 : 1;
              }));
}

// Whatever had been entered is left all the same, each directory once.
TEST(DirectoryWalk, AnExceptionOfAVisitorEndsItOnAllThreads) {
    struct Failing : CountingVisitor {
        using CountingVisitor::CountingVisitor;
        void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
            CountingVisitor::entries(directory, block);
            const std::lock_guard lock(mutex);
            entered += std::uint64_t(block.entries().size());
            if (directory.name() == failing)
                throw std::bad_alloc();
        }
        std::string failing;
        std::uint64_t entered = 1;
    };
    TestTree tree;
    for (int i = 0; i < 2000; ++i)
        tree.directory(std::to_string(i % 50) + "/" + std::to_string(i));
    for (const char *failing : {"", "7", "49"}) {
        for (const unsigned threads : {1u, 3u}) {
            DirectoryWalk *walk = nullptr;
            Failing visitor(walk);
            visitor.failing = failing;
            EXPECT_THROW(walkAll(tree.top(), threads, visitor), std::bad_alloc);
            EXPECT_EQ(visitor.leftDirectories, visitor.entered);
            EXPECT_EQ(visitor.lastLeft, "root");
        }
    }
}

TEST(DirectoryWalk, AStopLeavesWhatHasBeenEnteredWithoutReadingIt) {
    TestTree tree;
    for (int i = 0; i < 50; ++i)
        tree.directory("d" + std::to_string(i));
    std::atomic<bool> stop{true};
    DirectoryWalk *walk = nullptr;
    CountingVisitor visitor(walk);
    walkAll(tree.top(), 2, visitor, &stop);
    EXPECT_EQ(visitor.seen, 0u);
    EXPECT_EQ(visitor.leftDirectories, 1u);
}

} // namespace
} // namespace brightsweep
