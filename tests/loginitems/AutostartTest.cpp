// The autostart folder, with systemd's own generator and GLib to say what an entry means.

#include "foundation/DesktopEntry.h"
#include "platform/LoginItemError.h"
#include "platform/linux/LinuxLoginItemSource.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using Names = std::vector<std::string>;

const std::string head = "[Desktop Entry]\nType=Application\nName=x\n";

class Autostart : public testing::Test {
protected:
    Autostart() {
        ::setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
        ::setenv("XDG_CONFIG_DIRS", "/etc/xdg", 1);
        TestTree programs(TestEnvironment::current().system());
        for (const char *name : {"usr/bin/sh", "bin/sh", "usr/bin/env", "usr/bin/flatpak"}) {
            programs.file(name);
            programs.mode(name, 0755);
        }
    }
    ~Autostart() override {
        ::unsetenv("XDG_CURRENT_DESKTOP");
        ::unsetenv("XDG_CONFIG_DIRS");
    }

    std::filesystem::path program(const std::string &name) {
        const auto path = work.file(name, "#!/bin/sh\ntouch \"$0.ran\"\n");
        work.mode(name, 0755);
        return path;
    }
    std::string text(const std::string &file) const { return textOf(user.path(file)); }
    LoginItemEntry item(const std::string &file) {
        const auto items = source.items().value_or({});
        for (const LoginItemEntry &each : items) {
            if (each.file == file)
                return each;
        }
        return {};
    }
    Names files() {
        Names files;
        const auto items = source.items().value_or({});
        for (const LoginItemEntry &each : items)
            files.push_back(each.file);
        return files;
    }
    // What the user's session starts: the entries that the generator makes a unit of.
    bool isStarted(const std::string &name) {
        const auto out = work.directory("out");
        const auto config = TestEnvironment::current().system() / "etc/xdg";
        runProgram(
            {"/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator", out, out, out},
            {{"XDG_CONFIG_DIRS", config}});
        const bool found = work.exists("out/app-" + name + "@autostart.service");
        std::filesystem::remove_all(out);
        return found;
    }

    TestTree work{TestEnvironment::current().home() / "work"};
    TestTree user{TestEnvironment::current().home() / ".config/autostart"};
    TestTree system{TestEnvironment::current().system() / "etc/xdg/autostart"};
    LinuxLoginItemSource source;
};

TEST_F(Autostart, ChangesOneValueAndNotAnotherByte) {
    std::string keys, languages;
    for (int i = 0; i < 200; ++i) {
        keys += "X-Key" + std::to_string(i) + " = \xff\xfe;" + std::to_string(i) + "\n";
        languages += "Name[l" + std::to_string(i) + "]=\xe2\x82\xac\n";
    }
    const std::string gnome = "X-GNOME-Autostart-enabled=false\n";
    const struct {
        std::string before, hidden, shown;
    } cases[] = {
        {"# a\n" + head + "\n# b\n", "# a\n" + head + "Hidden=true\n\n# b\n",
         "# a\n" + head + "Hidden=false\n\n# b\n"},
        {"[Desktop Entry]\r\nName=x\r\n\r\n[Desktop Action a]\r\nHidden=x\r\n",
         "[Desktop Entry]\r\nName=x\r\nHidden=true\r\n\r\n[Desktop Action a]\r\nHidden=x\r\n",
         "[Desktop Entry]\r\nName=x\r\nHidden=false\r\n\r\n[Desktop Action a]\r\nHidden=x\r\n"},
        {head + "Comment=C:\\dir\\",
         "[Desktop Entry]\nHidden=true\nType=Application\nName=x\nComment=C:\\dir\\",
         "[Desktop Entry]\nHidden=false\nType=Application\nName=x\nComment=C:\\dir\\"},
        {"\xef\xbb\xbf[Desktop Entry]\nName=x", "\xef\xbb\xbf[Desktop Entry]\nName=x\nHidden=true",
         "\xef\xbb\xbf[Desktop Entry]\nName=x\nHidden=false"},
        {head + " Hidden = 0 \n" + keys + "[Desktop Entry]\nHidden=1",
         head + " Hidden = true \n" + keys + "[Desktop Entry]\nHidden=true",
         head + " Hidden = false \n" + keys + "[Desktop Entry]\nHidden=false"},
        {head + gnome + languages, head + gnome + languages + "Hidden=true\n",
         head + "X-GNOME-Autostart-enabled=true\n" + languages + "Hidden=false\n"},
        {head + "Hidden=\nHidden[de]=x\n", head + "Hidden=true\nHidden[de]=x\n",
         head + "Hidden=false\nHidden[de]=x\n"},
    };
    for (const auto &each : cases) {
        user.file("a.desktop", each.before);
        user.mode("a.desktop", 0640);
        EXPECT_FALSE(source.setHidden("a.desktop", true));
        EXPECT_EQ(text("a.desktop"), each.hidden);
        EXPECT_TRUE(item("a.desktop").hidden);
        user.file("a.desktop", each.before);
        EXPECT_FALSE(source.setHidden("a.desktop", false));
        EXPECT_EQ(text("a.desktop"), each.shown);
        EXPECT_FALSE(item("a.desktop").hidden);
        struct stat status {};
        ::stat(user.path("a.desktop").c_str(), &status);
        EXPECT_EQ(status.st_mode & 07777, 0640u);
    }
    const std::string large = head + '#' + std::string(2'000'000, '\n');
    user.file("large.desktop", large);
    EXPECT_FALSE(source.setHidden("large.desktop", true));
    EXPECT_EQ(text("large.desktop").size(), large.size() + 12);
    user.file("large.desktop", head + '#' + std::string((16 << 20) - 100, '\n'));
    EXPECT_EQ(source.setHidden("large.desktop", true), std::errc::file_too_large);
    const std::string hidden = head + "Hidden=true\n#";
    user.file("large.desktop", hidden + std::string((16 << 20) - hidden.size() - 1, '\n'));
    EXPECT_FALSE(source.setHidden("large.desktop", false));
    user.file("garbage.desktop", "\0x=\n");
    EXPECT_EQ(source.setHidden("garbage.desktop", true), LoginItemError::NoEntryInside);
    user.file("returns.desktop", "[Desktop Entry]\rName=x\r");
    EXPECT_EQ(source.setHidden("returns.desktop", true), LoginItemError::LoneReturns);
}

