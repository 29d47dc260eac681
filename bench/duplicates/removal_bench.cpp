// Removing duplicates against cmp and rm on the same pairs: `bench_duplicate_removal [FOLDER]`.
// Many small pairs, whose names cost most, and few large ones, whose bytes do. Limit: 1.3 times.

#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/DuplicateRemoval.h"
#include "foundation/Log.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

namespace {

using namespace brightsweep;
namespace fs = std::filesystem;

struct Corpus {
    const char *name;
    int pairs;
    std::size_t size;
};

constexpr Corpus corpora[] = {{"10,000 pairs of 20 KB", 10'000, 20'000},
                              {"8 pairs of 128 MB", 8, 128'000'000}};
constexpr int runs = 3;

void fill(const fs::path &top, const Corpus &corpus) {
    fs::remove_all(top);
    std::mt19937_64 random(1);
    std::string data(corpus.size, '\0');
    for (int pair = 0; pair < corpus.pairs; ++pair) {
        for (std::size_t i = 0; i + 8 <= data.size(); i += 512) {
            const auto value = random();
            data.replace(i, 8, reinterpret_cast<const char *>(&value), 8);
        }
        for (const char *side : {"a", "b"}) {
            const auto folder = top / side / std::to_string(pair % 100);
            fs::create_directories(folder);
            std::ofstream(folder / std::to_string(pair), std::ios::binary) << data;
        }
    }
    ::sync();
}

template <typename Work>
double secondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double removeByEngine(const fs::path &top, int expected) {
    DuplicateFilesOpt search;
    search.beginSearchAtPath(top, 0);
    std::shared_ptr<SimpleTreeNode> tree;
    if (!search.getDuplicateFiles(tree))
        return -1;
    int removed = 0;
    const double seconds = secondsOf([&] {
        DuplicateRemoval removal(*search.searchRoot(), {});
        for (const auto &group : tree->children()) {
            auto members = membersOf(*group);
            for (std::size_t i = 0; i + 1 < members.size(); ++i)
                members[i].goes = true;
            for (std::size_t i = 0; i + 1 < members.size(); ++i)
                removed += removal.act(members, i).done ? 1 : 0;
        }
    });
    return removed == expected ? seconds : -1;
}

double removeByTools(const fs::path &top) {
    const std::string command =
        "cd '" + top.native() +
        "/a' && find . -type f | while read -r f; do cmp -s \"$f\" \"../b/$f\" && rm \"$f\"; done";
    return secondsOf([&] {
        if (std::system(command.c_str()) != 0)
            std::exit(2);
    });
}

} // namespace

int main(int argc, char **argv) {
    const fs::path top = fs::path(argc > 1 ? argv[1] : "/var/tmp") / "bench-duplicate-removal";
    Platform::setCurrent(makeLinuxPlatform());
    if (!std::freopen("/dev/null", "w", stderr))
        return 2;
    bool isGood = true;
    for (const Corpus &corpus : corpora) {
        double own = 0;
        double tools = 0;
        for (int run = 0; run < runs; ++run) {
            fill(top, corpus);
            const double one = removeByEngine(top, corpus.pairs);
            fill(top, corpus);
            const double other = removeByTools(top);
            if (one < 0)
                return 2;
            own = run == 0 ? one : std::min(own, one);
            tools = run == 0 ? other : std::min(tools, other);
        }
        fs::remove_all(top);
        std::printf("%-24s ours %.2f s, cmp and rm %.2f s: %.2f times\n", corpus.name, own, tools,
                    own / tools);
        isGood = isGood && own <= 1.3 * tools;
    }
    return isGood ? 0 : 1;
}
