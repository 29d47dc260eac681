#pragma once

#include "foundation/Result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace brightsweep {

inline constexpr std::size_t smallFileLimit = std::size_t(1) << 20;

/// The first `limit` bytes of a regular file; an error for anything else, which is never waited on.
Result<std::string> readSmallFile(const std::filesystem::path &path,
                                  std::size_t limit = smallFileLimit);

/// The whole text of a regular file: `errc::file_too_large` above that limit, and
/// `errc::no_such_file_or_directory` only where there is really nothing, neither the file nor a
/// link in its place or on the way to it that leads nowhere.
Result<std::string> readWholeFile(const std::filesystem::path &path,
                                  std::size_t limit = smallFileLimit);

/// Why one of them, or writing one, failed, in words.
std::string wordsForFile(std::error_code error);

/// Writes the whole text, however many calls that takes.
std::error_code writeAll(int descriptor, std::string_view text);

/// Who may read a file that is not there yet: its owner, or whom the process's umask lets.
enum class NewFile { OwnersOnly, ByUmask };

/// Replaces a file's contents in one step: whoever reads it sees the old text or the new one, also
/// after a crash or in a full file system. Only a regular file is ever replaced. A link of the
/// user's own to a regular file of the user's own is followed, so that a settings file kept
/// elsewhere stays there; any other link is refused. The mode of an existing file is kept, and its
/// owner where the system allows that. Takes away what writers that were killed left in the folder.
std::error_code writeSmallFile(const std::filesystem::path &path, std::string_view text,
                               NewFile readers = NewFile::OwnersOnly);

/// The same for a file that is not there yet: `errc::file_exists` where anything has that name.
std::error_code writeNewSmallFile(const std::filesystem::path &path, std::string_view text);

} // namespace brightsweep
