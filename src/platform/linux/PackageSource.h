#pragma once

#include "linux/PackageDatabase.h"
#include "linux/PackageSafety.h"
#include "platform/ApplicationSource.h"

#include <memory>
#include <mutex>

namespace brightsweep {

/// The distribution's packages that have a launcher: one record for each package, whatever number
/// of entries it has.
///
/// What is installed is read from the package manager's own files, and anew whenever these have
/// changed. Plans are dry runs of the lowest tool as the user; a removal goes through the process
/// with administrator rights, which checks the same again.
class PackageSource final : public ApplicationSource {
public:
    PackageSource();
    ~PackageSource() override;

    ApplicationKind kind() const override { return ApplicationKind::Package; }
    std::string unavailableReason() const override;
    Result<std::vector<InstalledApplication>> applications() override;
    std::vector<ClaimedName> claims() override;
    std::vector<std::string> formerNames() override;
    std::vector<std::string>
    runningOf(const std::vector<InstalledApplication> &applications) override;
    std::vector<std::filesystem::path> watched() const override;
    RemovalPlan plan(const InstalledApplication &application) override;
    RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) override;
    std::uint64_t sizeOf(const InstalledApplication &application) override;

    /// Which package has each of the paths of this machine. Also for other sources, which leave
    /// alone what a package owns.
    PathOwners owners(const PathSet &paths);

private:
    /// The database as it is now; null where there is none.
    PackageDatabase *database() const;
    const PackageSafety &safety();
    PathOwners ownersOf(const PathSet &paths);

    mutable std::mutex m_mutex;
    mutable std::unique_ptr<PackageDatabase> m_database;
    mutable std::string m_root;
    mutable std::string m_stamp;
    mutable std::unique_ptr<PackageSafety> m_safety; // of the database
    /// Paths of the system that were asked about, and whose they are; empty for nobody's.
    mutable PathOwners m_knownOwners;
    std::vector<ClaimedName> m_claims;
};

/// Without the epoch and the revision: "1:2.10.34-1+deb12u2" is "2.10.34".
std::string upstreamVersion(std::string_view version);

} // namespace brightsweep
