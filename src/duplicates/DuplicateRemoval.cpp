#include "duplicates/DuplicateRemoval.h"
#include "duplicates/DuplicateNodes.h"

#include "duplicates/DuplicateError.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

// What one call of the kernel compares and shares; a stop waits for no more.
constexpr std::uint64_t shareAtOnce = std::uint64_t(16) << 20;

struct ShareReason {
    std::errc system;
    DuplicateError error;
};

constexpr std::array shareReasons = {
    ShareReason{std::errc::operation_not_supported, DuplicateError::CannotShare},
    ShareReason{std::errc::not_supported, DuplicateError::CannotShare},
    ShareReason{std::errc::inappropriate_io_control_operation, DuplicateError::CannotShare},
    ShareReason{std::errc::cross_device_link, DuplicateError::OtherFileSystem},
    ShareReason{std::errc::text_file_busy, DuplicateError::InUseBySystem},
    ShareReason{std::errc::read_only_file_system, DuplicateError::ReadOnly},
    ShareReason{std::errc::invalid_argument, DuplicateError::ShareRefused},
};

std::error_code shareError(std::error_code error) {
    for (const ShareReason &reason : shareReasons) {
        if (error == reason.system)
            return reason.error;
    }
    return error;
}

DuplicateRemoval::Outcome stays(std::error_code error) {
    DuplicateRemoval::Outcome outcome;
    outcome.error = error;
    outcome.neededRights = isForWantOfPermission(error);
    return outcome;
}

bool isSameInode(const FileAttributes &one, const FileAttributes &other) {
    return one.device == other.device && one.inode == other.inode;
}

bool hasRights() {
    return NvAuthorization::shareNvAuthorization().getAuthorizationRet().has_value();
}

// A file somewhere in a bundle, so that something is asked of its file system.
Result<FileDescriptor> firstFileOf(FileOperations &files, const std::filesystem::path &bundle) {
    constexpr std::size_t mostFolders = 1'000;
    std::vector<std::filesystem::path> folders{bundle};
    for (std::size_t i = 0; i < folders.size() && i < mostFolders; ++i) {
        const auto folder = files.openDirectory(folders[i]);
        DirectoryBlock block;
        while (folder && !block.atEnd() &&
               !files.readBlock(*folder, block, WantedAttributes::None)) {
            for (const DirectoryEntry &entry : block.entries()) {
                const auto path = paths::join(folders[i], entry.nameView());
                if (entry.type == EntryType::Directory)
                    folders.push_back(path);
                else if (entry.type == EntryType::File)
                    return files.openFile(path);
            }
        }
    }
    return std::errc::no_such_file_or_directory;
}

// How a fault of the copy that stays reads for the one that was to go.
std::error_code faultOfOther(std::error_code error) {
    if (error == DuplicateError::BeingWritten)
        return DuplicateError::OtherBeingWritten;
    const bool isGone = error == std::errc::no_such_file_or_directory ||
                        error == std::errc::not_a_directory ||
                        error == std::errc::too_many_symbolic_link_levels ||
                        error == std::errc::invalid_argument; // no regular file now
    return isGone ? DuplicateError::NoOther : DuplicateError::OtherUnreadable;
}

} // namespace

DuplicateRemoval::DuplicateRemoval(SearchRoot root, const Options &options)
    : m_files(*Platform::current().files),
      m_root(std::move(root)),
      m_options(options),
      m_removal(options.stop),
      m_trash(options.stop),
      m_comparison(m_files, options.stop),
      m_bundles(m_files, options.stop) {}

