#include "uninstall/LeftoverLook.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "linux/RemovalError.h"
#include "platform/DirectoryWalk.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "removal/NvAuthorization.h"
#include "uninstall/LeftoverRules.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>

namespace brightsweep {

namespace {

void noteTimes(const LeftoverLook &look, const FileIdentity &file, FileTimes times,
               const std::function<std::filesystem::path()> &path) {
    if (!look.times ||
        std::find(look.programs.begin(), look.programs.end(), file) != look.programs.end())
        return;
    if (look.cameWhenMade) {
        if (const auto made = Platform::current().workspace->created(path()))
            times.came = made->time_since_epoch().count();
    }
    look.times->push_back(times);
}

class Contents final : public DirectoryWalk::Visitor {
public:
    Contents(FileOperations &files, OpenDirectory directory, const LeftoverLook &look,
             const std::filesystem::path &item)
        : m_files(files),
          m_item(item),
          m_look(look),
          m_mounts(MountsBelow::of(files, directory)),
          m_walk(files, *this,
                 {look.timesFolders ? WantedAttributes::All : WantedAttributes::NonDirectories, 0,
                  look.stop}) {
        m_walk.addRoot(std::make_shared<const OpenDirectory>(std::move(directory)), nullptr);
    }

    bool run() { return m_walk.run(); }

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        const auto error = m_files.checkEntries(directory.opened(), block);
        const std::lock_guard lock(m_mutex);
        needsRights = needsRights || isForWantOfPermission(error);
        if (isKeptByFlag(error))
            keptByFlag = error;
        for (const DirectoryEntry &entry : block.entries()) {
            ++count;
            // The time of change is the system's own: it is never older than the file's coming
            // here, as the time of writing, which archives bring along, may be.
            if (m_look.times && (entry.type != EntryType::Directory || m_look.timesFolders))
                noteTimes(m_look, {entry.device, entry.inode}, {entry.modified, entry.changed},
                          [&] { return paths::join(m_item, directory.wayTo(entry.nameView())); });
            holdsData = holdsData || LeftoverRules::isDataName(entry.nameView());
            if (entry.type != EntryType::Directory)
                bytes = addSaturating(bytes, entry.size);
            else if (!m_mounts.isAt(directory, entry.nameView()))
                m_walk.enter(directory, entry.nameView(), nullptr);
        }
    }

    std::uint64_t count = 0;
    std::uint64_t bytes = 0;
    bool holdsData = false;
    bool needsRights = false;
    std::error_code keptByFlag;

private:
    FileOperations &m_files;
    const std::filesystem::path &m_item;
    const LeftoverLook &m_look;
    const MountsBelow m_mounts;
    DirectoryWalk m_walk;
    std::mutex m_mutex;
};

// True for a folder that is closed to the user, and another's.
bool isKeptClosed(FileOperations &files, const OpenItem &item) {
    DirectoryBlock block;
    DirectoryEntry &entry = block.fill().emplace_back();
    entry.name = item.name.c_str();
    entry.nameLength = std::uint32_t(item.name.size());
    entry.type = EntryType::Directory;
    return isForWantOfPermission(files.checkEntries(item.folder->directory(), block));
}

// Why settings are data after all; nothing where they are not.
const char *dataReason(const Leftover &leftover, bool holdsData) {
    if (holdsData || LeftoverRules::isDataName(leftover.target.relative.filename().native()))
        return "holds a database, a profile, documents or media";
    return leftover.bytes > LeftoverRules::mostSettingsBytes ? "more than settings, by its size"
                                                             : nullptr;
}

} // namespace

