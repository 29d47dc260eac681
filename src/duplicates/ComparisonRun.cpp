#include "duplicates/ComparisonRun.h"

#include "duplicates/QrxLog.h"
#include "duplicates/ReadingThreads.h"
#include "duplicates/SameFiles.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace brightsweep {

namespace {

// What one thread takes at a time.
constexpr std::uint32_t headsAtOnce = 64;
constexpr std::size_t wholesAtOnce = 32;
constexpr std::uint64_t bytesAtOnce = 1024 * 1024;
// A size up to these is worked on by one thread, which keeps its files open in between.
constexpr std::uint32_t openAtOnce = 32;
constexpr std::uint64_t classBytesAtOnce = 4 * 1024 * 1024;
// Below this, helpers cost more than they bring.
constexpr std::uint64_t aloneUpTo = 512 * 1024;
// What opening a file counts for, in bytes.
constexpr std::uint64_t pageWorth = 4096;

} // namespace

ComparisonRun::ComparisonRun(FileOperations &files, const FileList &candidates,
                             std::atomic<bool> &stop, unsigned threads)
    : m_files(files),
      m_candidates(candidates),
      m_stop(stop),
      m_threads(readingThreads(threads)),
      m_classOf(candidates.size(), none),
      m_nextEqual(candidates.size()),
      m_state(candidates.size(), Unknown) {}

void ComparisonRun::run(const Listener &listener) {
    m_listener = &listener;
    indexBySize();
    if (m_stop)
        return;
    {
        const std::lock_guard lock(m_mutex);
        advance();
    }
    runOnThreads(bytesToRead() > aloneUpTo ? m_threads : 1, m_files, m_stop,
                 [this](ContentReader &reader) { work(reader); });
}

// -- The index

void ComparisonRun::indexBySize() {
    std::vector<std::pair<std::uint64_t, Index>> bySize;
    bySize.reserve(m_candidates.size());
    for (Index i = 0; i < m_candidates.size(); ++i)
        bySize.emplace_back(m_candidates[i]->fileSize, i);
    std::sort(bySize.begin(), bySize.end());

    std::vector<Index> order;
    std::vector<SizeClass> classes;
    std::vector<Index> sameSize;
    for (std::size_t begin = 0, end = 0; begin < bySize.size() && !m_stop; begin = end) {
        sameSize.clear();
        for (; end < bySize.size() && bySize[end].first == bySize[begin].first; ++end)
            sameSize.push_back(bySize[end].second);
        dropRepeated(sameSize);
        if (sameSize.size() < 2)
            continue;
        SizeClass &added = classes.emplace_back();
        added.begin = Index(order.size());
        order.insert(order.end(), sameSize.begin(), sameSize.end());
        added.end = Index(order.size());
    }
    decltype(bySize)().swap(bySize);

    // Work in the order in which the passes come.
    const auto first = [&](const SizeClass &sizeClass) {
        return *std::min_element(order.begin() + sizeClass.begin, order.begin() + sizeClass.end);
    };
    std::vector<std::pair<Index, Index>> byFirst;
    for (Index i = 0; i < classes.size(); ++i)
        byFirst.emplace_back(first(classes[i]), i);
    std::sort(byFirst.begin(), byFirst.end());
    m_order.reserve(order.size());
    m_classes.reserve(classes.size());
    for (const auto &[candidate, from] : byFirst) {
        SizeClass sizeClass;
        sizeClass.begin = Index(m_order.size());
        m_order.insert(m_order.end(), order.begin() + classes[from].begin,
                       order.begin() + classes[from].end);
        sizeClass.end = Index(m_order.size());
        sizeClass.waiting = sizeClass.end - sizeClass.begin;
        for (Index i = sizeClass.begin; i < sizeClass.end; ++i)
            m_classOf[m_order[i]] = Index(m_classes.size());
        m_classes.push_back(sizeClass);
    }
    m_count = std::uint64_t(std::count(m_state.begin(), m_state.end(), Unknown));
    m_left = m_count;
}