TEST_F(Autostart, LeavesAloneWhatIsNotTheUsersOwnFile) {
    TestTree elsewhere(TestEnvironment::current().root() / "elsewhere");
    TestTree home(TestEnvironment::current().home());
    user.link("own.desktop", home.file("dotfiles/own.desktop", head + "Exec=sh\n"));
    user.link("out.desktop", elsewhere.file("out.desktop", head));
    user.link("gone.desktop", "nowhere");
    user.link("null.desktop", "/dev/null");
    user.directory("folder.desktop");
    user.fifo("fifo.desktop");
    user.file(".x.desktop", head);
    user.file("x.desktop~", head);
    user.file("sub/y.desktop", head);
    const auto before = elsewhere.snapshot();
    EXPECT_THAT(files(), ElementsAre("gone.desktop", "out.desktop", "own.desktop"));
    EXPECT_TRUE(item("gone.desktop").missing);
    for (const char *file : {"out.desktop", "gone.desktop", "null.desktop"})
        EXPECT_EQ(source.setHidden(file, true), LoginItemError::LinkElsewhere) << file;
    for (const char *file : {"folder.desktop", "fifo.desktop", "sub/y.desktop", "../x.desktop"}) {
        EXPECT_EQ(source.setHidden(file, true), LoginItemError::NotAnEntry) << file;
        EXPECT_EQ(source.remove(file), LoginItemError::NotAnEntry) << file;
    }
    EXPECT_FALSE(source.setHidden("own.desktop", true));
    EXPECT_TRUE(std::filesystem::is_symlink(user.path("own.desktop")));
    EXPECT_EQ(textOf(home.path("dotfiles/own.desktop")), head + "Exec=sh\nHidden=true\n");
    for (const char *file : {"out.desktop", "own.desktop", "gone.desktop"})
        EXPECT_FALSE(source.remove(file)) << file;
    EXPECT_EQ(elsewhere.snapshot(), before);
    EXPECT_TRUE(home.exists("dotfiles/own.desktop") && user.exists("folder.desktop") &&
                user.exists("x.desktop~") && user.exists(".x.desktop"));
}

