#pragma once

#include "cli/Command.h"
#include "cli/UsageDocument.h"

#include <filesystem>
#include <string>

namespace brightsweep {
class AllDir;
}

namespace brightsweep::cli {

/// What `usage` wrote of a folder before, to be compared with what is there now.
class UsageChanges {
public:
    /// Reads a document of `usage` about that folder, given with a trailing "/". False after the
    /// line that says what is wrong with it.
    bool read(const std::filesystem::path &file, const std::string &folder, Output &output);
    /// Shows what became larger or smaller, largest growth first, as deep as the document goes.
    bool show(const AllDir &root, Output &output) const;

private:
    UsageDocument m_before;
};

} // namespace brightsweep::cli
