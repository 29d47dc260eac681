// Builds a tree of directories and small sparse files below a new folder, the same one for the same
// seed: `bench_make_tree DIR DIRECTORIES FILES SEED`.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr unsigned maximumDepth = 14;
constexpr unsigned largestSizeBits = 22; // below 4 MiB

struct Made {
    std::string path;
    unsigned depth;
};

bool parse(const char *text, std::uint64_t &value) {
    const char *end = text + std::strlen(text);
    return std::from_chars(text, end, value).ptr == end;
}

std::string name(std::mt19937_64 &random, const char *kind, std::uint64_t number) {
    static constexpr const char *stems[] = {"photo", "report", "cache",  "lib",
                                            "index", "object", "module", "thumbnail"};
    return std::string(stems[random() % std::size(stems)]) + "-" + std::to_string(number) + kind;
}

bool makeSparseFile(const std::string &path, std::uint64_t size) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (descriptor < 0)
        return false;
    const bool sized = ::ftruncate(descriptor, off_t(size)) == 0;
    return ::close(descriptor) == 0 && sized;
}

} // namespace

int main(int argc, char **argv) {
    std::uint64_t directories = 0;
    std::uint64_t files = 0;
    std::uint64_t seed = 0;
    if (argc != 5 || !parse(argv[2], directories) || !parse(argv[3], files) ||
        !parse(argv[4], seed)) {
        std::fprintf(stderr, "usage: %s DIR DIRECTORIES FILES SEED\n", argv[0]);
        return 2;
    }
    if (::mkdir(argv[1], 0755) != 0) {
        std::perror(argv[1]);
        return 1;
    }
    // The generator alone, not the library's distributions, which differ from one to the next.
    std::mt19937_64 random(seed);
    std::vector<Made> made{{argv[1], 0}};
    while (made.size() < directories) {
        const Made &parent = made[random() % made.size()];
        if (parent.depth >= maximumDepth)
            continue;
        Made child{parent.path + "/" + name(random, "", made.size()), parent.depth + 1};
        if (::mkdir(child.path.c_str(), 0755) != 0) {
            std::perror(child.path.c_str());
            return 1;
        }
        made.push_back(std::move(child));
    }
    // Files of one directory are made together, as programs do.
    std::vector<std::uint32_t> filesOf(made.size());
    for (std::uint64_t i = 0; i < files; ++i)
        ++filesOf[random() % filesOf.size()];
    for (std::size_t directory = 0; directory < made.size(); ++directory) {
        for (std::uint32_t i = 0; i < filesOf[directory]; ++i) {
            const std::string path = made[directory].path + "/" + name(random, ".dat", i);
            const std::uint64_t limit = std::uint64_t(1) << (random() % largestSizeBits + 1);
            if (!makeSparseFile(path, random() % limit)) {
                std::perror(path.c_str());
                return 1;
            }
        }
    }
    return 0;
}
