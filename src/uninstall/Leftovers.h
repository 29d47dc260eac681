#pragma once

#include "platform/ApplicationSource.h"
#include "uninstall/LeftoverRules.h"

#include <atomic>
#include <string>
#include <vector>

namespace brightsweep {

/// Finds what an application would leave behind: entries of the user's own folders that have its
/// names (LeftoverRules) and of which no other installed application can say the same, and what its
/// kind is known to make. Removes nothing.
///
/// Constant once made; any thread, and not the main one: it asks the disk.
class Leftovers {
public:
    /// All that is installed, as it was listed last; what the sources claim besides is asked here.
    explicit Leftovers(std::vector<InstalledApplication> installed);

    /// What the plan's application would leave, those that go along counting as gone. In the order
    /// of the folders, and by name within one.
    std::vector<Leftover> of(const RemovalPlan &plan,
                             const std::atomic<bool> *stop = nullptr) const;

private:
    LeftoverNames claimedBesides(const RemovalPlan &plan) const;
    bool hasTwin(const InstalledApplication &application) const;

    std::vector<InstalledApplication> m_installed;
    std::vector<ClaimedName> m_claims;
};

/// What an application is called, for the rules.
ApplicationNames namesOf(const InstalledApplication &application);
/// Adds all that it is called to a list of names that are claimed.
void addNames(std::vector<std::string> &names, const InstalledApplication &application);
/// The names of the desktop that runs.
std::vector<std::string> namesOfDesktop();
/// What the sources say is installed besides what they list.
std::vector<ClaimedName> claimsOfSources();
/// The id within a full ref "app/ID/ARCH/BRANCH"; empty for anything else.
std::string flatpakIdOf(const std::string &ref);

} // namespace brightsweep
