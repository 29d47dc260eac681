#include "foundation/FileDescriptor.h"
#include "support/CommandLine.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <numeric>
#include <set>
#include <sstream>

namespace brightsweep {
namespace {

test::ChildResult duplicates(const test::Words &words) {
    return test::cli(test::together({"duplicates"}, words));
}

TEST(DuplicatesCommand, GroupsWithTheirExactPaths) {
    test::TestTree tree;
    const auto before = std::filesystem::file_time_type::clock::now();
    for (const char *name : {"a.TXT", "d/\xff.TXT"})
        std::filesystem::last_write_time(tree.file(name, "equal"), before);
    tree.file("A.app/m", "bundle");
    tree.file("B.app/m", "bundle");
    const auto snapshot = tree.snapshot();
    const auto result = duplicates({"--json", tree.top(), "--limit", "4", "--unit", "0"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const auto document = test::documentOf(result.output, "duplicates");
    EXPECT_EQ(document.at("limitBytes"), 4);
    const auto &groups = document.at("groups");
    ASSERT_EQ(groups.size(), 2u);
    const auto &file = groups[1];
    EXPECT_EQ(groups[0].at("kind"), "bundle");
    EXPECT_EQ(groups[0].at("fileType"), 6);
    EXPECT_EQ(file.at("kind"), "file");
    EXPECT_EQ(file.at("fileType"), 1);
    EXPECT_EQ(file.at("bytes"), 10);
    int exact = 0;
    for (const auto &item : file.at("items"))
        exact += test::exactPath(item) == tree.path("d/\xff.TXT").native();
    EXPECT_EQ(exact, 1);
    EXPECT_EQ(tree.snapshot(), snapshot);
}

// What the document says is what happened, and of each group one file stays.
TEST(DuplicatesCommand, RemovesAllOfAGroupButOne) {
    struct Row {
        test::Words options;
        std::vector<const char *> stay; ///< besides the pair that is no pair
        int bytesFreed;
    };
    const Row rows[] = {
        {{"--remove", "--keep", "newest"}, {"a/long name", "b/new", "c"}, 4096 * 2},
        {{"--remove", "--keep", "newest", "--apply"}, {"b/new"}, 4096 * 2},
        {{"--remove", "--trash", "--keep", "shortest", "--apply"}, {"c"}, 0},
        {{"--remove", "--keep", "oldest", "--apply"}, {"a/long name"}, 4096 * 2},
    };
    for (const Row &row : rows) {
        test::TestTree tree;
        int day = 0;
        for (const char *name : {"a/long name", "c", "b/new"}) {
            tree.file(name, "equal");
            std::filesystem::last_write_time(tree.path(name),
                                             std::filesystem::file_time_type::clock::now() +
                                                 std::chrono::hours(24) * (++day - 5));
        }
        tree.file("other", "alone");
        const auto result = duplicates(
            test::together({"--json", tree.top(), "--limit", "0", "--unit", "0"}, row.options));
        EXPECT_EQ(result.status, 0) << result.errors;
        const auto document = test::documentOf(result.output, "duplicates");
        EXPECT_EQ(document.at("applied"), row.options.back() == "--apply");
        EXPECT_EQ(document.at("bytesFreed"), row.bytesFreed);
        EXPECT_EQ(document.at("removed").size(), 2u);
        EXPECT_EQ(document.at("failed").size(), 0u);
        for (const char *name : {"a/long name", "b/new", "c"})
            EXPECT_EQ(tree.exists(name),
                      std::count(row.stay.begin(), row.stay.end(), std::string(name)) == 1)
                << name;
        EXPECT_TRUE(tree.exists("other"));
        test::removeTree(tree.top());
    }
    for (const test::Words &wrong : std::vector<test::Words>{
             {"--remove", "--share"}, {"--trash"}, {"--apply"}, {"--remove", "--keep", "all"}})
        EXPECT_EQ(duplicates(test::together({"/nowhere"}, wrong)).status, 2) << wrong.back();
}

TEST(DuplicatesCommand, TellsWhatStayedAndWhy) {
    test::TestTree tree;
    tree.file("a", "equal");
    tree.file("b", "equal");
    const FileDescriptor writer(::open(tree.path("a").c_str(), O_WRONLY | O_CLOEXEC));
    const auto before = tree.snapshot();
    for (const char *act : {"--remove", "--share"}) {
        const auto result =
            duplicates({"--json", tree.top(), "--limit", "0", "--unit", "0", act, "--apply"});
        EXPECT_EQ(result.status, 3);
        EXPECT_NE(result.output.find("a program is writing to"), std::string::npos);
        EXPECT_EQ(tree.snapshot(), before);
    }
}

// A document that is put out in parts is the same as one put out at once.
TEST(DuplicatesCommand, LongDocumentsComeWhole) {
    struct Case {
        const char *suffix;
        std::int64_t time;
        const char *shown;
    };
    const Case cases[] = {
        {"plain", 951'868'799, "2000-02-29T23:59:59Z"},
        {"\"\\\n\x7f\x01", -1, "1969-12-31T23:59:59Z"},
        {"\u00e4\u00f6\u00fc", 4'102'444'800, "2100-01-01T00:00:00Z"},
    };
    test::TestTree tree;
    std::map<std::string, std::string> expected;
    constexpr int groupCount = 300;
    for (int i = 0; i < groupCount; ++i) {
        const Case &each = cases[std::size_t(i) % std::size(cases)];
        for (const char *folder : {"a/", "b/"}) {
            const auto path =
                tree.file(folder + std::string(80, 'x') + std::to_string(i) + each.suffix,
                          "content " + std::to_string(i));
            const timespec times[] = {{each.time, 0}, {each.time, 0}};
            ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
            expected[path] = each.shown;
        }
    }
    const auto result = duplicates({"--json", tree.top(), "--limit", "0"});
    EXPECT_EQ(result.status, 0);
    const auto groups = test::documentOf(result.output, "duplicates")["groups"];
    std::map<std::string, std::string> modified;
    for (const auto &group : groups) {
        for (const auto &item : group.at("items"))
            modified[item.at("path")] = item.at("modified");
    }
    EXPECT_EQ(groups.size(), std::size_t(groupCount));
    EXPECT_EQ(modified, expected);
}

TEST(DuplicatesCommand, OptionsAndSettings) {
    test::TestTree tree;
    for (const char *name : {"d/.a", "d/.b"})
        tree.file(name, "equal");
    // The settings leave out what is hidden and what is not above a megabyte.
    EXPECT_EQ(duplicates({tree.top()}).output, "No duplicates.\n");
    EXPECT_EQ(duplicates({tree.top(), "--limit", "0"}).output, "No duplicates.\n");
    const auto shown = duplicates({tree.top(), "--limit", "0", "--hidden"});
    EXPECT_NE(shown.output.find(tree.path("d/.a").native()), std::string::npos);
    // A stored unit that is none counts bytes.
    for (const char *unit : {"7", "-1", "4294967298"}) {
        test::TestTree(test::TestEnvironment::current().home())
            .file(".config/com.norvmac.DeskSweeperPro.conf",
                  std::string("DSDuplicationLimit=4\nDSDuplicatesUnit=") + unit);
        EXPECT_EQ(duplicates({tree.top(), "--hidden"}).output, shown.output) << unit;
    }
    // Points on the way are not hidden folders.
    const auto roundabout = tree.path("d/../d/.").native();
    EXPECT_EQ(duplicates({roundabout, "--limit", "0", "--hidden"}).output, shown.output);
    EXPECT_EQ(duplicates({tree.top(), "--limit", "0", "--hidden", "--unit", "4"}).status, 0);
    const std::vector<test::Words> usages = {
        {}, {"/a", "/b"}, {"/a", "--limit", "x"}, {"/a", "--limit", "-1"}, {"/a", "--unit", "5"}};
    for (const auto &wrong : usages)
        EXPECT_EQ(duplicates(wrong).status, 2);
    EXPECT_EQ(duplicates({tree.path("d/.a")}).status, 1);
    EXPECT_EQ(duplicates({tree.path("missing")}).status, 1);
}

TEST(DuplicatesCommand, ALongPathMayLeadBackUp) {
    test::TestTree tree;
    const std::string chain = tree.deepChain("chain", 3000);
    std::string down;
    for (int i = 0; i < 1000; ++i)
        down += "/d";
    tree.link("away", chain + down);
    const auto ran = [](const std::string &path) {
        const auto result = duplicates({"--json", path, "--limit", "0"});
        return std::to_string(result.status) + result.output;
    };
    const std::string parent = chain + down + down + down.substr(0, down.size() - 2 * 2);
    const std::string wanted = ran(parent);
    EXPECT_EQ(wanted.front(), '0');
    const std::string byLink = tree.path("away").native() + down + down.substr(2) + "/..";
    for (const std::string &path : {parent + "/d/..", parent + "/../../d/./d", byLink})
        EXPECT_EQ(ran(path), wanted);
    EXPECT_EQ(ran(parent + "/d/../missing").front(), '1');
}

// The paths of all groups below the top, one line each, sorted, with mounts that end with the
// command.
std::string groupsWith(const std::string &mounts, const test::TestTree &tree,
                       const std::string &root) {
    const std::string script = "cd \"$1\" && " + mounts +
                               " && cd / && exec \"$2\" duplicates \"$1/" + root + "\" --limit 0";
    const auto result = test::runProgram(
        {"unshare", "-m", "/bin/sh", "-ec", script, "sh", tree.top(), BRIGHTSWEEP_CLI});
    EXPECT_EQ(result.status, 0) << result.errors;
    std::set<std::string> paths;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        const auto found = line.find(tree.top().native() + "/");
        if (found != line.npos)
            paths.insert(line.substr(found + tree.top().native().size() + 1) + "\n");
    }
    return std::accumulate(paths.begin(), paths.end(), std::string());
}

// As files and as bundles. Layers and the overlay itself have devices and inodes of their own.
TEST(DuplicatesCommand, AFileOfAnOverlayIsNotThatOfItsLayerAgain) {
    test::needRoot();
    const std::string overlay = "mount -t overlay none -o ";
    const struct {
        std::string mounts;
        const char *root;
        const char *groups;
    } rows[] = {
        {"true", "", "keep/f\nlo:w er/f\n"},
        {overlay + "lowerdir='lo\\:w er',upperdir=up,workdir=wk m", "", "keep/f\nm/f\n"},
        {overlay + "lowerdir=\"$PWD/lo\\\\:w er\",upperdir=\"$PWD/up\",workdir=\"$PWD/wk\" m", "",
         "keep/f\nm/f\n"},
        // What is searched itself is never left out.
        {overlay + "lowerdir=\"$PWD/keep:$PWD/lo\\\\:w er\" m", "lo:w er", ""},
        // Only a part of the overlay can be seen.
        {"cp a/sub/g copy && " + overlay +
             "lowerdir=\"$PWD/a:$PWD/lo\\\\:w er\" m && mount --bind m/sub b && umount m",
         "", "b/g\ncopy\nkeep/f\nlo:w er/f\n"},
        // It lies on one of its own layers.
        {"cp keep/f keep/g && " + overlay + "lowerdir=\"$PWD/keep:$PWD/lo\\\\:w er\" keep", "",
         "keep/f\nkeep/g\n"},
        // It shows all that is searched once more.
        {"mount -t tmpfs none /mnt && " + overlay + "lowerdir=\"$PWD:/mnt\" m", "",
         "keep/f\nlo:w er/f\n"},
        {overlay + "lowerdir=\"$PWD/b/X.app:$PWD/up\" b/Y.app", "", "keep/f\nlo:w er/f\n"},
    };
    for (const auto &row : rows) {
        const test::TestTree whole;
        test::TestTree tree(whole.path(std::to_string(&row - rows)));
        tree.file("lo:w er/f", "file");
        tree.file("keep/f", "file");
        tree.file("a/sub/g", "part");
        tree.file("b/X.app/m", "bundle");
        for (const char *name : {"up", "wk", "m", "b/Y.app"})
            tree.directory(name);
        EXPECT_EQ(groupsWith(row.mounts, tree, row.root), row.groups) << row.mounts;
    }
}

// Below another "/", with the libraries that the program needs in a folder of the system.
TEST(DuplicatesCommand, WhatIsStoredAddsToTheOptions) {
    test::needRoot();
    test::TestTree tree;
    constexpr auto large = std::uint64_t(1) << 40;
    for (const char *name : {"opt/a", "opt/b", "home/.c/a", "home/.c/b"})
        tree.sparseFile(name, large + (name[0] == 'o'));
    for (const char *place : {"usr/lib", "usr/lib64", "bin"})
        tree.directory(place);
    for (const char *link : {"lib", "lib64"})
        tree.link(link, std::string("usr/") + link);
    const char *const script =
        "for lib in lib lib64; do mount --bind /usr/$lib \"$1/usr/$lib\"; done;"
        "mount --bind \"$2\" \"$1/bin\"; XDG_CONFIG_HOME=/conf exec chroot \"$1\" "
        "/bin/brightsweep-cli duplicates / --unit 3 --limit 1000 $3";
    const auto programs = std::filesystem::path(BRIGHTSWEEP_CLI).parent_path();
    const struct {
        const char *stored;
        const char *option;
        bool system;
        bool hidden;
    } rows[] = {
        {"", "", false, false},
        {"", "--system", true, false},
        {"DSSystemDuplication=1\n", "", true, false},
        {"DSHidenDuplication=1\n", "", false, true},
        {"DSHidenDuplication=1\n", "--system", true, true},
    };
    for (const auto &row : rows) {
        tree.file("conf/com.norvmac.DeskSweeperPro.conf", row.stored);
        const auto result = test::runProgram(
            {"unshare", "-m", "/bin/sh", "-ec", script, "sh", tree.top(), programs, row.option});
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.output.find("/opt/a") != std::string::npos, row.system) << row.stored;
        EXPECT_EQ(result.output.find("/home/.c/a") != std::string::npos, row.hidden) << row.stored;
    }
}

TEST(DuplicatesCommand, BundlesThatShareAFileAreNoDuplicates) {
    test::needRoot();
    const std::set<std::string> all = {"X.app\nY.app\nZ.app\n"};
    const std::set<std::string> withoutOne = {"X.app\nZ.app\n", "Y.app\nZ.app\n"};
    const struct {
        std::string mounts;
        std::set<std::string> groups; // which, depends on the order in which the bundles are found
    } rows[] = {
        {"true", all},
        {"mount --bind X.app/in Y.app/in", withoutOne},
        {"mount --bind X.app/in/n Y.app/in/n", withoutOne},
        {"mount --bind Z.app/in X.app/in && mount --bind Z.app/in Y.app/in", {""}},
        {"ln -sf ../../X.app/in/n Y.app/in/n && truncate -s 14 X.app/in/n Z.app/in/n", withoutOne},
        // Hard links are files of their own, and nothing of a bundle lies behind links out of it.
        {"ln -f X.app/in/n Y.app/in/n", all},
        {"echo away >away; for i in X Y Z; do ln -sf ../../away $i.app/in/n; done", all},
    };
    for (const auto &row : rows) {
        const test::TestTree whole;
        test::TestTree tree(whole.path(std::to_string(&row - rows)));
        for (const char *name : {"X.app", "Y.app", "Z.app"}) {
            tree.file(std::string(name) + "/m", "bundle");
            tree.file(std::string(name) + "/in/n", "member");
        }
        EXPECT_THAT(groupsWith(row.mounts, tree, ""), testing::AnyOfArray(row.groups))
            << row.mounts;
    }
}

} // namespace
} // namespace brightsweep
