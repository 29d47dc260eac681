#pragma once

#include "platform/LoginItemSource.h"

#include <QString>

namespace brightsweep {

/// Why an entry starts nothing in this session, as a sentence for the reader; empty where it does,
/// but for its flag.
QString reasonOf(const LoginItemEntry &entry);
/// The same in one or two words, to stand as a mark beside its name.
QString markOf(const LoginItemEntry &entry);
/// What it starts: its path, or its command as it stands where no path says it.
QString startedBy(const LoginItemEntry &entry);

} // namespace brightsweep
