#include "diskusage/UsageItem.h"

#include "platform/DirectoryWalk.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"

#include <algorithm>
#include <limits>
#include <mutex>

namespace brightsweep {

namespace {

void addTo(std::uint64_t &sum, std::uint64_t more) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    sum = more > most - sum ? most : sum + more;
}

// A block at a time goes into the common facts.
class FolderLook final : public DirectoryWalk::Visitor {
public:
    FolderLook(FileOperations &files, OpenDirectory directory, const UsageLook &look)
        : m_look(look),
          m_mounts(MountsBelow::of(files, directory)),
          m_walk(files, *this, {WantedAttributes::All, 0, look.stop}) {
        m_walk.addRoot(std::make_shared<const OpenDirectory>(std::move(directory)), nullptr);
    }

    bool run() { return m_walk.run(); }

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        const std::lock_guard lock(m_mutex);
        for (const DirectoryEntry &entry : block.entries()) {
            const bool isDirectory = entry.type == EntryType::Directory;
            ++facts.entries;
            if (isDirectory && m_mounts.isAt(directory, entry.nameView()))
                continue;
            if (isDirectory) {
                facts.newest = std::max(facts.newest, entry.modified);
                m_walk.enter(directory, entry.nameView(), nullptr);
                continue;
            }
            facts.newestFile = std::max(facts.newestFile, entry.changed);
            addTo(facts.bytes, entry.size);
            if (entry.size < m_look.limit) {
                ++facts.smallEntries;
                addTo(facts.smallBytes, entry.size);
            }
            if (m_look.freed)
                m_look.freed->add(entry.device, entry.inode, entry.links, entry.stored);
        }
    }

    FolderFacts facts;

private:
    const UsageLook &m_look;
    const MountsBelow m_mounts;
    DirectoryWalk m_walk;
    std::mutex m_mutex;
};

} // namespace

// One of its other names may have gone, which changes that time and nothing else.
bool UsageItem::isReplacedBy(const UsageItem &later) const {
    const FileAttributes &now = later.seen;
    if (now.device != seen.device || now.inode != seen.inode || now.kind != seen.kind)
        return true;
    if (isFolder())
        return false;
    return now.size != seen.size || now.modified != seen.modified ||
           (now.changed != seen.changed && now.links >= seen.links);
}

// One that has lost entries only, to a removal of this program or another's, has gained nothing.
bool UsageItem::hasGainedBy(const UsageItem &later) const {
    return isFolder() &&
           (later.below.entries > below.entries ||
            (later.below.entries == below.entries && later.below.newest > below.newest) ||
            later.below.newestFile > below.newestFile);
}

void FreedBytes::add(std::uint64_t device, std::uint64_t inode, std::uint64_t links,
                     std::uint64_t stored) {
    if (links <= 1) {
        addTo(m_sum, stored);
        return;
    }
    add({device, inode}, {links, stored, 1});
}

void FreedBytes::add(const FreedBytes &other) {
    addTo(m_sum, other.m_sum);
    for (const auto &[file, names] : other.m_names)
        add(file, names);
}

void FreedBytes::add(const File &file, const Names &names) {
    Names &known = m_names.try_emplace(file, Names{names.links, names.stored, 0}).first->second;
    known.seen += names.seen;
    if (known.seen < known.links)
        return;
    addTo(m_sum, known.stored);
    m_names.erase(file);
}

std::uint64_t FreedBytes::kept() const {
    std::uint64_t sum = 0;
    for (const auto &[file, names] : m_names)
        addTo(sum, names.stored);
    return sum;
}

Result<UsageItem> lookAtItem(const RemovalTarget &target, const OpenItem &item,
                             const UsageLook &look) {
    UsageItem result{target, item.attributes, {}};
    if (!result.isFolder()) {
        result.below.bytes = item.attributes.size;
        if (look.freed) {
            look.freed->add(item.attributes.device, item.attributes.inode, item.attributes.links,
                            item.attributes.stored);
        }
        return result;
    }
    FileOperations &files = *Platform::current().files;
    auto directory = files.openDirectoryAt(item.folder->directory(), item.name.c_str());
    // What cannot be read is as it looks from outside.
    result.below.newest = item.attributes.modified;
    if (!directory)
        return result;
    FolderLook walk(files, std::move(*directory), look);
    if (!walk.run())
        return std::errc::operation_canceled;
    walk.facts.newest = std::max(walk.facts.newest, item.attributes.modified);
    result.below = walk.facts;
    return result;
}

} // namespace brightsweep
