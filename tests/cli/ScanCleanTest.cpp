#include "support/CleanableMachine.h"
#include "support/CommandLine.h"
#include "support/LockHolder.h"
#include "support/NeedsRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

const Words everyCategory = {"--category", "0", "--category", "1", "--category", "2",
                             "--category", "3", "--category", "4", "--category", "5"};

std::vector<int> indicesIn(const nlohmann::json &document) {
    std::vector<int> indices;
    for (const auto &category : document.at("categories"))
        indices.push_back(category.at("index"));
    return indices;
}

Words sorted(Words words) {
    std::sort(words.begin(), words.end());
    return words;
}

class ScanClean : public testing::Test {
protected:
    nlohmann::json scan(const Words &words = {}) {
        return documentOf(cli(together({"--json", "scan"}, words)).output, "scan");
    }
    nlohmann::json clean(const Words &words, int status = 0, RunAs user = RunAs::Caller) {
        const auto result = cli(together({"--json", "clean"}, words), user);
        EXPECT_EQ(result.status, status) << result.errors;
        EXPECT_EQ(result.errors, "");
        return documentOf(result.output, "clean");
    }
    // What a clean of one category would take.
    Words itemsOf(const char *category) {
        return pathsIn(clean({"--category", category}), "removed");
    }

    CleanableMachine machine;
};

TEST_F(ScanClean, WithoutApplyTellsWhatApplyRemoves) {
    needRoot();
    const auto before = machine.state();
    const auto told = clean(everyCategory);
    EXPECT_EQ(told.at("applied"), false);
    const auto scanned = scan();
    EXPECT_EQ(pathsIn(scanned, "items"), pathsIn(told, "removed"));
    for (const auto &category : scanned.at("categories"))
        EXPECT_EQ(category.at("items")[0].at("selected"), category.at("selection") != 0);
    EXPECT_THAT(changes(before, machine.state()), IsEmpty());
    EXPECT_EQ(cli({"--json", "history"}).output.find(R"("logName":"SIZE")"), std::string::npos);

    auto done = clean(together(everyCategory, {"--apply"}));
    EXPECT_EQ(done["applied"], true);
    EXPECT_EQ(changes(before, machine.state()), machine.changesOf({0, 1, 2, 3, 4, 5}));
    done["applied"] = false;
    EXPECT_EQ(done, told) << "the same items, bytes and words";

    Words expected;
    for (const auto &items : machine.items)
        expected.insert(expected.end(), items.begin(), items.end());
    EXPECT_THAT(pathsIn(done, "removed"), UnorderedElementsAreArray(expected));
    std::int64_t sum = 0;
    for (const auto &category : done.at("categories")) {
        std::int64_t ofCategory = 0;
        for (const auto &item : category.at("removed"))
            ofCategory += item.at("bytes").get<std::int64_t>();
        EXPECT_EQ(category.at("bytes"), ofCategory);
        sum += ofCategory;
    }
    EXPECT_GT(sum, 3000 + 2000 + 9000);
    EXPECT_EQ(done["bytes"], sum);
    const auto history = documentOf(cli({"--json", "history"}).output, "history");
    EXPECT_EQ(history.at("bytes"), sum);
    EXPECT_EQ(history.at("logName"), "SIZE");
    EXPECT_THAT(pathsIn(clean(together(everyCategory, {"--apply"})), "removed"), IsEmpty());
}

TEST_F(ScanClean, WordsForPeopleKeepOneLinePerItem) {
    const auto turned = machine.home.file(".cache/photo\xe2\x80\xaegpj.exe");
    const auto told = cli({"clean", "--category", "1"});
    EXPECT_EQ(told.status, 0);
    EXPECT_THAT(told.output, HasSubstr(".cache/photo\\u202egpj.exe"));
    EXPECT_THAT(pathsIn(clean({"--category", "1"}), "removed"), testing::Contains(turned));
    EXPECT_THAT(told.output, HasSubstr(".cache/two\\nlines"));
    EXPECT_THAT(told.output, HasSubstr(".cache/bad\xef\xbf\xbd\xef\xbf\xbdname"));
    EXPECT_THAT(told.output, HasSubstr(" would go; --apply removes it\n"));
    EXPECT_EQ(std::count(told.output.begin(), told.output.end(), '\n'),
              std::ptrdiff_t(machine.items[1].size()) + 3);
    EXPECT_THAT(cli({"clean", "--category", "1", "--apply"}).output, HasSubstr(" is cleaned\n"));
}

