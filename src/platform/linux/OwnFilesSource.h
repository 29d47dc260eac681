#pragma once

#include "platform/ApplicationSource.h"
#include "platform/linux/DesktopEntries.h"

#include <filesystem>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace brightsweep {

/// Which of the paths belong to a package.
using OwnedPaths =
    std::function<std::unordered_set<std::string>(const std::unordered_set<std::string> &paths)>;

/// What the two kinds share that no manager knows of: they are found by their places and entries,
/// and removed as files are.
class OwnFilesSource : public ApplicationSource {
public:
    std::vector<std::string> runningOf(const std::vector<InstalledApplication> &) final;
    std::vector<std::filesystem::path> watched() const override;
    bool isPlainFiles() const final { return true; }
    RemovalPlan plan(const InstalledApplication &application) final;
    RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) final;
    std::uint64_t sizeOf(const InstalledApplication &application) final;

protected:
    explicit OwnFilesSource(OwnedPaths owned) : m_owned(std::move(owned)) {}
    std::unordered_set<std::string> owned(const std::unordered_set<std::string> &paths) const {
        return m_owned ? m_owned(paths) : std::unordered_set<std::string>();
    }

private:
    const OwnedPaths m_owned;
};

} // namespace brightsweep
