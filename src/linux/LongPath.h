#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"

#include <string>
#include <string_view>

namespace brightsweep {

/// A directory descriptor and a name relative to it that one system call takes.
struct ShortPath {
    FileDescriptor directory; ///< empty: the name is taken from the working directory
    std::string name;

    int base() const;
};

/// Shortens a path of any length by opening its leading directories step by step.
Result<ShortPath> shortenPath(std::string_view path);

/// The absolute path of what exists, without links, "." or "..", as realpath(3) gives it, but of
/// any length. Each component is opened in turn.
Result<std::string> canonicalLongPath(std::string_view path);

/// Makes every folder of an absolute path that is missing, with the mode that the base directories
/// have.
void makeFolders(const std::string &path);

/// Where an open directory is now, whatever it was called when it was opened. Empty where the
/// kernel cannot say, as for paths longer than a page.
std::string currentPath(int directory);

} // namespace brightsweep
