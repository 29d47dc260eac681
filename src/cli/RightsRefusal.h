#pragma once

#include "cli/Command.h"
#include "cli/WorkRun.h"
#include "platform/AdministratorRights.h"

#include <functional>
#include <string>

namespace brightsweep::cli {

inline constexpr const char *rightsAreNeeded =
    "administrator rights are needed; --admin asks for them";

/// Asks for administrator rights before a job's first removal. False, and noted in the job, where
/// they were not granted.
bool takeRights(RemovalJob &job, RightsPurpose purpose);

/// Why an item stays after a question for administrator rights that was not granted.
std::string rightsRefusal();
/// The line that says so, and with --json the document of what was not done. Returns the exit
/// status.
int rightsRefused(Output &output, const std::function<std::string()> &document);

} // namespace brightsweep::cli