DuplicateRemoval::Outcome DuplicateRemoval::act(const std::vector<Member> &group, std::size_t index,
                                                bool takesWholeGroup) {
    const Member &member = group[index];
    if (m_options.stop && m_options.stop->load(std::memory_order_relaxed))
        return stays(std::make_error_code(std::errc::operation_canceled));
    const auto target = targetOf(member.path);
    if (!target)
        return stays(target.error());
    const auto item = m_removal.reach(*target);
    if (!item) {
        const bool isLink = item.error() == std::errc::not_a_directory ||
                            item.error() == std::errc::too_many_symbolic_link_levels;
        return stays(isLink ? make_error_code(DuplicateError::BehindLink) : item.error());
    }
    if (const auto error = checkItem(*item, member))
        return stays(error);
    const bool isAlone = takesWholeGroup && m_options.act != Act::Share;
    return member.searched.kind == SearchedFile::Kind::Bundle
               ? actOnBundle(*target, *item, group, member, isAlone)
               : actOnFile(*target, *item, group, member, isAlone);
}

// Finds begin with the path that was searched; they are reached from what that path led to then.
bool DuplicateRemoval::hasTrash(const Member &member) {
    const auto target = targetOf(member.path);
    const auto item = target ? m_removal.reach(*target) : Result<OpenItem>(target.error());
    return !item || m_files.trashOf(*item->folder, false).error() != RemovalError::NoTrash;
}

Result<RemovalTarget> DuplicateRemoval::targetOf(const std::filesystem::path &path) const {
    const auto top = paths::withoutTrailingSlashes(m_root.searched.native());
    if (!paths::isSameOrBelow(path.native(), top) || path.native().size() <= top.size())
        return std::errc::invalid_argument;
    return RemovalTarget{m_root.root, path.native().substr(top == "/" ? 1 : top.size() + 1)};
}

std::int64_t DuplicateRemoval::expectedChange(const SearchedFile &searched) const {
    const auto own = m_changes.find({searched.device, searched.inode});
    return own == m_changes.end() ? searched.changed : own->second;
}

bool DuplicateRemoval::isAsSearched(const FileAttributes &attributes,
                                    const SearchedFile &searched) const {
    return attributes.device == searched.device && attributes.inode == searched.inode &&
           attributes.size == searched.size && attributes.modified == searched.modified &&
           attributes.changed == expectedChange(searched);
}

std::error_code DuplicateRemoval::checkItem(const OpenItem &item, const Member &member) {
    const FileAttributes &now = item.attributes;
    const SearchedFile &searched = member.searched;
    bool isSame = false;
    switch (searched.kind) {
    case SearchedFile::Kind::File:
        isSame = now.type == EntryType::File && isAsSearched(now, searched);
        break;
    case SearchedFile::Kind::Link:
        isSame = now.type == EntryType::Link && now.size == searched.size &&
                 now.modified == searched.modified && now.changed == searched.changed;
        break;
    case SearchedFile::Kind::Bundle:
        isSame = now.type == EntryType::Directory && now.device == searched.device &&
                 now.inode == searched.inode;
        break;
    }
    if (item.refusal == RemovalError::HoldsVolume)
        return item.refusal;
    if (!isSame)
        return RemovalError::Changed;
    if (m_options.act == Act::Trash)
        return m_trash.check(item);
    const auto error =
        m_options.act == Act::Remove ? m_files.checkRemoval(item) : std::error_code();
    return isForWantOfPermission(error) && hasRights() ? std::error_code() : error;
}

// -- Files

Result<HeldCopy> DuplicateRemoval::holdMember(const OpenItem &item, const Member &member) {
    if (member.searched.kind == SearchedFile::Kind::File) {
        auto held = m_comparison.hold(item.path);
        if (held && !isUnchanged(held->attributes, item.attributes))
            return RemovalError::Changed;
        return held;
    }
    const auto path = m_files.canonicalPath(item.path);
    if (!path)
        return path.error();
    auto held = m_comparison.hold(*path);
    if (held && (held->attributes.device != member.searched.device ||
                 held->attributes.inode != member.searched.inode))
        return RemovalError::Changed;
    return held;
}

