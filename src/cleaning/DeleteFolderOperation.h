#pragma once

#include "core/Operation.h"
#include "platform/FileOperations.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace brightsweep {

class RemovalRun;

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

private:
    bool isStopped() const;

    std::vector<RemovalRoot> folderPathArr;
    std::shared_ptr<RemovalRun> m_run;
};

} // namespace brightsweep
