#pragma once

#include "platform/ApplicationSource.h"

#include <filesystem>

namespace brightsweep {

/// Flatpaks of the user's and of the system's installation, one for each ref, found by their
/// folders. Removed by Flatpak's own tool, which asks for rights by itself where it takes some;
/// never with its option for the data, which takes that of another installation along.
class FlatpakSource final : public ApplicationSource {
public:
    ApplicationKind kind() const override { return ApplicationKind::Flatpak; }
    std::string unavailableReason() const override;
    Result<std::vector<InstalledApplication>> applications() override;
    /// The ids in further installations of the system, which are not listed.
    std::vector<ClaimedName> claims() override;
    std::vector<std::string> runningOf(const std::vector<InstalledApplication> &) override;
    std::vector<std::filesystem::path> watched() const override;
    RemovalPlan plan(const InstalledApplication &application) override;
    RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) override;
    std::uint64_t sizeOf(const InstalledApplication &application) override;
};

} // namespace brightsweep
