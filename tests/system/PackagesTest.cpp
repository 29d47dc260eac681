// Packages made for the test come and go in a machine that may burn, by its real dpkg and apt.

#include "linux/PackageRemoval.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "platform/linux/PackageSource.h"
#include "support/ChildProcess.h"
#include "support/TestTree.h"
#include "system/PrivateMachine.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <thread>

namespace brightsweep {
namespace {

using test::shell;
using test::TestTree;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

struct Deb {
    std::string name;
    std::string fields = {};                       ///< further ones, each with its line end
    std::map<std::string, std::string> files = {}; ///< "DEBIAN/…" are scripts and the like
    std::string architecture = "all";
};

class Packages : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::getenv("BRIGHTSWEEP_BURNABLE")) << "run by tests/system/machine";
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
        ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        ASSERT_EQ(shell("dpkg --configure -a 2>&1").status, 0);
        Platform::setCurrent(makeLinuxPlatform());
        ASSERT_EQ(rights().request(RightsPurpose::FilesAndPackages).outcome,
                  RightsOutcome::Granted);
    }
    void TearDown() override { rights().release(); }

    static AdministratorRights &rights() { return *Platform::current().rights; }

    std::string build(const Deb &deb) {
        const std::string folder = deb.name + '/';
        tree.file(folder + "DEBIAN/control",
                  "Package: " + deb.name +
                      "\nVersion: 1:1.0-1\n"
                      "Architecture: " +
                      deb.architecture + "\nMaintainer: x <x@x>\nDescription: x\n" + deb.fields);
        for (const auto &[file, text] : deb.files) {
            tree.file(folder + file, text);
            tree.mode(folder + file, text.starts_with("#!") ? 0755 : 0644);
        }
        const std::string file = tree.path(deb.name + ".deb").native();
        EXPECT_EQ(shell("dpkg-deb -Zgzip --root-owner-group -b " + tree.path(deb.name).native() +
                        " " + file + " 2>&1")
                      .status,
                  0);
        return file;
    }
    void install(const std::vector<Deb> &debs) {
        std::string files;
        for (const Deb &deb : debs)
            files += ' ' + build(deb);
        const auto result = shell("dpkg --force-unsafe-io -i" + files + " 2>&1");
        ASSERT_EQ(result.status, 0) << result.output;
    }
    /// Every package of the machine with its state.
    static std::set<std::string> states() {
        std::set<std::string> lines;
        std::string line;
        for (const char letter :
             shell("dpkg-query -W -f '${binary:Package} ${db:Status-Abbrev}\n'").output) {
            if (letter != '\n')
                line += letter;
            else if (lines.insert(line).second)
                line.clear();
        }
        return lines;
    }
    /// What has another state than before, as "-before" and "+after".
    static std::vector<std::string> changes(const std::set<std::string> &before) {
        const std::set<std::string> after = states();
        std::vector<std::string> lines;
        for (const std::string &line : before) {
            if (after.count(line) == 0)
                lines.push_back('-' + line);
        }
        for (const std::string &line : after) {
            if (before.count(line) == 0)
                lines.push_back('+' + line);
        }
        return lines;
    }
    RemovalPlan planOf(const std::string &key) {
        InstalledApplication application;
        application.key = key;
        return source.plan(application);
    }
    RemovalResult remove(const RemovalPlan &plan) {
        const RightsToken token = rights().token();
        return source.remove(plan, &token);
    }

    TestTree tree;
    PackageSource source;
};

