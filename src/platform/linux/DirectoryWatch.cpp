#include "platform/linux/DirectoryWatch.h"

#include "foundation/LastError.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace brightsweep {

namespace {

constexpr int coalescing = 100; // milliseconds
constexpr int mostLinks = 40;   // as the kernel follows
constexpr std::uint32_t ofItself = IN_DELETE_SELF | IN_MOVE_SELF | IN_ATTRIB | IN_ONLYDIR;
constexpr std::uint32_t ofEntries = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | ofItself;
constexpr std::uint32_t inFolder = IN_CLOSE_WRITE | ofEntries;
// After one of these a watch may be at the wrong place, or events may have been lost.
constexpr std::uint32_t unsettling =
    IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT | IN_Q_OVERFLOW;

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

// From the root down, as what comes between two steps is seen by the upper one. Only where the next
// step cannot be watched itself is the folder watched for what is made in it: others may be busy
// there.
void DirectoryWatch::arm() {
    for (const auto &[old, names] : m_way)
        ::inotify_rm_watch(m_inotify.get(), old);
    if (m_folderWatch >= 0)
        ::inotify_rm_watch(m_inotify.get(), m_folderWatch);
    m_way.clear();
    m_folderWatch = -1;
    std::filesystem::path at = "/";
    std::vector<std::string> left; // of the way, the next step last
    const auto goOn = [&left](const std::filesystem::path &path) {
        for (auto step = path.end(); step != path.begin();)
            left.push_back((--step)->native());
    };
    goOn(m_folder);
    int current = watch(at, ofItself);
    for (int links = 0; links <= mostLinks && !left.empty();) {
        const std::string name = std::move(left.back());
        left.pop_back();
        if (name.empty() || name == "." || name == "/")
            continue;
        const std::filesystem::path next = name == ".." ? paths::parent(at) : paths::join(at, name);
        int step = watch(next, ofItself);
        if ((step < 0 || left.empty()) && current >= 0) {
            watch(at, ofEntries);
            step = watch(next, ofItself); // It may have come before that.
        }
        if (current >= 0)
            m_way[current].insert(name);
        std::error_code error;
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
    if (current >= 0 && left.empty()) {
        m_folderWatch = current;
        watch(at, inFolder);
    }
    if (m_way.empty() && m_folderWatch < 0)
        NSLog("%@ is not watched: %@", m_folder, lastError());
}

bool DirectoryWatch::isOnTheWay(int watch, const char *name) const {
    const auto step = m_way.find(watch);
    return step != m_way.end() && (!*name || step->second.count(name) > 0);
}

bool DirectoryWatch::take() {
    alignas(inotify_event) char block[16 * 1024];
    bool isAbout = false;
    bool isUnsettled = false;
    ssize_t got = 0;
    while ((got = ::read(m_inotify.get(), block, sizeof block)) > 0) {
        for (const char *at = block; at < block + got;) {
            const auto *const event = reinterpret_cast<const inotify_event *>(at);
            at += sizeof(inotify_event) + event->len;
            // That a watch has gone is also told of those that arm() took away.
            const bool isOnWay = isOnTheWay(event->wd, event->len > 0 ? event->name : "");
            const bool isInFolder = event->wd == m_folderWatch;
            const bool isLost = (event->mask & IN_Q_OVERFLOW) != 0;
            isAbout = isAbout || isInFolder;
            isUnsettled =
                isUnsettled || isOnWay || isLost || (isInFolder && (event->mask & unsettling) != 0);
        }
    }
    if (isUnsettled)
        arm();
    return isAbout || isUnsettled;
}

bool DirectoryWatch::waitFor(int milliseconds) {
    pollfd waiting[] = {{m_inotify.get(), POLLIN, 0}, {m_wake.descriptor(), POLLIN, 0}};
    ::poll(waiting, 2, milliseconds);
    return waiting[0].revents != 0;
}

void DirectoryWatch::run() {
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
        m_changed();
    }
}

} // namespace brightsweep