TEST_F(Autostart, SaysWhatAnEntryStartsAndWhyNot) {
    const auto here = program("b in").native();
    const auto flatpak =
        TestEnvironment::current().home() / ".local/share/flatpak/exports/bin/org.x.App";
    TestTree(flatpak.parent_path()).file("org.x.App");
    const std::string plain = work.file("plain");
    const std::string open = "xdg-open \"" + plain + "\"";
    using enum LoginItemObstacle;
    const struct {
        std::string keys, path;
        bool missing, asItStands;
        LoginItemObstacle obstacle;
        std::string detail;
    } cases[] = {
        {"Exec=\"" + here + "\" %U", here, false, false, None, ""},
        {"Exec=env A=b \"" + here + "\"", here, false, false, None, ""},
        {"Exec=/no/such -x", "/no/such", true, false, None, ""},
        {"Exec=nosuchprogram", "", true, true, None, ""},
        {"Exec=sh -c \"cd / && x\"", "sh", false, true, None, ""},
        {"Exec=/usr/bin/flatpak run --branch=x org.x.App", flatpak, false, false, None, ""},
        {"Exec=flatpak run org.x.Gone", "/var/lib/flatpak/exports/bin/org.x.Gone", true, false,
         None, ""},
        {"Exec=/bin/sh\nOnlyShowIn=KDE;XFCE;", "/bin/sh", false, true, OtherDesktop, "KDE, XFCE"},
        {"Exec=/bin/sh\nNotShowIn=GNOME;", "/bin/sh", false, true, NotThisDesktop, "GNOME"},
        {"Exec=/bin/sh\nTryExec=nosuch", "/bin/sh", false, true, TryExecMissing, "nosuch"},
        {"Exec=/bin/sh\nType=Link", "/bin/sh", false, true, NotApplication, "Link"},
        {"Exec=/bin/sh\nTryExec=" + plain, "/bin/sh", false, true, NotExecutable, plain},
        {"Exec=" + open + "\nX-Brightsweep-URL=file://localhost" + plain, plain, false, false,
         TryExecMissing, "xdg-open"},
    };
    for (const auto &each : cases) {
        user.file("a.desktop", head + each.keys + "\n");
        const LoginItemEntry found = item("a.desktop");
        if (each.path.starts_with('/'))
            EXPECT_EQ(found.path, each.path) << each.keys;
        else
            EXPECT_EQ(found.path.filename(), each.path.empty() ? "a.desktop" : each.path);
        EXPECT_EQ(found.missing, each.missing) << each.keys;
        EXPECT_EQ(found.commandToldAsItStands, each.asItStands) << each.keys;
        EXPECT_EQ(int(found.obstacle), int(each.obstacle)) << each.keys;
        EXPECT_EQ(found.obstacleDetail, each.detail) << each.keys;
    }
}