TEST_F(Packages, GoWithWhatDependsOnThemAndNothingElse) {
    install({{"demo-app+x.y",
              {},
              {{"etc/demo.conf", "a\n"},
               {"usr/bin/demo-app", "#!/bin/sh\n"},
               {"DEBIAN/conffiles", "/etc/demo.conf\n"}}},
             {"demo-plugin", "Depends: demo-app+x.y (>= 1)\n"},
             {"demo-other", {}, {{"etc/other.conf", "a\n"}}}});
    const auto before = states();
    RemovalPlan plan = planOf("demo-app+x.y");
    EXPECT_THAT(plan.also, ElementsAre("demo-plugin"));
    EXPECT_THAT(plan.systemSettings, ElementsAre("/etc/demo.conf"));
    EXPECT_THAT(changes(before), ElementsAre());
    const RemovalResult result = remove(plan);
    EXPECT_EQ(result.outcome, UninstallOutcome::Removed) << result.message;
    EXPECT_THAT(changes(before),
                ElementsAre("-demo-app+x.y ii ", "-demo-plugin ii ", "+demo-app+x.y rc "));
    EXPECT_TRUE(std::filesystem::exists("/etc/demo.conf"));
    EXPECT_THAT(source.formerNames(), testing::Contains("demo-app+x.y"));
    EXPECT_EQ(planOf("demo-app+x.y").blocker, Blocker::Gone);

    install({{"demo-app+x.y",
              {},
              {{"etc/demo.conf", "a\n"}, {"DEBIAN/conffiles", "/etc/demo.conf\n"}}}});
    plan = planOf("demo-app+x.y");
    plan.purge = true;
    EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Removed);
    EXPECT_FALSE(std::filesystem::exists("/etc/demo.conf"));
    EXPECT_TRUE(std::filesystem::exists("/etc/other.conf"));
}

TEST_F(Packages, OfTheSystemStayWhoeverAsks) {
    install({{"demo-essential", "Essential: yes\n"},
             {"demo-protected", "Protected: yes\n"},
             {"demo-important", "Important: yes\n"},
             {"demo-required", "Priority: required\n"},
             {"demo-needed"},
             {"demo-needs", "Depends: demo-needed\nImportant: yes\n"}});
    const auto before = states();
    for (const char *name : {"demo-essential", "demo-protected", "demo-important", "demo-required",
                             "demo-needed", "dpkg", "apt", "bash"}) {
        EXPECT_EQ(planOf(name).blocker, Blocker::Essential) << name;
        const auto reply =
            rights().removePackages(rights().token(), {PackageFamily::Dpkg, {name}, {}});
        EXPECT_NE(reply.outcome, PackagesOutcome::Removed);
        EXPECT_THAT(reply.gone, ElementsAre());
    }
    for (const PackageRemoval &wrong :
         {PackageRemoval{PackageFamily::Pacman, {"demo-needed"}, {}},
          PackageRemoval{PackageFamily::Dpkg, {"--force-all", "demo-needed"}, {}},
          PackageRemoval{PackageFamily::Dpkg, {"demo-needed", "demo-needs"}, {"bash"}}})
        EXPECT_EQ(rights().removePackages(rights().token(), wrong).outcome,
                  PackagesOutcome::Refused);
    EXPECT_EQ(rights().removePackages({}, {PackageFamily::Dpkg, {"demo-needed"}, {}}).outcome,
              PackagesOutcome::Refused);
    EXPECT_THAT(changes(before), ElementsAre());
    shell("dpkg --force-all --purge demo-essential demo-protected demo-important demo-required "
          "demo-needed demo-needs 2>&1");
}

TEST_F(Packages, OfThisProgramStay) {
    install({{"demo-lib"}, {"demo-own", "Depends: demo-lib\n"}});
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    std::ofstream("/var/lib/dpkg/info/demo-own.list", std::ios::app)
        << self.native() << '\n'
        << (self.parent_path() / "brightsweep-helper").native() << '\n';
    const auto before = states();
    EXPECT_EQ(planOf("demo-own").blocker, Blocker::NeededByUs);
    EXPECT_EQ(planOf("demo-lib").blocker, Blocker::NeededByUs);
    EXPECT_EQ(
        rights()
            .removePackages(rights().token(), {PackageFamily::Dpkg, {"demo-lib", "demo-own"}, {}})
            .outcome,
        PackagesOutcome::Refused);
    EXPECT_THAT(changes(before), ElementsAre());
    std::ofstream("/var/lib/dpkg/info/demo-own.list") << "/.\n";
    shell("dpkg --purge demo-own demo-lib 2>&1");
}

