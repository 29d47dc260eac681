#include "duplicates/ContentReader.h"
#include "duplicates/ReadingPace.h"
#include "duplicates/SearchSupport.h"
#include "duplicates/algorithm.h"
#include "duplicates/crc.h"
#include "platform/Platform.h"
#include "support/FaultPlatform.h"
#include "support/TestTree.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<fileAttrbItem> itemFor(const std::filesystem::path &path) {
    auto item = std::make_shared<fileAttrbItem>();
    item->filePathName = path.native();
    item->fileSize = std::filesystem::file_size(path);
    return item;
}

TEST(Content, ChecksumsOfFilesAroundTheBlocks) {
    TestTree tree;
    for (const std::size_t size :
         {1, 1023, 1024, 1025, 16'384, 16'385, 262'144, 262'145, 4'194'304, 4'194'305}) {
        const std::string data = bytes(size, unsigned(size));
        const auto item = itemFor(tree.file("f" + std::to_string(size), data));
        ContentReader reader(*Platform::current().files);
        const auto whole = reader.wholeFile(*item);
        ASSERT_TRUE(whole);
        EXPECT_EQ(*whole, crc::foldByBytes(crc::start, data.data(), size)) << size;
        algorithm plain;
        EXPECT_TRUE(plain.getMD5(*item));
        EXPECT_EQ(item->md5, *whole);
        const auto block = reader.firstBlock(*item);
        ASSERT_TRUE(block);
        std::string head = data.substr(0, 1024);
        head.resize(1024);
        EXPECT_EQ(block->md5_1k, crc::foldByBytes(crc::start, head.data(), 1024)) << size;
        if (block->md5) {
            EXPECT_EQ(*block->md5, *whole);
        }
    }
}

