#include "helper/AptReports.h"

#include "linux/PackageDatabase.h"

#include <algorithm>
#include <set>

// What apt-get says that it is about to do.

namespace brightsweep::helper {

namespace {

using Names = std::set<std::string, std::less<>>;

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const auto end = std::min(line.find(' '), line.size());
        if (end > 0)
            words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

bool isExactly(const Names &found, const std::vector<std::string> &names) {
    return found == Names(names.begin(), names.end());
}

} // namespace

bool matchesSimulation(std::string_view output, const std::vector<std::string> &names) {
    Names removed;
    bool doesMore = false;
    forEachLine(output, [&](std::string_view line) {
        const auto words = wordsOf(line);
        if (line.starts_with("Remv ") && words.size() > 1)
            removed.emplace(words[1]);
        for (const char *act : {"Inst ", "Conf ", "Purg "})
            doesMore = doesMore || line.starts_with(act);
    });
    return !doesMore && isExactly(removed, names);
}

bool matchesReport(std::string_view report, const std::vector<std::string> &names) {
    constexpr std::string_view version = "VERSION 3\n";
    constexpr std::string_view architectureKey = "APT::Architecture=";
    constexpr std::size_t fieldCount = 9;
    if (!report.starts_with(version))
        return false;
    // Settings of apt's, an empty line, and a line for each package.
    const auto settingsEnd = report.find("\n\n");
    if (settingsEnd == report.npos)
        return false;
    std::string_view architecture;
    forEachLine(report.substr(0, settingsEnd), [&](std::string_view line) {
        if (line.starts_with(architectureKey))
            architecture = line.substr(architectureKey.size());
    });
    Names removed;
    bool doesMore = architecture.empty();
    forEachLine(report.substr(settingsEnd + 2), [&](std::string_view line) {
        // NAME VERSION ARCHITECTURE MULTI-ARCH > VERSION ARCHITECTURE MULTI-ARCH ACT
        const auto words = wordsOf(line);
        if (words.size() != fieldCount || words.back() != "**REMOVE**") {
            doesMore = true;
            return;
        }
        const bool isOwn = words[2] == architecture || words[2] == "all";
        removed.insert(std::string(words[0]) + (isOwn ? "" : ':' + std::string(words[2])));
    });
    return !doesMore && isExactly(removed, names);
}

} // namespace brightsweep::helper
