#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>

namespace brightsweep {

/// Opens the modes of directories up for a removal, and sees to it that those that survive get
/// their own mode back, also when the process is killed.
///
/// Only directories that their owner cannot read, enter or write are touched, and only the owner's
/// bits. A line in the journal comes first: device, inode, birth and change time, both modes and
/// the path. A beat in the journal's head says when this process last changed anything; a directory
/// that was changed later is somebody else's business and stays as it is.
///
/// Any thread. One process at a time has a journal open: its users hold a lock of their own.
class ModeJournal {
public:
    ModeJournal() = default;
    /// Puts back what is open and removes the journal.
    ~ModeJournal();

    /// Puts back what a killed process has left in the journal, and takes that path for the new
    /// one, which is made with its folder when the first mode is opened up. The file is a regular
    /// one of the user's.
    std::error_code open(const std::string &path);
    /// Puts back what is still open, and removes the journal.
    void close();

    /// Opens the mode of a directory up where that is needed. The descriptor may be an O_PATH one.
    /// Gives a number for the two calls below, 0 where nothing was changed. An error where the
    /// journal is not open or cannot be written: the mode is then as it was. The path is asked for
    /// only where it is written.
    Result<std::uint64_t> openUp(int directory, const std::function<std::string()> &pathOf);
    /// The directory has gone.
    void forget(std::uint64_t number);
    void putBack(std::uint64_t number);
    /// All that are open now; what is opened up later is not.
    void putAllBack();
    /// This process is about to change something in a directory.
    void beat();

private:
    struct Opened {
        FileDescriptor directory; ///< empty beyond the first few hundred
        std::string path;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint32_t before = 0;
    };

    std::error_code begin();
    void closeFile();
    static void restore(const Opened &opened);

    std::mutex m_mutex;
    std::string m_path;
    FileDescriptor m_file;
    std::atomic<std::atomic<std::int64_t> *> m_beat{nullptr}; ///< in the file's head, mapped
    std::uint64_t m_last = 0;
    std::map<std::uint64_t, Opened> m_opened;
};

} // namespace brightsweep