// Leaves the files in the order of their inodes, which is near to that on the disk.
void ComparisonRun::dropRepeated(std::vector<Index> &sameSize) {
    if (sameSize.size() < 2)
        return;
    std::sort(sameSize.begin(), sameSize.end(), [&](Index a, Index b) {
        const fileAttrbItem &x = *m_candidates[a];
        const fileAttrbItem &y = *m_candidates[b];
        return std::tie(x.device, x.inode, a) < std::tie(y.device, y.inode, b);
    });
    bool anyGone = false;
    for (std::size_t begin = 0, end = 0; begin < sameSize.size(); begin = end) {
        for (end = begin + 1; end < sameSize.size() && isSameInode(sameSize[begin], sameSize[end]);)
            ++end;
        if (end - begin < 2)
            continue;
        std::vector<const fileAttrbItem *> items;
        for (std::size_t i = begin; i < end; ++i)
            items.push_back(m_candidates[sameSize[i]].get());
        const auto kept = SameFiles(m_files, m_stop).keptFor(items);
        for (std::size_t i = 0; i < kept.size(); ++i) {
            if (kept[i] == i)
                continue;
            m_state[sameSize[begin + i]] = Gone;
            anyGone = true;
        }
    }
    if (anyGone)
        std::erase_if(sameSize, [&](Index file) { return m_state[file] == Gone; });
}

bool ComparisonRun::isSameInode(Index a, Index b) const {
    const fileAttrbItem &x = *m_candidates[a];
    const fileAttrbItem &y = *m_candidates[b];
    return x.inode == y.inode && x.device == y.device;
}

std::uint64_t ComparisonRun::bytesToRead() const {
    std::uint64_t bytes = 0;
    for (const Index file : m_order) {
        bytes += m_candidates[file]->fileSize + pageWorth;
        if (bytes > aloneUpTo)
            break;
    }
    return bytes;
}

// -- Reading

void ComparisonRun::work(ContentReader &reader) {
    try {
        readAll(reader);
    } catch (...) {
        // What this thread had taken will never be read, and nobody is to wait for it.
        const std::lock_guard lock(m_mutex);
        m_stop = true;
        m_changed.notify_all();
        throw;
    }
}

void ComparisonRun::readAll(ContentReader &reader) {
    ObjectLog log;
    std::vector<Index> taken;
    std::unique_lock lock(m_mutex);
    while (!m_stop) {
        if (!m_wholes.empty()) {
            taken.clear();
            std::uint64_t bytes = 0;
            while (!m_wholes.empty() && taken.size() < wholesAtOnce && bytes < bytesAtOnce) {
                taken.push_back(m_wholes.front());
                bytes += m_candidates[m_wholes.front()]->fileSize;
                m_wholes.pop_front();
            }
            ++m_working;
            lock.unlock();
            for (const Index file : taken)
                readWhole(file, reader.wholeFile(*m_candidates[file]), log);
            lock.lock();
            --m_working;
            if (m_stop)
                break;
            for (const Index file : taken) {
                if (--m_classes[m_classOf[file]].waiting == 0)
                    wholesRead(m_classOf[file]);
            }
        } else if (m_nextHead < m_order.size()) {
            const Index begin = m_nextHead;
            const Index end = endOfPortion(begin);
            m_nextHead = end;
            ++m_working;
            lock.unlock();
            readHeads(begin, end, reader, log);
            lock.lock();
            --m_working;
            if (m_stop)
                break;
            for (Index i = begin; i < end;) {
                const Index sizeClass = m_classOf[m_order[i]];
                const Index next = std::min(end, m_classes[sizeClass].end);
                m_classes[sizeClass].waiting -= next - i;
                i = next;
                if (m_classes[sizeClass].waiting == 0)
                    headsRead(sizeClass);
            }
        } else if (m_working == 0) {
            break;
        } else {
            ++m_waiting;
            m_changed.wait(lock);
            --m_waiting;
            continue;
        }
        if (m_waiting > 0)
            m_changed.notify_all();
    }
    m_changed.notify_all();
}

