#include "duplicates/FileFacts.h"

#include "support/TestTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brightsweep {
namespace {

TEST(PathDifference, IsWhatLiesBetweenACommonFolderAndACommonEnd) {
    struct Case {
        std::vector<std::string> paths;
        std::string common;
        std::vector<std::string> shown; // what differs in brackets
    };
    const Case cases[] = {
        {{"/a/x/n", "/a/y/n"}, "/a/", {"[x]/n", "[y]/n"}},
        {{"/a/n", "/a/b/c/n", "/a/b/n"}, "/a/", {"[]n", "[b/c]/n", "[b]/n"}},
        {{"/a/n", "/a/m"}, "/a/", {"[n]", "[m]"}},
        {{"/a/bc/n", "/a/b/n"}, "/a/", {"[bc]/n", "[b]/n"}},
        {{"/x/a/a", "/x/a/a/a"}, "/x/a/", {"[]a", "[a]/a"}},
        {{"/n", "/m/n"}, "/", {"[]n", "[m]/n"}},
        {{"/a/n"}, "/a/", {"[]n"}},
    };
    for (const Case &each : cases) {
        const auto difference = differenceOf(each.paths);
        std::vector<std::string> shown;
        for (const auto &path : difference.paths)
            shown.push_back("[" + path.differs + "]" + path.tail);
        EXPECT_EQ(difference.common, each.common);
        EXPECT_EQ(shown, each.shown);
    }
}

TEST(FileFacts, TellNamesAndTheFirstLinesOfATextAlone) {
    test::TestTree tree;
    const auto text =
        tree.file("text", "one\r\n\ttwo\n\xc3\xa4" + std::string(9'000, 'x') + "\xc3");
    tree.hardLink("other", text);
    const auto facts = factsOf(text);
    EXPECT_TRUE(facts.isFile);
    EXPECT_EQ(facts.links, 2u);
    ASSERT_EQ(facts.lines.size(), 3u);
    EXPECT_EQ(facts.lines[1], "    two");
    EXPECT_TRUE(factsOf(tree.file("binary", std::string("a\0b", 3))).lines.empty());
    EXPECT_TRUE(factsOf(tree.file("\xff/\xfe.dat", "x")).isFile);
    EXPECT_FALSE(factsOf(tree.link("link", text)).isFile);
    EXPECT_FALSE(factsOf(tree.path("missing")).isFile);
}

} // namespace
} // namespace brightsweep
