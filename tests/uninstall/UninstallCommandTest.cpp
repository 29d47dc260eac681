#include "support/CommandLine.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

class UninstallCommand : public testing::Test {
protected:
    std::string bundle(const std::string &place, const std::string &id,
                       const std::string &version = "1.0") {
        home.file(place + "/Contents/Info.plist", R"({"CFBundleIdentifier":")" + id +
                                                      R"(","CFBundleShortVersionString":")" +
                                                      version + "\"}");
        return "bundle:" + home.path(place).native();
    }
    nlohmann::json plan(const Words &words, int status, RunAs user = RunAs::Caller) {
        const auto result = cli(together({"--json", "uninstall"}, words), user);
        EXPECT_EQ(result.status, status) << result.errors;
        return documentOf(result.output, "uninstall")["plans"][0];
    }
    static std::size_t count(const nlohmann::json &object, const char *key) {
        return object.at(key).size();
    }

    TestTree home{TestEnvironment::current().home()};
};

TEST_F(UninstallCommand, ShowsThePlanAndCarriesItOutAsShown) {
    const std::string key = bundle("Applications/Editor.app", "com.example.editor");
    home.file(".config/com.example.editor.plist");
    home.file(".config/com.example.editor2.plist");
    home.file(".cache/com.example.editor/x");
    const auto before = home.snapshot();
    const auto apps = cli({"apps", "--json"});
    EXPECT_EQ(apps.status, 0);
    const auto listed = documentOf(apps.output, "apps")["apps"][0];
    EXPECT_EQ(listed.at("key"), key);
    EXPECT_TRUE(listed.at("bytes").is_null());

    const auto shown = plan({"com.example.editor"}, 0);
    EXPECT_EQ(count(shown, "leftovers"), 3u);
    EXPECT_EQ(count(shown, "removed"), 3u) << "the bundle and the two that are its own";
    EXPECT_TRUE(shown.at("blocked").is_null());
    EXPECT_EQ(count(plan({key, "--keep-leftovers"}, 0), "removed"), 1u);
    EXPECT_EQ(home.snapshot(), before) << "a plan changes nothing";

    EXPECT_EQ(count(plan({key, "--apply"}, 0), "removed"), 3u);
    EXPECT_FALSE(home.exists("Applications/Editor.app"));
    EXPECT_FALSE(home.exists(".config/com.example.editor.plist"));
    EXPECT_TRUE(home.exists(".config/com.example.editor2.plist"));
    EXPECT_EQ(cli({"uninstall", key}).status, 2) << "it is not installed any more";
}

TEST_F(UninstallCommand, RefusesItselfAndWhatIsNotClear) {
    const std::string own = bundle("Applications/Own.app", "com.norvmac.DeskSweeperPro", "4.0");
    EXPECT_TRUE(plan({bundle("Applications/Older.app", "com.norvmac.DeskSweeperPro", "3.9")}, 0)
                    .at("blocked")
                    .is_null());
    bundle("Applications/a/Twin.app", "com.example.a");
    bundle("Applications/b/Twin.app", "com.example.b");
    const auto blocked = plan({own, "--apply"}, 3);
    EXPECT_GT(blocked.at("blocked").get<std::string>(), "");
    EXPECT_TRUE(home.exists("Applications/Own.app"));
    const auto unclear = cli({"uninstall", "Twin.app", "--apply"});
    EXPECT_EQ(unclear.status, 2);
    EXPECT_NE(unclear.errors.find("a/Twin.app"), std::string::npos);
    EXPECT_NE(unclear.errors.find("b/Twin.app"), std::string::npos);
    EXPECT_TRUE(home.exists("Applications/a/Twin.app"));
    EXPECT_EQ(cli({"uninstall"}).status, 2);
    EXPECT_EQ(cli({"uninstall", "x", "--with-data", "--keep-leftovers"}).status, 2);
    EXPECT_EQ(cli({"leftovers", "--apply"}).status, 2);
}