TEST_F(Packages, GoWithoutAptAsWell) {
    install({{"demo-fails", {}, {{"DEBIAN/prerm", "#!/bin/sh\n[ -e /tmp/may-go ]\n"}}},
             {"demo-plugin",
              "Depends: demo-fails\n",
              {{"etc/demo-plugin.conf", "x"}, {"DEBIAN/conffiles", "/etc/demo-plugin.conf\n"}}}});
    auto before = states();
    shell("mv /usr/bin/apt-get /usr/bin/apt-get.away");
    EXPECT_EQ(remove(planOf("demo-fails")).outcome, UninstallOutcome::Failed);
    // Nothing is left that a later run of dpkg would remove by itself.
    EXPECT_THAT(changes(before), ElementsAre("-demo-plugin ii ", "+demo-plugin rc "));
    std::ofstream("/tmp/may-go") << "x";
    EXPECT_EQ(remove(planOf("demo-fails")).outcome, UninstallOutcome::Removed);
    shell("mv /usr/bin/apt-get.away /usr/bin/apt-get; dpkg --purge demo-plugin");
}

TEST_F(Packages, ThatSomethingCameToDependOnStay) {
    install({{"demo-app"}, {"demo-plugin", "Depends: demo-app\n"}});
    const RemovalPlan plan = planOf("demo-app");
    install({{"demo-late", "Depends: demo-plugin\n"}});
    auto before = states();
    EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Changed);
    EXPECT_THAT(changes(before), ElementsAre());
    // Under apt's own lock as well: its hook sees another set.
    const std::string helper =
        (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "brightsweep-helper")
            .native();
    const auto remove = [&](const std::string &verified) {
        return shell("apt-get -y -q -o 'DPkg::Pre-Install-Pkgs::=" + helper + " verify " +
                     verified + "' -o DPkg::Tools::Options::" + helper +
                     "::Version=3 remove demo-plugin 2>&1");
    };
    EXPECT_THAT(remove("demo-plugin").output, HasSubstr("something else would change as well"));
    EXPECT_THAT(changes(before), ElementsAre());
    EXPECT_EQ(remove("demo-plugin demo-late").status, 0);
    EXPECT_THAT(changes(before), ElementsAre("-demo-late ii ", "-demo-plugin ii "));
    EXPECT_EQ(this->remove(planOf("demo-app")).outcome, UninstallOutcome::Removed);
}

TEST_F(Packages, GoAlthoughAptWouldInstallSomethingInTheirStead) {
    const std::string other = build({"demo-instead"});
    install({{"demo-used"}, {"demo-set", "Depends: demo-used | demo-instead\n"}});
    const std::string repository = tree.path().native();
    shell("cd " + repository + " && { dpkg-deb -f " + other +
          "; echo Filename: ./demo-instead.deb; " + "stat -c 'Size: %s' " + other + "; sha256sum " +
          other +
          " | sed 's/ .*//; s/^/SHA256: /'; echo; } > Packages && "
          "echo 'deb [trusted=yes] file:" +
          repository +
          " ./' > /etc/apt/sources.list.d/demo.list && "
          "chmod -R a+rX " +
          repository +
          " && apt-get update "
          "-o Dir::Etc::SourceList=/etc/apt/sources.list.d/demo.list -o Dir::Etc::SourceParts=- "
          "-o APT::Get::List-Cleanup=0 2>&1");
    EXPECT_THAT(shell("apt-get -s install demo-instead 2>&1").output,
                HasSubstr("Inst demo-instead"));
    const auto before = states();
    const RemovalPlan plan = planOf("demo-used");
    EXPECT_THAT(plan.also, ElementsAre("demo-set"));
    EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Removed);
    EXPECT_THAT(changes(before), ElementsAre("-demo-set ii ", "-demo-used ii "));
    std::filesystem::remove("/etc/apt/sources.list.d/demo.list");
}

