#pragma once

#include "duplicates/duplicateFind.h"

#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep::test {

using Groups = std::vector<std::vector<std::string>>;

struct SearchSettings {
    std::uint64_t limit = 0;
    bool hidden = true;
    bool system = true;
    unsigned threads = 0;
};

/// The groups that a search has found so far, as paths in the order of its list; bundles first.
Groups groupsOf(const duplicateFind &search);
Groups search(const std::filesystem::path &root, SearchSettings settings = {});

/// The groups without the order of groups and members.
Groups unordered(Groups groups);

/// Bytes that look random and are the same for the same seed.
std::string bytes(std::size_t size, unsigned seed);

} // namespace brightsweep::test
