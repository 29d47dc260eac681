#include "platform/linux/DesktopEntries.h"

#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

namespace brightsweep {
namespace {

using test::TestEnvironment;
using test::TestTree;

TEST(DesktopEntries, AreFoundShadowedAndShownAsTheDesktopDoes) {
    ::setenv("PATH", "/usr/bin", 1);
    ::setenv("XDG_CURRENT_DESKTOP", "Fancy:GNOME", 1);
    ::unsetenv("XDG_DATA_DIRS");
    TestTree system(TestEnvironment::current().system());
    TestTree home(TestEnvironment::current().home());
    const std::string users = std::string(std::getenv("XDG_DATA_HOME")) + "/applications/";
    TestTree user{std::filesystem::path(users)};
    for (const char *program : {"usr/bin/there", "usr/games/game", "opt/x/run"}) {
        system.file(program);
        system.mode(program, 0755);
    }
    system.file("usr/bin/data");
    home.file("bin/own");
    home.mode("bin/own", 0755);
    const std::string own = home.path("bin/own").native();
    struct Row {
        const char *file;
        std::string keys;
        const char *id;
        bool shown;
    };
    const Row rows[] = {
        {"usr/share/applications/plain", "Exec=there %U\n", "plain", true},
        {"usr/share/applications/kde/sub", "Exec=env A=1 game\n", "kde-sub", true},
        {"usr/share/applications/full", "Exec=\"/opt/x/run\" --y\n", "full", true},
        {"usr/share/applications/own", "Exec=" + own + "\n", "own", true},
        {"usr/share/applications/gone", "Exec=missing\n", "gone", false},
        {"usr/share/applications/notrun", "Exec=data\n", "notrun", false},
        {"usr/share/applications/relative", "Exec=bin/there\n", "relative", false},
        {"usr/share/applications/try", "Exec=there\nTryExec=missing\n", "try", false},
        {"usr/share/applications/noshow", "Exec=there\nNoDisplay=true\n", "noshow", false},
        {"usr/share/applications/other", "Exec=there\nOnlyShowIn=KDE;\n", "other", false},
        {"usr/share/applications/here", "Exec=there\nOnlyShowIn=GNOME;\n", "here", true},
        {"usr/share/applications/bus", "DBusActivatable=true\n", "bus", true},
        {"usr/share/applications/\xff\n", "Exec=there\n", "\xff\n", true},
        {"var/lib/snapd/desktop/applications/s_s", "Exec=there\n", "s_s", true}};
    std::map<std::string, bool> expected;
    for (const Row &row : rows) {
        system.file(std::string(row.file) + ".desktop",
                    "[Desktop Entry]\nType=Application\n" + row.keys);
        expected[row.id] = row.shown;
    }
    system.fifo("usr/share/applications/fifo.desktop");
    system.link("usr/share/applications/link.desktop", "plain.desktop");
    system.link("usr/share/applications/loop.desktop", "loop.desktop");
    system.link("usr/share/applications/again", ".");
    system.directory("usr/share/applications/folder.desktop");
    system.file("usr/share/applications/.desktop", "[Desktop Entry]\nType=Application\n");
    system.deepChain("usr/share/applications/deep", 2'000);
    system.sparseFile("usr/share/applications/huge.desktop", 1 << 30);
    expected["link"] = true;
    user.file("plain.desktop", "[Desktop Entry]\nHidden=true\n");
    user.file("full.desktop", "garbage");

    std::map<std::string, bool> found;
    for (const DesktopEntryFile &file : readDesktopEntries()) {
        const bool isOfUser = file.path.native().starts_with(users);
        EXPECT_EQ(file.isUsers, isOfUser) << file.path;
        EXPECT_EQ(file.isShadowed, !isOfUser && (file.id == "plain" || file.id == "full"));
        if (!isOfUser)
            found[file.id] = file.isShown;
    }
    EXPECT_EQ(found, expected);
}

} // namespace
} // namespace brightsweep