TEST_F(ScanClean, WithoutACategoryTheStoredSelectionDecides) {
    test::needRoot();
    const auto set = [](const char *key, const char *value) {
        EXPECT_EQ(cli({"settings", "set", key, value}).status, 0) << key;
    };
    const auto before = machine.state();
    EXPECT_THAT(indicesIn(clean({})), ElementsAre(0, 1, 2, 3));
    set("SystemCaches", "0");
    set("SystemLogs", "0");
    set("UserCaches", "0");
    set("UserDownloads", "2");
    EXPECT_THAT(indicesIn(clean({})), ElementsAre(3, 5));
    EXPECT_THAT(indicesIn(clean({"--category", "4", "--category", "1", "--category", "4"})),
                ElementsAre(1, 4));
    EXPECT_THAT(indicesIn(clean({"--apply"})), ElementsAre(3, 5));
    EXPECT_EQ(changes(before, machine.state()), machine.changesOf({3, 5}));
    set("UserLogs", "0");
    set("UserDownloads", "0");
    EXPECT_THAT(indicesIn(clean({"--apply"})), IsEmpty());
    EXPECT_EQ(changes(before, machine.state()), machine.changesOf({3, 5}));
}

TEST_F(ScanClean, WrongUsageIsToldInALineAndRemovesNothing) {
    const auto before = machine.state();
    for (const Words &words : std::vector<Words>{
             {"clean", "--apply", "--category", "6"},
             {"clean", "--apply", "--category", "-1"},
             {"clean", "--apply", "--category", ""},
             {"clean", "--apply", "--category", "1", "--category", "9"},
             {"clean", "--apply", "--category", "4294967297"},
             {"clean", "--apply", "1"},
             {"clean", "--apply", "--category"},
             {"clean", "--apply=yes"},
             {"clean", "--apply", "--all"},
             {"clean", "--apply", "--category", "1", "two\nlines"},
             {"scan", "--apply"},
             {"scan", "1"},
             {"scan", "--category", "six\nseven"},
             {"cleanse", "--apply"},
             {"--apply"},
         }) {
        const auto result = cli(words);
        const auto name = testing::PrintToString(words);
        EXPECT_EQ(result.status, 2) << name;
        EXPECT_EQ(result.output, "") << name;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1)
            << name << result.errors;
    }
    EXPECT_THAT(changes(before, machine.state()), IsEmpty());
}

