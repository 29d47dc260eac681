#include "support/ChildProcess.h"
#include "support/TestTree.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>

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

// A document that is put out in parts is the same as one put out at once.
TEST(DuplicatesCommand, LongDocumentsComeWhole) {
    struct Case {
        const char *suffix;
        std::int64_t time;
        const char *shown;
    };
    const Case cases[] = {
        {"plain", 951'868'799, "2000-02-29T23:59:59Z"},
        {"\"\\\n\x7f\x01", -1, "1969-12-31T23:59:59Z"},
        {"\u00e4\u00f6\u00fc", 4'102'444'800, "2100-01-01T00:00:00Z"},
    };
    test::TestTree tree;
    constexpr int groupCount = 300;
    for (int i = 0; i < groupCount; ++i) {
        const Case &each = cases[std::size_t(i) % std::size(cases)];
        for (const char *folder : {"a/", "b/"}) {
            const auto path =
                tree.file(folder + std::string(80, 'x') + std::to_string(i) + each.suffix,
                          "content " + std::to_string(i));
            const timespec times[] = {{each.time, 0}, {each.time, 0}};
            ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        }
    }
    const auto result = duplicates({"--json", tree.top(), "--limit", "0"});
    EXPECT_EQ(result.status, 0);
    const QJsonArray groups = QJsonDocument::fromJson(QByteArray::fromStdString(result.output))
                                  .object()[QLatin1String("groups")]
                                  .toArray();
    std::map<std::string, std::string> modified;
    for (const QJsonValue &group : groups) {
        for (const QJsonValue &item : group[QLatin1String("items")].toArray())
            modified[item[QLatin1String("path")].toString().toStdString()] =
                item[QLatin1String("modified")].toString().toStdString();
    }
    std::map<std::string, std::string> expected;
    for (int i = 0; i < groupCount; ++i) {
        const Case &each = cases[std::size_t(i) % std::size(cases)];
        for (const char *folder : {"a/", "b/"})
            expected[tree.path(folder + std::string(80, 'x') + std::to_string(i) + each.suffix)] =
                each.shown;
    }
    EXPECT_EQ(groups.size(), groupCount);
    EXPECT_EQ(modified, expected);
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
