#pragma once

#include "core/Operation.h"
#include "platform/FileOperations.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace brightsweep {

/// Empties whole folders, for the quick clean; the folders themselves stay. What the plain pass
/// cannot remove gets a second pass with administrator rights, if they are held. Tells of every
/// entry by a notification; the sizes told are the entries' own, so that a folder that goes whole
/// tells only of itself.
class DeleteFolderOperation : public Operation {
    Q_OBJECT

public:
    explicit DeleteFolderOperation(std::vector<std::filesystem::path> path);

    void main() override;

    /// The plain pass; false when it was cancelled or any entry stayed.
    bool cleanDeletableFolder(const std::filesystem::path &folder);
    /// The pass with rights; false when it was cancelled or there are none.
    bool cleanUndeletableFolder(const std::filesystem::path &folder);
    /// Removes one item with the rights held. True when the tool printed nothing and it is gone.
    bool removeItemAtPath(const RemovalTarget &target);
    void notifyDeleteFailed(const std::filesystem::path &folder);

private:
    std::vector<std::filesystem::path> folderPathArr;
};

} // namespace brightsweep
