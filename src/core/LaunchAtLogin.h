#pragma once

#include <QLatin1String>
#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

namespace brightsweep {

/// Posted on the main thread when what LaunchAtLogin::isOn() or problem() tells has been looked at
/// anew.
inline constexpr QLatin1String LaunchAtLoginDidChangeNotification("LaunchAtLoginDidChange");

/// The flag that the program starts with the session, and the entry that makes it so: the one place
/// that switches them. The flag is a setting of its own and stays as written where the entry cannot
/// be had; what a switch shows is the entry, which others change as well. Main thread but for
/// renewEntry(); what touches the list of login items runs on a worker, one change after the other.
class LaunchAtLogin {
public:
    /// Stores the number at the start of the text.
    static void writeFileOfLaunchAppWhenLogin(const QString &state);
    /// The stored number as text.
    static QString readeFileOfLaunchAppWhenLogin();

    /// Stores the state and renews or removes the entry of the watched program, else of this one.
    /// An entry that is there goes in either case, so that one that stays is fresh. `ended` is
    /// called on the main thread with what problem() says then; not where the watch goes before.
    static void launchAppWhenLogin(int state,
                                   std::function<void(const QString &problem)> ended = {});
    /// Renews or removes the entry alone, at once. Not for a thread that draws.
    static std::error_code renewEntry(bool wanted, const std::filesystem::path &program);

    /// Whether the program starts with the session: what was wanted while that is being made, what
    /// its entry says once that has been read, and the flag until then.
    static bool isOn();
    /// Why the last change of the entry failed, in the reader's words; empty where it did not.
    static QString problem();

    /// Keeps isOn() as the list of login items is, whoever changes it, while it lives; one at a
    /// time. Waits for what is under way when it goes.
    class Watch {
    public:
        explicit Watch(std::filesystem::path program);
        ~Watch();
        Watch(const Watch &) = delete;
        Watch &operator=(const Watch &) = delete;

    private:
        std::shared_ptr<void> m_source;
    };

    /// The path of the window's program, beside the one that runs.
    static std::filesystem::path ownProgram();
    /// The name of the file of its entry, where this program made that.
    static std::string ownFile();
};

} // namespace brightsweep
