#pragma once

#include "platform/AdministratorRights.h"
#include "platform/FileOperations.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>

namespace brightsweep {

class TrashRecord;

/// Rights as one act uses them: made anew from the portable form for each, shared with no other.
struct AuthorizationReference {
    RightsToken token{};
};

/// How one removal went.
struct RemovalOutcome {
    bool removed = false;
    /// Why the normal way failed; empty when the item went by it. Kept when the item went by the
    /// privileged way, so that a log can tell.
    std::error_code error;
    /// What the privileged way had to say; empty when it was not tried or said nothing.
    std::string words;
    /// True when the normal way failed for want of permission.
    bool neededRights = false;
};

/// The process-wide holder of administrator rights, and the two ways to remove an item that all
/// features share.
///
/// Rights are asked for once and kept until they are given up or their process ends. Removals may
/// come from any thread; one that needs rights waits for those before it. Failures are logged and
/// returned, never shown.
class NvAuthorization {
public:
    /// The shared object, made on first use.
    static NvAuthorization &shareNvAuthorization();
    /// Gives the rights up.
    ~NvAuthorization();
    NvAuthorization(const NvAuthorization &) = delete;
    NvAuthorization &operator=(const NvAuthorization &) = delete;

    /// True if rights are held afterwards. May show the system's dialog, and blocks meanwhile.
    bool allocAuthorization();
    /// How the last request for rights was answered; granted before the first.
    RightsResult lastResult();
    /// Gives the rights up. Always true.
    bool freeAuthorization();
    /// A reference for one act, or none. Having one proves only that rights were got and not given
    /// up; whether they still hold shows when they are used.
    std::optional<AuthorizationReference> getAuthorizationRet();

    /// Removes the item with administrator rights. True when the tool was silent and the item is
    /// gone, also when it had gone before. Without rights the service refuses.
    static bool removeItemAtPath(const RemovalTarget &target);
    static bool removeItemAtPath(const std::filesystem::path &path);
    /// Removes the item by the normal way, then by the privileged way. True when it is gone.
    static bool synFastRemovePath(const RemovalTarget &target);
    static bool synFastRemovePath(const std::filesystem::path &path);
    /// The same, told in full.
    /// `stop`, when given, ends the normal way within the item; the privileged way is then not
    /// tried.
    static RemovalOutcome removeWithOutcome(const RemovalTarget &target,
                                            const std::atomic<bool> *stop = nullptr);
    static RemovalOutcome removeWithOutcome(const std::filesystem::path &path);
    /// The normal way alone. Logs nothing.
    static RemovalOutcome removeWithoutRights(const RemovalTarget &target,
                                              const std::atomic<bool> *stop = nullptr);
    /// The error that the normal way would meet before anything of the item goes.
    static std::error_code checkRemoval(const RemovalTarget &target);

    /// An item by its path alone: its folder, as it is now, is the root.
    static Result<RemovalTarget> targetOf(const std::filesystem::path &path);

private:
    NvAuthorization();
    static PrivilegedReply removePrivileged(const RemovalTarget &target);
    /// What a trash remembers of an item that has gone.
    static void forget(const std::optional<TrashRecord> &record);
    bool isHeld();

    std::mutex m_asking; // held while the dialog may be up
    std::mutex m_mutex;  // guards the fields below
    RightsResult m_lastResult{RightsOutcome::Granted, 0, {}};
    std::optional<AuthorizationReference> authorizationRef;
    bool isValidAuth = false;
    RightsToken authForm{};
};

} // namespace brightsweep
