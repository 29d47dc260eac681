#pragma once

#include "platform/FileOperations.h"

#include <string>
#include <vector>

namespace brightsweep {

/// The names of a remembered folder, sorted; none where it cannot be read. Nothing in it is asked.
std::vector<std::string> namesInFolder(const RemovalRoot &folder);

} // namespace brightsweep
