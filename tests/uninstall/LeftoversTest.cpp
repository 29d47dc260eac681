#include "uninstall/Leftovers.h"
#include "platform/Platform.h"
#include "support/ChildProcess.h"
#include "support/FakeApplicationSource.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "uninstall/LeftBehind.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace brightsweep {
namespace {

using namespace test;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

InstalledApplication application(ApplicationKind kind, std::string key, std::string program,
                                 std::string id) {
    InstalledApplication result;
    result.kind = kind;
    result.name = result.key = std::move(key);
    result.programs = {std::move(program)};
    result.ids = {std::move(id)};
    return result;
}

RemovalPlan planOf(const InstalledApplication &application) {
    RemovalPlan plan;
    plan.application = application;
    return plan;
}

// Paths below the home, behind "+" where they are ticked.
std::vector<std::string> ticksOf(const std::vector<Leftover> &leftovers) {
    const auto home = TestEnvironment::current().home();
    std::vector<std::string> ticks;
    for (const Leftover &leftover : leftovers)
        ticks.push_back((leftover.ticked ? "+" : "") +
                        leftover.path.lexically_relative(home).native());
    return ticks;
}

class LeftoversTest : public testing::Test {
protected:
    void files(std::initializer_list<const char *> names) {
        for (const char *name : names)
            home.file(name);
    }