TEST_F(Packages, WhoseScriptsFailOrAskAreToldTruly) {
    install(
        {{"demo-fails",
          {},
          {{"usr/bin/demo-fails", "x"}, {"DEBIAN/prerm", "#!/bin/sh\necho no way >&2\nexit 1\n"}}},
         {"demo-asks",
          {},
          {{"DEBIAN/templates", "Template: demo/q\nType: boolean\nDefault: true\n"
                                "Description: Really?\n Really.\n"},
           {"DEBIAN/prerm", "#!/bin/sh\n. /usr/share/debconf/confmodule\n"
                            "db_input critical demo/q || true\ndb_go || true\n"
                            "read line < /dev/tty || true\nexit 0\n"}}},
         {"demo-daemon", {}, {{"DEBIAN/prerm", "#!/bin/sh\nsleep 30 &\n"}}}});
    auto before = states();
    const RemovalResult failed = remove(planOf("demo-fails"));
    EXPECT_EQ(failed.outcome, UninstallOutcome::Failed);
    EXPECT_THAT(failed.message, HasSubstr("no way"));
    EXPECT_THAT(changes(before), ElementsAre());
    EXPECT_TRUE(std::filesystem::exists("/usr/bin/demo-fails"));
    EXPECT_EQ(remove(planOf("demo-asks")).outcome, UninstallOutcome::Removed);
    EXPECT_EQ(remove(planOf("demo-daemon")).outcome, UninstallOutcome::Removed);
    shell("rm /var/lib/dpkg/info/demo-fails.prerm; dpkg --purge demo-fails 2>&1");
}

TEST_F(Packages, AreNotTouchedWhileAnotherProgramIsAtWork) {
    install({{"demo-app"}});
    const auto before = states();
    const auto plan = planOf("demo-app");
    {
        const FileDescriptor lock(::open("/var/lib/dpkg/lock-frontend", O_RDWR | O_CLOEXEC));
        struct flock whole {};
        whole.l_type = F_WRLCK;
        ASSERT_EQ(::fcntl(lock.get(), F_SETLK, &whole), 0);
        EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Busy);
        EXPECT_THAT(changes(before), ElementsAre());
    }
    EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Removed);
}

TEST_F(Packages, GoToTheEndWhoeverGivesUp) {
    install({{"demo-slow", {}, {{"DEBIAN/prerm", "#!/bin/sh\ntouch /tmp/slow\nsleep 3\n"}}},
             {"demo-killed", {}, {{"DEBIAN/prerm", "#!/bin/sh\nkill -9 $PPID\nsleep 1\n"}}}});
    auto before = states();
    RemovalResult result;
    const auto slow = planOf("demo-slow");
    std::thread removing([&] { result = remove(slow); });
    test::waitUntil([] { return std::filesystem::exists("/tmp/slow"); });
    rights().release();
    removing.join();
    EXPECT_NE(result.outcome, UninstallOutcome::Removed); // nobody could tell
    test::waitUntil([&] { return changes(before) == std::vector<std::string>{"-demo-slow ii "}; });
    ASSERT_EQ(shell("flock /var/lib/dpkg/lock true").status, 0);
    ASSERT_EQ(rights().request(RightsPurpose::FilesAndPackages).outcome, RightsOutcome::Granted);
    const RemovalResult killed = remove(planOf("demo-killed"));
    EXPECT_EQ(killed.outcome, UninstallOutcome::Broken) << killed.message;
    const RemovalPlan after = planOf("demo-killed");
    EXPECT_EQ(after.blocker, Blocker::Busy);
    EXPECT_THAT(after.reason, HasSubstr("interrupted"));
    shell("rm -f /var/lib/dpkg/info/demo-killed.prerm; dpkg --configure -a; "
          "dpkg --purge --force-all demo-killed 2>&1");
}

