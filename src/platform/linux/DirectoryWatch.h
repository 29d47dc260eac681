#pragma once

#include "foundation/FileDescriptor.h"
#include "platform/linux/WakePipe.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <thread>

namespace brightsweep {

/// Tells of changes of a folder's entries and of files in it, by inotify(7): written in place,
/// made, renamed, removed, other modes. It outlives the folder and those above it: every folder on
/// the way to it is watched for being moved away or closed, and one whose next step is missing,
/// closed to the user or a link for what becomes of that. Links in its place and on the way are
/// followed. Of the files in the home to which links in it lead, the first 64 are watched likewise;
/// none that lies on another volume, whose server may be dead.
class DirectoryWatch {
public:
    /// `changed` is called on an own thread, 100 ms after the first of the changes that it is for,
    /// so that many together are told once.
    DirectoryWatch(std::filesystem::path folder, std::function<void()> changed);
    ~DirectoryWatch();

private:
    void run();
    void arm();
    void armLinks();
    /// Watches a folder and the way to it. With `mayAsk`, a file instead, as long as that is true
    /// of each place on the way. Gives the watch of what is at the end, -1 where there is none.
    int go(const std::filesystem::path &end,
           const std::function<bool(const std::string &)> &mayAsk);
    int watch(const std::filesystem::path &folder, std::uint32_t events);
    bool isOnTheWay(int watch, const char *name) const;
    /// Reads what has come in; true where it is about the folder.
    bool take();
    bool waitFor(int milliseconds);

    const std::filesystem::path m_folder;
    const std::function<void()> m_changed;
    FileDescriptor m_inotify;
    int m_folderWatch = -1;
    std::map<int, std::set<std::string>> m_way; ///< by watch, the names that lead on from there
    WakePipe m_wake;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace brightsweep
