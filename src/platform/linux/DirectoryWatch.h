#pragma once

#include "foundation/FileDescriptor.h"
#include "platform/linux/WakePipe.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <thread>
#include <vector>

namespace brightsweep {

/// Tells of changes of a folder's entries and of files in it, by inotify(7): written in place,
/// made, renamed, removed, other modes. It outlives the folder and those above it: while one is
/// missing the nearest one that is there is watched until it comes, and all of them for being moved
/// away. A link in its place is followed.
class DirectoryWatch {
public:
    /// `changed` is called on an own thread, 100 ms after the first of the changes that it is for,
    /// so that many together are told once.
    DirectoryWatch(std::filesystem::path folder, std::function<void()> changed);
    ~DirectoryWatch();

private:
    void run();
    void arm();
    /// Reads what has come in; true where it is about the folder.
    bool take();
    bool waitFor(int milliseconds);

    const std::filesystem::path m_folder;
    const std::function<void()> m_changed;
    FileDescriptor m_inotify;
    int m_folderWatch = -1;
    std::vector<int> m_aboveWatches;
    WakePipe m_wake;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace brightsweep