// Sizes that are read at once are not divided.
ComparisonRun::Index ComparisonRun::endOfPortion(Index begin) const {
    Index end = begin;
    std::uint64_t bytes = 0;
    while (end < m_order.size() && end - begin < headsAtOnce && bytes < bytesAtOnce) {
        const Index sizeClass = m_classOf[m_order[end]];
        const std::uint64_t size = m_candidates[m_order[end]]->fileSize;
        if (isReadAtOnce(sizeClass)) {
            bytes += size * (m_classes[sizeClass].end - end);
            end = m_classes[sizeClass].end;
        } else {
            bytes += std::min<std::uint64_t>(size, ContentReader::firstReadSize);
            ++end;
        }
    }
    return end;
}

bool ComparisonRun::isReadAtOnce(Index sizeClass) const {
    const SizeClass &files = m_classes[sizeClass];
    const Index count = files.end - files.begin;
    return count <= openAtOnce &&
           m_candidates[m_order[files.begin]]->fileSize <= classBytesAtOnce / count;
}

void ComparisonRun::readHeads(Index begin, Index end, ContentReader &reader, ObjectLog &log) {
    bool isFirst = true;
    for (Index i = begin; i < end && !m_stop; isFirst = false) {
        const Index sizeClass = m_classOf[m_order[i]];
        if (isReadAtOnce(sizeClass)) {
            readClass(m_classes[sizeClass], reader, log);
            i = m_classes[sizeClass].end;
        } else {
            readHead(i++, isFirst, reader, log);
        }
    }
}

// Reads the files that have the same first block as another to their ends too.
void ComparisonRun::readClass(const SizeClass &files, ContentReader &reader, ObjectLog &log) {
    std::array<ContentReader::Reading, openAtOnce> rests;
    for (Index i = files.begin; i < files.end && !m_stop; ++i)
        readHead(i, i == files.begin, reader, log, &rests[i - files.begin]);
    for (Index i = files.begin; i < files.end && !m_stop; ++i) {
        const Index file = m_order[i];
        ContentReader::Reading &rest = rests[i - files.begin];
        if (m_state[file] != HeadKnown || !rest.file)
            continue;
        const bool hasEqual = std::any_of(
            m_order.begin() + files.begin, m_order.begin() + files.end, [&](Index other) {
                return other != file && m_state[other] != Failed &&
                       m_candidates[other]->md5_1k == m_candidates[file]->md5_1k;
            });
        if (hasEqual)
            readWhole(file, reader.wholeFile(std::move(rest)), log);
    }
}

// Unless it is the first, the one before has been read by the same thread.
void ComparisonRun::readHead(Index place, bool isFirst, ContentReader &reader, ObjectLog &log,
                             ContentReader::Reading *rest) {
    const Index file = m_order[place];
    fileAttrbItem &item = *m_candidates[file];
    if (!isFirst && isSameInode(file, m_order[place - 1])) {
        const Index before = m_order[place - 1];
        item.md5_1k = m_candidates[before]->md5_1k;
        item.md5 = m_candidates[before]->md5;
        m_state[file] = m_state[before];
        return;
    }
    const auto block = reader.firstBlock(item, rest);
    if (!block) {
        fail(file, block.error(), log);
    } else if (block->empty) {
        m_state[file] = Failed;
    } else {
        item.md5_1k = block->md5_1k;
        item.md5 = block->md5.value_or(0);
        m_state[file] = block->md5 ? WholeKnown : HeadKnown;
    }
}

void ComparisonRun::readWhole(Index file, Result<std::uint64_t> value, ObjectLog &log) {
    if (!value) {
        fail(file, value.error(), log);
        return;
    }
    m_candidates[file]->md5 = *value;
    m_state[file] = WholeKnown;
}

// A file that cannot be read whole is nobody's duplicate.
void ComparisonRun::fail(Index file, std::error_code error, ObjectLog &log) {
    m_state[file] = Failed;
    if (!m_stop)
        QRX_OBJECT_LOG(log, "-[algorithm getMD5:]", "open file :%@ failed",
                       m_candidates[file]->filePathName + ": " + error.message());
}