TEST_F(UninstallCommand, TakesAnAppImageWithItsIntegrationAndAFolderWithItsLinks) {
    std::string program = textOf("/bin/true");
    program.replace(8, 3, "AI\2");
    const std::string image = home.file("Applications/Draw-1.2.AppImage", program);
    home.mode("Applications/Draw-1.2.AppImage", 0755);
    ASSERT_EQ(runProgram({image}).status, 0) << "a program that runs";
    const std::string mark = "appimagekit_0123456789abcdef0123456789abcdef";
    home.file(".local/share/applications/" + mark + "-Draw.desktop",
              "[Desktop Entry]\nType=Application\nName=Draw\nExec=" + image + " %F\n");
    home.file(".local/share/icons/hicolor/64x64/apps/" + mark + "_draw.png");
    home.file(".config/Draw/settings");
    home.file(".local/share/Draw/picture");
    home.file(".local/opt/Edit/bin/edit", "#!/bin/sh\n");
    home.mode(".local/opt/Edit/bin/edit", 0755);
    home.link(".local/bin/edit", "../opt/Edit/bin/edit");
    home.file(".local/share/applications/edit.desktop",
              "[Desktop Entry]\nType=Application\nName=Edit\nExec=" +
                  home.path(".local/opt/Edit/bin/edit").native() + "\n");
    std::filesystem::last_write_time(home.file(".local/opt/Edit/notes", "12345"),
                                     std::filesystem::file_time_type::clock::now() +
                                         std::chrono::hours(1));
    const auto removed = cli({"uninstall", "appimage:" + image, "--apply"});
    EXPECT_EQ(removed.status, 0) << removed.output << removed.errors;
    const auto shown = plan({"Edit"}, 0);
    const auto edit = plan({"Edit", "--apply"}, 0);
    for (const char *list : {"removed", "kept"})
        EXPECT_EQ(shown.at(list), edit.at(list));
    EXPECT_EQ(count(edit, "kept"), 2u) << "its folder and what it had written";
    EXPECT_EQ(count(edit, "removed"), 3u) << "its program, its link and its entry";
    EXPECT_EQ(edit.at("bytes"), 10) << "without what is kept";
    EXPECT_TRUE(home.exists(".local/opt/Edit/notes"));
    for (const char *gone :
         {"Applications/Draw-1.2.AppImage", ".config/Draw", ".local/opt/Edit/bin"})
        EXPECT_FALSE(home.exists(gone)) << gone;
    for (const char *emptied :
         {".local/share/applications", ".local/bin", ".local/share/icons/hicolor/64x64/apps"})
        EXPECT_TRUE(std::filesystem::is_empty(home.path(emptied))) << emptied;
    EXPECT_TRUE(home.exists(".local/share/Draw/picture"));
}

TEST_F(UninstallCommand, SaysBeforehandAndAfterwardsWhatStays) {
    needRoot();
    std::string program = textOf("/bin/true");
    program.replace(8, 3, "AI\2");
    home.file("Applications/Draw.AppImage", program);
    home.mode("Applications/Draw.AppImage", 0755);
    home.file(".config/Draw/theirs/file");
    home.file(".cache/Draw/x");
    home.own(".", unprivilegedUser);
    home.own(".config/Draw/theirs", 0);
    const auto shown = plan({"Draw"}, 3, RunAs::Unprivileged);
    EXPECT_EQ(count(shown, "removed"), 2u) << "it and its cache";
    EXPECT_EQ(count(shown, "failed"), 1u);
    EXPECT_EQ(count(plan({"Draw", "--admin"}, 0, RunAs::Unprivileged), "removed"), 3u);
    const auto done = cli({"uninstall", "Draw", "--apply"}, RunAs::Unprivileged);
    EXPECT_EQ(done.status, 3) << done.errors;
    EXPECT_NE(done.output.find("Draw: administrator rights are needed"), std::string::npos)
        << done.output;
    EXPECT_FALSE(home.exists("Applications/Draw.AppImage") || home.exists(".cache/Draw"));
    EXPECT_TRUE(home.exists(".config/Draw/theirs/file"));
}

TEST_F(UninstallCommand, LeftoversGoOnlyWhereTheyAreNamed) {
    needRoot();
    const std::string entry = "[Desktop Entry]\nType=Application\nName=N\nExec=/opt/gone/run\n";
    const auto dead = home.file(".config/autostart/dead.desktop", entry);
    const auto other = home.file(".config/autostart/other.desktop", entry);
    const auto mine = home.file("mine.txt");
    EXPECT_EQ(count(documentOf(cli({"leftovers", "--json"}).output, "leftovers"), "leftovers"), 2u);
    EXPECT_EQ(cli({"leftovers", dead.native(), "--apply", "--admin"}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(dead));
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_EQ(cli({"leftovers", mine.native(), "--apply"}).status, 3);
    EXPECT_TRUE(std::filesystem::exists(mine));
}

} // namespace
} // namespace brightsweep::test
