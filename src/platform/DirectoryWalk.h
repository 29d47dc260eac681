#pragma once

#include "platform/FileOperations.h"

#include <atomic>
#include <memory>
#include <string>

namespace brightsweep {

/// Walks directory trees relative to descriptors, several directories at once.
///
/// A walk never follows a link below its roots, enters no file system without storage, copes with
/// any depth, and keeps at most a fixed number of directories open; one that had to be closed is
/// found again from the nearest open ancestor and recognised by device and inode. The visitor
/// decides which directories are entered. It is called on the thread that called run() and on
/// helper threads that live for that call only; calls for one directory never overlap, calls for
/// different ones may. Helpers start only once there is enough to do; where the system gives no
/// more threads, fewer do the work.
class DirectoryWalk {
public:
    class Directory;

    class Visitor {
    public:
        virtual ~Visitor();
        /// The next block of a directory's entries, in system order. It calls
        /// DirectoryWalk::enter() for each child directory that is to be walked.
        virtual void entries(Directory &directory, const DirectoryBlock &block) = 0;
        /// The directory has been read to its end, or could not be opened or read on.
        virtual void read(Directory &directory, std::error_code error);
        /// Everything that was entered below the directory has been left too.
        virtual void left(Directory &directory);
        /// Gives the next root through DirectoryWalk::addRoot(), false when there is none. Called
        /// whenever a thread runs out of work, one thread at a time.
        virtual bool nextRoot(DirectoryWalk &walk);
        /// Called on the thread that called run(), between two directories.
        virtual void between();
    };

    struct Options {
        WantedAttributes wanted = WantedAttributes::NonDirectories;
        /// Threads at most, the calling one included; 0 for as many as there are processors.
        unsigned threads = 0;
        /// Checked between blocks and between directories. Once it is set nothing more is read, and
        /// what has been entered is left without being read.
        const std::atomic<bool> *stop = nullptr;
        /// Likewise: of this walk alone, where the other one is shared.
        const std::atomic<bool> *ownStop = nullptr;
    };

    DirectoryWalk(FileOperations &files, Visitor &visitor, Options options);
    ~DirectoryWalk();
    DirectoryWalk(const DirectoryWalk &) = delete;
    DirectoryWalk &operator=(const DirectoryWalk &) = delete;

    /// Adds an open directory as a root. Before run() or within nextRoot().
    void addRoot(std::shared_ptr<const OpenDirectory> directory, void *context);
    /// Adds a child of an open directory as a root, to be opened when its turn comes.
    void addRoot(std::shared_ptr<const OpenDirectory> parent, std::string_view name, void *context);
    /// Within entries(): enters a child of that directory. Children are walked in the order in
    /// which one block's were entered, the first one first, each to its depths before the next.
    void enter(Directory &directory, std::string_view name, void *context);

    /// Walks until nothing is left to enter. Returns false when the stop flag ended it. The first
    /// exception of a visitor, or for want of memory, ends it as a stop does and is thrown on.
    bool run();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// One directory of a walk, alive until it has been left.
class DirectoryWalk::Directory {
public:
    /// What the visitor gave when it was entered.
    void *context() const { return m_context; }
    /// The directory from which it was entered; null for a root.
    Directory *parent() const { return m_parent; }
    /// Its name in the parent; for a root as it was added, empty for one that was added open.
    std::string_view name() const { return m_name; }
    /// The way to an entry of it from the folder in which the root was named, or from a root that
    /// was added open: the names with "/" between them.
    std::string wayTo(std::string_view entry) const;
    /// Known once it has been opened.
    std::uint64_t device() const { return m_device; }
    std::uint64_t inode() const { return m_inode; }
    /// Within entries() alone.
    const OpenDirectory &opened() const { return *m_open; }

private:
    friend class DirectoryWalk;
    friend struct DirectoryWalk::State;

    void *m_context = nullptr;
    Directory *m_parent = nullptr;
    std::string m_name;
    std::uint64_t m_device = 0;
    std::uint64_t m_inode = 0;
    std::shared_ptr<const OpenDirectory> m_rootParent; // of a root that was not added open
    std::shared_ptr<const OpenDirectory> m_open;       // empty while closed
    Directory *m_newer = nullptr;                      // neighbours in the list of open directories
    Directory *m_older = nullptr;
    bool m_listed = false;
    std::atomic<std::uint32_t> m_notLeft{1};   // itself and the entered children not yet left
    std::atomic<std::uint32_t> m_notOpened{1}; // itself until read, and the children not yet opened
};

} // namespace brightsweep
