#include "removal/NvAuthorization.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/TrashRecord.h"

#include <array>
#include <cerrno>

namespace brightsweep {

namespace {

constexpr std::uint32_t everybodysMode = 0777;
constexpr char aptArchives[] = "/var/cache/apt/archives";

struct OutcomeWords {
    RightsOutcome outcome;
    const char *words;
};

constexpr std::array outcomeWords = {
    OutcomeWords{RightsOutcome::Dismissed, "the dialog was dismissed"},
    OutcomeWords{RightsOutcome::Denied, "denied"},
    OutcomeWords{RightsOutcome::NoAgent, "no agent to ask the user"},
    OutcomeWords{RightsOutcome::NoBus, "no bus or no authority on it"},
    OutcomeWords{RightsOutcome::Failed, "the request failed"},
};

void logOutcome(const RightsResult &result) {
    for (const OutcomeWords &row : outcomeWords) {
        if (row.outcome == result.outcome)
            NSLog("Administrator rights: %s (status %d): %@", row.words, result.status,
                  result.message);
    }
}

FileOperations &files() {
    return *Platform::current().files;
}
AdministratorRights &rights() {
    return *Platform::current().rights;
}

bool isForWantOfPermission(std::error_code error) {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
}

bool isBusy(std::error_code error) {
    return error == std::errc::device_or_resource_busy;
}

bool isLockedByApt(const RemovalTarget &target) {
    const auto archives = Platform::current().directories->systemPath(aptArchives);
    return paths::isSameOrBelow(target.path().native(), archives.native()) &&
           files().isLockedByAnother(paths::join(archives, "lock"));
}

// Silence of the tool is success and one byte from it is failure; the name must be gone as well.
bool isSuccess(const PrivilegedReply &reply) {
    return reply.performed && reply.gone && reply.output.empty();
}

// Opens the item's mode up for the time of one attempt, where that may help, and puts it back.
class OpenedMode {
public:
    explicit OpenedMode(const RemovalTarget &target) : m_target(target) {
        if (files().isDeletable(target))
            return;
        if (const auto before = files().setPermissions(target, everybodysMode))
            m_before = *before;
    }
    void putBack() {
        if (!m_before)
            return;
        if (const auto now = files().setPermissions(m_target, *m_before); !now)
            NSLog("Mode of %@ not put back: %@", m_target.path(), now.error());
        m_before.reset();
    }

private:
    const RemovalTarget &m_target;
    std::optional<std::uint32_t> m_before;
};

} // namespace

NvAuthorization &NvAuthorization::shareNvAuthorization() {
    static NvAuthorization shared;
    return shared;
}

// The platform is made first and so outlives the shared object, which gives rights up through it.
NvAuthorization::NvAuthorization() {
    Platform::current();
}

NvAuthorization::~NvAuthorization() {
    freeAuthorization();
}

// Rights that were got and whose process still lives.
bool NvAuthorization::isHeld() {
    const std::lock_guard lock(m_mutex);
    return isValidAuth && rights().accepts(authForm);
}

bool NvAuthorization::allocAuthorization() {
    const std::lock_guard asking(m_asking);
    if (isHeld())
        return true;
    // What is left of rights whose process has died.
    freeAuthorization();

    if (const std::string reason = rights().unavailableReason(); !reason.empty()) {
        NSLog("Error Creating Initial Authorization: %d", ENOSYS);
        NSLog("Administrator rights: %s", reason);
        const std::lock_guard lock(m_mutex);
        m_lastResult = {RightsOutcome::Failed, ENOSYS, reason};
        return false;
    }
    const RightsResult result = rights().request();
    {
        const std::lock_guard lock(m_mutex);
        m_lastResult = result;
    }
    if (result.outcome != RightsOutcome::Granted) {
        NSLog("Copy Rights Unsuccessful: %d", result.status);
        logOutcome(result);
        return false;
    }
    const RightsToken form = rights().token();
    if (form == RightsToken{}) {
        NSLog("Make ExternalForm Unsuccessful: %d", ESRCH);
        rights().release();
        return false;
    }
    const std::lock_guard lock(m_mutex);
    isValidAuth = true;
    authForm = form;
    authorizationRef = AuthorizationReference{form};
    return true;
}

RightsResult NvAuthorization::lastResult() {
    const std::lock_guard lock(m_mutex);
    return m_lastResult;
}

bool NvAuthorization::freeAuthorization() {
    {
        const std::lock_guard lock(m_mutex);
        if (!isValidAuth)
            return true;
        isValidAuth = false;
        authorizationRef.reset();
        authForm = {};
    }
    if (const int status = rights().release(); status != 0)
        NSLog("Free Rights Unsuccessful: %d", status);
    return true;
}

std::optional<AuthorizationReference> NvAuthorization::getAuthorizationRet() {
    AuthorizationReference reference;
    {
        const std::lock_guard lock(m_mutex);
        if (!isValidAuth)
            return std::nullopt;
        reference.token = authForm;
    }
    if (reference.token == RightsToken{}) {
        NSLog("Creat Ret Unsuccessful: %d", EINVAL);
        return std::nullopt;
    }
    // A reference is given even when the rights behind it are gone: the act that uses it finds out.
    if (!rights().accepts(reference.token))
        NSLog("Copy Rights Unsuccessful: %d", EPERM);
    if (!rights().unavailableReason().empty())
        NSLog("Get Rights Unsuccessful: %d", ENOSYS);
    return reference;
}

Result<RemovalTarget> NvAuthorization::targetOf(const std::filesystem::path &path) {
    auto root = files().rememberRoot(paths::parent(path));
    if (!root)
        return root.error();
    return RemovalTarget{*std::move(root), paths::lastComponent(path)};
}

// Without rights the empty form goes to the service all the same, and its answer counts.
PrivilegedReply NvAuthorization::removePrivileged(const RemovalTarget &target) {
    const auto reference = shareNvAuthorization().getAuthorizationRet();
    return rights().removeItem(reference.value_or(AuthorizationReference{}).token, target);
}

void NvAuthorization::forget(const std::optional<TrashRecord> &record) {
    if (!record || record->forget())
        return;
    if (const auto info = record->trashInfo())
        removePrivileged(*info);
}

bool NvAuthorization::removeItemAtPath(const RemovalTarget &target) {
    const auto record = TrashRecord::of(files(), target);
    if (!isSuccess(removePrivileged(target)))
        return false;
    forget(record);
    return true;
}

bool NvAuthorization::removeItemAtPath(const std::filesystem::path &path) {
    const auto target = targetOf(path);
    return target && removeItemAtPath(*target);
}

RemovalOutcome NvAuthorization::removeWithoutRights(const RemovalTarget &target,
                                                    const std::atomic<bool> *stop) {
    RemovalOutcome outcome;
    const auto record = TrashRecord::of(files(), target);
    if (isLockedByApt(target)) {
        outcome.error = std::make_error_code(std::errc::device_or_resource_busy);
    } else {
        OpenedMode mode(target);
        outcome.error = files().removeItem(target, stop);
        if (outcome.error)
            mode.putBack();
        else
            forget(record);
    }
    outcome.removed = !outcome.error;
    outcome.neededRights = isForWantOfPermission(outcome.error);
    return outcome;
}

RemovalOutcome NvAuthorization::removeWithOutcome(const RemovalTarget &target,
                                                  const std::atomic<bool> *stop) {
    const auto record = TrashRecord::of(files(), target);
    RemovalOutcome outcome = removeWithoutRights(target, stop);
    if (outcome.removed)
        return outcome;
    // What is in use stays in use for an administrator too.
    if (!isBusy(outcome.error) && outcome.error != std::errc::operation_canceled) {
        const PrivilegedReply reply = removePrivileged(target);
        outcome.removed = isSuccess(reply);
        outcome.words = reply.output;
        if (outcome.removed)
            forget(record);
    }
    // Logged whichever way the second attempt ended.
    NSLog("Clean deletable file failed: %@-%@", target.path(), outcome.error);
    return outcome;
}

std::error_code NvAuthorization::checkRemoval(const RemovalTarget &target) {
    return isLockedByApt(target) ? std::make_error_code(std::errc::device_or_resource_busy)
                                 : files().checkRemoval(target);
}

RemovalOutcome NvAuthorization::removeWithOutcome(const std::filesystem::path &path) {
    const auto target = targetOf(path);
    if (target)
        return removeWithOutcome(*target);
    NSLog("Clean deletable file failed: %@-%@", path, target.error());
    return {false, target.error(), {}, isForWantOfPermission(target.error())};
}

bool NvAuthorization::synFastRemovePath(const RemovalTarget &target) {
    return removeWithOutcome(target).removed;
}

bool NvAuthorization::synFastRemovePath(const std::filesystem::path &path) {
    return removeWithOutcome(path).removed;
}

} // namespace brightsweep