TEST_F(Autostart, MarksWhatReadersRefuseOrTakeOtherwise) {
    const std::string start = head + "Exec=" + program("p").native() + "\n";
    using enum LoginItemObstacle;
    const std::string exec = head + "Exec=" + program("p").native();
    const std::string ofBackslash = head + "Exec=\"" + work.path("a").native() + "\\\\\\\\b\"\n";
    program("a\\b");
    const auto byReturns = [](std::string text) {
        std::replace(text.begin(), text.end(), '\n', '\r');
        return text;
    };
    const struct {
        std::string text;
        LoginItemObstacle obstacle;
        bool systemd, glib; // by the readers themselves
    } cases[] = {
        {start + "#\xff\n[A]\nb=c\n", None, true, true},
        {start + "Icon=\xff\n", NotUtf8, false, true},
        {start + "[A]\nb=\xff\n", NotUtf8, false, true},
        {start + "[A]\nExec=/no/such\nHidden=maybe\n", None, true, true},
        {"\xef\xbb\xbf" + start, ByteOrderMark, true, false},
        {start + "no key\n", BadLine, true, false},
        {"a=b\n" + start, BadLine, true, false},
        {start + "Hidden=maybe\n", BadLine, false, true},
        {start + "[Desktop Entry]\nExec=/no/such\n", TwoValues, true, false},
        {start + "[Desktop Entry]\n" + start, None, true, true},
        {head + "Exec=" + work.file("plain").native() + "\n", NotExecutable, false, false},
        {start + "TryExec=\n", BadLine, false, true},
        {start + "OnlyShowIn=\n", BadLine, true, false},
        {start + "NotShowIn=\n", None, true, true},
        {start + "OnlyShowIn=;\nNotShowIn=GNOME;\n", NotThisDesktop, true, false},
        {exec + " a\\qb\n", BadLine, false, true},
        {exec + " a\\\\b\n", None, true, true},
        {exec + " a\\", None, true, true},
        {ofBackslash, BadLine, false, true},
        {head + "Comment=a\\\n" + start, BadLine, true, true},
        {exec + " \"abc\n", BadLine, true, false},
        {exec + " don't\n", BadLine, true, false},
        {head + "Exec=\"/no/such\n", NoCommand, false, false},
        {head + "Exec=sh -c \"~/x\"\n", None, true, true},
        {std::string(2'000'000, '\n') + start, None, true, true},
        {start + "#" + std::string(1 << 20, 'x') + "\n", BadLine, false, true},
        {"[A]\nb=c\n" + start, BadLine, true, false},
        {start + "[A\n", BadLine, false, false},
        {byReturns(start), LineEnds, true, false},
        {byReturns(head + "Exec=" + work.path("plain").native()), NotExecutable, false, false},
        {start + "X-A=b\rHidden=true\n", LineEnds, false, true},
        {start + "X-A=b\rX-C=d\n", None, true, true},
        {head + "Exec=%f sh\n", TryExecMissing, false, false},
        {head + "Exec=A=b sh\n", TryExecMissing, false, false},
        {head + "Exec=\vsh\n", BadLine, false, false},
        {head + "Exec=\fsh\n", BadLine, false, true},
        {start + "TryExec=sh \n", BadLine, true, false},
        {start + "TryExec=sh\r\n", None, true, true},
        {start + "[X-\x01]\n", BadLine, false, false},
        {start + "[]\n", BadLine, true, false},
        {start + "[a[b]\n", BadLine, true, false},
        {start + " =c\n", BadLine, true, false},
        {start + "k[=c\n", BadLine, true, false},
        {start + "k]=c\n", BadLine, true, false},
        {start + "k[d e]=c\n", BadLine, true, false},
        {start + "k [de]=c\n", BadLine, true, false},
        {start + "k[]=c\nk[sr@latin]=c\na b =c\n", None, true, true},
        {start + "OnlyShowIn=GNOME;\nOnlyShowIn=GNOME;KDE;\n", TwoValues, true, true},
        {start + "Path=/no/such\n", FolderMissing, true, false},
        {start + "Path=" + work.top().native() + " \n", BadLine, true, false},
        {start + "Path=" + work.top().native() + "\n", None, true, true},
        {start + "Path=\n", None, true, true},
    };
    const std::string load = "import gi; gi.require_version('Gio', '2.0')\n"
                             "from gi.repository import Gio; import sys\n"
                             "app = Gio.DesktopAppInfo.new_from_filename(sys.argv[1])\n"
                             "sys.exit(not (app.get_show_in(None) and "
                             "(not app.get_string('Path') or app.launch([], None))))";
    for (const auto &each : cases) {
        const std::string file = user.file("a.desktop", each.text);
        const LoginItemEntry found = item("a.desktop");
        const std::string text = each.text.substr(0, 200);
        EXPECT_EQ(int(found.obstacle), int(each.obstacle)) << text << found.obstacleDetail;
        EXPECT_FALSE(found.missing && each.obstacle == None) << text;
        EXPECT_LT(found.obstacleDetail.size(), 200u);
        EXPECT_EQ(isStarted("a"), each.systemd) << text;
        EXPECT_EQ(runProgram({"/usr/bin/python3", "-c", load, file}).status == 0, each.glib)
            << text;
    }
    std::filesystem::remove(user.path("a.desktop"));
    for (const auto &[length, obstacle] : {std::pair(233, None), std::pair(234, NameTooLong)}) {
        const std::string name(std::size_t(length), 'n');
        user.file(name + ".desktop", start);
        EXPECT_EQ(int(item(name + ".desktop").obstacle), int(obstacle)) << length;
        EXPECT_EQ(isStarted(name), obstacle == None) << length;
        std::filesystem::remove(user.path(name + ".desktop"));
    }
}

TEST_F(Autostart, ChangesAnEntryThatIsBeingWrittenOnceItIsWhole) {
    const std::string whole = head + "Exec=sh\nComment=" + std::string(2000, 'x') + "\n";
    for (int i = 0; i < 20; ++i) {
        user.file("a.desktop");
        std::thread writer([&] { user.file("a.desktop", whole); });
        EXPECT_FALSE(source.setHidden("a.desktop", true));
        writer.join();
        EXPECT_EQ(text("a.desktop"), whole + "Hidden=true\n");
    }
}

