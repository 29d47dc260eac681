#pragma once

#include "cli/Command.h"

namespace brightsweep::cli {

// One file per command.
extern const Command appsCommand;
extern const Command cleanCommand;
extern const Command duplicatesCommand;
extern const Command historyCommand;
extern const Command leftoversCommand;
extern const Command loginItemsCommand;
extern const Command memoryCommand;
extern const Command scanCommand;
extern const Command settingsCommand;
extern const Command uninstallCommand;
extern const Command usageCommand;
extern const Command volumesCommand;

} // namespace brightsweep::cli
