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

TEST(Paths, RelativeEnvironmentIsIgnored) {
    ::setenv("HOME", "/home/x", 1);
    ::setenv("XDG_DATA_HOME", "relative", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/home/x/.local/share");
    ::setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/home/x/.local/share");
    ::setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(environmentFolder("XDG_DATA_HOME", ".local/share").native(), "/data");
    ::setenv("HOME", "relative", 1);
    EXPECT_TRUE(homeFolder().is_absolute());
}

} // namespace
} // namespace brightsweep
