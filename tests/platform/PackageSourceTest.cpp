#include "platform/linux/PackageSource.h"

#include "linux/DpkgDatabase.h"
#include "linux/PackageRemoval.h"
#include "linux/RpmDatabase.h"
#include "linux/ToolWords.h"
#include "removal/FakeRights.h"

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

using test::FakeRights;
using test::TestEnvironment;
using test::TestTree;
using test::textOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr char dpkgStatus[] = "var/lib/dpkg/status";

std::string stanza(const std::string &name, const std::string &fields = {},
                   const std::string &status = "install ok installed") {
    return "Package: " + name + "\nStatus: " + status +
           "\nPriority: optional\nArchitecture: amd64\n" +
           "Version: 1:2.0-3\nInstalled-Size: 10\nMaintainer: x\nDescription: x\n" + fields + '\n';
}

/// A system of the test's own, with dpkg's database or pacman's.
class Packages : public testing::Test {
protected:
    Packages() { ::setenv("PATH", "/usr/bin:/bin", 1); }

    void package(const std::string &name, const std::string &fields = {},
                 const std::string &files = {}, const std::string &state = "install ok installed") {
        m_status += stanza(name, fields, state);
        system.file(dpkgStatus, m_status);
        system.file("var/lib/dpkg/info/" + name + ".list", "/.\n" + files);
    }
    void entry(const std::string &id, const std::string &keys) {
        system.file("usr/share/applications/" + id + ".desktop",
                    "[Desktop Entry]\nType=Application\n" + keys);
    }
    void program(const std::string &name) {
        system.file("usr/bin/" + name);
        system.mode("usr/bin/" + name, 0755);
    }
    RemovalPlan planOf(const std::string &key) {
        InstalledApplication application;
        application.key = key;
        return source.plan(application);
    }

    TestTree system{TestEnvironment::current().system()};
    PackageSource source;

private:
    std::string m_status;
};

