#pragma once

#include "platform/AdministratorRights.h"
#include "platform/FileOperations.h"
#include "removal/TrashRecord.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace brightsweep {

/// How one removal went.
struct RemovalOutcome {
    bool removed = false;
    /// Why the normal way failed; empty when the item went by it. Kept when the item went by the
    /// privileged way, so that a log can tell.
    std::error_code error;
    /// What the privileged way had to say; empty when it was not tried or said nothing.
    std::string words;
    /// True when the normal way failed for want of permission.
    bool neededRights = false;
    /// True where a mode that stood in the way could not be opened up.
    bool modeStayed = false;
};

/// Removes items one after the other, first by the normal way, then with the rights that are held.
/// Items of one folder that come one after the other share what was opened for the first; those
/// that need rights are gathered and go by the helper together.
///
/// For one thread of a run. Failures are logged and told, never shown.
class ItemRemoval {
public:
    /// Told of each item once it is known how it went, in the order in which that becomes known.
    using Told = std::function<void(std::size_t index, const RemovalOutcome &)>;

    /// `stop`, when given, outlives this object.
    explicit ItemRemoval(const std::atomic<bool> *stop = nullptr) : m_stop(stop) {}

    /// Reaches an item and looks at it. Keeps it until the next is reached.
    Result<OpenItem> reach(const RemovalTarget &target);
    /// The normal way alone.
    RemovalOutcome removeWithoutRights(const RemovalTarget &target, const OpenItem &item);
    /// The privileged way alone, at once. Without rights the service refuses.
    PrivilegedReply removeWithRights(const RemovalTarget &target, const OpenItem &item);
    /// Both, at once.
    RemovalOutcome remove(const RemovalTarget &target);
    RemovalOutcome remove(const RemovalTarget &target, const Result<OpenItem> &item);

    /// Both, the second one perhaps later; `told` is called here or in a later call.
    void removeInTurn(std::size_t index, const RemovalTarget &target, const Result<OpenItem> &item,
                      const Told &told);
    /// The privileged way for whatever waits for it.
    void finish(const Told &told);
    /// True while something waits.
    bool isWaiting() const { return !m_waiting.empty(); }

private:
    struct Waiting {
        std::size_t index = 0;
        RemovalTarget target;
        OpenItem item;
        RemovalOutcome outcome;
    };

    const std::optional<TrashRecord> &trashOf(const RemovalTarget &target, const OpenItem &item);
    void forget(const RemovalTarget &target, const OpenItem &item);

    const std::atomic<bool> *m_stop;
    OpenItem m_previous;
    std::shared_ptr<const HoldingFolder> m_trashFolder; ///< whose record m_trash is
    std::optional<TrashRecord> m_trash;
    std::vector<Waiting> m_waiting; ///< of one folder
};

/// True for the errors of a removal that rights could mend.
bool isForWantOfPermission(std::error_code error);

} // namespace brightsweep
