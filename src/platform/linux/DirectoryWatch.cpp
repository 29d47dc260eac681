#include "platform/linux/DirectoryWatch.h"

#include "foundation/Identity.h"
#include "foundation/LastError.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/MountTable.h"

#include <dirent.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

constexpr int coalescing = 100; // milliseconds
constexpr int mostLinks = 40;   // as the kernel follows
constexpr std::size_t mostWatchedLinks = 64;
constexpr std::uint32_t ofItself = IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB | IN_ONLYDIR;
constexpr std::uint32_t ofEntries = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | ofItself;
constexpr std::uint32_t ofFile = IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB;
constexpr std::uint32_t inFolder = IN_CLOSE_WRITE | ofEntries;

} // namespace

DirectoryWatch::DirectoryWatch(std::filesystem::path folder, std::function<void()> changed)
    : m_folder(std::move(folder)),
      m_changed(std::move(changed)),
      m_inotify(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (!m_inotify) {
        NSLog("%@ is not watched: %@", m_folder, lastError());
        return;
    }
    arm();
    try {
        m_thread = std::thread(&DirectoryWatch::run, this);
    } catch (const std::system_error &error) {
        NSLog("%@ is not watched: %@", m_folder, error.code());
    }
}

DirectoryWatch::~DirectoryWatch() {
    m_stop = true;
    m_wake.wake();
    if (m_thread.joinable())
        m_thread.join();
}

int DirectoryWatch::watch(const std::filesystem::path &folder, std::uint32_t events) {
    return ::inotify_add_watch(m_inotify.get(), folder.c_str(),
                               events | IN_MASK_ADD | IN_DONT_FOLLOW);
}

void DirectoryWatch::arm() {
    for (const auto &[old, names] : m_way)
        ::inotify_rm_watch(m_inotify.get(), old);
    if (m_folderWatch >= 0)
        ::inotify_rm_watch(m_inotify.get(), m_folderWatch);
    m_way.clear();
    m_folderWatch = go(m_folder, nullptr);
    if (m_way.empty() && m_folderWatch < 0)
        NSLog("%@ is not watched: %@", m_folder, lastError());
}

// Nothing of another volume is asked, not even for whether it is there.
void DirectoryWatch::armLinks() {
    std::vector<std::string> links;
    if (DIR *const entries = ::opendir(m_folder.c_str())) {
        while (const dirent *entry = ::readdir(entries)) {
            if (entry->d_type == DT_LNK && links.size() < mostWatchedLinks)
                links.emplace_back(entry->d_name);
        }
        ::closedir(entries);
    }
    if (links.empty())
        return;
    std::error_code error;
    const std::filesystem::path home = homeFolder();
    auto realHome = std::filesystem::canonical(home, error);
    if (error)
        realHome = home;
    const auto mounts = currentMounts();
    const auto mayAsk = [&](const std::string &place) {
        const auto isIn = [&](const std::filesystem::path &folder) {
            return paths::isSameOrBelow(place, folder.native());
        };
        const auto isOnWayTo = [&](const std::filesystem::path &folder) {
            return paths::isSameOrBelow(folder.native(), place);
        };
        return isOnWayTo(home) || isOnWayTo(realHome) || isOnWayTo(m_folder) ||
               ((isIn(home) || isIn(realHome)) &&
                std::none_of(mounts.begin(), mounts.end(),
                             [&](const Mount &mount) { return mount.mountPoint == place; }));
    };
    for (const std::string &link : links) {
        if (const int file = go(paths::join(m_folder, link), mayAsk); file >= 0)
            m_way[file];
    }
}

// From the root down, as what comes between two steps is seen by the upper one. Only where the next
// step cannot be watched itself is the folder watched for what is made in it: others may be busy
// there.
int DirectoryWatch::go(const std::filesystem::path &end,
                       const std::function<bool(const std::string &)> &mayAsk) {
    std::filesystem::path at = "/";
    std::vector<std::string> left; // of the way, the next step last
    const auto goOn = [&left](const std::filesystem::path &path) {
        for (auto step = path.end(); step != path.begin();)
            left.push_back((--step)->native());
    };
    goOn(end);
    std::error_code error;
    const auto watchStep = [&](const std::filesystem::path &step) {
        const int folder = watch(step, ofItself);
        return folder < 0 && left.empty() && mayAsk && !std::filesystem::is_symlink(step, error)
                   ? watch(step, ofFile)
                   : folder;
    };
    int current = watch(at, ofItself);
    for (int links = 0; links <= mostLinks && !left.empty();) {
        const std::string name = std::move(left.back());
        left.pop_back();
        if (name.empty() || name == "." || name == "/")
            continue;
        const std::filesystem::path next = name == ".." ? paths::parent(at) : paths::join(at, name);
        if (mayAsk && !mayAsk(next.native()))
            return -1;
        int step = watchStep(next);
        if ((step < 0 || (left.empty() && !mayAsk)) && current >= 0) {
            watch(at, ofEntries);
            step = watchStep(next); // It may have come before that.
        }
        if (current >= 0)
            m_way[current].insert(name);
        const auto target =
            step < 0 ? std::filesystem::read_symlink(next, error) : std::filesystem::path();
        if (!target.empty()) {
            ++links;
            goOn(target);
            if (target.is_absolute()) {
                at = "/";
                current = watch(at, ofItself);
            }
            continue;
        }
        at = next;
        current = step;
    }
    if (!left.empty() || current < 0)
        return -1;
    if (!mayAsk)
        watch(at, inFolder);
    return current;
}

bool DirectoryWatch::isOnTheWay(int watch, const char *name) const {
    const auto step = m_way.find(watch);
    return step != m_way.end() && (!*name || step->second.count(name) > 0);
}

bool DirectoryWatch::take() {
    alignas(inotify_event) char block[16 * 1024];
    bool isAbout = false;
    ssize_t got = 0;
    while ((got = ::read(m_inotify.get(), block, sizeof block)) > 0) {
        for (const char *at = block; at < block + got;) {
            const auto *const event = reinterpret_cast<const inotify_event *>(at);
            at += sizeof(inotify_event) + event->len;
            // That a watch has gone is also told of those that arm() took away.
            isAbout = isAbout || event->wd == m_folderWatch ||
                      isOnTheWay(event->wd, event->len > 0 ? event->name : "") ||
                      (event->mask & IN_Q_OVERFLOW) != 0;
        }
    }
    return isAbout;
}

bool DirectoryWatch::waitFor(int milliseconds) {
    pollfd waiting[] = {{m_inotify.get(), POLLIN, 0}, {m_wake.descriptor(), POLLIN, 0}};
    ::poll(waiting, 2, milliseconds);
    return waiting[0].revents != 0;
}

void DirectoryWatch::run() {
    armLinks();
    for (;;) {
        waitFor(-1);
        if (m_stop)
            return;
        if (!take())
            continue;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(coalescing);
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                until - std::chrono::steady_clock::now());
            if (m_stop)
                return;
            if (left.count() <= 0)
                break;
            if (waitFor(int(left.count())))
                take();
        }
        // By now a watch may be at the wrong place, or events may have been lost.
        arm();
        armLinks();
        m_changed();
    }
}

} // namespace brightsweep
