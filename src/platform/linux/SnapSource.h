#pragma once

#include "platform/ApplicationSource.h"

#include <chrono>

namespace brightsweep {

/// Snaps with a desktop entry, by snapd's own interface, which asks for rights by itself.
class SnapSource final : public ApplicationSource {
public:
    /// How often a change is looked at, and how long snapd may be away in the middle of one: it
    /// restarts itself for some.
    explicit SnapSource(std::chrono::milliseconds interval = std::chrono::milliseconds(200),
                        std::chrono::milliseconds absence = std::chrono::seconds(60))
        : m_interval(interval), m_absence(absence) {}

    ApplicationKind kind() const override { return ApplicationKind::Snap; }
    std::string unavailableReason() const override;
    Result<std::vector<InstalledApplication>> applications() override;
    std::vector<ClaimedName> claims() override;
    std::vector<std::string> runningOf(const std::vector<InstalledApplication> &) override;
    std::vector<std::filesystem::path> watched() const override;
    RemovalPlan plan(const InstalledApplication &application) override;
    RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) override;
    std::uint64_t sizeOf(const InstalledApplication &application) override;

private:
    RemovalResult follow(const std::string &change, const std::string &name) const;

    const std::chrono::milliseconds m_interval;
    const std::chrono::milliseconds m_absence;
    std::vector<ClaimedName> m_claims; ///< all snaps, also those without an entry
};

} // namespace brightsweep
