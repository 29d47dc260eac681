#pragma once

#include "platform/ApplicationSource.h"
#include "uninstall/Leftovers.h"

#include <atomic>
#include <vector>

namespace brightsweep {

/// Makes the plan of a removal for each application: what its source says would go and what blocks
/// it, what runs, and what it would leave behind. Changes nothing and asks nobody.
///
/// Blocks; one thread at a time, and not the main one.
class RemovalPlanner {
public:
    /// Everything that is installed, as it was listed last.
    explicit RemovalPlanner(std::vector<InstalledApplication> installed);

    /// A plan that was stopped is blocked as Blocker::Gone would be, with no reason.
    RemovalPlan planOf(const InstalledApplication &application,
                       const std::atomic<bool> *stop = nullptr) const;

private:
    Leftovers m_leftovers;
};

/// The source of a kind that works on this machine; null for bundles, which have none.
ApplicationSource *sourceOf(ApplicationKind kind);
/// True where the application is the file or folder at its path, which this program removes itself.
bool isPlainFiles(const InstalledApplication &application);
/// What of the application itself goes, in bytes: not what lies in its folder and is listed as a
/// leftover, with a tick of its own. As blocking as ApplicationSource::sizeOf().
std::uint64_t sizeOf(const RemovalPlan &plan);
/// What lies in an application's own folder and is not ticked: the folder stays for it.
std::vector<std::filesystem::path> keptIn(const RemovalPlan &plan);
/// True where its removal takes rights from the beginning.
bool takesRights(const RemovalPlan &plan);
/// True where it cannot go without rights, as it looked when it was planned.
bool needsRights(const RemovalPlan &plan);

} // namespace brightsweep
