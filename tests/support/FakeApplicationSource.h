#pragma once

#include "platform/ApplicationSource.h"

#include <functional>
#include <utility>

namespace brightsweep::test {

/// A source as a test says: it lists what it is given, notes what it is told to do, and answers or
/// fails as the test wants it to.
class FakeApplicationSource final : public ApplicationSource {
public:
    explicit FakeApplicationSource(ApplicationKind kind) : m_kind(kind) {}

    ApplicationKind kind() const override { return m_kind; }
    std::string unavailableReason() const override { return reason; }
    Result<std::vector<InstalledApplication>> applications() override {
        if (failure)
            return failure;
        return installed;
    }
    std::vector<ClaimedName> claims() override { return claimed; }
    std::vector<std::string> formerNames() override { return former; }
    std::vector<std::string> runningOf(const std::vector<InstalledApplication> &) override {
        return running;
    }
    bool isPlainFiles() const override {
        return m_kind == ApplicationKind::AppImage || m_kind == ApplicationKind::Folder;
    }
    RemovalPlan plan(const InstalledApplication &application) override {
        planned.push_back(application.key);
        RemovalPlan plan;
        plan.application = application;
        if (adjust)
            adjust(plan);
        return plan;
    }
    /// What went is no longer listed.
    RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) override {
        removals.push_back(plan);
        tokens.push_back(rights ? *rights : RightsToken{});
        const RemovalResult result =
            answer ? answer(plan)
                   : RemovalResult{UninstallOutcome::Removed, {}, {plan.application.key}};
        for (const std::string &key : result.gone)
            std::erase_if(installed,
                          [&](const InstalledApplication &one) { return one.key == key; });
        return result;
    }
    std::uint64_t sizeOf(const InstalledApplication &application) override {
        return application.bytes.value_or(0);
    }

    std::string reason;
    std::error_code failure; ///< of the listing
    std::vector<InstalledApplication> installed;
    std::vector<ClaimedName> claimed;
    std::vector<std::string> former;
    std::vector<std::string> running;
    std::function<void(RemovalPlan &)> adjust;
    std::function<RemovalResult(const RemovalPlan &)> answer;
    std::vector<std::string> planned;
    std::vector<RemovalPlan> removals;
    std::vector<RightsToken> tokens; ///< of the removals; all zero where none was given

private:
    const ApplicationKind m_kind;
};

} // namespace brightsweep::test
