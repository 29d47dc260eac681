// Trees of duplicates are searched, changed in every way at random, and then removed from, again
// and again. Whatever happens in between, no contents are ever lost by a removal.

#include "duplicates/DuplicateError.h"
#include "duplicates/SearchSupport.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <set>

namespace brightsweep::test {
namespace {

namespace fs = std::filesystem;
using Act = DuplicateRemoval::Act;

constexpr int directories = 4;
constexpr std::size_t contentsSize = 1'200;

int rounds() {
    const char *wanted = std::getenv("BRIGHTSWEEP_SCRIPT");
    return wanted ? std::atoi(wanted) : 200;
}

class Script {
public:
    explicit Script(unsigned seed) : m_random(seed) {
        for (int folder = 0; folder < directories; ++folder)
            m_tree.directory("d" + std::to_string(folder));
        const int groups = 1 + pick(3);
        for (int group = 0; group < groups; ++group)
            build(group);
    }
    ~Script() { removeTree(m_tree.top()); }

    void run() {
        Searched found = searchFor(m_tree.top());
        DuplicateRemoval::Options options;
        options.act = pick(4) == 0 ? Act::Trash : Act::Remove;
        DuplicateRemoval removal(found.root, options);
        for (auto &group : found.groups) {
            // Seldom all of them: that is what a page lets through and the engine does not.
            const std::size_t staying =
                pick(10) == 0 ? group.size() : std::size_t(pick(int(group.size())));
            for (std::size_t i = 0; i < group.size(); ++i)
                group[i].goes = i != staying && pick(5) != 0;
        }
        for (int changes = pick(3); changes > 0; --changes)
            interfere(found);
        for (auto &group : found.groups) {
            for (std::size_t i = 0; i < group.size(); ++i) {
                if (!group[i].goes)
                    continue;
                if (pick(4) == 0)
                    interfere(found);
                const auto before = state();
                const auto outcome = removal.act(group, i);
                const auto after = state();
                expectOnlyThatWent(before, after, group[i].path, outcome);
                removed += outcome.done ? 1 : 0;
                stayed += outcome.done ? 0 : 1;
            }
        }
    }

    int removed = 0;
    int stayed = 0;

private:
    using State = std::map<std::string, std::string>; // contents by path, of files alone

    int pick(int below) { return int(m_random() % unsigned(below)); }
    std::string place() { return "d" + std::to_string(pick(directories)) + "/"; }
    std::string freshName() { return place() + "n" + std::to_string(m_names++); }

    void build(int group) {
        const std::string contents = bytes(contentsSize, unsigned(m_random()));
        std::string first;
        for (int member = 2 + pick(3); member > 0; --member) {
            const std::string name = freshName();
            if (pick(12) == 0)
                m_tree.file(name, forgedTwin(contents));
            else if (!first.empty() && pick(5) == 0)
                m_tree.hardLink(name, m_tree.path(first));
            else
                m_tree.file(first = name, contents);
        }
        if (pick(4) == 0) {
            for (const char *bundle : {"One.app", "Two.app"}) {
                const std::string top = place() + std::to_string(group) + bundle;
                m_tree.file(top + "/bin", contents + "!");
                m_tree.file(top + "/deep/other", contents + "?");
            }
        }
    }

    State state() const {
        State now;
        std::error_code error;
        for (fs::recursive_directory_iterator i(m_tree.top(), error), end; i != end;
             i.increment(error)) {
            if (!i->is_regular_file(error) || i->is_symlink(error))
                continue;
            now[i->path()] = textOf(i->path());
        }
        return now;
    }

    static void expectOnlyThatWent(const State &before, const State &after, const fs::path &path,
                                   const DuplicateRemoval::Outcome &outcome) {
        std::set<std::string> kept;
        for (const auto &[name, contents] : after)
            kept.insert(contents);
        for (const auto &[name, contents] : before) {
            EXPECT_TRUE(kept.contains(contents)) << "the last of " << name << " has gone";
            const bool isItem = name == path || name.starts_with(path.native() + "/");
            const auto now = after.find(name);
            const bool isThere = now != after.end() && now->second == contents;
            EXPECT_EQ(isThere, !isItem || !outcome.done)
                << name << " with " << path << ": " << outcome.error.message();
        }
    }