Result<HeldCopy> DuplicateRemoval::holdOther(const OpenItem &item, const HeldCopy &file,
                                             const Member &other) {
    auto held = m_comparison.hold(other.path);
    if (!held)
        return faultOfOther(held.error());
    if (!isAsSearched(held->attributes, other.searched))
        return DuplicateError::OtherChanged;
    if (!isSameInode(held->attributes, item.attributes))
        return held;
    // Another name of the same file: a real one is an entry of its own, in whatever directory. An
    // inode with a single name, a mount on the path and the same entry of the same directory are
    // the file itself once more.
    const auto folder = m_files.openDirectory(paths::parent(other.path));
    const std::string name = paths::lastComponent(other.path);
    const auto entry = folder ? m_files.attributesAt(*folder, name.c_str())
                              : Result<FileAttributes>(folder.error());
    const OpenDirectory &own = item.folder->directory();
    const bool isOwnEntry =
        folder && folder->device == own.device && folder->inode == own.inode && name == item.name;
    if (!entry || !isSameInode(*entry, file.attributes) || file.attributes.links < 2 ||
        isOwnEntry || m_files.isMountPoint(other.path))
        return DuplicateError::SameFile;
    return held;
}

std::error_code DuplicateRemoval::compare(const HeldCopy &file, const HeldCopy &other) {
    if (isSameInode(file.attributes, other.attributes))
        return {};
    // The kernel compares what it shares.
    if (m_options.act == Act::Share && m_options.applies)
        return {};
    return m_comparison.compare(file, other);
}

// The last look before an act: both files, and both names.
std::error_code DuplicateRemoval::lookAgain(const OpenItem &item, const Member &member,
                                            const HeldCopy &file, const HeldCopy *other) {
    const HeldCopy &second = other ? *other : file;
    if (const auto error = m_comparison.lookForWriters(file, second))
        return error;
    if (other) {
        const auto name = m_files.attributes(other->path);
        if (!name || !isSameInode(*name, other->attributes))
            return DuplicateError::NoOther;
    }
    const auto name = m_files.attributesAt(item.folder->directory(), item.name.c_str());
    if (!name || !isUnchanged(*name, item.attributes))
        return RemovalError::Changed;
    if (member.searched.kind == SearchedFile::Kind::Link) {
        const auto target = m_files.attributesFollowing(item.path);
        if (!target || !isSameInode(*target, file.attributes))
            return RemovalError::Changed;
    }
    return m_comparison.lookAgain(file, second);
}

DuplicateRemoval::Outcome DuplicateRemoval::actOnFile(const RemovalTarget &target,
                                                      const OpenItem &item,
                                                      const std::vector<Member> &group,
                                                      const Member &member, bool takesWholeGroup) {
    const auto file = holdMember(item, member);
    if (!file)
        return stays(file.error());
    std::error_code reason = DuplicateError::NoOther;
    const auto finish = [&](const HeldCopy *other) {
        if (const auto error = lookAgain(item, member, *file, other))
            return stays(error);
        if (m_options.act == Act::Share)
            return share(*file, *other);
        Outcome outcome = take(target, item);
        if (outcome.done && member.searched.kind == SearchedFile::Kind::File) {
            outcome.bytesFreed = freedWithout(*file);
            if (m_options.applies)
                noteChange(file->file);
        }
        return outcome;
    };
    if (takesWholeGroup)
        return finish(nullptr);
    for (const Member &other : group) {
        if (&other == &member || other.goes || other.searched.kind != SearchedFile::Kind::File)
            continue;
        const auto held = holdOther(item, *file, other);
        std::error_code error = held ? compare(*file, *held) : held.error();
        if (!error)
            return finish(&*held);
        // The copy at fault may not be the only one; what is the matter with the file itself is.
        if (error == RemovalError::Changed || error == DuplicateError::BeingWritten ||
            error == std::errc::operation_canceled)
            return stays(error);
        if (reason == DuplicateError::NoOther)
            reason = error;
    }
    return stays(reason);
}

