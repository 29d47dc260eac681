#pragma once

#include <filesystem>

namespace brightsweep {

/// The guide that "Help" opens: that of the folder the program was built or installed in, else the
/// one of the machine; empty where there is none.
std::filesystem::path guidePath();

} // namespace brightsweep
