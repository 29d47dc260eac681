#pragma once

#include "foundation/Result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace brightsweep {

/// The first `limit` bytes of a regular file; an error for anything else, which is never waited on.
Result<std::string> readSmallFile(const std::filesystem::path &path,
                                  std::size_t limit = std::size_t(1) << 20);

/// Writes the whole text, however many calls that takes.
std::error_code writeAll(int descriptor, std::string_view text);

/// Replaces a file's contents in one step: whoever reads it sees the old text or the new one, also
/// after a crash or in a full file system. A link in its place is followed, so that a settings file
/// kept elsewhere stays there; the mode of an existing file is kept.
std::error_code writeSmallFile(const std::filesystem::path &path, std::string_view text);

} // namespace brightsweep
