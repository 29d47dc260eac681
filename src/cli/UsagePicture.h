#pragma once

#include "cli/Command.h"

#include <filesystem>

namespace brightsweep {
class AllDir;
}

namespace brightsweep::cli {

/// Writes the ring chart of the tree as a Scalable Vector Graphics file. False after the line that
/// says why it could not be written.
bool writePicture(AllDir &root, const std::filesystem::path &file, Output &output);

} // namespace brightsweep::cli
