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

#include <cstdlib>
#include <thread>

namespace brightsweep {
namespace {

using test::shell;
using test::TestTree;
using testing::ElementsAre;
using testing::HasSubstr;

// What the scripts of this test have: packages, one a line, that are installed at the end.
constexpr char tools[] = R"(set -e
debs=
deb() { # NAME[:ARCHITECTURE] [FIELD [FILE TEXT]…]
    local name=${1%:*} architecture=all
    [[ $1 != *:* ]] || architecture=${1#*:}
    mkdir -p $name/DEBIAN
    printf '%s\n' "Package: $name" "Architecture: $architecture" 'Version: 1:1.0-1' \
        'Maintainer: x <x@x>' 'Description: x' ${2:+"$2"} > $name/DEBIAN/control
    shift $(($# < 2 ? $# : 2))
    for (( ; $# > 0; )); do
        mkdir -p $(dirname $name/$1)
        printf "$2" > $name/$1
        chmod 755 $name/$1
        shift 2
    done
    dpkg-deb -Zgzip --root-owner-group -b $name $name.deb > /dev/null
    debs+=" $name.deb"
}
)";

class Packages : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::getenv("BRIGHTSWEEP_BURNABLE")) << "run by tests/system/machine";
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
        ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        run("dpkg --configure -a");
        Platform::setCurrent(makeLinuxPlatform());
        ask();
    }
    void TearDown() override { rights().release(); }

    static AdministratorRights &rights() { return *Platform::current().rights; }
    void ask() {
        ASSERT_EQ(rights().request(RightsPurpose::FilesAndPackages).outcome,
                  RightsOutcome::Granted);
    }
    std::string run(const std::string &script) {
        const auto result = shell("cd " + tree.path().native() + " && bash -c " +
                                  test::quoted(tools + script) + " 2>&1");
        EXPECT_EQ(result.status, 0) << script << result.output;
        return result.output;
    }
    /// Afterwards changes() tells what is different.
    void install(const std::string &packages) {
        run(packages + "\ndpkg --force-unsafe-io -i $debs\n" + list + " > /run/before");
    }
    /// "<name state" for a package that was in that state, ">name state" for one that is now.
    std::string changes() {
        return run(list +
                   " | diff /run/before - | sed -n 's/^\\([<>]\\) \\(.*\\S\\) */\\1\\2 /p' | "
                   "tr -d '\\n'");
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
    UninstallOutcome outcomeOf(const RemovalPlan &plan) { return remove(plan).outcome; }
    PackagesOutcome outcomeOf(const PackageRemoval &removal) {
        return rights().removePackages(rights().token(), removal).outcome;
    }
    static bool exists(const std::filesystem::path &path) { return std::filesystem::exists(path); }

    const std::string list = "dpkg-query -W -f '${binary:Package} ${db:Status-Abbrev}\\n'";
    const std::filesystem::path bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    TestTree tree;
    PackageSource source;
};

TEST_F(Packages, GoWithWhatDependsOnThemAndNothingElse) {
    const std::string app = R"(
        deb demo-app+x.y '' etc/demo.conf a usr/bin/demo-app '' DEBIAN/conffiles '/etc/demo.conf\n'
    )";
    install(app + "deb demo-plugin 'Depends: demo-app+x.y (>= 1)'\ndeb demo-other '' etc/other a");
    RemovalPlan plan = planOf("demo-app+x.y");
    EXPECT_THAT(plan.also, ElementsAre("demo-plugin"));
    EXPECT_THAT(plan.systemSettings, ElementsAre("/etc/demo.conf"));
    EXPECT_EQ(changes(), "");
    EXPECT_EQ(outcomeOf(plan), UninstallOutcome::Removed);
    EXPECT_EQ(changes(), "<demo-app+x.y ii >demo-app+x.y rc <demo-plugin ii ");
    EXPECT_TRUE(exists("/etc/demo.conf"));
    EXPECT_THAT(source.formerNames(), testing::Contains("demo-app+x.y"));
    EXPECT_EQ(planOf("demo-app+x.y").blocker, Blocker::Gone);
    install(app);
    plan = planOf("demo-app+x.y");
    plan.purge = true;
    EXPECT_EQ(outcomeOf(plan), UninstallOutcome::Removed);
    EXPECT_EQ(changes(), "<demo-app+x.y ii ");
    EXPECT_FALSE(exists("/etc/demo.conf"));
}

TEST_F(Packages, OfTheSystemAndOfThisProgramStayWhoeverAsks) {
    install(R"(
        deb demo-essential 'Essential: yes'
        deb demo-protected 'Protected: yes'
        deb demo-important 'Important: yes'
        deb demo-required 'Priority: required'
        deb demo-needed
        deb demo-needs $'Important: yes\nDepends: demo-needed'
        deb demo-lib
        deb demo-own 'Depends: demo-lib'
    )");
    run("printf '%s\\n' " + (bin / "test_packages").native() + ' ' +
        (bin / "brightsweep-helper").native() + " >> /var/lib/dpkg/info/demo-own.list");
    for (const char *name : {"demo-essential", "demo-protected", "demo-important", "demo-required",
                             "demo-needed", "dpkg", "apt", "bash"}) {
        EXPECT_EQ(planOf(name).blocker, Blocker::Essential) << name;
        EXPECT_NE(outcomeOf({PackageFamily::Dpkg, {name}, {}}), PackagesOutcome::Removed);
    }
    EXPECT_EQ(planOf("demo-own").blocker, Blocker::NeededByUs);
    EXPECT_EQ(planOf("demo-lib").blocker, Blocker::NeededByUs);
    for (const PackageRemoval &wrong :
         {PackageRemoval{PackageFamily::Pacman, {"demo-needed"}, {}},
          PackageRemoval{PackageFamily::Dpkg, {"--force-all", "demo-needed"}, {}},
          PackageRemoval{PackageFamily::Dpkg, {"demo-needed", "demo-needs"}, {"bash"}},
          PackageRemoval{PackageFamily::Dpkg, {"demo-lib", "demo-own"}, {}}})
        EXPECT_EQ(outcomeOf(wrong), PackagesOutcome::Refused);
    EXPECT_EQ(rights().removePackages({}, {PackageFamily::Dpkg, {"demo-needed"}, {}}).outcome,
              PackagesOutcome::Refused);
    EXPECT_EQ(changes(), "");
    run("echo /. > /var/lib/dpkg/info/demo-own.list; "
        "dpkg --force-all --purge $(dpkg-query -W -f '${Package} ' 'demo-*')");
}

TEST_F(Packages, ThatSomethingCameToDependOnStay) {
    install("deb demo-app\ndeb demo-plugin 'Depends: demo-app'");
    const RemovalPlan plan = planOf("demo-app");
    install("deb demo-late 'Depends: demo-plugin'");
    const RemovalResult late = remove(plan);
    EXPECT_EQ(late.outcome, UninstallOutcome::Changed);
    EXPECT_EQ(late.message, "needed by demo-late");
    // Under apt's own lock as well: its hook sees another set.
    const std::string helper = (bin / "brightsweep-helper").native();
    const auto verified = [&](const std::string &names) {
        return run("apt-get -y -o 'DPkg::Pre-Install-Pkgs::=" + helper + " verify " + names +
                   "' -o DPkg::Tools::Options::" + helper +
                   "::Version=3 remove demo-plugin || true");
    };
    EXPECT_THAT(verified("demo-plugin"), HasSubstr("something else would change as well"));
    EXPECT_EQ(changes(), "");
    verified("demo-plugin demo-late");
    EXPECT_EQ(changes(), "<demo-late ii <demo-plugin ii ");
    EXPECT_EQ(outcomeOf(planOf("demo-app")), UninstallOutcome::Removed);
}

TEST_F(Packages, GoAlthoughAptWouldInstallSomethingInTheirStead) {
    install("deb demo-used\ndeb demo-set 'Depends: demo-used | demo-instead'");
    EXPECT_THAT(run(R"(
        deb demo-instead
        sum=$(sha256sum demo-instead.deb)
        { dpkg-deb -f demo-instead.deb; echo "Filename: ./demo-instead.deb"
          stat -c 'Size: %s' demo-instead.deb; echo "SHA256: ${sum%% *}"; } > Packages
        chmod -R a+rX .
        list=/etc/apt/sources.list.d/demo.list
        echo "deb [trusted=yes] file:$PWD ./" > $list
        apt-get update -o Dir::Etc::SourceList=$list -o Dir::Etc::SourceParts=- \
            -o APT::Get::List-Cleanup=0
        apt-get -s install demo-instead
    )"),
                HasSubstr("Inst demo-instead"));
    const RemovalPlan plan = planOf("demo-used");
    EXPECT_THAT(plan.also, ElementsAre("demo-set"));
    EXPECT_EQ(outcomeOf(plan), UninstallOutcome::Removed);
    EXPECT_EQ(changes(), "<demo-set ii <demo-used ii ");
    run("rm /etc/apt/sources.list.d/demo.list");
}

TEST_F(Packages, WhoseScriptsFailOrAskAreToldTruly) {
    install(R"(
        deb demo-fails '' usr/bin/demo-fails '' DEBIAN/prerm '#!/bin/sh\necho no way\nexit 1\n'
        deb demo-asks '' DEBIAN/prerm \
            '#!/bin/sh\n. /usr/share/debconf/confmodule\ndb_input critical d/q || true\ndb_go || true\nread line < /dev/tty || true\n' \
            DEBIAN/templates 'Template: d/q\nType: boolean\nDefault: true\nDescription: x\n x\n'
        deb demo-daemon '' DEBIAN/prerm '#!/bin/sh\nsleep 30 &\n'
    )");
    const RemovalResult failed = remove(planOf("demo-fails"));
    EXPECT_EQ(failed.outcome, UninstallOutcome::Failed);
    EXPECT_THAT(failed.message, HasSubstr("no way"));
    EXPECT_EQ(changes(), "");
    EXPECT_TRUE(exists("/usr/bin/demo-fails"));
    EXPECT_EQ(outcomeOf(planOf("demo-asks")), UninstallOutcome::Removed);
    EXPECT_EQ(outcomeOf(planOf("demo-daemon")), UninstallOutcome::Removed);
    run("rm /var/lib/dpkg/info/demo-fails.prerm; dpkg --purge demo-fails demo-asks");
}

TEST_F(Packages, GoWithoutAptAsWell) {
    install(R"(
        mv /usr/bin/apt-get /usr/bin/apt-get.away
        deb demo-fails '' DEBIAN/prerm '#!/bin/sh\n[ -e /tmp/may-go ]\n'
        deb demo-plugin 'Depends: demo-fails' etc/plugin x DEBIAN/conffiles '/etc/plugin\n'
    )");
    EXPECT_EQ(outcomeOf(planOf("demo-fails")), UninstallOutcome::Failed);
    // Nothing is left that a later run of dpkg would remove by itself.
    EXPECT_EQ(changes(), "<demo-plugin ii >demo-plugin rc ");
    run("touch /tmp/may-go");
    EXPECT_EQ(outcomeOf(planOf("demo-fails")), UninstallOutcome::Removed);
    run("mv /usr/bin/apt-get.away /usr/bin/apt-get; dpkg --purge demo-plugin");
}

TEST_F(Packages, AreNotTouchedWhileAnotherProgramIsAtWork) {
    install("deb demo-app");
    const auto plan = planOf("demo-app");
    {
        const FileDescriptor lock(::open("/var/lib/dpkg/lock-frontend", O_RDWR | O_CLOEXEC));
        struct flock whole {};
        whole.l_type = F_WRLCK;
        ASSERT_EQ(::fcntl(lock.get(), F_SETLK, &whole), 0);
        const RemovalResult busy = remove(plan);
        EXPECT_EQ(busy.outcome, UninstallOutcome::Busy);
        EXPECT_THAT(busy.wayOut, HasSubstr("try again"));
        EXPECT_EQ(changes(), "");
    }
    EXPECT_EQ(outcomeOf(plan), UninstallOutcome::Removed);
}

TEST_F(Packages, GoToTheEndWhoeverGivesUp) {
    install(R"(
        deb demo-slow '' DEBIAN/prerm '#!/bin/sh\ntouch /tmp/slow\nsleep 3\n'
        deb demo-killed '' DEBIAN/prerm \
            '#!/bin/sh\n[ -e /tmp/ok ] || { kill -9 $PPID; sleep 1; }\n'
        deb demo-torn '' DEBIAN/postrm '#!/bin/sh\n[ -e /tmp/ok ]\n'
        deb demo-other
    )");
    RemovalResult result;
    const auto slow = planOf("demo-slow");
    std::thread removing([&] { result = remove(slow); });
    test::waitUntil([] { return exists("/tmp/slow"); });
    rights().release();
    removing.join();
    EXPECT_NE(result.outcome, UninstallOutcome::Removed); // nobody could tell
    test::waitUntil([&] { return changes() == "<demo-slow ii "; });
    run("flock /var/lib/dpkg/lock true");
    ask();
    for (const auto &[name, way] : {std::pair("demo-killed", "dpkg --configure -a"),
                                    std::pair("demo-torn", "apt-get -f install")}) {
        run("rm -f /tmp/ok");
        const RemovalResult broken = remove(planOf(name));
        EXPECT_EQ(broken.outcome, UninstallOutcome::Broken) << broken.message;
        EXPECT_THAT(broken.wayOut, HasSubstr(way));
        for (const char *blocked : {name, "demo-other"}) {
            EXPECT_EQ(planOf(blocked).blocker, Blocker::Interrupted) << blocked;
            EXPECT_EQ(planOf(blocked).reason, broken.wayOut);
        }
        run("touch /tmp/ok; yes | " + std::string(way));
        EXPECT_EQ(planOf("demo-other").blocker, Blocker::None) << "it was put right";
    }
    // Each sentence has a way that helps where its first one cannot.
    for (const char *state : {"ok", "reinstreq"}) {
        const std::string way = std::string("dpkg --remove") +
                                (state == std::string("ok") ? "" : " --force-remove-reinstreq");
        run("deb demo-ever '' DEBIAN/postinst '#!/bin/sh\nexit 1\n'\n"
            "! dpkg --force-unsafe-io -i $debs\n"
            "sed -i 's/^\\(Status: install\\) ok half-c/\\1 " +
            std::string(state) + " half-c/' /var/lib/dpkg/status");
        EXPECT_THAT(planOf("demo-other").reason, HasSubstr('"' + way + '"')) << state;
        run("! dpkg --configure -a; " + way + " demo-ever");
        EXPECT_EQ(planOf("demo-other").blocker, Blocker::None) << state;
    }
    run("dpkg --purge demo-killed demo-torn demo-other");
}

TEST_F(Packages, OfAnotherArchitectureAndInNumbersGo) {
    install(R"(
        dpkg --add-architecture i386
        deb demo-foreign:i386
        deb demo-base
        for i in {1..15}; do
            deb demo-part$i 'Depends: demo-base'
            deb demo-more$i "Depends: demo-part$i"
        done
    )");
    EXPECT_EQ(outcomeOf(planOf("demo-foreign:i386")), UninstallOutcome::Removed);
    EXPECT_EQ(changes(), "<demo-foreign:i386 ii ");
    const auto many = planOf("demo-base");
    EXPECT_EQ(many.also.size(), 30u);
    EXPECT_EQ(outcomeOf(many), UninstallOutcome::Removed);
    EXPECT_EQ(run("dpkg-query -W 'demo-[bmp]*' 2> /dev/null | wc -l"), "0\n");
    run("dpkg --remove-architecture i386");
}

// As an ordinary user, by the real pkexec: all of it or nothing.
TEST_F(Packages, TakeRightsForPackages) {
    const std::tuple<std::string, int, const char *> scenes[] = {
        {"denied", 4, "denied"},
        {"noagent", 4, "can ask for a password"},
        {"dismissed", 4, "dismissed"},
        {"nobus", 4, "cannot be reached"},
        {"granted", 0, ""}};
    install(R"(
        deb demo-app '' usr/bin/demo-app '' usr/share/applications/demo.desktop \
            '[Desktop Entry]\nType=Application\nName=Demo\nExec=demo-app\n'
        deb demo-plugin 'Depends: demo-app'
    )");
    for (const auto &[scene, status, words] : scenes) {
        const auto stage = tree.path(scene);
        const auto home = stage / "home";
        run("mkdir -p " + scene + "/home/.config/demo-app; chown -R 61234 " + scene + "/home");
        const auto result = test::runProgram(
            {BRIGHTSWEEP_TEST_STAGE, scene, stage, bin, BRIGHTSWEEP_TEST_POLICY, "brightsweep-cli",
             "--json", "uninstall", "package:demo-app", "--apply", "--admin"},
            {{"STAGE_PURPOSE", "packages"},
             {"XDG_CONFIG_HOME", home / ".config"},
             {"XDG_DATA_HOME", home / "data"},
             {"XDG_CACHE_HOME", home / "cache"},
             {"XDG_STATE_HOME", home / "state"}});
        EXPECT_EQ(result.status, status) << scene;
        for (const char *told : {"out", "err"})
            EXPECT_THAT(test::textOf(stage / told), HasSubstr(words)) << scene;
        EXPECT_EQ(changes(), status == 0 ? "<demo-app ii <demo-plugin ii " : "") << scene;
        EXPECT_NE(exists(home / ".config/demo-app"), status == 0) << scene;
        EXPECT_EQ(test::textOf(stage / "counted/count"), scene == "nobus" ? "" : "asked\n");
    }
}

// The last: afterwards the machine's own database is gone. Each family is there alone.
TEST_F(Packages, OfTheOtherFamiliesGoByTheirOwnTools) {
    run(R"(
        mv /var/lib/dpkg /var/lib/dpkg.away
        mkdir -p /var/lib/rpm /etc/rpm
        echo '%_dbpath /var/lib/rpm' > /etc/rpm/macros
        spec() {
            printf '%s\n' "Name: $1" 'Version: 1.0' 'Release: 1' 'Summary: x' 'License: x' \
                'BuildArch: noarch' "${@:2}" %description x %files > $1.spec
            rpmbuild -bb --define "_topdir $PWD" $1.spec
        }
        spec demo-base
        spec demo-more 'Requires: demo-base'
        spec demo-late 'Requires: demo-more'
        spec demo-rest
        mv noarch/*.rpm . || mv RPMS/noarch/*.rpm .
    )");
    // By the distribution's front door, where there is one, and without.
    for (const char *before : {"true", "rm -f /usr/bin/dnf /usr/bin/zypper"}) {
        run(std::string(before) + "; rpm -i demo-base-*.rpm demo-more-*.rpm demo-rest-*.rpm");
        const RemovalPlan plan = planOf("demo-base");
        ASSERT_EQ(plan.blocker, Blocker::None) << plan.reason;
        EXPECT_THAT(plan.also, ElementsAre("demo-more"));
        run("rpm -i demo-late-*.rpm");
        EXPECT_EQ(outcomeOf(plan), UninstallOutcome::Changed);
        EXPECT_THAT(run("rpm -q demo-base demo-late demo-more demo-rest"), HasSubstr("base"));
        if (exists("/usr/bin/dnf")) {
            run("mkdir -p /var/lib/dnf; echo 1 > /var/lib/dnf/rpmdb_lock.pid");
            EXPECT_EQ(outcomeOf(planOf("demo-base")), UninstallOutcome::Busy);
            run("rm /var/lib/dnf/rpmdb_lock.pid");
        }
        EXPECT_EQ(outcomeOf(planOf("demo-base")), UninstallOutcome::Removed);
        EXPECT_EQ(run("rpm -qa --qf '%{NAME}' 2> /dev/null"), "demo-rest");
        run("rpm -e demo-rest");
    }
    run(R"(
        mv /var/lib/rpm /var/lib/rpm.away
        mkdir -p /var/lib/pacman/local
        cd /var/lib/pacman/local
        echo 9 > ALPM_DB_VERSION
        for name in app plugin rest; do
            mkdir demo-$name-1-1
            printf '%%NAME%%\ndemo-%s\n\n%%VERSION%%\n1-1\n\n%%ARCH%%\nany\n\n' $name > demo-$name-1-1/desc
            printf '%%FILES%%\netc/\netc/%s.conf\n\n%%BACKUP%%\netc/%s.conf\t00\n' $name $name \
                > demo-$name-1-1/files
            echo changed > /etc/$name.conf
        done
        printf '%%DEPENDS%%\ndemo-app\n\n' >> demo-plugin-1-1/desc
    )");
    RemovalPlan plan = planOf("demo-app");
    plan.purge = true;
    EXPECT_THAT(plan.also, ElementsAre("demo-plugin"));
    const RemovalResult result = remove(plan);
    EXPECT_EQ(result.outcome, UninstallOutcome::Removed) << result.message;
    EXPECT_EQ(run("cd /etc; ls *.conf *.pacsave | grep -E '^(app|plugin|rest)[.]'; ls "
                  "/var/lib/pacman/local"),
              "plugin.conf.pacsave\nrest.conf\nALPM_DB_VERSION\ndemo-rest-1-1\n");
    run("rm -r /var/lib/pacman/local");
    EXPECT_NE(source.unavailableReason(), "");
}

} // namespace
} // namespace brightsweep
