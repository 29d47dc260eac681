#include "duplicates/BundleComparison.h"

#include "duplicates/DuplicateError.h"
#include "foundation/Paths.h"
#include "linux/RemovalError.h"
#include "platform/FileIdentity.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brightsweep {

namespace {

std::filesystem::path below(const std::filesystem::path &folder,
                            const std::filesystem::path &relative) {
    return relative.empty() ? folder : paths::join(folder, relative.native());
}

} // namespace

BundleComparison::BundleComparison(FileOperations &files, const std::atomic<bool> *stop)
    : m_files(files), m_stop(stop), m_comparison(files, stop) {}

std::error_code BundleComparison::compare(const std::filesystem::path &bundle,
                                          const std::filesystem::path &other) {
    m_bundle = bundle;
    m_other = other;
    m_folders = {{}};
    m_seen.clear();
    m_pairs.clear();
    m_unshared.clear();
    m_size = 0;
    m_changed = 0;
    while (!m_folders.empty()) {
        if (m_stop && m_stop->load(std::memory_order_relaxed))
            return std::make_error_code(std::errc::operation_canceled);
        const auto relative = std::move(m_folders.back());
        m_folders.pop_back();
        if (const auto error = compareFolders(relative))
            return error;
    }
    return {};
}

Result<BundleComparison::Entries> BundleComparison::entriesOf(const std::filesystem::path &folder,
                                                              const FileAttributes &expected) {
    auto directory = m_files.openDirectory(folder);
    if (!directory)
        return directory.error();
    if (directory->device != expected.device || directory->inode != expected.inode)
        return RemovalError::Changed;
    Entries entries;
    DirectoryBlock block;
    do {
        if (const auto error = m_files.readBlock(*directory, block, WantedAttributes::None))
            return error;
        for (const DirectoryEntry &entry : block.entries())
            entries.push_back({std::string(entry.nameView()), entry.type});
    } while (!block.atEnd());
    std::sort(entries.begin(), entries.end(),
              [](const Entry &one, const Entry &other) { return one.name < other.name; });
    return entries;
}

std::error_code BundleComparison::compareFolders(const std::filesystem::path &relative) {
    const auto one = below(m_bundle, relative);
    const auto other = below(m_other, relative);
    const auto oneAttributes = m_files.attributes(one);
    if (!oneAttributes)
        return oneAttributes.error();
    const auto otherAttributes = m_files.attributes(other);
    if (!otherAttributes)
        return DuplicateError::OtherUnreadable;
    if (oneAttributes->type != EntryType::Directory)
        return RemovalError::Changed;
    if (otherAttributes->type != EntryType::Directory)
        return DuplicateError::OtherChanged;
    m_seen.push_back({one, *oneAttributes, false});
    m_seen.push_back({other, *otherAttributes, true});
    const auto entries = entriesOf(one, *oneAttributes);
    if (!entries)
        return entries.error();
    const auto others = entriesOf(other, *otherAttributes);
    if (!others)
        return DuplicateError::OtherUnreadable;
    const auto isAlike = [](const Entry &first, const Entry &second) {
        return first.name == second.name && first.type == second.type;
    };
    if (!std::equal(entries->begin(), entries->end(), others->begin(), others->end(), isAlike))
        return DuplicateError::Differs;
    for (const Entry &entry : *entries) {
        const auto path = relative.empty() ? std::filesystem::path(entry.name)
                                           : paths::join(relative, entry.name);
        if (const auto error = compareEntry(path, entry.type))
            return error;
    }
    return {};
}

std::error_code BundleComparison::compareEntry(const std::filesystem::path &relative,
                                               EntryType type) {
    const auto one = below(m_bundle, relative);
    const auto other = below(m_other, relative);
    if (type == EntryType::Directory) {
        m_folders.push_back(relative);
        return {};
    }
    if (type == EntryType::File)
        return compareFiles(one, other);
    if (type != EntryType::Link)
        return DuplicateError::Differs;
    const auto oneTarget = m_files.linkTarget(one);
    const auto oneAttributes = m_files.attributes(one);
    if (!oneTarget || !oneAttributes)
        return RemovalError::Changed;
    const auto otherTarget = m_files.linkTarget(other);
    const auto otherAttributes = m_files.attributes(other);
    if (!otherTarget || !otherAttributes)
        return DuplicateError::OtherChanged;
    if (*oneTarget != *otherTarget)
        return DuplicateError::Differs;
    m_seen.push_back({one, *oneAttributes, false});
    m_seen.push_back({other, *otherAttributes, true});
    // As the search adds it up: a link that leads to a directory is no member.
    const auto target = m_files.attributesFollowing(one);
    if (!target || target->type != EntryType::Directory) {
        m_size += oneAttributes->size;
        m_changed = std::max(m_changed, oneAttributes->changed);
    }
    return {};
}

std::error_code BundleComparison::compareFiles(const std::filesystem::path &one,
                                               const std::filesystem::path &other) {
    const auto held = m_comparison.hold(one);
    if (!held)
        return held.error();
    const auto heldOther = m_comparison.hold(other);
    if (!heldOther)
        return heldOther.error() == DuplicateError::BeingWritten
                   ? make_error_code(DuplicateError::OtherBeingWritten)
                   : make_error_code(DuplicateError::OtherUnreadable);
    // One file that stands in both: by a hard link it may, by a mount it is no copy.
    const bool isOneFile = held->attributes.device == heldOther->attributes.device &&
                           held->attributes.inode == heldOther->attributes.inode;
    if (isOneFile && held->attributes.links < 2)
        return DuplicateError::SameFile;
    if (!isOneFile) {
        if (const auto error = m_comparison.compare(*held, *heldOther))
            return error;
    }
    if (const auto error = m_comparison.lookForWriters(*held, *heldOther))
        return error;
    if (const auto error = m_comparison.lookAgain(*held, *heldOther))
        return error;
    m_seen.push_back({one, held->attributes, false});
    m_seen.push_back({other, heldOther->attributes, true});
    m_pairs.push_back({one, other, held->attributes, heldOther->attributes});
    m_unshared.push_back(m_files.unsharedBytes(held->file).value_or(0));
    m_size += held->attributes.size;
    m_changed = std::max(m_changed, held->attributes.changed);
    return {};
}

std::error_code BundleComparison::lookAgain() {
    for (const Seen &seen : m_seen) {
        const auto now = m_files.attributes(seen.path);
        if (!now || !isUnchanged(*now, seen.attributes))
            return seen.isOther ? make_error_code(DuplicateError::OtherChanged)
                                : make_error_code(RemovalError::Changed);
    }
    return {};
}

std::uint64_t BundleComparison::unsharedBytes() const {
    struct Inode {
        std::uint64_t names = 0;
        std::uint64_t links = 0;
        std::uint64_t bytes = 0;
    };
    std::map<FileIdentity, Inode> inodes;
    for (std::size_t i = 0; i < m_pairs.size(); ++i) {
        const FileAttributes &file = m_pairs[i].fileAttributes;
        Inode &inode = inodes[{file.device, file.inode}];
        inode = {inode.names + 1, file.links, m_unshared[i]};
    }
    std::uint64_t bytes = 0;
    for (const auto &[identity, inode] : inodes)
        bytes += inode.names == inode.links ? inode.bytes : 0;
    return bytes;
}

} // namespace brightsweep
