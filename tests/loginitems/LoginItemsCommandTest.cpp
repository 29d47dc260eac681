#include "support/ChildProcess.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sstream>

namespace brightsweep::test {
namespace {

ChildResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {BRIGHTSWEEP_CLI, "--json", "login-items"});
    return runProgram(arguments, {{"XDG_CURRENT_DESKTOP", "GNOME"}});
}

TEST(LoginItemsCommand, ListsAndChangesWhatOneEntryIsMeant) {
    TestTree work;
    TestTree user(TestEnvironment::current().home() / ".config/autostart");
    const std::string document = work.file("a b");
    const std::string kde = "[Desktop Entry]\nType=Application\nExec=/x\nOnlyShowIn=KDE;\n";
    user.file("kde.desktop", kde);
    const struct {
        std::vector<std::string> arguments;
        int status;
    } steps[] = {
        {{"add", work.directory("dir").native() + "/x/../."}, 0},
        {{"remove", work.path("dir")}, 0},
        {{"add", work.fifo("pipe")}, 1},
        {{"add", document}, 0},
        {{"add", document, "--hidden"}, 0},
        {{"add", work.path("none")}, 1},
        {{"add"}, 2},
        {{"add", "base64:?"}, 2},
        {{"remove", "--file", "base64:?"}, 2},
        {{"add", document, "--index", "1"}, 2},
        {{"remove", document, "--hidden"}, 2},
        {{"remove", document}, 2}, // there are two
        {{"hide", "--file", "a b.desktop", "--index", "1"}, 2},
        {{"hide", "--index", "one"}, 2},
        {{"hide", "--index", "3"}, 1},
        {{"hide", "--index", "1"}, 0},
        {{"show", "--file", "a b-2.desktop"}, 0},
        {{"hide", "/x"}, 0},
        {{"remove", "/x"}, 0},
        {{"remove", "--file", "../a b.desktop"}, 1},
    };
    for (const auto &step : steps)
        EXPECT_EQ(run(step.arguments).status, step.status)
            << testing::PrintToString(step.arguments);
    EXPECT_FALSE(user.exists("kde.desktop"));
    user.file("kde.desktop", kde);
    const std::string listed = run({}).output;
    EXPECT_EQ(listed.find("{\"schema\":1,\"command\":\"login-items\",\"items\":["), 0u);
    const auto items = QJsonDocument::fromJson(QByteArray::fromStdString(listed))
                           .object()[QStringLiteral("items")]
                           .toArray();
    ASSERT_EQ(items.size(), 3);
    const auto of = [&](int index, const char *key) -> QJsonValue {
        return items[index].toObject()[QLatin1String(key)];
    };
    EXPECT_EQ(of(0, "file").toString(), QStringLiteral("kde.desktop"));
    EXPECT_EQ(of(0, "applies").toBool(true), false);
    EXPECT_EQ(of(0, "missing").toBool(false), true);
    EXPECT_EQ(of(1, "path").toString().toStdString(), document);
    EXPECT_TRUE(of(1, "hidden").toBool(false));
    EXPECT_FALSE(of(2, "hidden").toBool(true));
    EXPECT_EQ(of(2, "index").toInt(-1), 2);
    EXPECT_TRUE(of(2, "url").toString().endsWith(QStringLiteral("/a%20b")));
    // What cannot be read goes by its file, and a long name does not push the others away.
    user.link("gone.desktop", "nowhere");
    user.file("long.desktop", "[Desktop Entry]\nName=" + std::string(500, 'n') + "\n");
    EXPECT_NE(run({"show", "--file", "kde.desktop"}).errors.find("other desktops"),
              std::string::npos);
    const auto table = runProgram({BRIGHTSWEEP_CLI, "login-items"}).output;
    EXPECT_NE(run({}).output.find("\"name\":\"gone.desktop\""), std::string::npos);
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LT(line.size(), 200u) << line;
}

} // namespace
} // namespace brightsweep::test
