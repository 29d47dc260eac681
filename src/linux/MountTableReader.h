#pragma once

#include "foundation/FileDescriptor.h"
#include "linux/MountTable.h"

#include <optional>

namespace brightsweep {

/// This process's mount table, read only when the kernel says that it has changed. The table is
/// that of the mount namespace in which the first call was made. One thread at a time.
class MountTableReader {
public:
    /// The mounts when they differ from those of the call before, or may; the first call always
    /// gives them. A table that cannot be watched is given by every call.
    std::optional<std::vector<Mount>> changedMounts();

private:
    FileDescriptor m_table;
};

} // namespace brightsweep
