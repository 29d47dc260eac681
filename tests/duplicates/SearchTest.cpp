#include "duplicates/ReferenceSearch.h"
#include "duplicates/SearchSupport.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <random>

namespace brightsweep::test {
namespace {

// Many sizes, heads and tails alike, bundles nested and rearranged, links, hidden names, hard
// links and hostile names.
void buildRandomTree(TestTree &tree, unsigned seed) {
    std::mt19937 random(seed);
    const auto pick = [&](unsigned count) { return unsigned(random() % count); };
    const std::size_t sizes[] = {0, 1, 7, 1023, 1024, 1025, 4096, 16'383, 16'384, 16'385, 300'000};
    std::vector<std::string> folders = {""};
    for (unsigned i = 0; i < 14; ++i) {
        const char *names[] = {"d", "B.app", "x.APP", ".h", "\xff\n", "e"};
        const unsigned name = pick(6);
        folders.push_back(folders[pick(unsigned(folders.size()))] + names[name] +
                          std::to_string(pick(3)) + (name == 1 || name == 2 ? ".app/" : "/"));
        tree.directory(folders.back());
    }
    std::vector<std::string> files;
    for (unsigned i = 0; i < 90; ++i) {
        const std::string name = folders[pick(unsigned(folders.size()))] + "f" + std::to_string(i) +
                                 (pick(20) == 0 ? ".app"
                                  : pick(2)     ? ".txt"
                                                : "");
        if (!files.empty() && pick(12) == 0) {
            tree.hardLink(name, tree.path(files[pick(unsigned(files.size()))]));
        } else if (!files.empty() && pick(15) == 0) {
            tree.link(name, tree.path(files[pick(unsigned(files.size()))]));
        } else {
            std::string contents = bytes(sizes[pick(11)], pick(2));
            // Another byte at a place where one stage or the other has to see it.
            const std::size_t places[] = {0, 1000, 1024, 20'000, contents.size() - 1};
            const std::size_t place = places[pick(5)];
            if (pick(3) == 0 && place < contents.size())
                contents[place] = char(contents[place] ^ 1);
            tree.file(name, contents);
            files.push_back(name);
        }
    }
}

class RandomTrees : public testing::TestWithParam<unsigned> {};

TEST_P(RandomTrees, GiveWhatThePlainDefinitionGives) {
    TestTree tree;
    buildRandomTree(tree, GetParam());
    const auto before = tree.snapshot();
    for (const bool hidden : {true, false}) {
        for (const std::uint64_t limit : {0u, 1023u, 4096u}) {
            ReferenceSearch reference;
            reference.hidden = hidden;
            reference.limit = limit;
            reference.run(tree.top());
            for (const unsigned threads : {1u, 2u, 5u})
                EXPECT_EQ(
                    search(tree.top(), {.limit = limit, .hidden = hidden, .threads = threads}),
                    reference.groups)
                    << hidden << " " << limit << " " << threads;
        }
    }
    EXPECT_EQ(tree.snapshot(), before);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTrees, testing::Range(0u, 12u));

} // namespace
} // namespace brightsweep::test
