#include "core/DateText.h"
#include "core/ParseFileLog.h"
#include "foundation/SmallFile.h"

#include <gtest/gtest.h>

#include <limits>

namespace brightsweep {
namespace {

TEST(History, ParsesWhatIsThere) {
    const struct {
        const char *text;
        const char *name;
        std::int64_t size;
        const char *date; // null: as before, "": invalid
    } rows[] = {
        {"logName=A&&date=2011-03-15 10:22:33 +0800&&iSize=5&&extra=1", "A", 5,
         "2011-03-15 10:22:33 +0800"},
        {"iSize=5&&iSize=7", "", 7, nullptr},
        {"iSize=12abc", "", 12, nullptr},
        {"iSize=-3", "", -3, nullptr},
        {"iSize=7\n", "", 7, nullptr},
        {"iSize=x", "", 0, nullptr},
        {"iSize=18446744073709551615", "", std::numeric_limits<std::int64_t>::max(), nullptr},
        {"logName=a=b&&iSize=1", "", 1, nullptr},
        {"logName=a&&b&&iSize=1", "a", 1, nullptr},
        {"ISIZE=4&&logname=x", "", 0, nullptr},
        {"date=yesterday", "", 0, ""},
        {"date=2011-02-30 10:00:00 +0000", "", 0, ""},
        {"date=2011-03-15 10:22:33 -0330", "", 0, "2011-03-15 10:22:33 -0330"},
        {"", "", 0, nullptr},
        {"&&&&==&&=", "", 0, nullptr},
    };
    for (const auto &row : rows) {
        FileLog item;
        const QDateTime before = item.date;
        ParseFileLog().parseStringToLog(QString::fromLatin1(row.text), item);
        EXPECT_EQ(item.logName.toStdString(), row.name) << row.text;
        EXPECT_EQ(item.iSize, row.size) << row.text;
        if (row.date)
            EXPECT_EQ(dateText(item.date).toStdString(), row.date) << row.text;
        else
            EXPECT_EQ(item.date, before) << row.text;
    }
}

TEST(History, WritesAndReadsBack) {
    ParseFileLog history;
    ASSERT_TRUE(
        history.setSize(1'048'576, dateFromText(QStringLiteral("2011-03-15 10:22:33 +0800"))));
    const auto path = history.getLogFilePath();
    EXPECT_EQ(*readSmallFile(path), "logName=SIZE&&date=2011-03-15 10:22:33 +0800&&iSize=1048576");
    ASSERT_TRUE(history.setSize(2, QDateTime::currentDateTime()));
    EXPECT_EQ(history.getSize(nullptr), 2);
}

TEST(History, MissingRecordIsNowAndNothing) {
    ParseFileLog history;
    const QDateTime before = QDateTime::currentDateTime();
    QDateTime date;
    EXPECT_EQ(history.getSize(&date), 0);
    EXPECT_GE(date, before);
    EXPECT_LE(date, QDateTime::currentDateTime());
    const auto path = history.getLogFilePath();
    EXPECT_FALSE(std::filesystem::exists(path)); // reading makes the folder only
    EXPECT_TRUE(std::filesystem::is_directory(path.parent_path()));
}

TEST(History, UnreadableRecordLeavesTheItem) {
    ParseFileLog history;
    const auto path = history.getLogFilePath();
    for (const char *contents : {"iSize=5&&logName=\xff", ""}) {
        ASSERT_FALSE(writeSmallFile(path, contents));
        FileLog item;
        history.readFileLog(QString(), item);
        EXPECT_EQ(item.iSize, 0);
        EXPECT_EQ(item.logName, QString());
        EXPECT_TRUE(item.date.isValid());
    }
    std::filesystem::remove(path);
    std::filesystem::create_directories(path / "in the way");
    EXPECT_FALSE(history.setSize(1, QDateTime::currentDateTime()));
    EXPECT_EQ(history.getSize(nullptr), 0);
}

} // namespace
} // namespace brightsweep
