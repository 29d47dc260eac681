#pragma once

#include "app/LoginItemRegistry.h"

#include <QString>

#include <filesystem>

namespace brightsweep {

/// The flag that the program starts with the session, and the entry that makes it so. The flag is
/// a setting of its own and stays as written where the entry cannot be had.
class LaunchAtLogin {
public:
    /// Stores the number at the start of the text.
    static void writeFileOfLaunchAppWhenLogin(const QString &state);
    /// The stored number as text.
    static QString readeFileOfLaunchAppWhenLogin();

    /// Stores the state and renews or removes the entry of the program at that path. An entry that
    /// is there goes in either case, so that one that stays is fresh.
    static void launchAppWhenLogin(int state, const std::filesystem::path &program,
                                   LoginItemRegistry &registry);
};

} // namespace brightsweep
