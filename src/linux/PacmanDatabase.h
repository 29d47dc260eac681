#pragma once

#include "linux/PackageDatabase.h"

#include <map>

namespace brightsweep {

/// pacman's database: a folder `var/lib/pacman/local/NAME-VERSION-RELEASE` for each package, with
/// "%KEY%" blocks in its files `desc` and `files`.
class PacmanDatabase final : public PackageDatabase {
public:
    PacmanDatabase(std::string root, ToolRunner run)
        : PackageDatabase(std::move(root), std::move(run)) {}

    PackageFamily family() const override { return PackageFamily::Pacman; }
    std::string stamp() const override;
    std::vector<std::string> watched() const override;
    const PackageRecord *find(const std::string &name) override;
    PathOwners owners(const PathSet &paths) override;
    std::vector<std::string> filesOf(const std::string &name) override;
    DryRun dryRun(const std::vector<std::string> &names) override;

    /// The lines of each block of a file, by the block's key.
    static std::map<std::string, std::vector<std::string>, std::less<>>
    blocksOf(std::string_view text);

protected:
    bool locate() override;
    bool load() override;

private:
    std::map<std::string, std::string> m_folders; // by name
    std::map<std::string, PackageRecord> m_records;
    std::vector<std::string> m_held;
};

} // namespace brightsweep