TEST_F(Packages, AreReadFromDpkgsOwnFile) {
    std::string architecture;
    const auto records = DpkgDatabase::parseStatus(
        stanza("dpkg", "Essential: yes\n") +
            stanza("meta", "Section: contrib/metapackages\n"
                           "Depends: tool (>= 1) | other, lib:any\n") +
            stanza("tool", "Conffiles:\n /etc/a b 0123 obsolete\n /etc/c 45\n") + stanza("lib") +
            "Package: foreign\nStatus: install ok half-configured\n"
            "Architecture: i386\nPriority: standard\n\n" +
            stanza("rest", {}, "deinstall ok config-files") +
            "junk\n\nPackage: ../x\nStatus: a b c\n\n" +
            stanza("gone", {}, "deinstall ok not-installed"),
        architecture);
    EXPECT_EQ(architecture, "amd64");
    std::vector<std::string> told;
    for (const PackageRecord &record : records)
        told.push_back(record.name + ' ' + std::to_string(int(record.role)) + record.collection +
                       (record.isInstalled ? "" : " rc") +
                       (record.wayOut.empty() ? "" : " broken"));
    EXPECT_THAT(told, ElementsAre("dpkg 3", "foreign:i386 2 broken", "lib 1meta", "meta 0",
                                  "rest 0 rc", "tool 1meta"));
    EXPECT_THAT(records.back().settings, ElementsAre("/etc/a b", "/etc/c"));
    EXPECT_EQ(records.back().bytes, 10'240u);
    EXPECT_THAT(DpkgDatabase::dependentsIn("dpkg: dependency problems:\n a depends on b.\n"
                                           " c:i386 pre-depends on b | d; however:\n"
                                           "  Package x depends on y.\n ../e depends on b.\n"),
                ElementsAre("a", "c:i386"));
    EXPECT_THAT(RpmDatabase::dependentsIn("error: Failed dependencies:\n\ta is needed by "
                                          "(installed) b-x-1.0-1.noarch\n junk"),
                ElementsAre("b-x"));
    EXPECT_EQ(upstreamVersion("1:2.10-4-1+deb12u2"), "2.10-4");
}

TEST_F(Packages, AreListedOnceWithTheirMainEntry) {
    for (const char *name : {"thunar", "eog"})
        program(name);
    package("dpkg", "Essential: yes\n");
    package("thunar", {},
            "/usr/share/applications/a-settings.desktop\n"
            "/usr/share/applications/org.x.Thunar.desktop\n"
            "/usr/share/applications/bulk.desktop\n/usr/share/applications/z.desktop\n");
    package("eog", "Priority: standard\n", "/usr/share/applications/eog.desktop\n");
    package("hidden", {}, "/usr/share/applications/hidden.desktop\n");
    package("left", {}, "/usr/share/applications/left.desktop\n", "deinstall ok config-files");
    entry("a-settings", "Name=Settings\nExec=thunar --settings\nCategories=Settings;\n");
    entry("org.x.Thunar", "Name=Files\nName[de]=Dateien\nExec=thunar %F\nIcon=files\n");
    entry("bulk", "Name=Bulk Rename\nExec=thunar -r\n");
    entry("z", "Name=Not shown\nExec=thunar\nNoDisplay=true\n");
    entry("eog", "Name=Image Viewer\nExec=eog\n");
    entry("hidden", "Name=Hidden\nExec=eog\nNoDisplay=true\n");
    entry("left", "Name=Left\nExec=eog\n");
    entry("nobodys", "Name=Nobody's\nExec=eog\n");
    const auto listed = source.applications();
    ASSERT_TRUE(listed);
    ASSERT_EQ(listed->size(), 2u);
    const InstalledApplication &eog = listed->front();
    EXPECT_TRUE(eog.partOfSystem);
    EXPECT_EQ(eog.systemReason, "part of every standard installation");
    const InstalledApplication &thunar = listed->back();
    EXPECT_EQ(thunar.key, "thunar");
    EXPECT_EQ(thunar.name, "Files");
    EXPECT_EQ(thunar.version, "2.0");
    EXPECT_EQ(thunar.path, system.path("usr/bin/thunar"));
    EXPECT_THAT(thunar.ids, ElementsAre("org.x.Thunar", "bulk", "a-settings", "z"));
    EXPECT_THAT(thunar.otherEntries, UnorderedElementsAre("Settings", "Bulk Rename"));
    EXPECT_GT(thunar.installed, 0);
    EXPECT_FALSE(thunar.partOfSystem);
    std::vector<std::string> claimed;
    for (const ClaimedName &claim : source.claims())
        claimed.push_back(claim.name + '=' + claim.key);
    EXPECT_THAT(claimed, Contains("bulk=thunar"));
    EXPECT_THAT(claimed, Contains("hidden=hidden"));
    EXPECT_THAT(source.formerNames(), ElementsAre("left"));
    // A package that came meanwhile is there at the next call.
    package("new", {}, "/usr/share/applications/nobodys.desktop\n");
    EXPECT_EQ(source.applications()->size(), 3u);
}

TEST_F(Packages, ArePlannedWithWhatDependsOnThem) {
    package("app", "Conffiles:\n /etc/app.conf 12\n /etc/gone.conf 12\n",
            "/usr/bin/app\n/usr/bin/two\n");
    package("plugin", "Depends: app (>= 1) | alternative\n", "/usr/bin/plugin\n");
    package("more", "Pre-Depends: virtual\n");
    package("giver", "Provides: virtual\nDepends: plugin\n");
    package("rest", "Depends: app\n", {}, "deinstall ok config-files");
    package("vital", "Important: yes\nDepends: half\n");
    package("half");
    package("held", {}, {}, "hold ok installed");
    package("boot", {}, "/sbin/init\n");
    package("needsboot", "Depends: onboot\n");
    package("onboot", "Depends: boot\n");
    for (int i = 0; i < 101; ++i)
        package("many" + std::to_string(i), "Depends: base\n");
    package("base");
    system.file("etc/app.conf");
    system.file("usr/bin/app", std::string(5000, 'x'));
    system.hardLink("usr/bin/two", system.path("usr/bin/app"));
    system.file("usr/bin/plugin", std::string(5000, 'x'));
    const auto before = system.snapshot();
    const RemovalPlan plan = planOf("app");
    EXPECT_EQ(plan.blocker, Blocker::None) << plan.reason;
    EXPECT_THAT(plan.also, UnorderedElementsAre("plugin", "giver", "more"));
    EXPECT_THAT(plan.systemSettings, ElementsAre(system.path("etc/app.conf")));
    EXPECT_EQ(source.sizeOf(plan.application), 2 * 8192u); // a file of two names counts once
    struct Row {
        const char *key;
        Blocker blocker;
        const char *reason;
    };
    const Row rows[] = {{"half", Blocker::Essential, "vital"},
                        {"vital", Blocker::Essential, "vital"},
                        {"boot", Blocker::Essential, "starts the system"},
                        {"base", Blocker::TooMany, "base"},
                        {"rest", Blocker::Gone, "not installed"},
                        {"held", Blocker::Unsupported, "on hold"},
                        {"none", Blocker::Gone, "not installed"},
                        {"--force-all", Blocker::Unsupported, "no name"}};
    for (const Row &row : rows) {
        const RemovalPlan refused = planOf(row.key);
        EXPECT_EQ(refused.blocker, row.blocker) << row.key << refused.reason;
        EXPECT_THAT(refused.reason, HasSubstr(row.reason)) << row.key;
    }
    EXPECT_EQ(planOf("onboot").also, std::vector<std::string>{"needsboot"});
    system.file("run/ostree-booted");
    EXPECT_EQ(PackageSource().plan(plan.application).blocker, Blocker::ImageBased);
    std::filesystem::remove_all(system.path("run"));
    // Whatever is asked for, the package manager does that first.
    const std::string status = textOf(system.path(dpkgStatus));
    for (const auto &[state, way] : {std::pair("install ok half-configured", "dpkg --configure -a"),
                                     {"install ok triggers-awaited", "dpkg --configure -a"},
                                     {"install ok unpacked", "apt-get -f install"},
                                     {"deinstall ok half-installed", "apt-get -f install"},
                                     {"deinstall ok half-configured", "apt-get -f install"},
                                     {"install reinstreq half-installed", "--reinstall"}}) {
        system.file(dpkgStatus, status + stanza("unfinished", {}, state));
        const RemovalPlan refused = planOf("app");
        EXPECT_EQ(refused.blocker, Blocker::Interrupted) << state;
        EXPECT_THAT(refused.reason, AllOf(HasSubstr("unfinished"), HasSubstr(way)));
    }
    system.file("var/lib/dpkg/updates/0001");
    EXPECT_THAT(planOf("app").reason, HasSubstr("dpkg --configure -a"));
    system.file(dpkgStatus, status);
    EXPECT_EQ(before, [&] {
        std::filesystem::remove_all(system.path("var/lib/dpkg/updates"));
        return system.snapshot();
    }());
}

TEST_F(Packages, GoByTheRightsAndExactlyAsPlanned) {
    FakeRights &rights = FakeRights::install();
    package("app");
    package("plugin", "Depends: app\n");
    RemovalPlan plan = planOf("app");
    plan.purge = true;
    EXPECT_EQ(source.remove(plan, nullptr).outcome, UninstallOutcome::NeedsRights);
    const RightsToken none{};
    EXPECT_EQ(source.remove(plan, &none).outcome, UninstallOutcome::NeedsRights);
    EXPECT_THAT(rights.packageRemovals, IsEmpty());
    rights.request(RightsPurpose::FilesAndPackages);
    const RightsToken token = rights.token();
    EXPECT_EQ(source.remove(plan, &token).outcome, UninstallOutcome::Removed);
    const PackageRemoval expected{PackageFamily::Dpkg, {"app", "plugin"}, {"app"}, 3};
    EXPECT_THAT(rights.packageRemovals, ElementsAre(expected));
    rights.packagesReply = [](const PackageRemoval &) {
        return PackagesReply{PackagesOutcome::Broken, {}, "E: Unmet dependencies."};
    };
    EXPECT_THAT(source.remove(plan, &token).wayOut, HasSubstr("apt-get -f install"));
    system.file(dpkgStatus,
                textOf(system.path(dpkgStatus)) + stanza("plug", {}, "install ok half-configured"));
    for (const auto &[outcome, told] :
         {std::pair(PackagesOutcome::Changed, UninstallOutcome::Changed),
          std::pair(PackagesOutcome::Busy, UninstallOutcome::Busy),
          std::pair(PackagesOutcome::Refused, UninstallOutcome::Failed),
          std::pair(PackagesOutcome::Broken, UninstallOutcome::Broken)}) {
        rights.packagesReply = [outcome = outcome](const PackageRemoval &) {
            return PackagesReply{outcome, {}, "words"};
        };
        const RemovalResult result = source.remove(plan, &token);
        EXPECT_EQ(result.outcome, told);
        EXPECT_EQ(result.wayOut.find("dpkg --configure -a") != std::string::npos,
                  told == UninstallOutcome::Broken);
    }
    // Already gone is gone, and a blocked plan is not carried out.
    const auto asked = rights.packageRemovals.size();
    EXPECT_EQ(source.remove(planOf("none"), &token).outcome, UninstallOutcome::Failed);
    system.file(dpkgStatus, stanza("other"));
    EXPECT_EQ(source.remove(plan, &token).outcome, UninstallOutcome::Removed);
    EXPECT_EQ(rights.packageRemovals.size(), asked);
}

TEST_F(Packages, OfPacmanAreListedAndPlanned) {
    const auto add = [&](const std::string &name, const std::string &more) {
        const std::string folder = "var/lib/pacman/local/" + name + "-1:2.0-1/";
        system.file(folder + "desc", "%NAME%\n" + name +
                                         "\n\n%VERSION%\n1:2.0-1\n\n%INSTALLDATE%\n"
                                         "1600000000\n\n%SIZE%\n4096\n\n%ARCH%\nany\n\n" +
                                         more);
        system.file(folder + "files", "%FILES%\nusr/\nusr/share/applications/" + name +
                                          ".desktop\n\n%BACKUP%\netc/" + name + ".conf\t12\n");
        entry(name, "Name=App\nExec=app\n");
    };
    program("app");
    system.file("var/lib/pacman/local/ALPM_DB_VERSION", "9\n");
    system.file("etc/pacman.conf", "[options]\nHoldPkg = held glibc\n");
    system.file("etc/app.conf");
    add("app", {});
    add("held", {});
    add("needs-app", "%DEPENDS%\napp>=1\n\n");
    const auto listed = source.applications();
    ASSERT_EQ(listed->size(), 3u);
    EXPECT_EQ(listed->front().version, "2.0");
    EXPECT_EQ(listed->front().installed, 1600000000);
    EXPECT_EQ(planOf("held").blocker, Blocker::Essential);
    const RemovalPlan plan = planOf("app");
    EXPECT_EQ(plan.blocker, Blocker::None) << plan.reason;
    EXPECT_THAT(plan.also, ElementsAre("needs-app"));
    EXPECT_THAT(plan.systemSettings, ElementsAre(system.path("etc/app.conf")));
    FakeRights &rights = FakeRights::install();
    rights.request(RightsPurpose::FilesAndPackages);
    rights.packagesReply = [](const PackageRemoval &) {
        return PackagesReply{PackagesOutcome::Broken, {}, "error: it stopped"};
    };
    const RightsToken token = rights.token();
    const RemovalResult broken = source.remove(plan, &token);
    EXPECT_EQ(broken.outcome, UninstallOutcome::Broken);
    EXPECT_EQ(broken.wayOut, "") << "dpkg's way out is not pacman's";
}

TEST(ToolWords, AreToldByTheLineThatSaysWhy) {
    const std::pair<const char *, const char *> rows[] = {
        {"Removing a ...\ndpkg: error processing package a (--remove):\n a script failed\n"
         "Errors were encountered while processing:\n a\nE: Sub-process returned an error\n",
         "dpkg: error processing package a (--remove): a script failed"},
        {"Waiting...\nE: first\nE: Unable to acquire the lock\n", "E: Unable to acquire the lock"},
        {"warning: x\nerror: Failed dependencies:\n\ta is needed by b\n\tc\n",
         "error: Failed dependencies: a is needed by b"},
        {"10%\r20%\rError: \n Problem: a conflict\r\n", "Error: Problem: a conflict"},
        {"Reading lists...\nno error in sight:", "no error in sight:"},
        {"\n \n", ""},
    };
    for (const auto &[output, line] : rows)
        EXPECT_EQ(decisiveLine(output), line);
}

TEST(PackageNames, HaveAClosedGrammar) {
    for (const char *name : {"gimp", "libstdc++6", "0ad", "g++-12.1", "a:i386"})
        EXPECT_TRUE(isPackageName(PackageFamily::Dpkg, name)) << name;
    for (const char *name : {"", "-y", "A", "a b", "a/b", "a=1", "a*", "a:", ":amd64", "a:b:c",
                             "a\n", "a;b", "\xc3\xa4", "a_"})
        EXPECT_FALSE(isPackageName(PackageFamily::Dpkg, name)) << name;
    EXPECT_TRUE(isPackageName(PackageFamily::Rpm, "NetworkManager_x"));
    EXPECT_FALSE(isPackageName(PackageFamily::Rpm, "a:b"));
    EXPECT_FALSE(isPackageName(PackageFamily(9), "a"));
    EXPECT_EQ(refusalOfPackages({PackageFamily::Dpkg, {"a", "b"}, {"b"}}), "");
    const std::vector<std::string> wrong[] = {{}, {"a", "a"}, {"a", "-o"}, {"a", "b c"}};
    for (const auto &names : wrong)
        EXPECT_NE(refusalOfPackages({PackageFamily::Dpkg, names, {}}), "");
    EXPECT_NE(refusalOfPackages({PackageFamily::Dpkg, {"a"}, {"b"}}), "");
}

} // namespace
} // namespace brightsweep
