#pragma once

#include "platform/ApplicationSource.h"
#include "platform/FileIdentity.h"
#include "removal/ItemRemoval.h"

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// How an entry is looked at.
struct LeftoverLook {
    const std::atomic<bool> *stop = nullptr;
    bool ticksData = false;
    /// When not 0, only what has a file written later than that, or put there later than
    /// `cameAfter`, both in nanoseconds since the epoch.
    std::int64_t changedAfter = 0;
    std::int64_t cameAfter = 0;
    /// Files whose times do not count there: the application's own programs, which updates replace.
    std::vector<FileIdentity> programs = {};
};

/// Looks at one entry that may be a leftover, with all that lies in it, and follows no link and
/// enters nothing that is mounted. Any thread.
///
/// Settings that hold a database, a profile or documents, or that are large, come back as data.
/// Settings, caches and entries are ticked, and with `ticksData` what was data from the beginning,
/// unless the entry is a link or holds another volume. Nothing where it is not there, keeps its
/// place whatever happens, or was not looked at to the end.
std::optional<Leftover> lookAtLeftover(const RemovalTarget &target, LeftoverKind kind,
                                       std::string reason, const LeftoverLook &look = {});

/// When each of the files below an item got its name or its contents, whatever time of its own it
/// has, of those that were written no later than that. Nothing where it was not looked at to the
/// end.
std::vector<std::int64_t> timesOfArrival(const RemovalTarget &target, std::int64_t writtenBy,
                                         const std::atomic<bool> *stop);

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