TEST_F(Packages, OfAnotherArchitectureAndInNumbersGo) {
    shell("dpkg --add-architecture i386");
    std::vector<Deb> debs = {{"demo-foreign", {}, {}, "i386"}, {"demo-base"}};
    for (int i = 0; i < 30; ++i)
        debs.push_back({"demo-part" + std::to_string(i),
                        i % 2 == 0 ? "Depends: demo-base\n"
                                   : "Depends: demo-part" + std::to_string(i - 1) + "\n"});
    install(debs);
    const auto before = states();
    EXPECT_EQ(remove(planOf("demo-foreign:i386")).outcome, UninstallOutcome::Removed);
    EXPECT_THAT(changes(before), ElementsAre("-demo-foreign:i386 ii "));
    const auto many = planOf("demo-base");
    EXPECT_EQ(many.also.size(), 30u);
    EXPECT_EQ(remove(many).outcome, UninstallOutcome::Removed);
    EXPECT_EQ(changes(before).size(), 32u);
    shell("dpkg --remove-architecture i386");
}

// As an ordinary user, by the real pkexec: all of it or nothing.
TEST_F(Packages, TakeRightsForPackages) {
    struct Scene {
        const char *name;
        int status;
        const char *words;
    };
    const Scene scenes[] = {{"denied", 4, "denied"},
                            {"noagent", 4, "can ask for a password"},
                            {"dismissed", 4, "dismissed"},
                            {"nobus", 4, "cannot be reached"},
                            {"granted", 0, ""}};
    install({{"demo-app",
              {},
              {{"usr/bin/demo-app", "#!/bin/sh\n"},
               {"usr/share/applications/demo.desktop",
                "[Desktop Entry]\n"
                "Type=Application\nName=Demo\nExec=demo-app\n"}}},
             {"demo-plugin", "Depends: demo-app\n"}});
    const auto bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const Scene &scene : scenes) {
        const auto before = states();
        const auto stage = tree.path(scene.name);
        const auto home = stage / "home";
        std::filesystem::create_directories(home / ".config/demo-app");
        shell("chown -R 61234:61234 " + home.native());
        const auto result = test::runProgram(
            {BRIGHTSWEEP_TEST_STAGE, scene.name, stage, bin, BRIGHTSWEEP_TEST_POLICY,
             "brightsweep-cli", "uninstall", "package:demo-app", "--apply", "--admin"},
            {{"STAGE_PURPOSE", "packages"},
             {"XDG_CONFIG_HOME", home / ".config"},
             {"XDG_DATA_HOME", home / "data"},
             {"XDG_CACHE_HOME", home / "cache"},
             {"XDG_STATE_HOME", home / "state"}});
        const std::string words = test::textOf(stage / "err");
        EXPECT_EQ(result.status, scene.status) << scene.name << words;
        EXPECT_THAT(words, HasSubstr(scene.words)) << scene.name << test::textOf(stage / "out");
        const bool isGranted = scene.status == 0;
        EXPECT_EQ(changes(before).size(), isGranted ? 2u : 0u) << scene.name << words;
        EXPECT_NE(std::filesystem::exists(home / ".config/demo-app"), isGranted) << scene.name;
        EXPECT_EQ(test::textOf(stage / "counted/count"),
                  scene.name == std::string("nobus") ? "" : "asked\n")
            << scene.name;
    }
}

