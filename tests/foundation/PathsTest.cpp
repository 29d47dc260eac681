#include "foundation/Paths.h"

#include "foundation/Identity.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace brightsweep {
namespace {

TEST(Paths, TakesApart) {
    const struct {
        const char *path;
        const char *last;
        const char *parent;
        const char *extension;
    } rows[] = {
        {"/", "/", "/", ""},
        {"/a", "a", "/", ""},
        {"/a/b.txt", "b.txt", "/a", "txt"},
        {"/a/b.tar.gz//", "b.tar.gz", "/a", "gz"},
        {"/a.d/b", "b", "/a.d", ""},
        {"/a/.hidden", ".hidden", "/a", ""},
        {"/a/.hidden.x", ".hidden.x", "/a", "x"},
        {"/a/end.", "end.", "/a", ""},
        {"/a//b", "b", "/a", ""},
        {"name", "name", "", ""},
        {"", "", "", ""},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(paths::lastComponent(row.path), row.last) << row.path;
        EXPECT_EQ(paths::parent(row.path).native(), row.parent) << row.path;
        EXPECT_EQ(paths::extension(row.path), row.extension) << row.path;
    }
}

TEST(Paths, JoinsWithoutReplacing) {
    EXPECT_EQ(paths::join("/a", "b").native(), "/a/b");
    EXPECT_EQ(paths::join("/a/", "b").native(), "/a/b");
    EXPECT_EQ(paths::join("/", "b").native(), "/b");
    EXPECT_EQ(paths::join("/a", "/b").native(), "/a//b");
    EXPECT_EQ(paths::join("", "b").native(), "b");
}

TEST(Paths, ComparesByComponents) {
    const struct {
        const char *path;
        const char *ancestor;
        bool below;
    } rows[] = {
        {"/a/b", "/a", true}, {"/a", "/a", true},    {"/a/b", "/a/", true},
        {"/ab", "/a", false}, {"/a", "/a/b", false}, {"/a", "/", true},
        {"/", "/", true},     {"a", "/", false},     {"/a/bc", "/a/b", false},
    };
    for (const auto &row : rows)
        EXPECT_EQ(paths::isSameOrBelow(row.path, row.ancestor), row.below)
            << row.path << " " << row.ancestor;
}

TEST(Paths, BytesSurviveOptionsAndNotifications) {
    const std::string hostile = "/a\n\xff\x01\"\\\xc3\xa4";
    const auto encoded = QByteArray::fromStdString(hostile).toBase64().toStdString();
    EXPECT_EQ(paths::fromVariant(paths::toVariant(hostile)).native(), hostile);
    EXPECT_EQ(paths::fromOption("base64:" + encoded).native(), hostile);
    EXPECT_EQ(paths::fromOption(hostile).native(), hostile);
    EXPECT_TRUE(paths::fromOption("base64:!!").empty());
    EXPECT_TRUE(paths::fromOption("base64:YQBi").empty()); // holds a NUL
    EXPECT_EQ(paths::display(std::string_view("a\xff\xc3\xa4")), QStringLiteral("a\ufffd\u00e4"));
    EXPECT_FALSE(paths::isValidUtf8(hostile));
    EXPECT_TRUE(paths::isValidUtf8("\xc3\xa4\xf0\x9f\x98\x80"));
    EXPECT_FALSE(paths::isValidUtf8("\xed\xa0\x80")); // half a surrogate pair
}

TEST(Paths, NoNameBreaksOrTurnsItsLine) {
    const struct {
        const char *bytes;
        const char16_t *shown;
    } rows[] = {
        {"plain \\ name", u"plain \\ name"},
        {"photo\xe2\x80\xaegpj.exe", u"photo\\u202egpj.exe"},
        {"\xe2\x81\xa6\xe2\x81\xa9 \xe2\x80\x8f\xd8\x9c", u"\\u2066\\u2069 \\u200f\\u061c"},
        {"two\nlines\r\x1b[2J\x7f", u"two\\nlines\\x0d\\x1b[2J\\x7f"},
        {"\xc2\x9b"
         "2J\xe2\x80\xa8",
         u"\\u009b2J\\u2028"},
        {"\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d.txt", u"\u05e9\u05dc\u05d5\u05dd.txt"},
        {"\xd9\x85\xe2\x80\x8c\xd9\x85", u"\u0645\u200c\u0645"}, // joins letters only
        {"\xf0\x9f\x98\x80\xff\xc2\xa0", u"\U0001f600\ufffd\u00a0"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(paths::display(std::string_view(row.bytes)), QString::fromUtf16(row.shown))
            << row.bytes;
        EXPECT_EQ(paths::text(row.bytes), QString::fromUtf8(row.bytes));
    }
}

TEST(Paths, RelativeEnvironmentIsIgnored) {
    ::setenv("HOME", "/home/x", 1);
    ::setenv("XDG_DATA_HOME", "relative", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/home/x/.local/share");
    ::setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/home/x/.local/share");
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/data");
    EXPECT_EQ(paths::displayFromHome("/home/x/a"), QStringLiteral("~/a"));
    EXPECT_EQ(paths::displayFromHome("/home/xy/a"), QStringLiteral("/home/xy/a"));
    ::setenv("HOME", "relative", 1);
    EXPECT_TRUE(homeFolder().is_absolute());
}

} // namespace
} // namespace brightsweep
