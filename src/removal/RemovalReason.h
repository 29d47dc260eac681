#pragma once

#include "removal/ItemRemoval.h"

namespace brightsweep {

/// The key of two or three words that tell why an item stayed, for a row of a list.
const char *reasonKey(std::error_code error);
/// The same of a removal; what the privileged way had to say is longer than a row.
const char *reasonKey(const RemovalOutcome &outcome);

} // namespace brightsweep
