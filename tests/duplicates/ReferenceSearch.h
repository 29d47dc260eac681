#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace brightsweep::test {

/// The search by its plain definition: one thread, full contents, every pair. For small trees that
/// do not change; names in each directory in the order in which readdir gives them.
struct ReferenceSearch {
    bool hidden = true;
    std::uint64_t limit = 0;

    std::vector<std::string> candidates;
    std::vector<std::string> bundles;
    /// Of each group the paths in the order of the search's own list, the bundles' first.
    std::vector<std::vector<std::string>> groups;

    void run(const std::filesystem::path &root);

private:
    void list(const std::string &directory, bool isTop, std::vector<std::string> &work);
    void filter(const std::vector<std::string> &work);
    void group(std::vector<std::string> items,
               bool (*equal)(const std::string &, const std::string &));
};

} // namespace brightsweep::test
