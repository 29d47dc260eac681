#pragma once

#include "duplicates/DuplicateRemoval.h"
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

/// What a search found, as removals take it.
struct Searched {
    SearchRoot root;
    std::vector<std::vector<DuplicateRemoval::Member>> groups;

    /// The group of a path, and its place in it.
    std::vector<DuplicateRemoval::Member> &groupOf(const std::filesystem::path &path);
    std::size_t placeOf(const std::filesystem::path &path);
};
Searched searchFor(const std::filesystem::path &root);

/// Bytes of the same checksum as these that differ from the place on, usually behind what the
/// search compares by itself; eight more at least.
std::string forgedTwin(std::string text, std::size_t place = 1024);

/// Bytes that look random and are the same for the same seed.
std::string bytes(std::size_t size, unsigned seed);

} // namespace brightsweep::test