TEST_F(ScanClean, SettingsThatCannotBeReadChooseNothing) {
    machine.home.file(".config/com.norvmac.DeskSweeperPro.conf", "UserCaches=0\ndamaged");
    const auto before = machine.state();
    const auto refused = cli({"clean", "--apply"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("--category"));
    EXPECT_THAT(changes(before, machine.state()), IsEmpty());
    const auto scanned = scan();
    for (const auto &category : scanned.at("categories"))
        EXPECT_EQ(category.at("selection"), 0);
    clean({"--category", "1", "--apply"});
    EXPECT_EQ(changes(before, machine.state()), machine.changesOf({1}));
}

TEST_F(ScanClean, WhatNeedsRightsStaysAndIsTold) {
    needRoot();
    machine.giveHome(unprivilegedUser);
    const std::string report = machine.system.file("var/crash/own.crash", "own");
    ASSERT_EQ(::chown(report.c_str(), unprivilegedUser, 0), 0);
    // The user's own, though closed; a stranger's, in the user's own folder.
    const std::string closed = machine.home.directory(".cache/closed");
    machine.home.file(".cache/closed/file");
    const std::string foreign = machine.home.file(".cache/foreign/kept").parent_path();
    ASSERT_EQ(::chown(closed.c_str(), unprivilegedUser, 0), 0);
    machine.home.mode(".cache/closed", 0500);
    const auto before = machine.state();

    std::set<std::string> gone = {report, closed, closed + "/file"};
    for (const unsigned category : {1u, 3u, 4u, 5u})
        gone.insert(machine.items[category].begin(), machine.items[category].end());
    Words staying(machine.items[0].begin(), machine.items[0].end());
    staying.insert(staying.end(), machine.items[2].begin(), machine.items[2].end());

    const auto told = clean(everyCategory, 3, RunAs::Unprivileged);
    EXPECT_THAT(pathsIn(told, "failed"), UnorderedElementsAreArray(staying));
    EXPECT_THAT(changes(before, machine.state()), IsEmpty());
    // With rights that are only asked for when it counts, nothing would be in the way.
    EXPECT_THAT(
        pathsIn(clean(together(everyCategory, {"--admin"}), 0, RunAs::Unprivileged), "failed"),
        IsEmpty());

    const auto done = clean(together(everyCategory, {"--apply"}), 3, RunAs::Unprivileged);
    staying.push_back(foreign);
    EXPECT_THAT(pathsIn(done, "failed"), UnorderedElementsAreArray(staying));
    for (const auto &category : done.at("categories")) {
        for (const auto &item : category.at("failed"))
            EXPECT_GT(item.at("error").get<std::string>(), "");
    }
    auto expected = machine.changesOfItems(gone);
    expected.insert(expected.end(), {"- " + report, "- " + closed, "- " + closed + "/file"});
    EXPECT_EQ(changes(before, machine.state()), sorted(expected));
    EXPECT_THAT(cli({"clean", "--category", "0", "--apply"}, RunAs::Unprivileged).output,
                HasSubstr("stays"));
}

TEST_F(ScanClean, WhileThePackageManagerWorksItsCacheIsBusy) {
    needRoot();
    const auto before = machine.state();
    const std::string package = machine.system.path("var/cache/apt/archives/a_1.0_all.deb");
    {
        const LockHolder lock(machine.system.path("var/cache/apt/archives/lock"));
        for (const Words &more : {Words{}, Words{"--apply"}, Words{"--apply", "--admin"}}) {
            const auto document = clean(together({"--category", "0"}, more), 3);
            EXPECT_THAT(pathsIn(document, "failed"), ElementsAre(package));
            EXPECT_EQ(document.at("categories")[0].at("failed")[0].at("error"),
                      std::make_error_code(std::errc::device_or_resource_busy).message());
        }
        auto others = machine.items[0];
        others.erase(package);
        EXPECT_EQ(changes(before, machine.state()), machine.changesOfItems(others));
    }
    clean({"--category", "0", "--apply"});
    EXPECT_EQ(changes(before, machine.state()), machine.changesOf({0}));
}

TEST_F(ScanClean, AnInterruptedCleanTellsWhatHasGoneSoFar) {
    constexpr int folders = 100;
    std::filesystem::remove_all(machine.home.path(".cache"));
    for (int item = 0; item < folders * 150; ++item)
        machine.home.directory(".cache/" + std::to_string(item % folders) + "/" +
                               std::to_string(item));
    const Words all = itemsOf("1");
    const auto before = machine.state();
    RunningProgram program({BRIGHTSWEEP_CLI, "--json", "clean", "--category", "1", "--apply"});
    EXPECT_TRUE(eventually([&] {
        const std::filesystem::directory_iterator entries(machine.home.path(".cache"));
        return std::distance(begin(entries), end(entries)) < folders;
    }));
    program.signal(SIGINT);
    const auto result = program.finish();
    EXPECT_EQ(result.status, 128 + SIGINT);
    const auto document = documentOf(result.output, "clean");
    const Words gone = pathsIn(document, "removed");
    const Words failed = pathsIn(document, "failed");
    EXPECT_EQ(document.at("applied"), true);
    ASSERT_LE(gone.size(), all.size());
    EXPECT_TRUE(std::equal(gone.begin(), gone.end(), all.begin()));
    // The item under way may have lost something; those behind it have not.
    ASSERT_LE(failed.size(), 1u);
    EXPECT_TRUE(failed.empty() || failed[0] == all[gone.size()]);
    auto expected = machine.changesOfItems({});
    for (const auto &[path, facts] : before) {
        if (std::any_of(gone.begin(), gone.end(), [&path = path](const std::string &item) {
                return path == item || path.starts_with(item + "/");
            }))
            expected.push_back("- " + path);
    }
    Words changed = changes(before, machine.state());
    for (const std::string &item : failed) {
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(item)));
        std::erase_if(changed,
                      [&](const std::string &line) { return line.find(item + "/") != line.npos; });
    }
    EXPECT_EQ(changed, sorted(expected));
    std::int64_t sum = 0;
    for (const auto &item : document.at("categories")[0].at("removed"))
        sum += item.at("bytes").get<std::int64_t>();
    const auto history = documentOf(cli({"--json", "history"}).output, "history");
    EXPECT_EQ(history.at("bytes"), sum);
}

} // namespace
} // namespace brightsweep::test
