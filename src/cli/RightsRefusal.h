#pragma once

#include "cli/Command.h"
#include "cli/WorkRun.h"
#include "platform/AdministratorRights.h"

namespace brightsweep::cli {

inline constexpr const char *rightsAreNeeded =
    "administrator rights are needed; --admin asks for them";

/// Asks for administrator rights before a job's first removal. False, and noted in the job, where
/// they were not granted.
bool takeRights(RemovalJob &job, RightsPurpose purpose);

/// After a question for administrator rights that was not granted: the line that says why. Returns
/// the exit status.
int rightsRefused(Output &output);

} // namespace brightsweep::cli
