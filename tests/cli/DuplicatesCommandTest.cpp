#include "support/ChildProcess.h"
#include "support/TestTree.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <filesystem>

namespace brightsweep {
namespace {

test::ChildResult duplicates(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {BRIGHTSWEEP_CLI, "duplicates"});
    return test::runProgram(arguments);
}

TEST(DuplicatesCommand, GroupsWithTheirExactPaths) {
    test::TestTree tree;
    const auto before = std::filesystem::file_time_type::clock::now();
    for (const char *name : {"a.TXT", "d/\xff.TXT"})
        std::filesystem::last_write_time(tree.file(name, "equal"), before);
    tree.file("A.app/m", "bundle");
    tree.file("B.app/m", "bundle");
    const auto snapshot = tree.snapshot();
    const auto result = duplicates({"--json", tree.top(), "--limit", "4", "--unit", "0"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with(R"({"schema":1,"command":"duplicates","path":)"));
    const QJsonObject document =
        QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).object();
    EXPECT_EQ(document[QLatin1String("limitBytes")].toInt(), 4);
    const QJsonArray groups = document[QLatin1String("groups")].toArray();
    ASSERT_EQ(groups.size(), 2);
    const QJsonObject bundle = groups[0].toObject();
    const QJsonObject file = groups[1].toObject();
    EXPECT_EQ(bundle[QLatin1String("kind")].toString(), QStringLiteral("bundle"));
    EXPECT_EQ(bundle[QLatin1String("fileType")].toInt(), 6);
    EXPECT_EQ(file[QLatin1String("kind")].toString(), QStringLiteral("file"));
    EXPECT_EQ(file[QLatin1String("fileType")].toInt(), 1);
    EXPECT_EQ(file[QLatin1String("bytes")].toInt(), 10);
    int exact = 0;
    for (const QJsonValue &item : file[QLatin1String("items")].toArray()) {
        const QString encoded = item[QLatin1String("pathBase64")].toString();
        exact += QByteArray::fromBase64(encoded.toLatin1()).toStdString() ==
                 tree.path("d/\xff.TXT").native();
        EXPECT_TRUE(QDateTime::fromString(item[QLatin1String("modified")].toString(), Qt::ISODate)
                        .isValid());
    }
    EXPECT_EQ(exact, 1);
    EXPECT_EQ(tree.snapshot(), snapshot);
}

TEST(DuplicatesCommand, OptionsAndSettings) {
    test::TestTree tree;
    for (const char *name : {"d/.a", "d/.b"})
        tree.file(name, "equal");
    // The settings leave out what is hidden and what is not above a megabyte.
    EXPECT_EQ(duplicates({tree.top()}).output, "No duplicates.\n");
    EXPECT_EQ(duplicates({tree.top(), "--limit", "0"}).output, "No duplicates.\n");
    const auto shown = duplicates({tree.top(), "--limit", "0", "--hidden"});
    EXPECT_NE(shown.output.find(tree.path("d/.a").native()), std::string::npos);
    // Points on the way are not hidden folders.
    const auto roundabout = tree.path("d/../d/.").native();
    EXPECT_EQ(duplicates({roundabout, "--limit", "0", "--hidden"}).output, shown.output);
    EXPECT_EQ(duplicates({tree.top(), "--limit", "0", "--hidden", "--unit", "4"}).status, 0);
    const std::vector<std::vector<std::string>> wrong = {
        {}, {"/a", "/b"}, {"/a", "--limit", "x"}, {"/a", "--limit", "-1"}, {"/a", "--unit", "5"}};
    for (const auto &arguments : wrong)
        EXPECT_EQ(duplicates(arguments).status, 2);
    EXPECT_EQ(duplicates({tree.path("d/.a")}).status, 1);
    EXPECT_EQ(duplicates({tree.path("missing")}).status, 1);
}

} // namespace
} // namespace brightsweep
