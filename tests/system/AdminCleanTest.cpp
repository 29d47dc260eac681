#include "support/CleanableMachine.h"
#include "support/CommandLine.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include <unistd.h>

namespace brightsweep::test {
namespace {

using testing::HasSubstr;

// As the stage names it.
constexpr unsigned stageUser = 61'234;

struct Scene {
    const char *name;
    int status;
    const char *words; // on standard error
};

class AdminClean : public testing::TestWithParam<Scene> {
protected:
    // The command line as a user without rights, before the real pkexec and its authority.
    ChildResult clean(std::vector<std::string> arguments) {
        const auto home = stage / "home";
        arguments.insert(arguments.begin(),
                         {BRIGHTSWEEP_TEST_STAGE, GetParam().name, stage,
                          std::filesystem::path(BRIGHTSWEEP_CLI).parent_path(),
                          BRIGHTSWEEP_TEST_POLICY, "brightsweep-cli", "--json", "clean"});
        auto result = runProgram(arguments, {{"XDG_CONFIG_HOME", home / ".config"},
                                             {"XDG_DATA_HOME", home / ".local/share"},
                                             {"XDG_STATE_HOME", home / ".local/state"},
                                             {"XDG_CACHE_HOME", home / ".cache"}});
        EXPECT_EQ(result.output + result.errors, "");
        result.output = textOf(stage / "out");
        result.errors = textOf(stage / "err");
        return result;
    }

    std::filesystem::path stage = TestEnvironment::current().work() / "stage";
    CleanableMachine machine{stage / "home", stage / "system"};
};

TEST_P(AdminClean, AsksOnceBeforeTheFirstRemoval) {
    needRoot();
    machine.giveHome(stageUser);
    machine.system.directory("var/lib");
    machine.system.link("var/run", "/run"); // where the bus is
    const auto before = machine.state();
    std::vector<std::string> arguments = {"--apply", "--admin"};
    for (const char *category : {"0", "1", "2", "3", "4", "5"})
        arguments.insert(arguments.end(), {"--category", category});
    const auto result = clean(arguments);
    EXPECT_EQ(result.status, GetParam().status) << result.output << result.errors;
    const auto document = documentOf(result.output, "clean");
    if (GetParam().status == 0) {
        EXPECT_EQ(changes(before, machine.state()), machine.changesOf({0, 1, 2, 3, 4, 5}));
        EXPECT_THAT(pathsIn(document, "failed"), testing::IsEmpty());
        EXPECT_EQ(textOf(stage / "counted/count"), "asked\n");
        EXPECT_EQ(result.errors, "");
    } else {
        EXPECT_THAT(changes(before, machine.state()), testing::IsEmpty());
        EXPECT_EQ(document.at("applied"), false);
        EXPECT_THAT(pathsIn(document, "removed"), testing::IsEmpty());
        EXPECT_THAT(result.output, HasSubstr(GetParam().words));
        EXPECT_THAT(result.errors, HasSubstr(GetParam().words));
        EXPECT_THAT(result.errors, HasSubstr("Nothing was removed.\n"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, AdminClean,
    testing::Values(Scene{"granted", 0, ""}, Scene{"denied", 4, "they were denied"},
                    Scene{"noagent", 4, "nothing here can ask for a password"},
                    Scene{"dismissed", 4, "the question was dismissed"},
                    Scene{"nobus", 4, "the system's authority cannot be reached"}),
    [](const auto &scene) { return std::string(scene.param.name); });

} // namespace
} // namespace brightsweep::test
