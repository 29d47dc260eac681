#pragma once

#include "duplicates/ContentReader.h"
#include "duplicates/fileAttrbItem.h"
#include "foundation/Log.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace brightsweep {

/// Finds the groups of equal files among candidates, in the order in which a plain pass per
/// candidate would find them, but reads only what can matter, once, on several threads.
///
/// Candidates are indexed by size. Of each size that occurs more than once, the first blocks are
/// read, and of those with the same first block the whole files. Sizes are worked on in the order
/// of their first candidate, so that the passes can be told off one after the other as the files
/// they need have been read; a stop leaves a part from the beginning. Which candidates form a group
/// does not depend on threads or timing.
class ComparisonRun {
public:
    /// Called with a lock held, on any of the run's threads, one call at a time.
    struct Listener {
        /// A pass is under way whose item this is.
        std::function<void(const fileAttrbItem &item)> passBegan;
        /// The members in list order, last the item that began the pass.
        std::function<void(const FileList &group)> found;
        std::function<void(std::uint64_t percent)> progress;
    };

    /// The candidates must stay; their checksums are filled in.
    ComparisonRun(FileOperations &files, const FileList &candidates, std::atomic<bool> &stop,
                  unsigned threads);

    /// An exception on any thread raises `stop` and is thrown on.
    void run(const Listener &listener);

private:
    using Index = std::uint32_t;
    static constexpr Index none = ~Index(0);

    // Candidates of one size; a range of m_order.
    struct SizeClass {
        Index begin = 0;
        Index end = 0;
        Index waiting = 0; // files of the present step not yet read
        bool isComplete = false;
    };
    enum State : std::uint8_t { Unknown, HeadKnown, WholeKnown, Failed, Gone };

    void indexBySize();
    void dropRepeated(std::vector<Index> &sameSize);
    std::uint64_t bytesToRead() const;
    void work(ContentReader &reader);
    void readAll(ContentReader &reader);
    Index endOfPortion(Index begin) const;
    bool isReadAtOnce(Index sizeClass) const;
    void readHeads(Index begin, Index end, ContentReader &reader, ObjectLog &log);
    void readClass(const SizeClass &files, ContentReader &reader, ObjectLog &log);
    void readHead(Index place, bool isFirst, ContentReader &reader, ObjectLog &log,
                  ContentReader::Reading *rest = nullptr);
    void readWhole(Index file, Result<std::uint64_t> value, ObjectLog &log);
    void fail(Index file, std::error_code error, ObjectLog &log);
    bool isSameInode(Index a, Index b) const;
    void headsRead(Index sizeClass);
    void wholesRead(Index sizeClass);
    void chainGroups(const SizeClass &sizeClass);
    void advance();
    void tellGroup(Index item);

    FileOperations &m_files;
    const FileList &m_candidates;
    std::atomic<bool> &m_stop;
    unsigned m_threads;
    const Listener *m_listener = nullptr;

    std::vector<Index> m_order;     // of the sizes that occur more than once
    std::vector<Index> m_classOf;   // per candidate; none for a size of its own
    std::vector<Index> m_nextEqual; // per candidate: the next of its group, 0 at the end
    std::vector<State> m_state;     // per candidate; written by the thread that reads the file
    std::vector<SizeClass> m_classes;

    std::mutex m_mutex; // all that follows, and the classes
    std::condition_variable m_changed;
    Index m_nextHead = 0;
    std::deque<Index> m_wholes; // files to be read whole
    unsigned m_working = 0;
    unsigned m_waiting = 0; // threads
    Index m_frontier = 0;   // the candidate whose pass is next
    std::uint64_t m_count = 0;
    std::uint64_t m_left = 0;
    bool m_ended = false;
};

} // namespace brightsweep
