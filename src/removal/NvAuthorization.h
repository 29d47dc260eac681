#pragma once

#include "platform/AdministratorRights.h"
#include "platform/FileOperations.h"
#include "removal/ItemRemoval.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace brightsweep {

/// Rights as one act uses them: made anew from the portable form for each, shared with no other.
struct AuthorizationReference {
    RightsToken token{};
};

/// The process-wide holder of administrator rights, and the two ways to remove an item that all
/// features share.
///
/// Rights are asked for once and kept until they are given up or their process ends. Asking and
/// removing block and are for workers; everything else answers at once, also meanwhile. Removals
/// may come from any thread; one that needs rights waits for those before it. Failures are logged
/// and returned, never shown.
class NvAuthorization {
public:
    /// The shared object, made on first use.
    static NvAuthorization &shareNvAuthorization();
    /// Gives the rights up.
    ~NvAuthorization();
    NvAuthorization(const NvAuthorization &) = delete;
    NvAuthorization &operator=(const NvAuthorization &) = delete;

    /// True if rights for the purpose are held afterwards. May show the system's dialog, and blocks
    /// meanwhile.
    bool allocAuthorization(RightsPurpose purpose = RightsPurpose::Files);
    /// Rights for the purpose were got, and whoever acts with them is alive.
    bool isHeld(RightsPurpose purpose);
    /// How the last request for rights was answered; granted before the first.
    RightsResult lastResult();
    /// Gives the rights up at once, also while they are asked for or used. Always true.
    bool freeAuthorization();
    /// A reference for one act, or none. Having one proves only that rights were got and not given
    /// up; whether they still hold shows when they are used.
    std::optional<AuthorizationReference> getAuthorizationRet();

    /// Removes the item with administrator rights. True when the tool was silent and the item is
    /// gone, also when it had gone before. Without rights the service refuses.
    static bool removeItemAtPath(const RemovalTarget &target);
    static bool removeItemAtPath(const std::filesystem::path &path);
    /// Removes the item by the normal way, then by the privileged way. True when it is gone. Part
    /// of the run that is under way; without one it is a run of its own, and fails during
    /// another's.
    static bool synFastRemovePath(const RemovalTarget &target);
    static bool synFastRemovePath(const std::filesystem::path &path);

    /// An item by its path alone: its folder, as it is now, is the root.
    static Result<RemovalTarget> targetOf(const std::filesystem::path &path);

private:
    NvAuthorization();
    bool isHeld();

    std::mutex m_asking; // held while the dialog may be up
    std::atomic<bool> m_isAsking{false};
    std::mutex m_mutex; // guards the fields below
    RightsResult m_lastResult{RightsOutcome::Granted, 0, {}};
    std::optional<AuthorizationReference> authorizationRef;
    bool isValidAuth = false;
    RightsPurpose m_purpose = RightsPurpose::Files; // of what is held
    RightsToken authForm{};
};

} // namespace brightsweep
