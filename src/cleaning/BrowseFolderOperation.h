#pragma once

#include "core/Operation.h"
#include "platform/FileOperations.h"

#include <cstdint>
#include <vector>

namespace brightsweep {

/// Sizes and counts what lies in a list of folders, for the quick clean: DSScanSingleFolder for
/// each folder, DSScanOperationFinish with both totals at the end. Logs every object it meets.
class BrowseFolderOperation : public Operation {
    Q_OBJECT

public:
    explicit BrowseFolderOperation(std::vector<RemovalRoot> rootPath);

    void main() override;

    /// The size of everything below the folder; `filesNum` is raised by the number of objects,
    /// folders included. 0 for what is no longer the folder that was found. What is mounted below
    /// it is not asked and counts nothing.
    std::uint64_t sizeOfItemAtPath(const RemovalRoot &path, std::uint64_t &filesNum);

private:
    std::vector<RemovalRoot> folderPathArr;
};

} // namespace brightsweep
