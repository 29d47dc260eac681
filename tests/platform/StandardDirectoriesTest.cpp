#include "platform/StandardDirectories.h"

#include "platform/Platform.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

namespace brightsweep {
namespace {

using test::TestEnvironment;
using test::TestTree;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::filesystem::path> pathsOf(const CleanFolders &folders) {
    std::vector<std::filesystem::path> paths;
    for (const RemovalRoot &folder : folders.folders)
        paths.push_back(folder.path);
    return paths;
}
std::vector<std::filesystem::path> pathsOf(CleanPlace place) {
    return pathsOf(Platform::current().directories->cleanFolders(place));
}

TEST(StandardDirectories, SystemFoldersMustBeRealRootOwnedAndClosed) {
    test::needRoot();
    TestTree system(TestEnvironment::current().system());
    system.directory("var/cache/apt/archives");
    system.directory("var/cache/man");
    system.mode("var/cache/man", 0777);
    system.directory("var/cache/dnf");
    system.mode("var/cache/dnf", 01777);
    system.directory("elsewhere");
    system.link("var/cache/yum", system.path("elsewhere"));
    system.directory("var/cache/fontconfig");
    ASSERT_EQ(::chown(system.path("var/cache/fontconfig").c_str(), 1234, 1234), 0);
    system.directory("var/log/apt");
    EXPECT_THAT(pathsOf(CleanPlace::LocalCaches),
                ElementsAre(system.path("var/cache/apt/archives"), system.path("var/cache/dnf")));
    EXPECT_THAT(pathsOf(CleanPlace::LocalLogs), ElementsAre(system.path("var/log/apt")));
}

TEST(StandardDirectories, ApplicationFoldersFollowTheSystemsPrefix) {
    const auto system = TestEnvironment::current().system();
    EXPECT_THAT(Platform::current().directories->paths(StandardDirectory::Applications),
                ElementsAre(system / "Applications", system / "Network/Applications",
                            system / "Developer/Applications",
                            TestEnvironment::current().home() / "Applications"));
}

TEST(StandardDirectories, LogFoldersHoldNothingButLogs) {
    TestTree home(TestEnvironment::current().home());
    home.file(".local/state/log/anything");
    home.file(".npm/_logs/x");
    home.file(".config/good/logs/main.log");
    home.file(".config/good/logs/main.log.12");
    home.file(".config/good/logs/old.log.gz");
    home.directory(".config/good/logs/2026-01-31");
    home.file(".local/share/app/Logs/a.log.xz");
    home.file(".config/chat/logs/talk.txt");
    home.file(".config/chat/logs/a.log");
    home.file(".config/linked/logs/a.log");
    home.link(".config/linked/logs/b.log", home.path(".config/good"));
    home.directory(".config/named/logs/notadate");
    home.file(".config/date/logs/2026-01-31");
    home.file(".config/packed/logs/a.log.bz2");
    home.file(".config/nameless/logs/.log");
    home.file(".config/part/logs/a.log.1x");
    home.file(".config/folder/logs/a.log/x.log");
    home.file(".config/a/b/logs/deep.log");
    home.directory(".config/empty/log");
    EXPECT_THAT(pathsOf(CleanPlace::UserLogs),
                ElementsAre(home.path(".local/state/log"), home.path(".npm/_logs"),
                            home.path(".config/empty/log"), home.path(".config/good/logs"),
                            home.path(".local/share/app/Logs")));
}

TEST(StandardDirectories, DownloadsAreWhereTheUserSaysUnlessThatIsTooMuch) {
    TestTree home(TestEnvironment::current().home());
    home.directory("Downloads");
    home.directory("My Files");
    home.directory("q\"uote");
    home.link("homelink", home.top());
    const struct {
        const char *line;
        std::vector<std::filesystem::path> folders;
    } rows[] = {
        {"", {home.path("Downloads")}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/My Files\"\n", {home.path("My Files")}},
        {"# XDG_DOWNLOAD_DIR=\"$HOME/My Files\"\n", {home.path("Downloads")}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/q\\\"uote\"\n", {home.path("q\"uote")}},
        {"XDG_DOWNLOAD_DIR=\"relative\"\n", {home.path("Downloads")}},
        {"XDG_DOWNLOAD_DIR=\"$HOME\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/homelink\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/My Files/..\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"../home\"\n", {home.path("Downloads")}},
        {"XDG_DOWNLOAD_DIR=\"$HOMEMy Files\"\n", {home.path("Downloads")}},
        {"XDG_DOWNLOAD_DIR=\"/\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/.config\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/.local\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"/proc\"\n", {}},
        {"XDG_DOWNLOAD_DIR=\"$HOME/missing\"\n", {}},
    };
    for (const auto &row : rows) {
        home.file(".config/user-dirs.dirs", row.line);
        EXPECT_EQ(pathsOf(CleanPlace::Downloads), row.folders) << row.line;
    }
    // What cannot be read may say anything.
    home.file(".config/user-dirs.dirs", std::string((1 << 20) + 1, '#'));
    EXPECT_THAT(pathsOf(CleanPlace::Downloads), ElementsAre());
}

// Whatever a variable or a link names: only a folder of the user's own with no other purpose.
TEST(StandardDirectories, ACacheFolderIsTheUsersOwnAndNothingElse) {
    test::needRoot();
    TestTree home(TestEnvironment::current().home());
    TestTree elsewhere;
    elsewhere.directory("caches");
    elsewhere.directory("foreign");
    ASSERT_EQ(::chown(elsewhere.path("foreign").c_str(), 1234, 1234), 0);
    home.directory("Pictures");
    home.link("to caches", elsewhere.path("caches"));
    home.link("to home", home.top());
    const auto top = home.top().native();
    const struct {
        std::string folder;
        std::optional<LeftOutReason> leftOut;
    } rows[] = {
        {top + "/.cache", {}},
        {top + "/to caches", {}}, // a folder of theirs elsewhere
        {elsewhere.path("foreign"), LeftOutReason::NotOwned},
        {"/etc", LeftOutReason::KeptPlace},
        {"/tmp", LeftOutReason::KeptPlace},
        {"/dev/shm", LeftOutReason::TopOfVolume},
        {top, LeftOutReason::KeptPlace},
        {top + "/to home", LeftOutReason::KeptPlace},
        {top + "/Pictures", LeftOutReason::KeptPlace},
        {top + "/.config", LeftOutReason::KeptPlace},
        {top + "/.local", LeftOutReason::KeptPlace}, // holds others
    };
    for (const auto &row : rows) {
        ::setenv("XDG_CACHE_HOME", row.folder.c_str(), 1);
        const CleanFolders found =
            Platform::current().directories->cleanFolders(CleanPlace::UserCaches);
        ASSERT_EQ(found.leftOut.size() + found.folders.size(), 1u) << row.folder;
        EXPECT_EQ(found.leftOut.empty(), !row.leftOut) << row.folder;
        if (!found.leftOut.empty()) {
            EXPECT_EQ(found.leftOut[0].reason, row.leftOut) << row.folder;
            EXPECT_EQ(found.leftOut[0].path, row.folder);
        }
    }
    ::setenv("XDG_CACHE_HOME", "relative", 1);
    ::setenv("XDG_RUNTIME_DIR", home.directory(".cache/sockets").c_str(), 1);
    EXPECT_THAT(pathsOf(CleanPlace::UserCaches), ElementsAre());
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_THAT(pathsOf(CleanPlace::UserCaches), ElementsAre(home.path(".cache")));
}

} // namespace
} // namespace brightsweep
