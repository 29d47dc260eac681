#pragma once

#include "foundation/Result.h"
#include "platform/AdministratorRights.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace brightsweep {

/// How an application came onto the machine, and so how it leaves it.
enum class ApplicationKind { Bundle, Package, Flatpak, Snap, AppImage, Folder };

/// A thing that can be removed as one, with the desktop entries that name it.
struct InstalledApplication {
    ApplicationKind kind = ApplicationKind::Package;
    /// What its manager calls it: a package's name, a Flatpak's full ref, a snap's name, a path.
    /// One in its kind, but for a Flatpak that both the user and the system have.
    std::string key;
    bool userOwned = false; ///< goes without anybody's rights but the user's own
    /// Ids of its desktop entries without ".desktop"; that of the main one is first.
    std::vector<std::string> ids;
    /// How its other entries are called, for the question.
    std::vector<std::string> otherEntries;
    std::string name;    ///< in the user's language, UTF-8
    std::string version; ///< without epoch and revision
    /// Resolved programs that its entries start; that of the main one is first.
    std::vector<std::string> programs;
    std::string icon; ///< a name of the icon theme or a path
    /// For showing and revealing only; a package is more than its program.
    std::filesystem::path path;
    std::int64_t installed = 0; ///< seconds since the epoch; 0 where it is not known
    /// As its manager says, without a walk; none where that takes one.
    std::optional<std::uint64_t> bytes;
    bool partOfSystem = false;
    std::string systemReason; ///< with `partOfSystem`: why, in English
    /// A file by which something else starts it or leads into it, so that it may not go; or empty.
    std::filesystem::path usedBy;

    /// The id of the main entry; empty where no entry names it.
    std::string desktopId() const { return ids.empty() ? std::string() : ids.front(); }
};

/// A name that something installed goes by: leftovers of that name are not another one's.
struct ClaimedName {
    std::string name; ///< of a package, of a program or of an entry
    std::string key;  ///< whose; that of an InstalledApplication where it is listed
};

enum class LeftoverKind { Config, Cache, State, Data, Entry, System };

/// What an application has made or been given, and would leave behind.
struct Leftover {
    std::filesystem::path path;
    LeftoverKind kind = LeftoverKind::Data;
    std::uint64_t bytes = 0;
    bool ticked = false;
    bool isDoubtful = false; ///< by its name it may well be another application's
    std::string reason;      ///< why it is taken for the application's, in English
    RemovalTarget target;
    /// What it was when it was found; another one by then stays.
    FileAttributes seen;
    std::uint64_t entries = 0; ///< below a folder, when it was found
    /// A part of it would stay without administrator rights, so that then nothing of it goes.
    bool needsRights = false;
    /// Why it would stay even with rights, which keeps it from being ticked; empty where it would
    /// not.
    std::error_code refusal = {};
};

/// Why a removal is not attempted.
enum class Blocker {
    None,
    Essential,   ///< the system does not run or start without it
    TooMany,     ///< too much depends on it
    ImageBased,  ///< the system's programs come as one image
    NeededByUs,  ///< this program would go with it
    Busy,        ///< its manager is at work
    Interrupted, ///< its manager was stopped in the middle; the reason says the way out
    Gone,        ///< it is no longer there
    Unsupported, ///< not in a way that this program could keep its promises in
};

/// What a removal would do. Made by a dry run, shown, and then carried out exactly or not at all.
struct RemovalPlan {
    InstalledApplication application;
    /// Of one that is nothing but files: the item at its path, as it was found. Filled in by the
    /// engine.
    Leftover itself;
    /// What goes along because it cannot be without it: exact names.
    std::vector<std::string> also;
    /// Filled in by the engine; a source looks at the ticked ones of its own kinds only.
    std::vector<Leftover> leftovers;
    /// Settings of the whole system that its manager keeps unless it is told to purge.
    std::vector<std::filesystem::path> systemSettings;
    bool purge = false; ///< take these along, or with a snap the copy of its data
    /// Of what goes along, that whose own settings of the system go as well.
    std::vector<std::string> alsoPurged;
    /// The programs of the set that are running now, by their names.
    std::vector<std::string> running;
    Blocker blocker = Blocker::None;
    std::string reason; ///< with a blocker: what blocks, in English, with the name of it
};

enum class UninstallOutcome {
    Removed,     ///< all of the set has gone; also where it had before
    NeedsRights, ///< nothing was done: it takes rights that are not held
    Dismissed,   ///< nothing was done: the manager's own question was not granted
    Changed,     ///< nothing was done: it would no longer be what the plan says
    Busy,        ///< nothing was done: the manager is at work
    Failed,      ///< the manager could not; `message` says what it said
    Broken,      ///< the manager stopped in the middle; `wayOut` says what to do
};

struct RemovalResult {
    UninstallOutcome outcome = UninstallOutcome::Failed;
    std::string message; ///< in English; of the tool where it had something to say
    /// Names of the set that have gone, whatever the outcome.
    std::vector<std::string> gone;
    std::string wayOut = {}; ///< what puts it right, a sentence in English
};

/// Where applications of one kind come from. Any thread, one call at a time; each may read many
/// files or run a tool, and so has no place on the main one.
class ApplicationSource {
public:
    virtual ~ApplicationSource();
    virtual ApplicationKind kind() const = 0;
    /// Empty, or why this machine has no applications of the kind. May change while one works.
    virtual std::string unavailableReason() const { return {}; }

    /// Everything of the kind that a user would call an application.
    virtual Result<std::vector<InstalledApplication>> applications() = 0;
    /// Names that belong to what is installed, listed or not. Of the last listing; empty before it.
    virtual std::vector<ClaimedName> claims() { return {}; }
    /// Names of what has gone but for settings of the system that its manager has kept.
    virtual std::vector<std::string> formerNames() { return {}; }
    /// Keys of those that have a program running.
    virtual std::vector<std::string>
    runningOf(const std::vector<InstalledApplication> &applications) = 0;
    /// Files and folders that change when something of the kind comes or goes.
    virtual std::vector<std::filesystem::path> watched() const { return {}; }

    /// A dry run: changes nothing and asks nobody.
    virtual RemovalPlan plan(const InstalledApplication &application) = 0;
    /// True where an application is the file or folder at its path and nothing else. It is removed
    /// as any file is, and remove() is not called.
    virtual bool isPlainFiles() const { return false; }
    /// Carries a plan out. Needs the rights' token where the application is not the user's own;
    /// a manager with questions of its own asks them. Is not cancelled once it runs.
    virtual RemovalResult remove(const RemovalPlan &plan, const RightsToken *rights) = 0;
    /// How much of the disk it takes, with all that would go along.
    virtual std::uint64_t sizeOf(const InstalledApplication &application) = 0;
};

} // namespace brightsweep
