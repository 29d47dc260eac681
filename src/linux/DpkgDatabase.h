#pragma once

#include "linux/PackageDatabase.h"

namespace brightsweep {

/// dpkg's database: `var/lib/dpkg/status` and the lists of files in `info`; see deb-control(5) and
/// dpkg(1). Packages of the machine's own architecture are named without it.
class DpkgDatabase final : public PackageDatabase {
public:
    DpkgDatabase(std::string root, ToolRunner run)
        : PackageDatabase(std::move(root), std::move(run)) {}

    PackageFamily family() const override { return PackageFamily::Dpkg; }
    std::string stamp() const override;
    std::vector<std::string> watched() const override;
    const PackageRecord *find(const std::string &name) override;
    std::vector<std::string> formerNames() override;
    std::string unfinished() const override { return m_unfinished; }
    std::string wayOutOfUnknown() const override;
    PathOwners owners(const PathSet &paths) override;
    std::vector<std::string> filesOf(const std::string &name) override;
    DryRun dryRun(const std::vector<std::string> &names) override;

    /// The records that a status file's text describes, by name, and the machine's architecture as
    /// far as it can be told.
    static std::vector<PackageRecord> parseStatus(std::string_view text, std::string &architecture);
    /// The packages that a refused removal names as needing one of its own.
    static std::vector<std::string> dependentsIn(std::string_view words);

protected:
    bool locate() override;
    bool load() override;

private:
    std::string withoutOwnArchitecture(std::string_view name) const;

    std::vector<PackageRecord> m_records; // by name
    std::string m_architecture;
    std::string m_unfinished;
};

} // namespace brightsweep
