#pragma once

#include "foundation/FileDescriptor.h"
#include "helper/Frame.h"
#include "platform/AdministratorRights.h"

#include <sys/types.h>

#include <memory>
#include <mutex>

namespace brightsweep {

/// Rights held by brightsweep-helper, a child process that pkexec starts after the system's own
/// dialog; where the program runs as root already, it is started directly.
///
/// The helper is the one beside the running program, as in a build, else the installed one. No
/// variable of the environment names it: whoever could set one would have the user approve a
/// program of his choice. The rights last as long as that process; one that dies takes them along,
/// and whatever was asked of it was not performed. Giving them up waits for nobody: a process that
/// takes its time to end is waited for on a thread of its own.
class LinuxAdministratorRights final : public AdministratorRights {
public:
    ~LinuxAdministratorRights() override;

    RightsResult request(RightsPurpose purpose) override;
    int release() override;
    RightsToken token() const override;
    bool accepts(const RightsToken &token) override;
    std::vector<PrivilegedReply> removeItems(const RightsToken &token,
                                             const PrivilegedRemoval &removal,
                                             const std::atomic<bool> *stop) override;
    PrivilegedReply dropCaches(const RightsToken &token) override;
    PackagesReply removePackages(const RightsToken &token, const PackageRemoval &removal) override;

private:
    class Helper;

    RightsResult start(RightsPurpose purpose);
    std::shared_ptr<Helper> helper() const;
    helper::Replies ask(const helper::Request &request, const std::atomic<bool> *stop);

    std::mutex m_requesting; ///< held while the dialog may be up
    mutable std::mutex m_mutex;
    std::shared_ptr<Helper> m_helper; ///< null while no rights are held
    pid_t m_asking = 0;               ///< the process that asks the user, while it does
    bool m_withdrawn = false;         ///< the question was taken back
};

/// What pkexec means by its exit status and its words, in the C locale.
RightsOutcome rightsOutcome(int status, std::string_view words);

} // namespace brightsweep