// Systems that do not count cached pages, and such as do not confine a read to them either.
TEST(Content, WithoutKnowledgeOfTheCache) {
    TestTree tree;
    const std::string data = bytes(700'000, 2);
    for (const char *name : {"a", "b"})
        tree.file(name, data);
    tree.file("c", data.substr(1) + "x");
    FaultPlatform platform;
    for (const std::string_view missing : {"cachedPages", "cachedPages readCachedAt"}) {
        unsigned drops = 0;
        platform.setFault([&](std::string_view call, const std::filesystem::path &) {
            drops += call == "dropCached";
            return missing.find(call) != missing.npos
                       ? std::make_error_code(std::errc::operation_not_supported)
                       : std::error_code();
        });
        EXPECT_EQ(unordered(search(tree.top())), (Groups{{tree.path("a"), tree.path("b")}}));
        EXPECT_EQ(drops, 0u) << missing;
    }
}

TEST(Content, ThePaceFollowsTheDisk) {
    using std::chrono::microseconds;
    ReadingPace pace;
    const auto read = [&](std::uint64_t bytesPerSecond) {
        const std::size_t size = pace.pieceSize();
        const microseconds time(size * 1'000'000 / bytesPerSecond);
        pace.fetched(size, time);
        return time;
    };
    for (int i = 0; i < 50; ++i)
        EXPECT_LE(read(300'000), microseconds(200'000));
    for (int i = 0; i < 7; ++i)
        read(100'000'000);
    EXPECT_EQ(pace.pieceSize(), ReadingPace::most);
    // One that becomes slow holds up one piece.
    read(300'000);
    EXPECT_LE(read(300'000), microseconds(200'000));
    EXPECT_LE(read(1'000), microseconds(60'000'000));
    EXPECT_EQ(pace.pieceSize(), ReadingPace::least);
    // What says nothing of the disk changes nothing.
    pace.fetched(1, microseconds(1));
    EXPECT_EQ(pace.pieceSize(), ReadingPace::least);
}

// Sizes of a terabyte are gone through in no time where the file system tells of the holes.
TEST(Content, SparseFiles) {
    TestTree tree;
    const std::uint64_t size = std::uint64_t(1) << 40;
    for (const char *name : {"a", "b", "c"})
        tree.sparseFile(name, size);
    const int file = ::open(tree.path("c").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(::pwrite(file, "x", 1, off_t(size / 2)), 1);
    ::close(file);
    FaultPlatform platform;
    EXPECT_EQ(unordered(search(tree.top())), (Groups{{tree.path("a"), tree.path("b")}}));
    EXPECT_LT(platform.count("readCachedAt") + platform.count("readAt"), 5000u);
}

// A file that is not, or no longer, what the walk found is nobody's duplicate.
TEST(Content, FilesThatChangeDuringTheSearch) {
    struct Case {
        const char *name;
        std::function<void(const std::filesystem::path &)> change;
    };
    const Case cases[] = {
        {"shrinks",
         [](const auto &path) {
             std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
         }},
        {"grows",
         [](const auto &path) {
             std::filesystem::resize_file(path, std::filesystem::file_size(path) + 1);
         }},
        {"vanishes", [](const auto &path) { std::filesystem::remove(path); }},
        {"turns into a directory",
         [](const auto &path) {
             std::filesystem::remove(path);
             std::filesystem::create_directory(path);
         }},
        {"turns into a pipe",
         [](const auto &path) {
             std::filesystem::remove(path);
             ::mkfifo(path.c_str(), 0600);
         }},
        {"turns into a link",
         [](const auto &path) {
             std::filesystem::rename(path, path.native() + "2");
             std::filesystem::create_symlink(path.native() + "2", path);
         }},
    };
    // One that is read whole with its first block, one in two reads, one that is all hole.
    for (const std::size_t size : {5'000, 100'000, 1'300'000}) {
        for (const Case &each : cases) {
            TestTree tree(TestTree().top() / (each.name + std::to_string(size)));
            for (const char *name : {"a/1", "a/2", "a/3"}) {
                std::string data = bytes(size, 5);
                const auto path =
                    size > 1'000'000 ? tree.sparseFile(name, size) : tree.file(name, data);
                std::ifstream(path, std::ios::binary).read(data.data(), std::streamsize(size));
            }
            FaultPlatform platform;
            bool isChanged = false;
            platform.setFault([&](std::string_view call, const std::filesystem::path &path) {
                if (call == "openListedFile" && path.filename() == "2" && !isChanged) {
                    isChanged = true;
                    each.change(path);
                }
                return std::error_code();
            });
            EXPECT_EQ(unordered(search(tree.top())), (Groups{{tree.path("a/1"), tree.path("a/3")}}))
                << each.name << size;
            EXPECT_TRUE(isChanged);
        }
    }
}

TEST(Content, AReadErrorAnywhereInAFile) {
    for (const char *call : {"openListedFile", "readCachedAt readAt"}) {
        for (const int good : {0, 1}) {
            TestTree tree(TestTree().top() / (call + std::to_string(good)));
            for (const char *name : {"1", "2", "3", "B.app/m", "C.app/m"})
                tree.file(name, bytes(800'000, 6));
            FaultPlatform platform;
            int calls = 0;
            platform.setFault([&](std::string_view made, const std::filesystem::path &path) {
                const bool isHit = std::string_view(call).find(made) != std::string_view::npos &&
                                   (path.filename() == "2" || path.native().ends_with("C.app/m")) &&
                                   calls++ >= good;
                return isHit ? std::make_error_code(std::errc::io_error) : std::error_code();
            });
            if (std::string_view(call) == "openListedFile" && good)
                continue;
            EXPECT_EQ(unordered(search(tree.top(), {.threads = 1})),
                      (Groups{{tree.path("1"), tree.path("3")}}))
                << call << good;
        }
    }
}

// Files of a few megabytes stay open between their first block and the rest; larger ones, which
// several threads share, are opened again.
TEST(Content, OnlyWhatCanMatterIsReadAndOnce) {
    struct Case {
        std::size_t size;
        int timesOpened;
        std::size_t reads; // one of each, and the rest of three files by the block
    };
    TestTree tree;
    for (const auto &[size, timesOpened, reads] :
         {Case{500'000, 1, 4 + 3 * 2}, Case{1'500'000, 2, 4 + 3 * 6}}) {
        const std::string top = std::to_string(size) + "/";
        const std::string data = bytes(size, 7);
        std::string otherTail = data;
        otherTail.back() = char(otherTail.back() ^ 1);
        tree.file(top + "unique", bytes(400'000, 8));
        tree.file(top + "otherhead", bytes(size, 9));
        tree.file(top + "1", data);
        tree.file(top + "2", data);
        tree.file(top + "tail", otherTail);
        tree.hardLink(top + "link", tree.path(top + "1"));
        tree.fifo(top + "fifo");
        FaultPlatform platform;
        const auto groups = search(tree.path(top));
        EXPECT_EQ(unordered(groups),
                  (Groups{{tree.path(top + "1"), tree.path(top + "2"), tree.path(top + "link")}}));
        std::map<std::string, int> opened;
        for (const auto &path : platform.argumentsOf("openListedFile"))
            ++opened[path.filename()];
        EXPECT_EQ(opened.count("unique") + opened.count("fifo"), 0u);
        EXPECT_EQ(opened["otherhead"], 1);
        EXPECT_EQ(opened["2"], timesOpened);
        EXPECT_EQ(opened["tail"], timesOpened);
        EXPECT_EQ(opened["1"] + opened["link"], timesOpened);
        // What is cached is read without waiting, where the file system knows how.
        const std::size_t confined = platform.count("readCachedAt");
        const auto file = Platform::current().files->openFile(tree.path(top + "1"));
        char byte;
        const bool isKnown = file && Platform::current().files->readCachedAt(*file, &byte, 1, 0);
        EXPECT_EQ(isKnown ? confined : platform.count("readAt"), reads);
    }
}

} // namespace
} // namespace brightsweep::test
