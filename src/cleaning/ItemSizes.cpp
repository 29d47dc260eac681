#include "cleaning/ItemSizes.h"

#include "core/TaskStopper.h"
#include "foundation/SaturatingSum.h"
#include "platform/DirectoryWalk.h"
#include "platform/Platform.h"

#include <algorithm>
#include <limits>

namespace brightsweep {

namespace {

void addTo(std::atomic<std::uint64_t> &sum, std::uint64_t more) {
    std::uint64_t before = sum.load(std::memory_order_relaxed);
    while (!sum.compare_exchange_weak(before, addSaturating(before, more),
                                      std::memory_order_relaxed)) {
    }
}

// Adds the files of one block to the sum and enters its directories.
void addBlock(DirectoryWalk &walk, DirectoryWalk::Directory &directory, const DirectoryBlock &block,
              const MountsBelow &mounts, std::atomic<std::uint64_t> &sum) {
    if (TaskStopper::sharedTaskStopper().getStopFlags())
        return;
    std::uint64_t files = 0;
    for (const DirectoryEntry &entry : block.entries()) {
        if (entry.type != EntryType::Directory)
            files = addSaturating(files, entry.hasAttributes ? entry.size : 0);
        else if (!mounts.isAt(directory, entry.nameView()))
            walk.enter(directory, entry.nameView(), directory.context());
    }
    if (files > 0)
        addTo(sum, files);
}

class OneSize final : public DirectoryWalk::Visitor {
public:
    explicit OneSize(MountsBelow mounts) : m_mounts(std::move(mounts)) {}

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        addBlock(*walk, directory, block, m_mounts, sum);
    }

    DirectoryWalk *walk = nullptr;
    std::atomic<std::uint64_t> sum{0};

private:
    const MountsBelow m_mounts;
};

// Walks one item after the other; a further thread takes the next item when the one under way has
// nothing left to share.
class ItemSizes final : public DirectoryWalk::Visitor {
public:
    struct Item {
        std::atomic<std::uint64_t> sum{0};
        std::atomic<bool> done{false};
    };

    ItemSizes(std::shared_ptr<const OpenDirectory> folder, const MountsBelow &mounts,
              std::vector<SizedItem> &items, const std::atomic<bool> *stop,
              const std::function<void(const SizedItem &)> &ready)
        : m_folder(std::move(folder)),
          m_mounts(mounts),
          m_items(items),
          m_states(items.size()),
          m_stop(stop),
          m_ready(ready) {}

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        addBlock(*walk, directory, block, m_mounts, static_cast<Item *>(directory.context())->sum);
    }

    void left(DirectoryWalk::Directory &directory) override {
        // After a stop the sum may lack what was not read any more.
        if (!directory.parent() && !isStopped())
            static_cast<Item *>(directory.context())->done.store(true, std::memory_order_release);
    }

    bool nextRoot(DirectoryWalk &toWalk) override {
        while (m_nextToWalk < m_items.size()) {
            const std::size_t index = m_nextToWalk++;
            SizedItem &item = m_items[index];
            item.holdsVolume = m_mounts.isIn(item.name);
            const bool isMounted =
                item.holdsVolume && std::find(m_mounts.direct().begin(), m_mounts.direct().end(),
                                              item.name) != m_mounts.direct().end();
            if (item.type == EntryType::Directory && !isMounted) {
                toWalk.addRoot(m_folder, m_items[index].name, &m_states[index]);
                return true;
            }
            m_states[index].sum.store(m_items[index].size, std::memory_order_relaxed);
            m_states[index].done.store(true, std::memory_order_release);
        }
        return false;
    }

    void between() override {
        while (m_nextToHandOver < m_items.size() && !isStopped()) {
            const Item &state = m_states[m_nextToHandOver];
            if (!state.done.load(std::memory_order_acquire))
                return;
            SizedItem &item = m_items[m_nextToHandOver++];
            item.size = state.sum.load(std::memory_order_relaxed);
            m_ready(item);
        }
    }

    DirectoryWalk *walk = nullptr;

private:
    bool isStopped() const { return m_stop && m_stop->load(std::memory_order_relaxed); }

    std::shared_ptr<const OpenDirectory> m_folder;
    const MountsBelow &m_mounts;
    std::vector<SizedItem> &m_items;
    std::vector<Item> m_states;
    const std::atomic<bool> *m_stop;
    const std::function<void(const SizedItem &)> &m_ready;
    std::size_t m_nextToWalk = 0;
    std::size_t m_nextToHandOver = 0;
};

} // namespace

std::uint64_t sizeOfOneFile(const FileAttributes &attributes) {
    const bool counts =
        attributes.type != EntryType::Directory && !TaskStopper::sharedTaskStopper().getStopFlags();
    return counts ? attributes.size : 0;
}

bool sizeItems(std::shared_ptr<const OpenDirectory> folder, const MountsBelow &mounts,
               std::vector<SizedItem> &items, const std::atomic<bool> *stop,
               const std::function<void(const SizedItem &)> &ready) {
    ItemSizes visitor(std::move(folder), mounts, items, stop, ready);
    DirectoryWalk walk(*Platform::current().files, visitor,
                       {WantedAttributes::NonDirectories, 0, stop});
    visitor.walk = &walk;
    return walk.run();
}

std::optional<std::uint64_t> sizeOfOpenDirectory(OpenDirectory directory,
                                                 const std::atomic<bool> *stop) {
    FileOperations &files = *Platform::current().files;
    OneSize visitor(MountsBelow::of(files, directory));
    DirectoryWalk walk(files, visitor, {WantedAttributes::NonDirectories, 0, stop});
    visitor.walk = &walk;
    walk.addRoot(std::make_shared<const OpenDirectory>(std::move(directory)), nullptr);
    if (!walk.run())
        return {};
    return visitor.sum.load();
}

std::optional<std::uint64_t> sizeOfTarget(const OpenItem &item, const std::atomic<bool> *stop) {
    if (item.attributes.type != EntryType::Directory)
        return sizeOfOneFile(item.attributes);
    auto directory =
        Platform::current().files->openDirectoryAt(item.folder->directory(), item.name.c_str());
    if (!directory)
        return 0;
    return sizeOfOpenDirectory(std::move(*directory), stop);
}

} // namespace brightsweep
