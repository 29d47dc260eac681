#pragma once

#include "platform/ApplicationSource.h"
#include "platform/FileIdentity.h"
#include "removal/ItemRemoval.h"

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// When a file was written, and when it got its name or its contents, whatever time of writing it
/// brought along; nanoseconds since the epoch.
struct FileTimes {
    std::int64_t written = 0;
    std::int64_t came = 0;
};

/// How an entry is looked at.
struct LeftoverLook {
    const std::atomic<bool> *stop = nullptr;
    bool ticksData = false;
    /// Where not null, gets the times of each file that is looked at, but for `programs`: the
    /// application's own, which updates replace.
    std::vector<FileTimes> *times = nullptr;
    /// Takes for the coming of a file when it was made, which no change of owner or mode touches. A
    /// file that was moved here has been made before.
    bool cameWhenMade = false;
    bool timesFolders = false; ///< gets those of the folders below the item as well
    std::vector<FileIdentity> programs = {};
};

/// Looks at one entry that may be a leftover, with all that lies in it, and follows no link and
/// enters nothing that is mounted. Any thread.
///
/// Settings that hold a database, a profile or documents, or that are large, come back as data.
/// Settings, caches and entries are ticked, and with `ticksData` what was data from the beginning,
/// unless the entry is a link or would stay even with rights. Nothing where it is not there, keeps
/// its place whatever happens, or was not looked at to the end.
std::optional<Leftover> lookAtLeftover(const RemovalTarget &target, LeftoverKind kind,
                                       std::string reason, const LeftoverLook &look = {});

/// True where `now` is another object than the one that was shown, or a folder that has gained
/// something since. A cache may gain as it likes.
bool hasLeftoverChanged(const Leftover &shown, const Leftover &now);

/// Removes an item that was shown, unless it has changed since: RemovalError::Changed. Without
/// rights that a part of it takes nothing of it goes. One that has gone by itself counts as
/// removed. Part of the removal run that is under way.
RemovalOutcome removeAsShown(ItemRemoval &removal, const Leftover &shown,
                             const std::atomic<bool> *stop = nullptr);

/// True where rights to remove files are held.
bool holdsRights();
/// The outcome of a removal that was not begun for want of them.
RemovalOutcome lackOfRights();

} // namespace brightsweep