TEST_F(Autostart, WhatIsAddedStartsAndIsHiddenAndShownAgain) {
    ::setenv("PATH", (work.top().native() + "/bin:" + ::getenv("PATH")).c_str(), 1);
    program("bin/xdg-open");
    user.file("z.desktop", head + "Exec=sh\nX-GNOME-Autostart-enabled=false\n");
    Names names;
    for (const char *name : {"plain", "a b", "pe%r=c", "do$l", "ba`c'k", "quo\"te", "nl\nx", ".x"})
        names.push_back(*source.add(program(name), false));
    names.push_back(*source.add(work.file("doc ument.pdf"), false));
    names.push_back(*source.add(
        work.file("app.desktop",
                  "\xef\xbb\xbf" + head + "# c\nExec=sh -l\nHidden=true\n[Desktop Action a]\n"),
        false));
    EXPECT_EQ(text("app.desktop").find(head + "# c\nExec=sh -l\nHidden=false\nX-Bright"), 0u);
    EXPECT_TRUE(source.add(work.directory("f.desktop"), false));
    EXPECT_EQ(source.add(work.file("big.desktop", std::string(2'000'000, '#')), false).error(),
              std::errc::file_too_large);
    const auto longName = program(std::string(250, 'n'));
    const Names others{"f.desktop", *source.add(longName, false), *source.add(longName, false)};
    for (const std::string &file : others)
        EXPECT_EQ(int(item(file).obstacle), int(LoginItemObstacle::None)) << file;
    std::filesystem::remove(work.path("f.desktop"));
    EXPECT_TRUE(item("f.desktop").missing);
    for (const std::string &file : others)
        EXPECT_FALSE(source.remove(file));
    names.push_back(*source.add(work.path("a b"), true));
    EXPECT_EQ(names.back(), "a b-2.desktop");
    EXPECT_EQ(source.add("/no/such", false).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(source.add(program("\xff"), false).error(), LoginItemError::NameNotText);
    EXPECT_EQ(source.add(work.file("n.desktop", "x"), false).error(),
              LoginItemError::NothingToStart);
    // File names first, then in the order of adding.
    Names expected{"z.desktop"};
    expected.insert(expected.end(), names.begin(), names.end());
    EXPECT_EQ(files(), expected);
    EXPECT_EQ(item(names[2]).path, work.path("pe%r=c"));
    EXPECT_FALSE(isStarted("a\\x20b\\x2d2") || !isStarted("plain"));
    const std::string launch =
        "import gi; gi.require_version('Gio', '2.0'); from gi.repository import Gio; import sys\n"
        "for f in sys.argv[1:]: Gio.DesktopAppInfo.new_from_filename(f).launch([], None)";
    std::vector<std::string> arguments{"/usr/bin/python3", "-c", launch};
    for (std::size_t i = 0; i < 8; ++i)
        arguments.push_back(user.path(names[i]));
    EXPECT_EQ(runProgram(arguments).errors, "");
    for (const char *name : {"plain", "a b", "pe%r=c", "do$l", "ba`c'k", "quo\"te", "nl\nx", ".x"})
        EXPECT_TRUE(eventually([&] { return work.exists(std::string(name) + ".ran"); })) << name;
    EXPECT_FALSE(source.start(names[8]));
    EXPECT_TRUE(eventually([&] { return work.exists("bin/xdg-open.ran"); }));
    EXPECT_EQ(source.start("none.desktop"), std::errc::no_such_file_or_directory);
    for (const bool hidden : {true, false}) {
        for (const char *file : {"plain", "z"}) {
            EXPECT_FALSE(source.setHidden(std::string(file) + ".desktop", hidden));
            EXPECT_EQ(isStarted(file), !hidden) << file;
        }
    }
    EXPECT_TRUE(DesktopEntry(text("z.desktop")).boolean("X-GNOME-Autostart-enabled"));
}

TEST_F(Autostart, SwitchesWhatTheSystemStartsOffAndOn) {
    const std::string sound = head + "Exec=sh\nX-Own=1\n";
    system.file("sound.desktop", sound);
    system.file("odd.desktop", head + "Exec=sh\nExec=sh -l\nX-Own=1\n");
    system.file("agent.desktop", head + "Exec=sh\nNoDisplay=true\n");
    system.file("kde.desktop", head + "Exec=sh\nOnlyShowIn=KDE;\n");
    system.file("mine.desktop", head + "Exec=sh\n");
    user.file("mine.desktop", "[Desktop Entry]\nHidden=true\n");
    const auto before = system.snapshot();
    const auto shown = [&] {
        Names names;
        const auto items = source.systemItems().value_or({});
        for (const LoginItemEntry &each : items)
            names.push_back(each.file + (each.hidden ? " off" : ""));
        return names;
    };
    EXPECT_THAT(shown(), ElementsAre("odd.desktop", "sound.desktop"));
    EXPECT_FALSE(source.setSystemItemStarted("sound.desktop", false));
    EXPECT_THAT(text("sound.desktop"),
                testing::StartsWith(sound + "Hidden=true\nX-Brightsweep-Override="));
    EXPECT_FALSE(isStarted("sound"));
    EXPECT_THAT(shown(), ElementsAre("odd.desktop", "sound.desktop off"));
    EXPECT_THAT(files(), ElementsAre("mine.desktop"));
    EXPECT_EQ(item("mine.desktop").name, "x");
    EXPECT_EQ(int(item("mine.desktop").obstacle), int(LoginItemObstacle::None));
    for (const char *file : {"sound.desktop", "mine.desktop"})
        EXPECT_EQ(source.remove(file), LoginItemError::StandsForSystem);
    EXPECT_EQ(source.setSystemItemStarted("mine.desktop", true), LoginItemError::NotOurs);
    // It has nothing of its own to start.
    EXPECT_FALSE(source.setHidden("mine.desktop", false));
    EXPECT_TRUE(isStarted("mine") && item("mine.desktop").command == "sh");
    const std::string other = head + "Exec=sh -l\n";
    user.file("odd.desktop", other);
    EXPECT_FALSE(source.setHidden("odd.desktop", false));
    EXPECT_EQ(text("odd.desktop"), other + "Hidden=false\n") << "it has all that it needs";
    std::filesystem::remove(user.path("odd.desktop"));
    EXPECT_EQ(source.setSystemItemStarted("none.desktop", false),
              std::errc::no_such_file_or_directory);
    EXPECT_FALSE(source.setSystemItemStarted("sound.desktop", true));
    EXPECT_TRUE(isStarted("sound") && !user.exists("sound.desktop"));
    // What is added under such a name stays removable.
    EXPECT_EQ(*source.add(program("sound"), false), "sound-2.desktop");
    EXPECT_EQ(system.snapshot(), before);
    // What somebody writes into it is not taken back with it.
    source.setSystemItemStarted("sound.desktop", false);
    user.file("sound.desktop", text("sound.desktop") + "Comment=edited\n");
    EXPECT_FALSE(source.setSystemItemStarted("sound.desktop", true));
    EXPECT_THAT(text("sound.desktop"), testing::EndsWith("Comment=edited\n"));
    EXPECT_TRUE(isStarted("sound"));
    std::filesystem::remove(user.path("sound.desktop"));
    // The package goes, and what the switch wrote is left.
    source.setSystemItemStarted("sound.desktop", false);
    std::filesystem::remove(system.path("sound.desktop"));
    EXPECT_THAT(files(), testing::Contains("sound.desktop"));
    EXPECT_FALSE(source.remove("sound.desktop"));
}

TEST_F(Autostart, AFullOrClosedFolderKeepsTheOldFile) {
    needRoot();
    const auto added = program("p");
    const int result = runInChild([&] {
        if (!mountSmallFileSystem(user.top(), 12 * 1024))
            return 1;
        const std::string entry = head + "Comment=" + std::string(8000, 'x') + "\n";
        user.file("a.desktop", entry);
        if (source.setHidden("a.desktop", true) != std::errc::no_space_on_device)
            return 2;
        if (text("a.desktop") != entry || user.snapshot().size() != 1)
            return 3;
        std::filesystem::remove(user.path("a.desktop"));
        user.own("", unprivilegedUser);
        user.file("b.desktop", entry);
        user.mode("", 0555);
        if (!becomeUnprivileged() || source.remove("b.desktop") != std::errc::permission_denied ||
            source.add(added, false).error() != std::errc::permission_denied)
            return 4;
        return text("b.desktop") == entry ? 0 : 5;
    });
    EXPECT_EQ(result, 0);
}

} // namespace
} // namespace brightsweep::test
