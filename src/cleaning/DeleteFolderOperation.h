#pragma once

#include "core/Operation.h"
#include "platform/FileOperations.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

namespace brightsweep {

class ItemRemoval;
class RemovalRun;

/// Why an item stayed, as far as the user can do something about it.
enum class StayReason { NeedsRights, InUse, ReadOnly, Other, count };

/// What a quick clean did. Items are the direct children of its folders.
struct CleanTally {
    std::size_t wentItems = 0;
    /// Of what really went, parts of items that stayed included; after a stop without such parts.
    std::uint64_t wentBytes = 0;
    std::array<std::size_t, std::size_t(StayReason::count)> stayed{}; ///< items, by reason
};

/// Empties whole folders, for the quick clean; the folders themselves stay. What the plain pass
/// cannot remove gets a second pass with administrator rights, if they are held. Tells of every
/// entry by a notification; the sizes told are the entries' own, so that a folder that goes whole
/// tells only of itself. What is mounted in a folder stays, and so does whatever it is mounted in.
class DeleteFolderOperation : public Operation {
    Q_OBJECT

public:
    DeleteFolderOperation(std::vector<RemovalRoot> path, std::shared_ptr<RemovalRun> run);
    ~DeleteFolderOperation() override;

    void main() override;

    /// The plain pass; false when it was cancelled or any entry stayed.
    bool cleanDeletableFolder(const RemovalRoot &folder);
    /// The pass with rights; false when it was cancelled or there are none.
    bool cleanUndeletableFolder(const RemovalRoot &folder);
    /// Removes one item with the rights held. True when the tool printed nothing and it is gone.
    bool removeItemAtPath(const RemovalTarget &target);
    void notifyDeleteFailed(const std::filesystem::path &folder);

    /// Any thread; complete once the end or a cancel has been told.
    CleanTally tally() const;

private:
    /// An item of the folder under way that has not gone, or not yet.
    struct Item {
        std::uint64_t bytes = 0; ///< before anything of it went
        std::error_code error;   ///< the last that kept it or something in it
    };

    bool isStopped() const;
    void meet(const RemovalTarget &target, const OpenItem &item);
    void went(const RemovalTarget &target);
    void stays(const RemovalTarget &target, std::error_code error);
    void settle(const RemovalRoot &folder);
    bool cancelled(const RemovalRoot &folder);
    void keepAll(const RemovalRoot &folder);

    std::vector<RemovalRoot> folderPathArr;
    std::shared_ptr<RemovalRun> m_run;
    std::map<std::string, Item> m_items; // by name; of one folder
    bool m_hasRights = false;

    mutable std::mutex m_mutex; // guards what follows
    CleanTally m_tally;
};

} // namespace brightsweep