// -- Steps of one size; with the lock held

void ComparisonRun::headsRead(Index sizeClass) {
    SizeClass &files = m_classes[sizeClass];
    const auto begin = m_order.begin() + files.begin;
    const auto end = m_order.begin() + files.end;
    std::sort(begin, end, [&](Index a, Index b) {
        const fileAttrbItem &x = *m_candidates[a];
        const fileAttrbItem &y = *m_candidates[b];
        const bool xFailed = m_state[a] == Failed;
        const bool yFailed = m_state[b] == Failed;
        return std::tie(xFailed, x.md5_1k, x.device, x.inode, a) <
               std::tie(yFailed, y.md5_1k, y.device, y.inode, b);
    });
    files.waiting = 0;
    for (auto run = begin; run != end && m_state[*run] != Failed;) {
        auto next = run + 1;
        while (next != end && m_state[*next] != Failed &&
               m_candidates[*next]->md5_1k == m_candidates[*run]->md5_1k)
            ++next;
        for (auto file = run; next - run > 1 && file != next; ++file) {
            if (m_state[*file] == HeadKnown && (file == run || !isSameInode(*file, file[-1]))) {
                m_wholes.push_back(*file);
                ++files.waiting;
            }
        }
        run = next;
    }
    if (files.waiting == 0)
        wholesRead(sizeClass);
}

void ComparisonRun::wholesRead(Index sizeClass) {
    SizeClass &files = m_classes[sizeClass];
    // Further names of a file that was read.
    for (Index i = files.begin + 1; i < files.end; ++i) {
        const Index file = m_order[i];
        const Index before = m_order[i - 1];
        if (m_state[file] == HeadKnown && isSameInode(file, before)) {
            m_candidates[file]->md5 = m_candidates[before]->md5;
            m_state[file] = m_state[before];
        }
    }
    chainGroups(files);
    files.isComplete = true;
    advance();
}

void ComparisonRun::chainGroups(const SizeClass &files) {
    const auto begin = m_order.begin() + files.begin;
    const auto end = std::partition(begin, m_order.begin() + files.end,
                                    [&](Index file) { return m_state[file] == WholeKnown; });
    std::sort(begin, end, [&](Index a, Index b) {
        const fileAttrbItem &x = *m_candidates[a];
        const fileAttrbItem &y = *m_candidates[b];
        return std::tie(x.md5_1k, x.md5, a) < std::tie(y.md5_1k, y.md5, b);
    });
    for (auto file = begin; file != end && file + 1 != end; ++file) {
        const fileAttrbItem &x = *m_candidates[file[0]];
        const fileAttrbItem &y = *m_candidates[file[1]];
        if (x.md5_1k == y.md5_1k && x.md5 == y.md5)
            m_nextEqual[file[0]] = file[1];
    }
}

// -- The passes, in order; with the lock held

void ComparisonRun::advance() {
    for (; !m_ended && m_frontier < m_candidates.size(); ++m_frontier) {
        const Index item = m_frontier;
        // The state belongs to the reading thread until the size is complete.
        const bool mustWait = m_classOf[item] != none && !m_classes[m_classOf[item]].isComplete;
        if (!mustWait && m_state[item] == Gone)
            continue;
        if (mustWait || m_left == 1)
            m_listener->passBegan(*m_candidates[item]);
        if (mustWait)
            return;
        // The last item has nothing to be compared with, and the progress is not told for it.
        if (--m_left == 0)
            break;
        tellGroup(item);
        m_listener->progress((m_count - m_left) * 100 / m_count);
        m_ended = m_left == 0;
    }
    m_ended = true;
}

void ComparisonRun::tellGroup(Index item) {
    if (m_nextEqual[item] == 0)
        return;
    FileList group;
    for (Index file = m_nextEqual[item]; file != 0; file = m_nextEqual[file]) {
        group.push_back(m_candidates[file]);
        m_state[file] = Gone;
        --m_left;
    }
    group.push_back(m_candidates[item]);
    m_listener->found(group);
}

} // namespace brightsweep
