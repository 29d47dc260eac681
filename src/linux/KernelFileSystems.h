#pragma once

#include <string_view>

namespace brightsweep {

/// True for a file system that the kernel makes up and that holds no storage, by the name that the
/// mount table gives it.
bool isKernelFileSystem(std::string_view type);

/// The same for what an open descriptor lies on, told by the mount table, so that no server is
/// asked. Also true for a mount that this process does not have.
bool isOnKernelFileSystem(int descriptor);

} // namespace brightsweep
