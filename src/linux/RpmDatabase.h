#pragma once

#include "linux/PackageDatabase.h"

#include <map>
#include <set>

namespace brightsweep {

/// rpm's database, asked through `rpm`: its format is rpm's own affair, and it has an index of
/// files. One process answers for all entries.
class RpmDatabase final : public PackageDatabase {
public:
    RpmDatabase(std::string root, ToolRunner run)
        : PackageDatabase(std::move(root), std::move(run)) {}

    PackageFamily family() const override { return PackageFamily::Rpm; }
    std::string stamp() const override;
    std::vector<std::string> watched() const override;
    const PackageRecord *find(const std::string &name) override;
    PathOwners owners(const PathSet &paths) override;
    std::vector<std::string> filesOf(const std::string &name) override;
    DryRun dryRun(const std::vector<std::string> &names) override;

    /// The packages that a refused removal names as needing one of its own.
    static std::vector<std::string> dependentsIn(std::string_view words);

protected:
    bool locate() override;
    bool load() override;

private:
    ToolOutput rpm(std::vector<std::string> arguments) const;
    /// Notes the record of a line of the query; its name, or an empty text.
    std::string note(std::string_view line);
    void findOwners(const std::vector<std::string> &paths, PathOwners &owners);

    std::string m_folder; // of the database
    std::set<std::string> m_protected;
    std::map<std::string, PackageRecord> m_records;
};

} // namespace brightsweep
