#pragma once

#include "foundation/FileDescriptor.h"
#include "helper/Frame.h"
#include "platform/AdministratorRights.h"

#include <sys/types.h>

#include <mutex>
#include <optional>

namespace brightsweep {

/// Rights held by brightsweep-helper, a child process that pkexec starts after the system's own
/// dialog; where the program runs as root already, it is started directly.
///
/// The helper is the one beside the running program, as in a build, else the installed one. No
/// variable of the environment names it: whoever could set one would have the user approve a
/// program of his choice. The rights last as long as that process; one that dies takes them along,
/// and whatever was asked of it was not performed.
class LinuxAdministratorRights final : public AdministratorRights {
public:
    ~LinuxAdministratorRights() override;

    RightsResult request() override;
    int release() override;
    RightsToken token() const override;
    bool accepts(const RightsToken &token) override;
    PrivilegedReply removeItem(const RightsToken &token, const RemovalTarget &target) override;
    PrivilegedReply dropCaches(const RightsToken &token) override;

private:
    // All of these expect the mutex to be held.
    RightsResult start();
    bool isAlive() const;
    int end();
    PrivilegedReply ask(const helper::Request &request);

    mutable std::mutex m_mutex;
    FileDescriptor m_stream;
    helper::FrameBuffer m_received;
    pid_t m_process = 0; ///< 0 while no rights are held
    RightsToken m_token{};
};

/// What pkexec means by its exit status and its words, in the C locale.
RightsOutcome rightsOutcome(int status, std::string_view words);

} // namespace brightsweep