DuplicateRemoval::Outcome DuplicateRemoval::take(const RemovalTarget &target,
                                                 const OpenItem &item) {
    Outcome outcome;
    if (!m_options.applies) {
        outcome.done = true;
    } else if (m_options.act == Act::Trash) {
        outcome.error = m_trash.move(item);
        outcome.done = !outcome.error;
    } else {
        const RemovalOutcome removal = m_removal.remove(target, item);
        outcome.done = removal.removed;
        outcome.error = removal.removed ? std::error_code() : removal.error;
        outcome.words = removal.words;
        outcome.neededRights = removal.neededRights && !removal.removed;
    }
    return outcome;
}

std::uint64_t DuplicateRemoval::freedWithout(const HeldCopy &file) {
    if (m_options.act == Act::Trash)
        return 0;
    std::uint64_t names = 0;
    if (m_options.applies) {
        const auto now = m_files.fileAttributes(file.file);
        names = now ? now->links : 1;
    } else {
        auto &gone = m_namesWouldGo[{file.attributes.device, file.attributes.inode}];
        names = file.attributes.links - std::min(++gone, file.attributes.links);
    }
    return names == 0 ? m_files.unsharedBytes(file.file).value_or(0) : 0;
}

void DuplicateRemoval::noteChange(const FileDescriptor &file) {
    const auto now = m_files.fileAttributes(file);
    if (now && now->links > 0)
        m_changes[{now->device, now->inode}] = now->changed;
}

// -- Sharing

DuplicateRemoval::Outcome DuplicateRemoval::share(const HeldCopy &file, const HeldCopy &other) {
    Outcome outcome;
    outcome.done = true;
    if (isSameInode(file.attributes, other.attributes))
        return outcome;
    const std::uint64_t before = m_files.unsharedBytes(file.file).value_or(0);
    if (!m_options.applies) {
        if (const auto refusal = m_files.sharingRefusal(file.file))
            return stays(shareError(refusal));
        outcome.bytesFreed = before;
        return outcome;
    }
    const std::uint64_t size = file.attributes.size;
    std::error_code error;
    for (std::uint64_t offset = 0; offset < size && !error;) {
        if (m_options.stop && m_options.stop->load(std::memory_order_relaxed)) {
            error = std::make_error_code(std::errc::operation_canceled);
            break;
        }
        const auto range =
            m_files.shareRange(other.file, file.file, offset, std::min(shareAtOnce, size - offset));
        if (!range)
            error = shareError(range.error());
        else if (!range->isEqual)
            error = DuplicateError::Differs;
        else if (range->bytes == 0)
            error = DuplicateError::ShareRefused;
        else
            offset += range->bytes;
    }
    if (error == DuplicateError::ShareRefused &&
        (m_files.isNeverCopiedOnWrite(file.file) || m_files.isNeverCopiedOnWrite(other.file)))
        error = DuplicateError::NeverCopiedOnWrite;
    if (error)
        outcome = stays(error);
    // Also of what was shared before an error.
    const std::uint64_t after = m_files.unsharedBytes(file.file).value_or(before);
    outcome.bytesFreed = before - std::min(before, after);
    noteChange(file.file);
    return outcome;
}

// -- Bundles

