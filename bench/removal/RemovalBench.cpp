// Removing many items of one folder against `rm -rf` on the same items: `bench_removal [RUNS]`, as
// root, beside brightsweep-helper. With 20 and with 320 mounts in mount namespaces of its own; an
// ordinary user's removal, and one by the helper. Limits: 1.5 times and 3 times.

#include "foundation/Log.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/ItemRemoval.h"
#include "removal/NvAuthorization.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace brightsweep;

constexpr int itemCount = 20'000;
constexpr int usualRuns = 5;
constexpr uid_t ordinaryUser = 61'234;

std::string nameOf(int item) {
    return "item-" + std::to_string(item);
}

// The seconds that a child takes for the work, by its own clock.
double timeOf(const std::function<bool()> &work) {
    int ends[2];
    if (::pipe(ends) != 0)
        std::exit(2);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto start = std::chrono::steady_clock::now();
        const bool done = work();
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        const double seconds = took.count();
        if (!done || ::write(ends[1], &seconds, sizeof seconds) != sizeof seconds)
            ::_exit(1);
        ::_exit(0);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    double seconds = 0;
    if (status != 0 || ::read(ends[0], &seconds, sizeof seconds) != sizeof seconds) {
        std::fprintf(stderr, "a removal failed\n");
        std::exit(2);
    }
    ::close(ends[0]);
    ::close(ends[1]);
    return seconds;
}

void fill(const std::filesystem::path &folder, uid_t owner) {
    std::filesystem::create_directories(folder);
    for (int i = 0; i < itemCount; ++i) {
        const int file = ::open((folder / nameOf(i)).c_str(), O_CREAT | O_WRONLY, 0644);
        if (file < 0 || ::write(file, "contents", 8) != 8 || ::fchown(file, owner, owner) != 0)
            std::exit(2);
        ::close(file);
    }
    if (::chown(folder.c_str(), owner, owner) != 0)
        std::exit(2);
}

bool removeByTool(const std::filesystem::path &folder) {
    const pid_t child = ::fork();
    if (child == 0) {
        std::vector<std::string> words = {"rm", "-rf", "--"};
        for (int i = 0; i < itemCount; ++i)
            words.push_back(nameOf(i));
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        if (::chdir(folder.c_str()) == 0)
            ::execv("/bin/rm", arguments.data());
        ::_exit(127);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    return status == 0 && std::filesystem::is_empty(folder);
}

bool removeAll(const std::filesystem::path &folder, bool byHelper) {
    Platform::setCurrent(makeLinuxPlatform());
    Platform &platform = Platform::current();
    if (!byHelper && ::setresuid(ordinaryUser, ordinaryUser, ordinaryUser) != 0)
        return false;
    if (byHelper && !NvAuthorization::shareNvAuthorization().allocAuthorization())
        return false;
    const auto root = platform.files->rememberRoot(folder);
    int gone = 0;
    ItemRemoval removal;
    PrivilegedRemoval batch{*root, {}, {}};
    const auto flush = [&] {
        const auto token = NvAuthorization::shareNvAuthorization().getAuthorizationRet()->token;
        for (const PrivilegedReply &reply : platform.rights->removeItems(token, batch, nullptr))
            gone += reply.gone ? 1 : 0;
        batch.items.clear();
    };
    for (int i = 0; i < itemCount; ++i) {
        const RemovalTarget target{*root, nameOf(i)};
        const auto item = removal.reach(target);
        if (!item)
            return false;
        if (byHelper) {
            batch.items.push_back({item->name, item->attributes});
            if (batch.items.size() == PrivilegedRemoval::mostItems)
                flush();
        } else {
            removal.removeInTurn(std::size_t(i), target, item,
                                 [&](std::size_t, const RemovalOutcome &outcome) {
                                     gone += outcome.removed ? 1 : 0;
                                 });
        }
    }
    if (!batch.items.empty())
        flush();
    return gone == itemCount && std::filesystem::is_empty(folder);
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

bool compare(const std::filesystem::path &work, int mounts, int runs) {
    for (int i = 0; i < mounts; ++i) {
        const auto place = work / "mounts" / std::to_string(i);
        std::filesystem::create_directories(place);
        if (::mount("bench", place.c_str(), "tmpfs", 0, "size=64k") != 0)
            return false;
    }
    const auto folder = work / "folder";
    std::vector<double> tool, user, helper;
    for (int run = 0; run <= runs; ++run) {
        fill(folder, ordinaryUser);
        const double byTool = timeOf([&] { return removeByTool(folder); });
        fill(folder, ordinaryUser);
        const double byUser = timeOf([&] { return removeAll(folder, false); });
        fill(folder, 0);
        const double byHelper = timeOf([&] { return removeAll(folder, true); });
        if (run == 0)
            continue; // warms up
        tool.push_back(byTool);
        user.push_back(byUser);
        helper.push_back(byHelper);
    }
    const double own = median(user) / median(tool);
    const double privileged = median(helper) / median(tool);
    std::printf("%4d mounts: rm -rf %.0f ms, a user %.0f ms (%.2f times), the helper %.0f ms (%.2f "
                "times)\n",
                mounts, median(tool) * 1e3, median(user) * 1e3, own, median(helper) * 1e3,
                privileged);
    return own <= 1.5 && privileged <= 3;
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc > 1 ? std::atoi(argv[1]) : usualRuns;
    Log::setDescriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    std::string work = "/tmp/brightsweep-bench-XXXXXX";
    if (::geteuid() != 0 || !::mkdtemp(work.data()) || ::chmod(work.c_str(), 0755) != 0)
        return 2;
    ::setenv("HOME", work.c_str(), 1);
    bool met = true;
    for (const int mounts : {20, 320}) {
        const pid_t child = ::fork();
        if (child == 0) {
            if (::unshare(CLONE_NEWNS) != 0 ||
                ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
                ::_exit(2);
            const bool kept = compare(work, mounts, runs);
            std::fflush(stdout);
            ::_exit(kept ? 0 : 1);
        }
        int status = 1;
        ::waitpid(child, &status, 0);
        met = met && status == 0;
    }
    std::filesystem::remove_all(work);
    return met ? 0 : 1;
}
