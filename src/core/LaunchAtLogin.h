#pragma once

#include <QString>

#include <filesystem>

namespace brightsweep {

/// The flag that the program starts with the session, and the entry that makes it so: the one place
/// that switches them. The flag is a setting of its own and stays as written where the entry cannot
/// be had. Main thread; what touches the list of login items runs on a worker, one change after the
/// other.
class LaunchAtLogin {
public:
    /// Stores the number at the start of the text.
    static void writeFileOfLaunchAppWhenLogin(const QString &state);
    /// The stored number as text.
    static QString readeFileOfLaunchAppWhenLogin();

    /// Stores the state and renews or removes the entry of the program at that path, this program
    /// where it is empty. An entry that is there goes in either case, so that one that stays is
    /// fresh.
    static void launchAppWhenLogin(int state, const std::filesystem::path &program = {});
    /// True when every entry has been renewed or removed.
    static bool isIdle();

    /// The path of the program that runs.
    static std::filesystem::path ownProgram();
};

} // namespace brightsweep
