#include "support/ChildProcess.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <sys/stat.h>

namespace brightsweep {
namespace {

using test::TestTree;

struct Ran {
    int exit = -1;
    QByteArray out;
    QByteArray err;
    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

Ran run(const QStringList &arguments) {
    QProcess process;
    process.start(QStringLiteral(BRIGHTSWEEP_CLI), arguments);
    EXPECT_TRUE(process.waitForFinished(60'000));
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QString text(const std::filesystem::path &path) {
    return QString::fromStdString(path.native());
}

TEST(UsageCommand, ShowsTheTreeToTheDepthAskedFor) {
    TestTree tree;
    tree.sparseFile("a/b/c/file", 60);
    tree.sparseFile("d/file", 30);
    tree.sparseFile("bad \xff/file", 10);
    const QString top = text(tree.top());
    const Ran one = run({QStringLiteral("--json"), QStringLiteral("usage"), top});
    EXPECT_EQ(one.exit, 0);
    EXPECT_TRUE(one.out.startsWith("{\"schema\":1,\"command\":\"usage\",\"path\":"));
    EXPECT_TRUE(one.out.endsWith("}\n"));
    EXPECT_TRUE(one.err.isEmpty());
    const QJsonObject json = one.json();
    EXPECT_EQ(json[QStringLiteral("path")].toString(), top + QLatin1Char('/'));
    EXPECT_EQ(json[QStringLiteral("bytes")].toInt(), 100);
    EXPECT_EQ(json[QStringLiteral("directories")].toInt(), 6);
    const QJsonArray children = json[QStringLiteral("children")].toArray();
    ASSERT_EQ(children.size(), 3);
    EXPECT_EQ(children[0][QStringLiteral("path")].toString(), top + QStringLiteral("/a/"));
    EXPECT_TRUE(children[0][QStringLiteral("children")].toArray().isEmpty());
    EXPECT_EQ(QByteArray::fromBase64(children[2][QStringLiteral("pathBase64")].toString().toUtf8()),
              QByteArray((tree.top().native() + "/bad \xff/").c_str()));
    EXPECT_FALSE(json.contains(QStringLiteral("rings")));

    const QJsonObject deep = run({QStringLiteral("--json"), QStringLiteral("usage"), top,
                                  QStringLiteral("--depth"), QStringLiteral("9")})
                                 .json();
    const QJsonValue c = deep[QStringLiteral("children")][0][QStringLiteral("children")][0]
                             [QStringLiteral("children")][0];
    EXPECT_EQ(c[QStringLiteral("path")].toString(), top + QStringLiteral("/a/b/c/"));
    EXPECT_EQ(c[QStringLiteral("bytes")].toInt(), 60);
    const Ran people = run({QStringLiteral("usage"), top, QStringLiteral("--rings")});
    EXPECT_TRUE(people.out.contains("0.06 KB    a/\n")) << people.out.constData();
}

TEST(UsageCommand, ShowsTheSectorsInDrawingOrder) {
    TestTree tree;
    tree.sparseFile("a/b/file", 75);
    tree.sparseFile("d/file", 25);
    const QJsonArray rings = run({QStringLiteral("--json"), QStringLiteral("usage"),
                                  text(tree.top()), QStringLiteral("--rings")})
                                 .json()[QStringLiteral("rings")]
                                 .toArray();
    ASSERT_EQ(rings.size(), 4);
    EXPECT_EQ(rings[0][QStringLiteral("rgb")].toArray(), (QJsonArray{39, 41, 51}));
    EXPECT_EQ(rings[2][QStringLiteral("level")].toInt(), 3);
    EXPECT_EQ(rings[2][QStringLiteral("sweep")].toDouble(), 270);
    EXPECT_EQ(rings[3][QStringLiteral("start")].toDouble(), 270);
    EXPECT_EQ(rings[3][QStringLiteral("inner")].toDouble(),
              rings[0][QStringLiteral("outer")].toDouble());
}

TEST(UsageCommand, ListsWhatReachesTheLimit) {
    TestTree tree;
    tree.sparseFile("folder/large", 5000);
    tree.sparseFile("folder/small", 10);
    tree.sparseFile("file", 6000);
    const QJsonArray items =
        run({QStringLiteral("--json"), QStringLiteral("usage"), text(tree.top()),
             QStringLiteral("--list"), QStringLiteral("--limit"), QStringLiteral("5"),
             QStringLiteral("--unit"), QStringLiteral("1")})
            .json()[QStringLiteral("items")]
            .toArray();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0][QStringLiteral("name")].toString(), QStringLiteral("file"));
    EXPECT_EQ(items[1][QStringLiteral("bytes")].toInt(), 5010);
    EXPECT_TRUE(items[1][QStringLiteral("directory")].toBool());
    const QJsonArray inner = items[1][QStringLiteral("items")].toArray();
    ASSERT_EQ(inner.size(), 1);
    EXPECT_EQ(inner[0][QStringLiteral("path")].toString(), text(tree.path("folder/large")));
}

TEST(UsageCommand, WhatIsNotGivenOfTheLimitIsTheSettings) {
    TestTree tree;
    tree.sparseFile("large", 5000);
    tree.sparseFile("small", 10);
    TestTree(test::TestEnvironment::current().home())
        .file(".config/com.norvmac.DeskSweeperPro.conf", "DSDiskUsageLimit=5\nDSDiskUsageUnit=9");
    const struct {
        QStringList options;
        int items;
    } rows[] = {
        {{}, 2},
        {{QStringLiteral("--unit"), QStringLiteral("1")}, 1},
        {{QStringLiteral("--unit"), QStringLiteral("2")}, 0},
        {{QStringLiteral("--limit"), QStringLiteral("11")}, 1},
    };
    for (const auto &row : rows) {
        const Ran ran = run(QStringList{QStringLiteral("--json"), QStringLiteral("usage"),
                                        text(tree.top()), QStringLiteral("--list")} +
                            row.options);
        EXPECT_EQ(ran.json()[QStringLiteral("items")].toArray().size(), row.items);
    }
}

TEST(UsageCommand, SaysWhatIsWrong) {
    TestTree tree;
    const QString file = text(tree.file("file"));
    const QString top = text(tree.top());
    const struct {
        QStringList arguments;
        int exit;
    } rows[] = {
        {{}, 2},
        {{top, top}, 2},
        {{top, QStringLiteral("--depth"), QStringLiteral("-1")}, 2},
        {{top, QStringLiteral("--limit"), QStringLiteral("5")}, 2},
        {{top, QStringLiteral("--list"), QStringLiteral("--rings")}, 2},
        {{top, QStringLiteral("--list"), QStringLiteral("--unit"), QStringLiteral("7")}, 2},
        {{top + QStringLiteral("/missing")}, 1},
        {{file}, 1},
        {{QStringLiteral("/proc")}, 1},
        {{QStringLiteral("base64:?")}, 2},
        {{top, QStringLiteral("--remove"), QStringLiteral("base64:?")}, 2},
        {{top, QStringLiteral("--svg"), top}, 1},
        {{top, QStringLiteral("--svg"), QStringLiteral("/dev/null")}, 1},
    };
    for (const auto &row : rows) {
        const Ran ran = run(QStringList{QStringLiteral("usage")} + row.arguments);
        EXPECT_EQ(ran.exit, row.exit) << row.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(ran.err.count('\n'), 1) << ran.err.constData();
        EXPECT_TRUE(ran.out.isEmpty());
    }
}

TEST(UsageCommand, RemovesWhatIsNamedAndNothingElse) {
    TestTree tree;
    for (const char *name : {"top/a/in/file", "top/d/file", "top/stays", "outside"})
        tree.sparseFile(name, 100);
    tree.link("top/link", tree.path("outside"));
    tree.link("way", tree.path("top"));
    const auto before = tree.snapshot();
    const QString top = text(tree.path("top"));
    QStringList arguments{QStringLiteral("--json"), QStringLiteral("usage"), top,
                          QStringLiteral("--remove")};
    for (const char *name : {"top/a", "top/a/in", "way/d", "top/link", "top", "outside", "top/no"})
        arguments.append(text(tree.path(name)));
    const Ran trial = run(arguments);
    EXPECT_EQ(trial.exit, 3);
    EXPECT_EQ(tree.snapshot(), before);
    for (const bool applied : {false, true}) {
        const QJsonObject json =
            (applied ? run(arguments + QStringList{QStringLiteral("--apply")}) : trial).json();
        EXPECT_EQ(json[QStringLiteral("applied")].toBool(), applied);
        EXPECT_EQ(json[QStringLiteral("removed")].toArray().size(), 3);
        EXPECT_EQ(json[QStringLiteral("failed")].toArray().size(), 3);
    }
    EXPECT_TRUE(tree.exists("outside") && tree.exists("top/stays"));
    EXPECT_FALSE(tree.exists("top/a") || tree.exists("top/d") || tree.exists("top/link"));
    const Ran trash =
        run({QStringLiteral("usage"), top, QStringLiteral("--remove"), text(tree.path("top/stays")),
             QStringLiteral("--trash"), QStringLiteral("--apply")});
    EXPECT_EQ(trash.exit, 0) << trash.err.constData();
    EXPECT_FALSE(tree.exists("top/stays"));
    EXPECT_TRUE(
        TestTree(test::TestEnvironment::current().home()).exists(".local/share/Trash/files/stays"));
    EXPECT_EQ(run({QStringLiteral("usage"), top, QStringLiteral("--apply")}).exit, 2);
}

// The program holds the folder that it works in.
TEST(UsageCommand, NamesTheProgramThatUsesWhatGoes) {
    TestTree tree;
    tree.sparseFile("folder/in/file", 100);
    QProcess sleeper;
    sleeper.setWorkingDirectory(text(tree.path("folder/in")));
    sleeper.start(QStringLiteral("sleep"), {QStringLiteral("1000")});
    ASSERT_TRUE(sleeper.waitForStarted());
    const Ran ran = run({QStringLiteral("usage"), text(tree.top()), QStringLiteral("--remove"),
                         text(tree.path("folder"))});
    EXPECT_EQ(ran.exit, 0);
    EXPECT_TRUE(ran.err.contains("folder: in use by sleep\n")) << ran.err.constData();
    sleeper.kill();
    sleeper.waitForFinished();
}

TEST(UsageCommand, SaysWhatItCouldNotRead) {
    TestTree tree;
    tree.sparseFile("closed/file", 100);
    tree.mode("closed", 0);
    std::filesystem::permissions(tree.top().parent_path(), std::filesystem::perms(0711));
    for (const char *mode : {"--rings", "--list"}) {
        const auto ran = test::runProgram({BRIGHTSWEEP_CLI, "usage", tree.top(), mode}, {},
                                          test::RunAs::Unprivileged);
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
    const Ran ran = run({QStringLiteral("usage"), text(tree.path("folder")),
                         QStringLiteral("--svg"), text(picture)});
    ::umask(before);
    EXPECT_EQ(ran.exit, 0) << ran.err.constData();
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
    const QString top = text(tree.top());
    const QString saved = text(tree.path("..")) + QStringLiteral("/saved.json");
    TestTree(tree.top().parent_path())
        .file("saved.json", run({QStringLiteral("--json"), QStringLiteral("usage"), top,
                                 QStringLiteral("--depth"), QStringLiteral("2000")})
                                .out.toStdString());
    tree.sparseFile("bad\xff/more", 30);
    tree.sparseFile("new/file", 40);
    std::filesystem::resize_file(tree.path("less/file"), 10);
    std::filesystem::remove_all(tree.path("gone"));
    const QJsonArray changes = run({QStringLiteral("--json"), QStringLiteral("usage"), top,
                                    QStringLiteral("--compare"), saved})
                                   .json()[QStringLiteral("changes")]
                                   .toArray();
    std::vector<int> differences;
    for (const QJsonValue &change : changes)
        differences.push_back(change[QStringLiteral("difference")].toInt());
    EXPECT_EQ(differences, (std::vector{40, 30, -50, -70, -90}));
    EXPECT_EQ(
        run({QStringLiteral("usage"), text(tree.path("new")), QStringLiteral("--compare"), saved})
            .exit,
        1);
    const std::string above = tree.top().native() + '/';
    const std::string path = R"("path":")" + above + R"(",)";
    const std::string head = R"({"schema":1,"command":"usage",)" + path;
    const std::string end = R"("bytes":5,"children":[]})";
    const auto child = [&](const std::string &where) {
        return head + R"("bytes":5,"children":[{"path":")" + where + R"(",)" + end + "]}";
    };
    for (const std::string &document :
         {head + R"("bytes":"5","children":[]})", head + R"("bytes":1.5,"children":[]})",
          head + R"("bytes":-1,"children":[]})", head + R"("bytes":5})",
          head + R"("interrupted":true,)" + end, head + R"("bytes":5,"children":[{"path":7}]})",
          child(above + "a/b/"), child(std::string(above.size(), 'x') + "a/"),
          head + R"("pathBase64":"?",)" + end, R"({"schema":2,"command":"usage",)" + path + end,
          R"({"schema":1,)" + path + end, R"({"command":"usage",)" + path + end}) {
        TestTree(tree.top().parent_path()).file("saved.json", document);
        const Ran ran = run({QStringLiteral("usage"), top, QStringLiteral("--compare"), saved});
        EXPECT_EQ(ran.exit, 1) << document;
        EXPECT_TRUE(ran.out.isEmpty()) << document;
    }
}

} // namespace
} // namespace brightsweep
