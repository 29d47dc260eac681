// The command line as a process on a machine that may burn: packages made for the test, by the real
// dpkg and apt, with a home of settings beside them.

#include "support/ChildProcess.h"
#include "support/LockHolder.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "system/PrivateMachine.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace brightsweep::test {
namespace {

class Uninstall : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::getenv("BRIGHTSWEEP_BURNABLE")) << "run by tests/system/machine";
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
        ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    }

    void build(const std::string &name, const std::string &program, const std::string &depends = {},
               const std::string &script = {}) {
        tree.file(name + "/DEBIAN/control", "Package: " + name +
                                                "\nVersion: 2:1.5-3\nArchitecture: all\n" +
                                                "Maintainer: x <x@x>\nDescription: x\n" + depends);
        tree.file(name + "/usr/share/applications/" + name + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + program + "\n");
        tree.file(name + "/usr/bin/" + name, "#!/bin/sh\n");
        tree.mode(name + "/usr/bin/" + name, 0755);
        if (!script.empty()) {
            tree.file(name + "/DEBIAN/prerm", "#!/bin/sh\n" + script);
            tree.mode(name + "/DEBIAN/prerm", 0755);
        }
        const auto made =
            shell("dpkg-deb -Zgzip --root-owner-group -b " + tree.path(name).native() +
                  " 2>&1 && dpkg --force-unsafe-io -i " + tree.path(name).native() + ".deb 2>&1");
        ASSERT_EQ(made.status, 0) << made.output;
        for (const char *folder : {".config/", ".cache/", ".local/share/"})
            home.file(folder + name + "/x");
    }
    static ChildResult uninstall(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {BRIGHTSWEEP_CLI, "uninstall"});
        return runProgram(arguments);
    }
    static bool isInstalled(const std::string &name) {
        return shell("dpkg-query -W -f '${db:Status-Abbrev}' " + name).output.starts_with("ii");
    }

    TestTree tree;
    TestTree home{TestEnvironment::current().home()};
};

TEST_F(Uninstall, TakesThePackageThenItsSettingsAndNoOthers) {
    build("demo-writer", "demo-calc");
    build("demo-calc", "demo-calc");
    build("demo-plugin", "demo-plugin", "Depends: demo-writer\n");
    const auto before = home.snapshot(".config");
    const auto plan = uninstall({"demo-writer"});
    EXPECT_EQ(plan.status, 0);
    EXPECT_NE(plan.output.find("--admin"), std::string::npos);
    EXPECT_EQ(uninstall({"demo-writer", "--apply"}).status, 3) << "without rights";
    EXPECT_TRUE(isInstalled("demo-writer") && isInstalled("demo-plugin"));
    EXPECT_EQ(home.snapshot(".config"), before);

    {
        const LockHolder lock("/var/lib/dpkg/lock-frontend");
        const auto waited = uninstall({"demo-writer", "--apply", "--admin"});
        EXPECT_EQ(waited.status, 3);
        const auto told = waited.errors.find("Waiting for cache lock");
        EXPECT_NE(told, std::string::npos) << waited.errors;
        EXPECT_EQ(told, waited.errors.rfind("Waiting for cache lock")) << "once";
    }
    const auto removed = uninstall({"package:demo-writer", "--apply", "--admin"});
    EXPECT_EQ(removed.status, 0) << removed.output << removed.errors;
    EXPECT_FALSE(isInstalled("demo-writer") || isInstalled("demo-plugin"));
    EXPECT_TRUE(isInstalled("demo-calc"));
    EXPECT_FALSE(home.exists(".config/demo-writer") || home.exists(".cache/demo-writer") ||
                 home.exists(".config/demo-plugin"));
    EXPECT_TRUE(home.exists(".config/demo-calc/x")) << "what another starts stays its own";
    EXPECT_TRUE(home.exists(".local/share/demo-writer/x")) << "data";
}

TEST_F(Uninstall, LeavesNothingHalfGoneWhenItIsInterrupted) {
    const auto started = tree.path("started").native();
    build("demo-slow", "demo-slow", {}, ": > " + started + "; sleep 4\n");
    RunningProgram program({BRIGHTSWEEP_CLI, "uninstall", "demo-slow", "--apply", "--admin"});
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(started); }));
    program.signal(SIGINT);
    const auto ended = program.finish();
    EXPECT_EQ(ended.status, 130);
    EXPECT_NE(ended.output.find("interrupted"), std::string::npos) << ended.output;
    EXPECT_TRUE(eventually(
        [&] { return !isInstalled("demo-slow") && shell("dpkg --audit").output.empty(); }));
    EXPECT_TRUE(home.exists(".config/demo-slow/x"));
}

} // namespace
} // namespace brightsweep::test
