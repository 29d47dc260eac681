#include "cleaning/ScanViewController.h"

#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"
#include "foundation/SmallFile.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"
#include "support/FaultPlatform.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <mutex>
#include <thread>

namespace brightsweep {
namespace {

using test::TestTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

void scan(ScanViewController &controller, const std::vector<std::filesystem::path> &folders) {
    QEventLoop loop;
    QObject::connect(&controller, &ScanViewController::scanFinishedChanged, &loop,
                     &QEventLoop::quit);
    controller.beginScanTask(test::rootsOf(folders));
    loop.exec();
    controller.disconnect(&loop);
}

void clean(ScanViewController &controller) {
    QEventLoop loop;
    QObject::connect(&controller, &ScanViewController::cleanFinishedChanged, &loop,
                     &QEventLoop::quit);
    controller.beginCleanTask(RemovalRun::begin("test").run);
    loop.exec();
    controller.disconnect(&loop);
}

std::vector<std::string> namesOf(const std::vector<CleanFileInfo> &rows) {
    std::vector<std::string> names;
    for (const CleanFileInfo &row : rows)
        names.push_back(row.name);
    return names;
}

std::vector<std::string> listing(const std::filesystem::path &folder) {
    std::vector<std::string> names;
    DirectoryBlock block;
    const auto open = Platform::current().files->openDirectory(folder);
    do {
        EXPECT_FALSE(Platform::current().files->readBlock(*open, block, WantedAttributes::None));
        for (const DirectoryEntry &entry : block.entries())
            names.emplace_back(entry.nameView());
    } while (!block.atEnd());
    return names;
}

TEST(Scan, GivesARowForEachDirectChildInListingOrder) {
    TestTree tree;
    for (int i = 0; i < 150; ++i)
        tree.sparseFile("one/" + std::to_string(i) + (i % 2 ? "" : "/deeper/file"), 100 + i);
    tree.file("two/.hidden", "12345");
    tree.directory("empty");
    ScanViewController controller;
    std::vector<std::uint64_t> totals;
    std::mutex mutex;
    QObject::connect(
        &controller, &ScanViewController::filesSizeChanged, &controller,
        [&](const QString &words) {
            const std::lock_guard lock(mutex);
            totals.push_back(UtilityFunction::getVolSpaceFromString(words));
        },
        Qt::DirectConnection);
    scan(controller,
         {tree.path("one"), tree.path("missing"), tree.path("empty"), tree.path("two")});
    auto names = listing(tree.path("one"));
    names.push_back(".hidden");
    const auto rows = controller.scanFiles();
    EXPECT_EQ(namesOf(rows), names);
    std::uint64_t sum = 0;
    for (const CleanFileInfo &row : rows) {
        EXPECT_EQ(row.size, UtilityFunction::convertVolSpace(row.fileSizeNum));
        EXPECT_EQ(row.bIsSelected, 0);
        if (row.name != ".hidden") {
            EXPECT_EQ(row.fileSizeNum, 100u + unsigned(std::stoi(row.name)));
        }
        sum += row.fileSizeNum;
    }
    EXPECT_EQ(controller.totalSize(), sum);
    EXPECT_EQ(controller.filesSize(), UtilityFunction::convertVolSpace(sum));
    EXPECT_EQ(totals.size(), rows.size());
    EXPECT_TRUE(std::is_sorted(totals.begin(), totals.end()));
}

// A stopped scan is final: the same object never scans again.
TEST(Scan, AStopKeepsAPrefixAndEndsEveryLaterScan) {
    TestTree tree;
    for (int i = 0; i < 60; ++i)
        tree.file("folder/" + std::to_string(i) + "/file", "x");
    ScanViewController controller;
    int seen = 0;
    QObject::connect(
        &controller, &ScanViewController::filesSizeChanged, &controller,
        [&] {
            if (++seen == 20)
                controller.stopScan();
        },
        Qt::DirectConnection);
    scan(controller, {tree.path("folder")});
    const auto rows = namesOf(controller.scanFiles());
    const auto all = listing(tree.path("folder"));
    ASSERT_EQ(rows.size(), 20u);
    EXPECT_TRUE(std::equal(rows.begin(), rows.end(), all.begin()));
    scan(controller, {tree.path("folder")});
    EXPECT_THAT(controller.scanFiles(), IsEmpty());
}

TEST(Scan, SurvivesWhatVanishesAndWhatCannotBeRead) {
    TestTree tree;
    tree.file("folder/vanishes/file", "12345");
    tree.file("folder/unreadable/file", "12345");
    tree.file("folder/stays/file", "12345");
    test::FaultPlatform fault;
    fault.setFault([&](std::string_view call, const std::filesystem::path &path) {
        if (call != "openDirectoryAt")
            return std::error_code();
        if (path.filename() == "vanishes")
            return std::make_error_code(std::errc::no_such_file_or_directory);
        if (path.filename() == "unreadable")
            return std::make_error_code(std::errc::permission_denied);
        return std::error_code();
    });
    ScanViewController controller;
    scan(controller, {tree.path("folder")});
    EXPECT_THAT(namesOf(controller.scanFiles()),
                UnorderedElementsAre("vanishes", "unreadable", "stays"));
    EXPECT_EQ(controller.totalSize(), 5u);
}

TEST(Clean, RemovesTheTickedRowsAndNothingElse) {
    TestTree tree;
    tree.file("outside/kept", "precious");
    tree.file("folder/ticked/a/b", "12345");
    tree.link("folder/ticked/link", tree.path("outside"));
    tree.link("folder/ticked link", tree.path("outside"));
    tree.file("folder/line\nend", "123");
    tree.file("folder/unticked/file", "kept");
    const auto outside = tree.snapshot("outside");
    const auto unticked = tree.snapshot("folder/unticked");
    ScanViewController controller;
    scan(controller, {tree.path("folder")});
    auto rows = controller.scanFiles();
    for (std::size_t row = 0; row < rows.size(); ++row)
        controller.setSelected(row, rows[row].name != "unticked");
    controller.setSelected(rows.size(), true); // refused
    const std::uint64_t link = tree.path("outside").native().size();
    clean(controller);
    EXPECT_THAT(namesOf(controller.scanFiles()), ElementsAre("unticked"));
    EXPECT_EQ(tree.snapshot("outside"), outside);
    EXPECT_EQ(tree.snapshot("folder/unticked"), unticked);
    EXPECT_THAT(listing(tree.path("folder")), ElementsAre("unticked"));
    EXPECT_EQ(controller.cleanSize(), 5 + link + link + 3);
    EXPECT_EQ(controller.removedFiles().size(), 3u);
    EXPECT_EQ(controller.totalSize(), 4u);
}

TEST(Clean, AFolderThatWasExchangedKeepsEverything) {
    TestTree tree;
    tree.file("folder/item", "old");
    ScanViewController controller;
    scan(controller, {tree.path("folder")});
    controller.selectAll(true);
    std::filesystem::rename(tree.path("folder"), tree.path("real"));
    tree.file("outside/item", "precious");
    tree.link("folder", tree.path("outside"));
    const auto before = tree.snapshot();
    clean(controller);
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_EQ(controller.rowCount(), 1u);
}

} // namespace
} // namespace brightsweep
