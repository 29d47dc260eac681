#pragma once

#include "platform/ApplicationSource.h"
#include "removal/RemovalRun.h"
#include "uninstall/Uninstallation.h"

#include <atomic>
#include <functional>
#include <vector>

namespace brightsweep {

/// What applications that are gone have left: by the names of packages of which only settings of
/// the system remain, the folders of Flatpaks and snaps that are not installed, and entries that
/// start a program that is not there. Each with its reason, nothing ticked.
///
/// A kind whose applications could not be listed just now is passed over: what is not known to be
/// gone is not left behind. Blocks; one thread at a time, and not the main one.
class LeftBehind {
public:
    /// What is installed, as it was listed just now, and the kinds of which that is not known.
    LeftBehind(std::vector<InstalledApplication> installed, std::vector<ApplicationKind> unknown);

    std::vector<Leftover> find(const std::atomic<bool> *stop = nullptr) const;

    /// Removes what was found and is ticked, as it was shown, with the rights that are held; how
    /// each went. `told` is called before each.
    static std::vector<Uninstallation::Item>
    remove(RemovalRun &run, const std::vector<Leftover> &leftovers,
           const std::function<void(const Leftover &)> &told = {});

private:
    bool isKnown(ApplicationKind kind) const;

    std::vector<InstalledApplication> m_installed;
    std::vector<ApplicationKind> m_unknown;
    std::vector<ClaimedName> m_claims;
};

} // namespace brightsweep
