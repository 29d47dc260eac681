#include "platform/linux/DirectoryWatch.h"

#include "foundation/LastError.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <system_error>

namespace brightsweep {

namespace {

constexpr int coalescing = 100; // milliseconds
constexpr std::uint32_t inFolder = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                                   IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF |
                                   IN_ONLYDIR;
constexpr std::uint32_t ofItself = IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t above = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | ofItself;
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

// From the root down, as what comes between two steps is seen by the upper one. Only the nearest
// folder above is watched for what is made in it.
void DirectoryWatch::arm() {
    for (const int watch : m_aboveWatches)
        ::inotify_rm_watch(m_inotify.get(), watch);
    if (m_folderWatch >= 0)
        ::inotify_rm_watch(m_inotify.get(), m_folderWatch);
    m_aboveWatches.clear();
    std::vector<std::filesystem::path> folders;
    for (auto folder = paths::parent(m_folder); folders.empty() || folders.back() != folder;
         folder = paths::parent(folder))
        folders.push_back(folder);
    const std::filesystem::path *nearest = nullptr;
    for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
        const int watch = ::inotify_add_watch(m_inotify.get(), folder->c_str(), above);
        if (watch < 0)
            continue; // Missing, or closed to the user while those below it are not.
        m_aboveWatches.push_back(watch);
        if (nearest)
            ::inotify_add_watch(m_inotify.get(), nearest->c_str(), ofItself);
        nearest = &*folder;
    }
    m_folderWatch = ::inotify_add_watch(m_inotify.get(), m_folder.c_str(), inFolder);
    if (m_aboveWatches.empty() && m_folderWatch < 0)
        NSLog("%@ is not watched: %@", m_folder, lastError());
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
            const bool isOfOld = event->wd != m_folderWatch &&
                                 std::find(m_aboveWatches.begin(), m_aboveWatches.end(),
                                           event->wd) == m_aboveWatches.end() &&
                                 (event->mask & IN_Q_OVERFLOW) == 0;
            if (isOfOld)
                continue;
            if (event->wd == m_folderWatch)
                isAbout = true;
            isUnsettled =
                isUnsettled || event->wd != m_folderWatch || (event->mask & unsettling) != 0;
        }
    }
    if (!isUnsettled)
        return isAbout;
    // Others come and go beside the folder; only what it is or was is news.
    const bool wasThere = m_folderWatch >= 0;
    const int watched = m_folderWatch;
    const int now = ::inotify_add_watch(m_inotify.get(), m_folder.c_str(), inFolder);
    if (!isAbout && wasThere && now == watched)
        return false;
    arm();
    return isAbout || wasThere || m_folderWatch >= 0;
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
