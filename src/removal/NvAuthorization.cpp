#include "removal/NvAuthorization.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/WordTable.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"

#include <cerrno>

namespace brightsweep {

namespace {

constexpr std::array outcomeWords = {
    WordRow{RightsOutcome::Dismissed, "the dialog was dismissed"},
    WordRow{RightsOutcome::Denied, "denied"},
    WordRow{RightsOutcome::NoAgent, "no agent to ask the user"},
    WordRow{RightsOutcome::NoBus, "no bus or no authority on it"},
    WordRow{RightsOutcome::Failed, "the request failed"},
};

void logOutcome(const RightsResult &result) {
    if (const char *const words = wordsIn(outcomeWords, result.outcome, nullptr))
        NSLog("Administrator rights: %s (status %d): %@", words, result.status, result.message);
}

AdministratorRights &rights() {
    return *Platform::current().rights;
}

// While one lives, the user is being asked.
class IsAsking {
public:
    explicit IsAsking(std::atomic<bool> &flag) : m_flag(flag) { m_flag = true; }
    ~IsAsking() { m_flag = false; }

private:
    std::atomic<bool> &m_flag;
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

bool NvAuthorization::isHeld(RightsPurpose purpose) {
    return isHeld() && m_purpose >= purpose;
}

bool NvAuthorization::allocAuthorization(RightsPurpose purpose) {
    const std::lock_guard asking(m_asking);
    if (!isHeld())
        // What is left of rights whose process has died.
        freeAuthorization();
    else if (m_purpose >= purpose)
        return true;
    const IsAsking isAsking(m_isAsking);

    if (const std::string reason = rights().unavailableReason(); !reason.empty()) {
        NSLog("Error Creating Initial Authorization: %d", ENOSYS);
        NSLog("Administrator rights: %s", reason);
        const std::lock_guard lock(m_mutex);
        m_lastResult = {RightsOutcome::Failed, ENOSYS, reason};
        return false;
    }
    const RightsResult result = rights().request(purpose);
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
    m_purpose = purpose;
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
        if (!isValidAuth && !m_isAsking)
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
    auto root = Platform::current().files->rememberRoot(paths::parent(path));
    if (!root)
        return root.error();
    return RemovalTarget{*std::move(root), paths::lastComponent(path)};
}

bool NvAuthorization::removeItemAtPath(const RemovalTarget &target) {
    ItemRemoval removal;
    const auto item = removal.reach(target);
    // One that had gone before has gone.
    if (!item)
        return item.error() == std::errc::no_such_file_or_directory;
    const PrivilegedReply reply = removal.removeWithRights(target, *item);
    return reply.performed && reply.gone && reply.output.empty();
}

bool NvAuthorization::removeItemAtPath(const std::filesystem::path &path) {
    const auto target = targetOf(path);
    return target && removeItemAtPath(*target);
}

bool NvAuthorization::synFastRemovePath(const RemovalTarget &target) {
    auto run = RemovalRun::current();
    if (!run)
        run = RemovalRun::begin(QT_TRID_NOOP("Removal")).run;
    if (!run)
        return false;
    const RemovalRun::Busy busy(*run);
    return ItemRemoval(&run->stopFlag()).remove(target).removed;
}

bool NvAuthorization::synFastRemovePath(const std::filesystem::path &path) {
    const auto target = targetOf(path);
    if (target)
        return synFastRemovePath(*target);
    NSLog("Clean deletable file failed: %@-%@", path, target.error());
    return false;
}

} // namespace brightsweep
