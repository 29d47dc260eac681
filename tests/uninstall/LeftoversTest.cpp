#include "uninstall/Leftovers.h"
#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/FakeApplicationSource.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "uninstall/LeftBehind.h"
#include "uninstall/LeftoverLook.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <cstdlib>
#include <map>

namespace brightsweep {
namespace {

using namespace test;

InstalledApplication application(ApplicationKind kind, std::string key, std::string program,
                                 std::string id) {
    InstalledApplication result;
    result.kind = kind;
    result.key = std::move(key);
    result.name = result.key;
    result.programs = {std::move(program)};
    result.ids = {std::move(id)};
    return result;
}

RemovalPlan planOf(const InstalledApplication &application) {
    RemovalPlan plan;
    plan.application = application;
    return plan;
}

// Paths below the home with their tick, and nothing else.
std::map<std::string, bool> ticksOf(const std::vector<Leftover> &leftovers) {
    const auto home = TestEnvironment::current().home();
    std::map<std::string, bool> ticks;
    for (const Leftover &leftover : leftovers)
        ticks[leftover.path.lexically_relative(home).native()] = leftover.ticked;
    return ticks;
}

const Leftover *find(const std::vector<Leftover> &leftovers, std::string_view name) {
    for (const Leftover &leftover : leftovers) {
        if (leftover.path.filename() == name)
            return &leftover;
    }
    return nullptr;
}

class LeftoversTest : public testing::Test {
protected:
    TestTree home{TestEnvironment::current().home()};
};

TEST_F(LeftoversTest, OfAPackageAreFoundByNameAndTickedByWhatTheyHold) {
    home.file(".config/GIMP/2.10/gimprc", "12345");
    home.file(".config/gimprc");
    home.file(".config/gimp-2.8/x");
    home.file(".config/gimp.conf/Local Storage/1");
    home.sparseFile(".config/org.gimp.Editor", (1 << 20) + 1);
    home.file(".cache/gimp/brushes.db");
    home.file(".local/share/gimp/a");
    home.file(".local/state/gimp/a");
    home.file(".gimp/a");
    home.file(".config/autostart/org.gimp.Editor.desktop");
    home.file(".config/systemd/user/gimpd.service",
              "[Service]\nExecStart=-/usr/bin/gimp --serve\n");
    home.file(".config/systemd/user/other.service", "[Service]\nExecStart=/usr/bin/gimpx\n");
    home.link(".cache/org.gimp.editor.old", home.file("elsewhere/precious"));
    home.file(".gimp-2.8/a");
    const auto gimp =
        application(ApplicationKind::Package, "gimp", "/usr/bin/gimp", "org.gimp.Editor");
    const auto found = Leftovers({gimp}).of(planOf(gimp));
    const std::map<std::string, bool> expected = {
        {".config/GIMP", true},
        {".config/gimprc", true},
        {".config/gimp.conf", false},
        {".config/org.gimp.Editor", false},
        {".cache/gimp", true},
        {".cache/org.gimp.editor.old", false},
        {".local/share/gimp", false},
        {".local/state/gimp", false},
        {".gimp", false},
        {".config/autostart/org.gimp.Editor.desktop", true},
        {".config/systemd/user/gimpd.service", true},
    };
    EXPECT_EQ(ticksOf(found), expected);
    EXPECT_EQ(find(found, "GIMP")->bytes, 5u);
    EXPECT_EQ(find(found, "gimp.conf")->kind, LeftoverKind::Data);
}

TEST_F(LeftoversTest, OfAnotherThatStaysOrOfTheDesktopAreLeftAlone) {
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:Cutefish", 1);
    home.file(".config/libreoffice/x");
    home.file(".config/libreoffice-writer/x");
    home.file(".config/cutefish/x");
    auto writer = application(ApplicationKind::Package, "libreoffice-writer",
                              "/usr/bin/libreoffice", "libreoffice-writer");
    writer.programs.push_back("/usr/bin/cutefish");
    const auto calc = application(ApplicationKind::Package, "libreoffice-calc",
                                  "/usr/bin/libreoffice", "libreoffice-calc");
    const Leftovers both({writer, calc});
    const std::map<std::string, bool> alone = {{".config/libreoffice-writer", true}};
    EXPECT_EQ(ticksOf(both.of(planOf(writer))), alone);
    RemovalPlan suite = planOf(writer);
    suite.also = {"libreoffice-calc"};
    home.file(".config/libreoffice-calc/x");
    EXPECT_TRUE(ticksOf(both.of(suite)).contains(".config/libreoffice"));
    EXPECT_TRUE(ticksOf(both.of(suite)).contains(".config/libreoffice-calc")) << "it goes along";
    ::unsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(LeftoversTest, OfAFlatpakStayWhileAnotherOfItsIdDoes) {
    home.file(".var/app/org.example.App/data/x");
    home.file(".local/share/flatpak/overrides/org.example.App");
    const auto stable = application(ApplicationKind::Flatpak, "app/org.example.App/x86_64/stable",
                                    "", "org.example.App");
    auto user = stable;
    user.userOwned = true;
    EXPECT_TRUE(Leftovers({stable, user}).of(planOf(user)).empty());
    const std::map<std::string, bool> expected = {
        {".var/app/org.example.App", false},
        {".local/share/flatpak/overrides/org.example.App", true},
    };
    EXPECT_EQ(ticksOf(Leftovers({user}).of(planOf(user))), expected);
}

TEST_F(LeftoversTest, OfAnAppImageAndAFolderAreTheirEntriesAndWhatTheyWroteSince) {
    const std::string id = "appimagekit_0123456789abcdef0123456789abcdef-Draw";
    auto image =
        application(ApplicationKind::AppImage, home.file("Applications/Draw.AppImage"), "", id);
    image.path = image.key;
    image.programs = {image.key};
    home.file(".local/share/applications/" + id + ".desktop", "Exec=" + image.key + " %U\n");
    home.file(".local/share/applications/mine.desktop", "Exec=\"" + image.key + "\" --new\n");
    home.file(
        ".local/share/icons/hicolor/48x48/apps/appimagekit_0123456789abcdef0123456789abcdef_d");
    home.file(
        ".local/share/icons/hicolor/48x48/apps/appimagekit_1123456789abcdef0123456789abcdef_d");
    EXPECT_EQ(ticksOf(Leftovers({image}).of(planOf(image))).size(), 3u);

    auto folder = application(ApplicationKind::Folder, home.directory(".local/share/Sync"),
                              home.file(".local/share/Sync/bin/sync"), "sync");
    folder.path = folder.key;
    home.file(".local/share/Sync/keys/key.pem");
    home.link(".local/bin/sync", "../share/Sync/bin/sync");
    folder.installed = 1; // everything is newer
    const std::map<std::string, bool> expected = {{".local/share/Sync/bin", false},
                                                  {".local/share/Sync/keys", false},
                                                  {".local/bin/sync", true}};
    EXPECT_EQ(ticksOf(Leftovers({folder}).of(planOf(folder))), expected);
    folder.installed = std::int64_t(1) << 33; // nothing is
    EXPECT_EQ(ticksOf(Leftovers({folder}).of(planOf(folder))).size(), 1u);
}

TEST_F(LeftoversTest, OfABundleBeginWithItsId) {
    TestTree(TestEnvironment::current().system()).file("usr/local/share/com.example.editor/x");
    home.file(".config/com.example.editor.plist");
    home.file(".config/com.example.editor2.plist");
    home.file(".config/com.example.editor.store/places.sqlite");
    home.file(".local/share/com.example.editor/x");
    home.file(".cache/com.example.editor.other/x");
    home.file(".com.example.editor/x");
    const auto bundle = application(ApplicationKind::Bundle, "/x/E.app", "", "com.example.editor");
    const auto other =
        application(ApplicationKind::Bundle, "/x/O.app", "", "com.example.editor.other");
    const auto found = Leftovers({bundle, other}).of(planOf(bundle));
    const std::map<std::string, bool> expected = {
        {"../system/usr/local/share/com.example.editor", true},
        {".config/com.example.editor.plist", true},
        {".config/com.example.editor2.plist", false},
        {".config/com.example.editor.store", false},
        {".local/share/com.example.editor", true},
        {".cache/com.example.editor.other", false},
    };
    EXPECT_EQ(ticksOf(found), expected);
    EXPECT_EQ(found.front().path.filename(), "com.example.editor");
}

TEST_F(LeftoversTest, WithAVolumeInThemAreShownUnticked) {
    needRoot();
    ASSERT_TRUE(enterPrivateMounts());
    home.file(".config/scanny/a/b");
    ASSERT_TRUE(bindMount(home.directory("volume"), home.directory(".config/scanny/m")));
    const auto named = application(ApplicationKind::Package, "scanny", "", "scanny");
    const auto found = Leftovers({named}).of(planOf(named));
    EXPECT_EQ(::umount(home.path(".config/scanny/m").c_str()), 0);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_FALSE(found.front().ticked);
}

TEST_F(LeftoversTest, OfWhatIsGoneAreThoseThatNothingInstalledExplains) {
    auto &applications = Platform::current().applications;
    applications.clear();
    auto source = std::make_unique<FakeApplicationSource>(ApplicationKind::Package);
    source->former = {"oldpaint", "kept-tool", "st"};
    source->claimed = {{"kept-tool", "newer"}, {"jq", "jq"}};
    applications.push_back(std::move(source));
    home.file(".config/oldpaint/settings");
    home.file(".oldpaint/picture.svg");
    home.file(".config/kept-tool/x");
    home.file(".config/st/x");
    home.file(".var/app/org.gone.App/data/x");
    home.file(".var/app/org.here.App/data/x");
    home.file(".local/share/flatpak/overrides/global");
    home.file("snap/jq/x");
    home.file("snap/goneplayer/x");
    home.file("snap/Notes of mine/x");
    const std::string entry = "[Desktop Entry]\nType=Application\nName=N\nExec=";
    home.file(".config/autostart/dead.desktop", entry + "/opt/dead/run --hidden\n");
    home.file(".config/autostart/alive.desktop", entry + "/bin/sh --version\n");
    home.file(".local/share/applications/gone.desktop",
              entry + "/bin/sh\nX-Flatpak=org.gone.App\n");
    home.file(".local/share/applications/hides.desktop", entry + "nowhere\nHidden=true\n");
    TestTree(TestEnvironment::current().system()).file("bin/sh");
    auto flatpak =
        application(ApplicationKind::Flatpak, "app/org.here.App/x86_64/stable", "", "org.here.App");
    const LeftBehind behind({flatpak}, {});
    const std::map<std::string, bool> expected = {
        {".config/oldpaint", false},
        {".oldpaint", false},
        {".var/app/org.gone.App", false},
        {"snap/goneplayer", false},
        {".config/autostart/dead.desktop", false},
        {".local/share/applications/gone.desktop", false},
    };
    auto found = behind.find();
    EXPECT_EQ(ticksOf(found), expected);
    EXPECT_EQ(ticksOf(LeftBehind({}, {ApplicationKind::Flatpak, ApplicationKind::Snap,
                                      ApplicationKind::Package})
                          .find())
                  .size(),
              1u)
        << "what could not be listed may be there";
    found.front().ticked = true;
    const auto run = RemovalRun::begin("test").run;
    EXPECT_TRUE(LeftBehind::remove(*run, found).front().removed);
    EXPECT_FALSE(home.exists(".config/oldpaint"));
    EXPECT_TRUE(home.exists(".oldpaint/picture.svg"));
}

TEST_F(LeftoversTest, AreNotTheSameOnceTheyWereExchangedOrGained) {
    home.file(".config/tool-y/x");
    const auto root = Platform::current().files->rememberRoot(home.path(".config"));
    const auto look = [&](LeftoverKind kind) {
        return *lookAtLeftover({*root, "tool-y"}, kind, {});
    };
    const Leftover config = look(LeftoverKind::Config);
    const Leftover cache = look(LeftoverKind::Cache);
    EXPECT_FALSE(hasLeftoverChanged(config, look(LeftoverKind::Config)));
    home.file(".config/tool-y/new");
    EXPECT_TRUE(hasLeftoverChanged(config, look(LeftoverKind::Config)));
    EXPECT_FALSE(hasLeftoverChanged(cache, look(LeftoverKind::Cache)));
    std::filesystem::rename(home.path(".config/tool-y"), home.path(".config/tool-z"));
    home.directory(".config/tool-y");
    EXPECT_TRUE(hasLeftoverChanged(cache, look(LeftoverKind::Cache)));
}

} // namespace
} // namespace brightsweep