std::optional<Leftover> lookAtLeftover(const RemovalTarget &target, LeftoverKind kind,
                                       std::string reason, const LeftoverLook &look) {
    FileOperations &files = *Platform::current().files;
    const auto item = files.openItem(target);
    if (!item)
        return {};
    const bool isBusy = item->refusal == std::errc::device_or_resource_busy;
    if (item->refusal && !isBusy)
        return {};
    Leftover leftover;
    leftover.path = target.path();
    leftover.kind = kind;
    leftover.reason = std::move(reason);
    leftover.target = target;
    leftover.seen = item->attributes;
    const auto check = files.checkRemoval(*item);
    leftover.needsRights = isForWantOfPermission(check);
    std::error_code keptByFlag = isKeptByFlag(check) ? check : std::error_code();
    bool holdsData = false;
    const FileIdentity identity{leftover.seen.device, leftover.seen.inode};
    const FileTimes times{leftover.seen.modified, leftover.seen.changed};
    const auto path = [&] { return leftover.path; };
    if (leftover.seen.type == EntryType::Directory) {
        auto directory = files.openDirectoryAt(item->folder->directory(), item->name.c_str());
        // What cannot be read may hold anything.
        holdsData = !directory;
        if (!directory)
            noteTimes(look, identity, times, path);
        if (!directory && isKeptClosed(files, *item))
            leftover.needsRights = true;
        if (directory) {
            Contents contents(files, *std::move(directory), look, leftover.path);
            if (!contents.run())
                return {};
            leftover.bytes = contents.bytes;
            leftover.entries = contents.count;
            holdsData = contents.holdsData;
            leftover.needsRights = leftover.needsRights || contents.needsRights;
            if (contents.keptByFlag)
                keptByFlag = contents.keptByFlag;
        }
    } else {
        leftover.bytes = leftover.seen.size;
        noteTimes(look, identity, times, path);
    }
    if (keptByFlag)
        leftover.refusal = keptByFlag;
    else if (isBusy || leftover.needsRights)
        leftover.refusal = files.refusalWithRights(*item);
    if (const char *words = dataReason(leftover, holdsData);
        kind == LeftoverKind::Config && words) {
        leftover.kind = LeftoverKind::Data;
        leftover.reason += std::string("; ") + words;
    }
    leftover.ticked =
        leftover.kind == LeftoverKind::Config || leftover.kind == LeftoverKind::Cache ||
        leftover.kind == LeftoverKind::Entry || (look.ticksData && kind == LeftoverKind::Data);
    const bool isLink = leftover.seen.type == EntryType::Link;
    if (isLink && kind != LeftoverKind::Entry) {
        leftover.ticked = false;
        leftover.reason += "; a link to another place";
    }
    leftover.ticked = leftover.ticked && !leftover.refusal;
    return leftover;
}

bool hasLeftoverChanged(const Leftover &shown, const Leftover &now) {
    const FileAttributes &then = shown.seen;
    if (then.device != now.seen.device || then.inode != now.seen.inode ||
        then.kind != now.seen.kind)
        return true;
    return shown.kind != LeftoverKind::Cache &&
           (now.entries > shown.entries ||
            (then.type == EntryType::File &&
             (then.size != now.seen.size || then.modified != now.seen.modified)));
}

bool holdsRights() {
    return NvAuthorization::shareNvAuthorization().isHeld(RightsPurpose::Files);
}

RemovalOutcome lackOfRights() {
    return {false, std::make_error_code(std::errc::permission_denied),
            "administrator rights are needed", true, false};
}

RemovalOutcome removeAsShown(ItemRemoval &removal, const Leftover &shown,
                             const std::atomic<bool> *stop) {
    const auto item = removal.reach(shown.target);
    if (!item && item.error() == std::errc::no_such_file_or_directory)
        return {true, {}, {}, false, false};
    if (item && !item->refusal) {
        const auto now = lookAtLeftover(shown.target, shown.kind, {}, {stop});
        if (stop && *stop)
            return {false, make_error_code(std::errc::operation_canceled), {}, false, false};
        Leftover reached = shown;
        reached.seen = item->attributes;
        if (!now || hasLeftoverChanged(shown, *now) || hasLeftoverChanged(shown, reached)) {
            NSLog("Not removed, for it has changed: %@", shown.path);
            return {false, RemovalError::Changed, {}, false, false};
        }
        // Rights that do not reach it would leave a part of it.
        if (now->refusal)
            return {false, now->refusal, {}, false, false};
        if (now->needsRights && !holdsRights())
            return lackOfRights();
    }
    return removal.remove(shown.target, item);
}

} // namespace brightsweep
