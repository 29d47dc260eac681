#pragma once

#include "diskusage/UsageItem.h"
#include "removal/ItemRemoval.h"
#include "removal/MoveToTrash.h"

namespace brightsweep {

/// Removes items of a scanned folder, or moves them to the trash, one after the other, each only
/// while it is the object that the user saw. Items are handed in in the order of their paths, so
/// that a folder comes before what lies in it.
///
/// For one thread of a run. Failures are told, and logged by those who remove.
class UsageRemoval {
public:
    enum class Act { Remove, Trash };

    /// Items of a list that are worth being asked beforehand. The largest come first; of the others
    /// a tick tells.
    static constexpr std::size_t mostAskedBeforehand = 500;

    struct Options {
        Act act = Act::Remove;
        /// False: every check is made and nothing is changed.
        bool applies = true;
        /// Want of permission stands in nothing's way, where nothing is changed.
        bool withRights = false;
        /// When set, ends an act within a second. Outlives the object.
        const std::atomic<bool> *stop = nullptr;
    };

    struct Outcome {
        bool done = false;
        bool wasGone = false;  ///< it went before its turn came, for instance with its folder
        std::error_code error; ///< why it stays
        std::string words;     ///< of the privileged way, where it had any
        bool neededRights = false;
    };

    explicit UsageRemoval(const Options &options);

    /// The item as removals take it. An error for what is not below the root, and for the root.
    static Result<RemovalTarget> targetOf(const RemovalRoot &root,
                                          const std::filesystem::path &item);
    /// The error that a removal of it would meet, with no change of anything.
    static std::error_code refusalOf(const OpenItem &item);

    /// What is known of that before an item is ticked, want of permission aside: the padlock is for
    /// that. `previous` is what was looked at before, and then the item.
    static std::error_code refusalBeforehand(const RemovalTarget &target, OpenItem &previous);

    Outcome act(const UsageItem &item);
    /// What the file systems gave back, or would give, for what is done by now.
    std::uint64_t bytesFreed() const { return m_freed.sum(); }

private:
    Options m_options;
    ItemRemoval m_removal;
    MoveToTrash m_trash;
    FreedBytes m_freed;
};

} // namespace brightsweep
