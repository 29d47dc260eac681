#include "support/CommandLine.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace brightsweep::test {
namespace {

ChildResult usage(const Words &words) {
    return cli(together({"usage"}, words));
}

nlohmann::json document(const Words &words) {
    return documentOf(usage(together({"--json"}, words)).output, "usage");
}

TEST(UsageCommand, ShowsTheTreeToTheDepthAskedFor) {
    TestTree tree;
    tree.sparseFile("a/b/c/file", 60);
    tree.sparseFile("d/file", 30);
    tree.sparseFile("bad \xff/file", 10);
    const std::string top = tree.top();
    const auto one = usage({"--json", top});
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.errors, "");
    const auto json = documentOf(one.output, "usage");
    EXPECT_EQ(json.at("path"), top + '/');
    EXPECT_EQ(json.at("bytes"), 100);
    EXPECT_EQ(json.at("directories"), 6);
    const auto &children = json.at("children");
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0].at("path"), top + "/a/");
    EXPECT_TRUE(children[0].at("children").empty());
    EXPECT_EQ(exactPath(children[2]), top + "/bad \xff/");
    EXPECT_FALSE(json.contains("rings"));

    const auto deep = document({top, "--depth", "9"});
    const auto &c = deep.at("/children/0/children/0/children/0"_json_pointer);
    EXPECT_EQ(c.at("path"), top + "/a/b/c/");
    EXPECT_EQ(c.at("bytes"), 60);
    const auto people = usage({top, "--rings"});
    EXPECT_NE(people.output.find("0.06 KB    a/\n"), std::string::npos) << people.output;
}

TEST(UsageCommand, ShowsTheSectorsInDrawingOrder) {
    TestTree tree;
    tree.sparseFile("a/b/file", 75);
    tree.sparseFile("d/file", 25);
    const auto rings = document({tree.top(), "--rings"})["rings"];
    ASSERT_EQ(rings.size(), 4u);
    EXPECT_EQ(rings[0].at("rgb"), (nlohmann::json{39, 41, 51}));
    EXPECT_EQ(rings[2].at("level"), 3);
    EXPECT_EQ(rings[2].at("sweep"), 270);
    EXPECT_EQ(rings[3].at("start"), 270);
    EXPECT_EQ(rings[3].at("inner"), rings[0].at("outer"));
}

TEST(UsageCommand, ListsWhatReachesTheLimit) {
    TestTree tree;
    tree.sparseFile("folder/large", 5000);
    tree.sparseFile("folder/small", 10);
    tree.sparseFile("file", 6000);
    const auto items = document({tree.top(), "--list", "--limit", "5", "--unit", "1"})["items"];
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].at("name"), "file");
    EXPECT_EQ(items[1].at("bytes"), 5010);
    EXPECT_EQ(items[1].at("directory"), true);
    ASSERT_EQ(items[1].at("items").size(), 1u);
    EXPECT_EQ(items[1].at("items")[0].at("path"), tree.path("folder/large").native());
}

TEST(UsageCommand, WhatIsNotGivenOfTheLimitIsTheSettings) {
    TestTree tree;
    tree.sparseFile("large", 5000);
    tree.sparseFile("small", 10);
    TestTree(TestEnvironment::current().home())
        .file(".config/com.norvmac.DeskSweeperPro.conf", "DSDiskUsageLimit=5\nDSDiskUsageUnit=9");
    const struct {
        Words options;
        std::size_t items;
    } rows[] = {{{}, 2}, {{"--unit", "1"}, 1}, {{"--unit", "2"}, 0}, {{"--limit", "11"}, 1}};
    for (const auto &row : rows)
        EXPECT_EQ(document(together({tree.top(), "--list"}, row.options))["items"].size(),
                  row.items);
}

TEST(UsageCommand, SaysWhatIsWrong) {
    TestTree tree;
    const std::string file = tree.file("file");
    const std::string top = tree.top();
    const struct {
        Words arguments;
        int exit;
    } rows[] = {
        {{}, 2},
        {{top, top}, 2},
        {{top, "--depth", "-1"}, 2},
        {{top, "--limit", "5"}, 2},
        {{top, "--list", "--rings"}, 2},
        {{top, "--list", "--unit", "7"}, 2},
        {{top + "/missing"}, 1},
        {{file}, 1},
        {{"/proc"}, 1},
        {{"base64:?"}, 2},
        {{top, "--remove", "base64:?"}, 2},
        {{top, "--svg", top}, 1},
        {{top, "--svg", "/dev/null"}, 1},
    };
    for (const auto &row : rows) {
        const auto ran = usage(row.arguments);
        EXPECT_EQ(ran.status, row.exit) << testing::PrintToString(row.arguments);
        EXPECT_EQ(std::count(ran.errors.begin(), ran.errors.end(), '\n'), 1) << ran.errors;
        EXPECT_EQ(ran.output, "");
    }
}

