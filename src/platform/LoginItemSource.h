#pragma once

#include "foundation/Result.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep {

/// Why an entry starts nothing in this session, although nobody has hidden it.
enum class LoginItemObstacle {
    None,
    OtherDesktop,   ///< it is meant for these desktops only: OnlyShowIn
    NotThisDesktop, ///< it is not meant for this one: NotShowIn
    TryExecMissing, ///< the program that it makes its condition is not there: TryExec
    NoCommand,      ///< it names no program
    NotApplication, ///< it is of another type
    Unreadable,     ///< its file cannot be read
    NotExecutable,  ///< what it names as its program or its condition is none that the user may run
    NotUtf8,        ///< systemd's generator refuses the file
    ByteOrderMark,  ///< GLib refuses it
    BadLine,        ///< no key, or no truth value where one has to be: one of the two refuses it
    TwoValues,      ///< of one key; systemd's generator takes the first, GLib the last
    LineEnds,       ///< systemd's generator ends a line at a lone carriage return as well
    NameTooLong,    ///< of its file, for the unit that systemd's generator makes of it
    FolderMissing,  ///< that it is to run in: GLib starts nothing then, systemd does
};

/// True for what is wrong with the entry's text, name or folder: sessions differ on such an entry;
/// most start it.
constexpr bool isFlaw(LoginItemObstacle obstacle) {
    switch (obstacle) {
        using enum LoginItemObstacle;
    case NotUtf8:
    case ByteOrderMark:
    case BadLine:
    case TwoValues:
    case LineEnds:
    case NameTooLong:
    case FolderMissing:
        return true;
    case None:
    case OtherDesktop:
    case NotThisDesktop:
    case TryExecMissing:
    case NoCommand:
    case NotApplication:
    case Unreadable:
    case NotExecutable:
        break;
    }
    return false;
}

/// One program that starts with the user's session.
struct LoginItemEntry {
    std::string file{}; ///< the name of its file: what calls go by; bytes
    /// What was added; of entries of other origin the program that they start, and where that
    /// cannot be told, the entry's own file.
    std::filesystem::path path{};
    std::string name{};    ///< in the reader's language; empty where the entry has none
    std::string command{}; ///< what it runs, as it stands there
    std::string icon{};    ///< a name of the icon theme or an absolute path, may be empty
    bool hidden = false;
    bool missing = false;               ///< what it starts is not there
    bool commandToldAsItStands = false; ///< `path` does not say what it starts
    LoginItemObstacle obstacle = LoginItemObstacle::None;
    std::string
        obstacleDetail{}; ///< the desktops, program, type, line, key or folder that it is about
    /// The system has an entry of that name, in whose place this one stands.
    bool standsForSystem = false;

    bool operator==(const LoginItemEntry &) const = default;
};

/// The list of programs that start with the user's session. Every call but watch() is
/// safe from every thread, reads or writes files of the home and is not for the main thread: a home
/// on a server that does not answer is `errc::timed_out` or busy at best.
class LoginItemSource {
public:
    virtual ~LoginItemSource();
    virtual std::string unavailableReason() const { return {}; }

    /// The user's entries, in order of their file names, then those that this program added, in
    /// order of adding. Overrides that setSystemItemStarted() wrote are not among them.
    virtual Result<std::vector<LoginItemEntry>> items() = 0;
    /// What the system starts in every user's session, unless the user has an entry in its place:
    /// only what applies to this desktop and is no part of it. Those that were switched off are
    /// hidden.
    virtual Result<std::vector<LoginItemEntry>> systemItems() = 0;

    /// Makes an entry that starts the program, opens the document or is a copy of the desktop entry
    /// at that absolute path, however many there are for it. Gives the name of its file.
    virtual Result<std::string> add(const std::filesystem::path &path, bool hidden) = 0;
    /// Removes a user's entry; never what a link leads to.
    virtual std::error_code remove(const std::string &file) = 0;
    /// Changes the flag in a user's entry and nothing else in its file.
    virtual std::error_code setHidden(const std::string &file, bool hidden) = 0;
    /// Switches an entry of the system off or on for this user. On takes away only what off wrote.
    virtual std::error_code setSystemItemStarted(const std::string &file, bool started) = 0;
    /// Runs a user's entry as the session would, hidden or not. Does not wait for it.
    virtual std::error_code start(const std::string &file) = 0;

    /// The file of a user's entry.
    virtual std::filesystem::path pathOf(const std::string &file) = 0;

    /// Told on a thread of its own when the user's entries may have changed, by whomever, as long
    /// as the answer lives; changes within 100 ms are told once. Letting go of it waits for a call
    /// under way. Main thread.
    [[nodiscard]] virtual std::shared_ptr<void> watch(std::function<void()> changed) = 0;
};

} // namespace brightsweep
