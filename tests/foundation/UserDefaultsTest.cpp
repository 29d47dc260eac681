#include "foundation/UserDefaults.h"

#include "foundation/SmallFile.h"
#include "support/ChildProcess.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

namespace brightsweep {
namespace {

const QString key = QStringLiteral("Key");

QString text(const char *latin1) {
    return QString::fromLatin1(latin1);
}

TEST(UserDefaults, UsersValueStandsAboveTheLastRegistration) {
    test::TestTree tree;
    UserDefaults defaults(tree.path("settings"));
    EXPECT_FALSE(defaults.objectForKey(key).isValid());
    EXPECT_EQ(defaults.integerForKey(key), 0);
    defaults.registerDefaults({{key, true}});
    defaults.registerDefaults({{key, false}, {text("Other"), 7}});
    EXPECT_FALSE(defaults.boolForKey(key));
    defaults.setObject(key, 5);
    defaults.registerDefaults({{key, 9}});
    EXPECT_EQ(defaults.integerForKey(key), 5);
    EXPECT_TRUE(defaults.hasUserValue(key));
    EXPECT_FALSE(defaults.hasUserValue(text("Other")));
    defaults.removeObject(key);
    EXPECT_EQ(defaults.integerForKey(key), 9);
    defaults.setObject(key, 6);
    defaults.setObject(key, QVariant());
    EXPECT_EQ(defaults.integerForKey(key), 9);
    EXPECT_EQ(UserDefaults(tree.path("settings")).objectForKey(key), QVariant());
}

TEST(UserDefaults, ReadsEveryTypeAsEveryOther) {
    const struct {
        QVariant stored;
        std::int64_t integer;
        float real;
        bool truth;
        const char *string;
    } rows[] = {
        {text("YES"), 0, 0, true, "YES"},
        {text("no"), 0, 0, false, "no"},
        {text("true"), 0, 0, true, "true"},
        {text("12"), 12, 12, true, "12"},
        {text(" -12abc"), -12, -12, true, " -12abc"},
        {text("000"), 0, 0, false, "000"},
        {text("0.25"), 0, 0.25f, false, "0.25"},
        {text("+1e2"), 1, 100, true, "+1e2"},
        {text("99999999999999999999"), INT64_MAX, 1e20f, true, "99999999999999999999"},
        {text("inf"), 0, 0, false, "inf"},
        {text(""), 0, 0, false, ""},
        {true, 1, 1, true, "1"},
        {false, 0, 0, false, "0"},
        {-3, -3, -3, true, "-3"},
        {0.1f, 0, 0.1f, true, "0.100000001"},
        {2.9, 2, 2.9f, true, "2.8999999999999999"},
    };
    test::TestTree tree;
    for (const auto &row : rows) {
        const auto check = [&](const UserDefaults &defaults) {
            const std::string name = row.stored.toString().toStdString();
            EXPECT_EQ(defaults.integerForKey(key), row.integer) << name;
            EXPECT_EQ(defaults.floatForKey(key), row.real) << name;
            EXPECT_EQ(defaults.stringForKey(key).toStdString(), row.string) << name;
        };
        UserDefaults registered(tree.path("unused"));
        registered.registerDefaults({{key, row.stored}});
        check(registered);
        EXPECT_EQ(registered.boolForKey(key), row.truth);
        // Once written, it reads back the same from the file.
        UserDefaults(tree.path("settings")).setObject(key, row.stored);
        check(UserDefaults(tree.path("settings")));
    }
}

TEST(UserDefaults, AnyTextSurvivesTheFile) {
    test::TestTree tree;
    const QString hostile = QStringLiteral("a=b\\n\n\r\\\t\u00e4\U0001f600") + QChar(0);
    UserDefaults(tree.path("settings")).setObject(hostile, hostile);
    EXPECT_EQ(UserDefaults(tree.path("settings")).stringForKey(hostile), hostile);
}

TEST(UserDefaults, DamagedFileGivesItsIntactLinesAndStaysAsItIs) {
    test::TestTree tree;
    const struct {
        std::string_view file;
        QList<QString> keys;
        const char *problem;
    } rows[] = {
        {"", {}, ""},
        {"a=1\nb=2\n", {text("a"), text("b")}, ""},
        {"a=1\nb=2", {text("a"), text("b")}, ""},
        {"a=1\na=2\n\n", {text("a")}, ""},
        {"a=1\nb", {text("a")}, "Line 2 is damaged"},
        {"a=1\n=2\nno\n\nc=3\n", {text("a"), text("c")}, "Line 2 is damaged"},
        {"a=1\nb=\\x\nc\\=1\nd=\xff\xfe\ne=5\n", {text("a"), text("e")}, "Line 2 is damaged"},
        {std::string_view("a=1\0\nb=2\n", 9), {text("b")}, "Line 1 is damaged"},
    };
    for (const auto &row : rows) {
        UserDefaults defaults(tree.file("settings", row.file));
        EXPECT_EQ(UserDefaults::parse(row.file).keys(), row.keys) << row.file;
        EXPECT_EQ(defaults.readProblem(), row.problem);
        defaults.setObject(text("z"), 1);
        EXPECT_EQ(defaults.problem(), row.problem);
        const std::string now = *readSmallFile(defaults.file());
        if (*row.problem)
            EXPECT_EQ(now, row.file);
        else
            EXPECT_EQ(UserDefaults::parse(now).size(), row.keys.size() + 1);
    }
}

TEST(UserDefaults, WhatIsThereButCannotBeReadIsNeverWrittenOver) {
    test::TestTree tree;
    tree.link("away", "missing");
    const std::filesystem::path files[] = {
        tree.directory("folder"),
        tree.fifo("fifo"),
        tree.file("long", "a=1\n" + std::string(smallFileLimit, 'x')),
        tree.link("severed", tree.path("missing")),
        tree.path("away/below"),
        tree.link("device", "/dev/null"),
        tree.path("folder/settings/below-a-file"),
    };
    tree.file("folder/settings");
    const auto before = tree.snapshot();
    for (const auto &file : files) {
        UserDefaults defaults(file);
        EXPECT_NE(defaults.readProblem(), "") << file;
        defaults.setObject(key, 1);
        EXPECT_FALSE(defaults.synchronize()) << file;
        EXPECT_EQ(defaults.integerForKey(key), 1);
    }
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    // What could not be written back then is, once the file is sound, and no more than that.
    UserDefaults defaults(tree.file("settings", "damaged"));
    defaults.setObject(key, 1);
    tree.file("settings", "a=1");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(*readSmallFile(defaults.file()), "Key=1\na=1\n");
    EXPECT_EQ(defaults.readProblem() + defaults.problem(), "");
    // Nor is one made that could not be read again.
    const QString tooLong(qsizetype(smallFileLimit), u'x');
    EXPECT_FALSE(defaults.change(key, tooLong) || defaults.change(text("b"), tooLong));
    EXPECT_TRUE(defaults.integerForKey(key) == 1 && !defaults.hasUserValue(text("b")));
    EXPECT_TRUE(defaults.synchronize() && !defaults.problem().empty()) << "until it is written";
    defaults.lookAgain();
    EXPECT_TRUE(defaults.problem().empty() && defaults.change(key, 2));
    defaults.setObject(key, tooLong);
    defaults.lookAgain();
    EXPECT_FALSE(defaults.problem().empty() || defaults.synchronize());
    EXPECT_EQ(*readSmallFile(defaults.file()), "Key=2\na=1\n");
}

TEST(UserDefaults, TwoProcessesLoseNoKey) {
    constexpr int each = 500;
    test::TestTree tree;
    const auto file = tree.path("config/settings");
    const auto write = [&](const char *who) {
        return test::runInChild([&] {
            UserDefaults defaults(file);
            for (int i = 0; i < each; ++i)
                defaults.setObject(text(who) + QString::number(i), i);
            // On a busy machine the lock may take longer than one call waits.
            return test::eventually([&] { return defaults.synchronize(); }) ? 0 : 1;
        });
    };
    int statuses[2] = {-1, -1};
    std::thread other([&] { statuses[0] = write("a"); });
    statuses[1] = write("b");
    other.join();
    EXPECT_EQ(statuses[0], 0);
    EXPECT_EQ(statuses[1], 0);
    const UserDefaults defaults(file);
    for (int i = 0; i < each; ++i) {
        ASSERT_EQ(defaults.objectForKey(text("a") + QString::number(i)), QString::number(i));
        ASSERT_EQ(defaults.objectForKey(text("b") + QString::number(i)), QString::number(i));
    }
}

} // namespace
} // namespace brightsweep