TEST(UsageCommand, RemovesWhatIsNamedAndNothingElse) {
    TestTree tree;
    for (const char *name : {"top/a/in/file", "top/d/file", "top/stays", "outside"})
        tree.sparseFile(name, 100);
    tree.link("top/link", tree.path("outside"));
    tree.link("way", tree.path("top"));
    const auto before = tree.snapshot();
    const std::string top = tree.path("top");
    Words words{"--json", top, "--remove"};
    for (const char *name : {"top/a", "top/a/in", "way/d", "top/link", "top", "outside", "top/no"})
        words.push_back(tree.path(name));
    const auto trial = usage(words);
    EXPECT_EQ(trial.status, 3);
    EXPECT_EQ(tree.snapshot(), before);
    for (const bool applied : {false, true}) {
        const auto ran = applied ? usage(together(words, {"--apply"})) : trial;
        const auto json = documentOf(ran.output, "usage");
        EXPECT_EQ(json.at("applied"), applied);
        EXPECT_EQ(json.at("removed").size(), 3u);
        EXPECT_EQ(json.at("failed").size(), 3u);
    }
    EXPECT_TRUE(tree.exists("outside") && tree.exists("top/stays"));
    EXPECT_FALSE(tree.exists("top/a") || tree.exists("top/d") || tree.exists("top/link"));
    const auto trash = usage({top, "--remove", tree.path("top/stays"), "--trash", "--apply"});
    EXPECT_EQ(trash.status, 0) << trash.errors;
    EXPECT_FALSE(tree.exists("top/stays"));
    EXPECT_TRUE(
        TestTree(TestEnvironment::current().home()).exists(".local/share/Trash/files/stays"));
    EXPECT_EQ(usage({top, "--apply"}).status, 2);
}

// The program holds the folder that it works in.
TEST(UsageCommand, NamesTheProgramThatUsesWhatGoes) {
    TestTree tree;
    tree.sparseFile("folder/in/file", 100);
    const RunningProgram sleeper({"env", "-C", tree.path("folder/in"), "sleep", "1000"});
    const auto name = "/proc/" + std::to_string(sleeper.process()) + "/comm";
    ASSERT_TRUE(eventually([&] { return textOf(name) == "sleep\n"; }));
    const auto ran = usage({tree.top(), "--remove", tree.path("folder")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.errors.find("folder: in use by sleep\n"), std::string::npos) << ran.errors;
}

TEST(UsageCommand, SaysWhatItCouldNotRead) {
    TestTree tree;
    tree.sparseFile("closed/file", 100);
    tree.mode("closed", 0);
    std::filesystem::permissions(tree.top().parent_path(), std::filesystem::perms(0711));
    for (const char *mode : {"--rings", "--list"}) {
        const auto ran = cli({"usage", tree.top(), mode}, RunAs::Unprivileged);
        EXPECT_NE(ran.errors.find("closed"), std::string::npos) << mode;
    }
    tree.mode("closed", 0755);
}

// Others can read it as they can read whatever an editor saves.
TEST(UsageCommand, APictureHasTheModeOfANewFile) {
    TestTree tree;
    tree.sparseFile("folder/file", 100);
    const auto picture = tree.path("chart.svg");
    const mode_t before = ::umask(027);
    const auto ran = usage({tree.path("folder"), "--svg", picture});
    ::umask(before);
    EXPECT_EQ(ran.status, 0) << ran.errors;
    EXPECT_EQ(std::filesystem::status(picture).permissions(), std::filesystem::perms(0640));
}

TEST(UsageCommand, TellsWhatGrew) {
    TestTree tree;
    tree.sparseFile("bad\xff/file", 100);
    tree.sparseFile("less/file", 100);
    tree.sparseFile("gone/file", 50);
    // Deeper than what readers of documents take at once.
    std::string deep;
    for (int level = 0; level < 700; ++level)
        deep += "d/";
    tree.sparseFile(deep + "file", 1);
    const std::string top = tree.top();
    TestTree above(tree.top().parent_path());
    const std::string saved =
        above.file("saved.json", usage({"--json", top, "--depth", "2000"}).output);
    tree.sparseFile("bad\xff/more", 30);
    tree.sparseFile("new/file", 40);
    std::filesystem::resize_file(tree.path("less/file"), 10);
    std::filesystem::remove_all(tree.path("gone"));
    const auto changes = document({top, "--compare", saved})["changes"];
    std::vector<int> differences;
    for (const auto &change : changes)
        differences.push_back(change.at("difference"));
    EXPECT_EQ(differences, (std::vector{40, 30, -50, -70, -90}));
    EXPECT_EQ(usage({tree.path("new"), "--compare", saved}).status, 1);
    const std::string path = R"("path":")" + top + R"(/",)";
    const std::string head = R"({"schema":1,"command":"usage",)" + path;
    const std::string end = R"("bytes":5,"children":[]})";
    const auto child = [&](const std::string &where) {
        return head + R"("bytes":5,"children":[{"path":")" + where + R"(",)" + end + "]}";
    };
    for (const std::string &document :
         {head + R"("bytes":"5","children":[]})", head + R"("bytes":1.5,"children":[]})",
          head + R"("bytes":-1,"children":[]})", head + R"("bytes":5})",
          head + R"("interrupted":true,)" + end, head + R"("bytes":5,"children":[{"path":7}]})",
          child(top + "/a/b/"), child(std::string(top.size() + 1, 'x') + "a/"),
          head + R"("pathBase64":"?",)" + end, R"({"schema":2,"command":"usage",)" + path + end,
          R"({"schema":1,)" + path + end, R"({"command":"usage",)" + path + end}) {
        above.file("saved.json", document);
        const auto ran = usage({top, "--compare", saved});
        EXPECT_EQ(ran.status, 1) << document;
        EXPECT_EQ(ran.output, "") << document;
    }
}

} // namespace
} // namespace brightsweep::test