DuplicateRemoval::Outcome DuplicateRemoval::actOnBundle(const RemovalTarget &target,
                                                        const OpenItem &item,
                                                        const std::vector<Member> &group,
                                                        const Member &member,
                                                        bool takesWholeGroup) {
    if (takesWholeGroup)
        return take(target, item);
    std::error_code reason = DuplicateError::NoOther;
    for (const Member &other : group) {
        if (&other == &member || other.goes || other.searched.kind != SearchedFile::Kind::Bundle)
            continue;
        const auto there = m_files.attributes(other.path);
        std::error_code error;
        if (!there)
            error = DuplicateError::NoOther;
        else if (there->device != other.searched.device || there->inode != other.searched.inode)
            error = DuplicateError::OtherChanged;
        else if (isSameInode(*there, item.attributes))
            error = DuplicateError::SameFile;
        else
            error = m_bundles.compare(item.path, other.path);
        if (!error) {
            const std::int64_t changed = m_bundles.changed();
            const bool isOwnChange =
                std::any_of(m_changes.begin(), m_changes.end(),
                            [&](const auto &change) { return change.second == changed; });
            const auto now = m_files.attributes(item.path);
            if (!now || !isUnchanged(*now, item.attributes) ||
                m_bundles.size() != member.searched.size ||
                (changed != member.searched.changed && !isOwnChange))
                return stays(RemovalError::Changed);
            if (m_options.act == Act::Share)
                return shareBundle();
            const std::uint64_t bytes = m_options.act == Act::Trash ? 0 : m_bundles.unsharedBytes();
            if ((error = m_bundles.lookAgain()))
                return stays(error);
            Outcome outcome = take(target, item);
            outcome.bytesFreed = outcome.done ? bytes : 0;
            // Files with a name in both have lost one.
            for (const BundleComparison::Pair &pair : m_bundles.files()) {
                const bool isCommon = isSameInode(pair.fileAttributes, pair.otherAttributes);
                const auto left =
                    isCommon && m_options.applies
                        ? m_files.attributes(pair.other)
                        : Result<FileAttributes>(std::errc::no_such_file_or_directory);
                if (left && isSameInode(*left, pair.otherAttributes))
                    m_changes[{left->device, left->inode}] = left->changed;
            }
            return outcome;
        }
        if (error == RemovalError::Changed || error == DuplicateError::BeingWritten ||
            error == std::errc::operation_canceled)
            return stays(error);
        if (reason == DuplicateError::NoOther)
            reason = error;
    }
    return stays(reason);
}

// File by file; what was shared before an error stays shared.
DuplicateRemoval::Outcome DuplicateRemoval::shareBundle() {
    Outcome outcome;
    for (const BundleComparison::Pair &pair : m_bundles.files()) {
        if (pair.fileAttributes.size == 0)
            continue;
        const auto file = m_comparison.hold(pair.file);
        const auto other = m_comparison.hold(pair.other);
        Outcome one;
        if (!file)
            one = stays(file.error());
        else if (!other)
            one = stays(faultOfOther(other.error()));
        else if (!isUnchanged(file->attributes, pair.fileAttributes))
            one = stays(RemovalError::Changed);
        else if (!isUnchanged(other->attributes, pair.otherAttributes))
            one = stays(DuplicateError::OtherChanged);
        else
            one = share(*file, *other);
        outcome.bytesFreed += one.bytesFreed;
        if (one.error) {
            outcome.error = one.error;
            outcome.neededRights = one.neededRights;
            return outcome;
        }
    }
    outcome.done = true;
    return outcome;
}

std::vector<DuplicateRemoval::Member> membersOf(const TreeNode &group) {
    std::vector<DuplicateRemoval::Member> members;
    for (const auto &node : group.children()) {
        const auto &leaf = leafOf(*node);
        members.push_back({leaf.name(), leaf.searched(), false});
    }
    return members;
}

std::error_code sharingRefusal(const std::vector<DuplicateRemoval::Member> &group) {
    FileOperations &files = *Platform::current().files;
    bool isBundle = false;
    for (const auto &member : group) {
        isBundle = member.searched.kind == SearchedFile::Kind::Bundle;
        const auto file = isBundle ? firstFileOf(files, member.path)
                          : member.searched.kind == SearchedFile::Kind::File
                              ? files.openFile(member.path)
                              : Result<FileDescriptor>(std::errc::invalid_argument);
        if (file)
            return shareError(files.sharingRefusal(*file));
    }
    // A bundle of folders alone has nothing to share.
    return isBundle ? make_error_code(DuplicateError::CannotShare) : std::error_code();
}

} // namespace brightsweep