    void interfere(const Searched &found) {
        if (found.groups.empty())
            return;
        const auto &group = found.groups[std::size_t(pick(int(found.groups.size())))];
        const fs::path one = group[std::size_t(pick(int(group.size())))].path;
        const fs::path other = group[std::size_t(pick(int(group.size())))].path;
        std::error_code ignored;
        switch (pick(9)) {
        case 0:
            fs::remove_all(one, ignored);
            break;
        case 1:
            if (one != other) {
                fs::remove_all(one, ignored);
                fs::create_symlink(other, one, ignored);
            }
            break;
        case 2:
            if (one != other && fs::is_regular_file(other, ignored)) {
                fs::remove_all(one, ignored);
                fs::create_hard_link(other, one, ignored);
            }
            break;
        case 3:
            change(one);
            break;
        case 4: {
            // A folder becomes a link to another.
            const auto folder = m_tree.path("d" + std::to_string(pick(directories)));
            if (!fs::is_symlink(folder, ignored)) {
                fs::rename(folder, m_tree.path("moved" + std::to_string(m_names++)), ignored);
                fs::create_symlink("d" + std::to_string(pick(directories)), folder, ignored);
            }
            break;
        }
        case 5:
            if (fs::is_regular_file(one, ignored)) {
                fs::remove(one, ignored);
                fs::create_directory(one, ignored);
                std::ofstream(one / "file") << one.native();
            }
            break;
        case 6:
            m_writers.emplace_back(::open(one.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
            break;
        case 7:
            if (one != other) {
                fs::remove_all(one, ignored);
                fs::copy(other, one, fs::copy_options::recursive, ignored);
            }
            break;
        case 8:
            m_writers.clear();
            fs::rename(one, one.native() + "-renamed", ignored);
            break;
        }
    }

    // A byte, with size and times put back.
    static void change(const fs::path &path) {
        struct stat status {};
        const FileDescriptor file(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
        if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
            return;
        EXPECT_EQ(::pwrite(file.get(), "\1", 1, status.st_size / 2), 1);
        const timespec times[] = {status.st_atim, status.st_mtim};
        EXPECT_EQ(::futimens(file.get(), times), 0);
    }

    std::mt19937 m_random;
    TestTree m_tree{TestEnvironment::current().work() / "tree"};
    std::vector<FileDescriptor> m_writers;
    int m_names = 0;
};

TEST(DuplicateScript, LosesNoContents) {
    const unsigned seed = std::random_device{}();
    int removed = 0;
    int stayed = 0;
    for (int round = 0; round < rounds() && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed + unsigned(round)));
        Script script(seed + unsigned(round));
        script.run();
        removed += script.removed;
        stayed += script.stayed;
    }
    // It would prove nothing if little went, or if nothing had to stay.
    EXPECT_GT(removed, rounds() / 2);
    EXPECT_GT(stayed, rounds() / 5);
    RecordProperty("removed", removed);
    RecordProperty("stayed", stayed);
}

// Whenever a removal is killed, each group has a file, and what stays is what it was.
TEST(KilledDuplicates, LeavesAFileOfEachGroup) {
    constexpr int kills = 40;
    constexpr int groups = 60;
    std::mt19937 random(std::random_device{}());
    int inTheMidst = 0;
    for (int round = 0; round < kills; ++round) {
        TestTree tree(TestEnvironment::current().work() / "killed");
        for (int group = 0; group < groups; ++group) {
            for (const char *folder : {"a/", "b/", "c/"})
                tree.file(folder + std::to_string(group), bytes(2'000, unsigned(group)));
        }
        const Searched found = searchFor(tree.top());
        ASSERT_EQ(found.groups.size(), std::size_t(groups));
        const auto before = tree.snapshot();
        const pid_t child = ::fork();
        if (child == 0) {
            const Act act = round % 3 == 0 ? Act::Trash : Act::Remove;
            DuplicateRemoval removal(found.root, {.act = act});
            for (auto group : found.groups) {
                group[0].goes = group[1].goes = true;
                removal.act(group, 0);
                removal.act(group, 1);
            }
            ::pause();
        }
        const auto left = [&] {
            std::ptrdiff_t files = 0;
            for (const char *folder : {"a", "b", "c"})
                files += std::distance(fs::directory_iterator(tree.path(folder)), {});
            return files;
        };
        // A third of them stays; the rest goes while the child lives.
        const std::ptrdiff_t wanted = groups + 1 + std::ptrdiff_t(random() % (2 * groups - 2));
        while (left() > wanted) {
        }
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        inTheMidst += left() > groups ? 1 : 0;
        const auto after = tree.snapshot();
        for (int group = 0; group < groups; ++group) {
            int files = 0;
            for (const char *folder : {"a/", "b/", "c/"}) {
                const auto file = after.find(folder + std::to_string(group));
                files += file == after.end() ? 0 : 1;
                EXPECT_TRUE(file == after.end() || file->second == before.at(file->first));
            }
            EXPECT_GE(files, 1) << group;
        }
        // Nothing lies in the trash without its record.
        const auto trash = TestEnvironment::current().home() / ".local/share/Trash";
        std::error_code none;
        for (const auto &item : fs::directory_iterator(trash / "files", none))
            EXPECT_TRUE(
                fs::exists(trash / "info" / (item.path().filename().native() + ".trashinfo")));
        removeTree(tree.top());
        fs::remove_all(trash);
    }
    EXPECT_GT(inTheMidst, kills / 4) << "too few were killed during the removal";
}

} // namespace
} // namespace brightsweep::test
