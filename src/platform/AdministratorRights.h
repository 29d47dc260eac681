#pragma once

#include "linux/PackageRemoval.h"
#include "platform/FileOperations.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace brightsweep {

/// What the user is asked to allow. Each covers those before it.
enum class RightsPurpose { Files, FilesAndPackages };

enum class RightsOutcome { Granted, Dismissed, Denied, NoAgent, NoBus, Failed };

struct RightsResult {
    RightsOutcome outcome = RightsOutcome::Failed;
    int status = 0;      ///< the asking tool's exit status, or an errno
    std::string message; ///< its words, for the log
};

/// The portable form in which held rights are handed about.
using RightsToken = std::array<std::uint8_t, 32>;

struct PrivilegedReply {
    bool performed = false; ///< false: refused, or the helper is gone; `output` then says why
    bool gone = false;      ///< after a removal: the name no longer exists
    std::string output;     ///< what the tool printed, at most 128 bytes
};

/// Items of one directory that are to be removed with rights. What each was when it was looked at
/// goes along, and one that is another by then stays.
struct PrivilegedRemoval {
    struct Item {
        std::string name;
        FileAttributes attributes;
    };
    /// So many at most.
    static constexpr std::size_t mostItems = 256;

    RemovalRoot root;
    std::filesystem::path way; ///< from the root to the directory; empty for the root itself
    std::vector<Item> items;
};

/// Asks the user for administrator rights once and acts with them until they are given up.
/// All calls are safe from every thread. Requests are carried out one after the other; asking,
/// giving up and the questions about what is held wait for none of them.
class AdministratorRights {
public:
    virtual ~AdministratorRights();
    virtual std::string unavailableReason() const { return {}; }

    /// May show the system's dialog and then blocks until it is answered. Rights that are held and
    /// do not cover the purpose stay where more of them are not granted.
    virtual RightsResult request(RightsPurpose purpose) = 0;
    /// Gives the rights up at once: a question that is still on screen is taken back, and a request
    /// under way is ended, as failed. 0, or an errno-like number.
    virtual int release() = 0;
    /// The token handed out with the rights; all zero when none are held.
    virtual RightsToken token() const = 0;
    /// True while whoever acts with the rights is alive and accepts this token.
    virtual bool accepts(const RightsToken &token) = 0;

    /// Removes the items with all below them; a reply for each, in their order. `stop`, when given,
    /// ends it within a second; what is left of an item that it ended stays.
    virtual std::vector<PrivilegedReply> removeItems(const RightsToken &token,
                                                     const PrivilegedRemoval &removal,
                                                     const std::atomic<bool> *stop) = 0;
    /// Writes back and drops the page cache, dentries and inodes.
    virtual PrivilegedReply dropCaches(const RightsToken &token) = 0;
    /// Removes exactly these packages or none; takes rights for packages. Blocks for as long as the
    /// package manager takes, which nothing ends.
    virtual PackagesReply removePackages(const RightsToken &token,
                                         const PackageRemoval &removal) = 0;
};

} // namespace brightsweep