    TestTree home{TestEnvironment::current().home()};
};

TEST_F(LeftoversTest, OfAPackageAreFoundByNameAndTickedByWhatTheyHold) {
    files({".config/GIMP/2.10/gimprc", ".config/gimprc", ".config/gimp-2.8/x", ".gimp-2.8/a",
           ".config/gimp.conf/Local Storage/1", ".cache/gimp/brushes.db", ".local/share/gimp/a",
           ".local/state/gimp/a", ".gimp/a", ".config/autostart/org.gimp.Editor.desktop"});
    home.sparseFile(".config/org.gimp.Editor", (1 << 20) + 1);
    home.file(".config/systemd/user/gimpd.service", "[Service]\nExecStart=-/usr/bin/gimp -s\n");
    home.file(".config/systemd/user/other.service", "[Service]\nExecStart=/usr/bin/gimpx\n");
    home.link(".cache/org.gimp.editor.old", home.file("elsewhere/precious"));
    const auto gimp =
        application(ApplicationKind::Package, "gimp", "/usr/bin/gimp", "org.gimp.Editor");
    const auto found = Leftovers({gimp}).of(planOf(gimp));
    EXPECT_THAT(ticksOf(found),
                UnorderedElementsAre("+.config/GIMP", "+.config/gimprc", ".config/gimp.conf",
                                     ".config/org.gimp.Editor", "+.cache/gimp",
                                     ".cache/org.gimp.editor.old", ".local/share/gimp",
                                     ".local/state/gimp", ".gimp",
                                     "+.config/autostart/org.gimp.Editor.desktop",
                                     "+.config/systemd/user/gimpd.service"));
    EXPECT_EQ(found.front().bytes, 1u);
}

TEST_F(LeftoversTest, OfAnotherThatStaysOrOfTheDesktopAreLeftAlone) {
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:Cutefish", 1);
    files({".config/libreoffice/x", ".config/libreoffice-writer/x", ".config/libreoffice-calc/x",
           ".config/cutefish/x"});
    auto writer = application(ApplicationKind::Package, "libreoffice-writer",
                              "/usr/bin/libreoffice", "libreoffice-writer");
    writer.programs.push_back("/usr/bin/cutefish");
    const auto calc = application(ApplicationKind::Package, "libreoffice-calc",
                                  "/usr/bin/libreoffice", "libreoffice-calc");
    const Leftovers both({writer, calc});
    EXPECT_THAT(ticksOf(both.of(planOf(writer))),
                UnorderedElementsAre("+.config/libreoffice-writer"));
    RemovalPlan suite = planOf(writer);
    suite.also = {"libreoffice-calc"};
    EXPECT_THAT(ticksOf(both.of(suite)),
                UnorderedElementsAre("+.config/libreoffice-writer", "+.config/libreoffice",
                                     "+.config/libreoffice-calc"));
    ::unsetenv("XDG_CURRENT_DESKTOP");
}

TEST_F(LeftoversTest, OfAFlatpakStayWhileAnotherOfItsIdDoes) {
    files({".var/app/org.x.App/data/x", ".local/share/flatpak/overrides/org.x.App"});
    const auto system =
        application(ApplicationKind::Flatpak, "app/org.x.App/x86_64/stable", "", "org.x.App");
    auto user = system;
    user.userOwned = true;
    EXPECT_THAT(Leftovers({system, user}).of(planOf(user)), IsEmpty());
    EXPECT_THAT(
        ticksOf(Leftovers({user}).of(planOf(user))),
        UnorderedElementsAre(".var/app/org.x.App", "+.local/share/flatpak/overrides/org.x.App"));
}

TEST_F(LeftoversTest, OfWhatIsGoneAreThoseThatNothingInstalledExplains) {
    test::needRoot();
    auto &applications = Platform::current().applications;
    applications.clear();
    auto source = std::make_unique<FakeApplicationSource>(ApplicationKind::Package);
    source->former = {"oldpaint", "kept-tool", "st"};
    source->claimed = {{"kept-tool", "newer"}, {"jq", "jq"}};
    applications.push_back(std::move(source));
    files({".config/oldpaint/settings", ".oldpaint/picture.svg", ".config/kept-tool/x",
           ".config/st/x", ".var/app/org.gone.App/data/x", ".var/app/org.here.App/data/x",
           ".local/share/flatpak/overrides/global", "snap/jq/x", "snap/goneplayer/x",
           "snap/Notes of mine/x"});
    const std::string entry = "[Desktop Entry]\nType=Application\nName=N\nExec=";
    int absent = 0;
    home.file(".config/autostart/dead.desktop", entry + "/opt/dead/run --hidden\n");
    home.file(".config/autostart/alive.desktop", entry + "/bin/sh --version\n");
    home.file(".local/share/applications/gone.desktop",
              entry + "/bin/sh\nX-Flatpak=org.gone.App\n");
    home.file(".local/share/applications/hides.desktop", entry + "nowhere\nHidden=true\n");
    TestTree system(TestEnvironment::current().system());
    system.file("bin/sh");
    // Not gone: the volume is not mounted.
    system.file("etc/fstab", "/dev/sdz1 / ext4\nUUID=1 /srv/data\\0401 ext4 noauto 0 0\n");
    system.link("games", system.path("media/me/STICK"));
    for (const char *program : {"/media/me/STICK/run", "/games/run", "\"/srv/data 1/app/run\""})
        home.file(".config/autostart/" + std::to_string(++absent) + ".desktop",
                  entry + program + "\n");
    const auto here =
        application(ApplicationKind::Flatpak, "app/org.here.App/x86_64/stable", "", "org.here.App");
    auto found = LeftBehind({here}, {}).find();
    EXPECT_THAT(ticksOf(found),
                UnorderedElementsAre(".config/oldpaint", ".oldpaint", ".var/app/org.gone.App",
                                     "snap/goneplayer", ".config/autostart/dead.desktop",
                                     ".local/share/applications/gone.desktop"));
    const std::vector<ApplicationKind> unknown = {ApplicationKind::Flatpak, ApplicationKind::Snap,
                                                  ApplicationKind::Package};
    EXPECT_EQ(LeftBehind({}, unknown).find().size(), 1u) << "they may be there";
    // There it is certain.
    for (const char *volume : {"media/me/STICK", "srv/data 1"})
        system.directory(volume);
    EXPECT_EQ(LeftBehind({}, unknown).find().size(), 1u);
    EXPECT_EQ(runInChild([&] {
                  return enterPrivateMounts() &&
                                 bindMount(home.path("snap"), system.path("media/me/STICK")) &&
                                 bindMount(home.path("snap"), system.path("srv/data 1"))
                             ? int(LeftBehind({}, unknown).find().size())
                             : 0;
              }),
              4);
    found.front().ticked = true;
    EXPECT_TRUE(LeftBehind::remove(*RemovalRun::begin("test").run, found).front().removed);
    EXPECT_FALSE(home.exists(".config/oldpaint"));
    EXPECT_TRUE(home.exists(".oldpaint/picture.svg"));
}

} // namespace
} // namespace brightsweep