// The last: afterwards the machine's own database is gone. Each family is there alone.
TEST_F(Packages, OfTheOtherFamiliesGoByTheirOwnTools) {
    shell("mv /var/lib/dpkg /var/lib/dpkg.away");
    const auto spec = [this](const std::string &name, const std::string &more) {
        return tree
            .file(name + ".spec", "Name: " + name +
                                      "\nVersion: 1.0\nRelease: 1\nSummary: x\n"
                                      "License: x\nBuildArch: noarch\n" +
                                      more + "%description\nx\n%files\n")
            .native();
    };
    shell("mkdir -p /var/lib/rpm /etc/rpm; echo '%_dbpath /var/lib/rpm' > /etc/rpm/macros");
    const std::string specs =
        spec("demo-base", "") + ' ' + spec("demo-more", "Requires: demo-base\n") + ' ' +
        spec("demo-late", "Requires: demo-more\n") + ' ' + spec("demo-rest", "");
    const std::string top = tree.path("rpm").native();
    shell("rpmbuild -bb --define '_topdir " + top + "' " + specs + " 2>&1");
    const auto put = [&](const std::string &names) {
        return shell("cd " + top + "/RPMS/noarch && rpm -i " + names + " 2>&1");
    };
    const auto installed = [] {
        return shell("rpm -qa --qf '%{NAME} ' 2>&1 | tr ' ' '\\n' | sort | tr '\\n' ' '").output;
    };
    for (const bool hasFrontDoor : {true, false}) {
        if (!hasFrontDoor)
            shell("mv /usr/bin/dnf /usr/bin/dnf.away; mv /usr/bin/zypper /usr/bin/zypper.away");
        auto result = put("demo-base-* demo-more-* demo-rest-*");
        ASSERT_EQ(result.status, 0) << result.output;
        const RemovalPlan plan = planOf("demo-base");
        ASSERT_EQ(plan.blocker, Blocker::None) << plan.reason;
        EXPECT_THAT(plan.also, ElementsAre("demo-more"));
        put("demo-late-*");
        EXPECT_EQ(remove(plan).outcome, UninstallOutcome::Changed);
        EXPECT_THAT(installed(), HasSubstr("demo-base demo-late demo-more demo-rest"));
        const RemovalResult removed = remove(planOf("demo-base"));
        EXPECT_EQ(removed.outcome, UninstallOutcome::Removed) << removed.message;
        EXPECT_THAT(installed(), HasSubstr("demo-rest"));
        EXPECT_THAT(installed(), testing::Not(HasSubstr("demo-base")));
        shell("rpm -e demo-rest");
    }
    shell("mv /var/lib/rpm /var/lib/rpm.away");

    TestTree local{std::filesystem::path("/var/lib/pacman/local")};
    local.file("ALPM_DB_VERSION", "9\n");
    const auto add = [&](const std::string &name, const std::string &more) {
        local.file(name + "-1-1/desc",
                   "%NAME%\n" + name + "\n\n%VERSION%\n1-1\n\n%ARCH%\nany\n\n" + more);
        local.file(name + "-1-1/files", "%FILES%\netc/\netc/" + name + ".conf\n\n%BACKUP%\netc/" +
                                            name + ".conf\td41d8cd98f00b204e9800998ecf8427e\n");
        shell("echo changed > /etc/" + name + ".conf");
    };
    add("demo-app", "");
    add("demo-plugin", "%DEPENDS%\ndemo-app\n\n");
    add("demo-rest", "");
    RemovalPlan plan = planOf("demo-app");
    plan.purge = true;
    EXPECT_THAT(plan.also, ElementsAre("demo-plugin"));
    const RemovalResult result = remove(plan);
    EXPECT_EQ(result.outcome, UninstallOutcome::Removed) << result.message;
    EXPECT_FALSE(std::filesystem::exists("/etc/demo-app.conf"));
    EXPECT_TRUE(std::filesystem::exists("/etc/demo-plugin.conf.pacsave"));
    EXPECT_TRUE(local.exists("demo-rest-1-1/desc"));
    shell("rm -r /var/lib/pacman/local");
    EXPECT_NE(source.unavailableReason(), "");
}

} // namespace
} // namespace brightsweep
