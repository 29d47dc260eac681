#include "duplicates/SearchSupport.h"

#include "duplicates/DuplicateFilesOpt.h"
#include "duplicates/crc.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace brightsweep::test {

Groups groupsOf(const duplicateFind &search) {
    Groups groups;
    std::vector<AppList> bundles;
    search.getAllAppDuplicateDir(bundles);
    for (const AppList &group : bundles) {
        groups.emplace_back();
        for (const auto &bundle : group)
            groups.back().push_back(bundle->DirectoryPathName);
    }
    FileList files;
    search.getAllDuplicateFile(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (i == 0 || files[i]->md5 != files[i - 1]->md5)
            groups.emplace_back();
        groups.back().push_back(files[i]->filePathName);
    }
    return groups;
}

Groups search(const std::filesystem::path &root, SearchSettings settings) {
    duplicateFind search(settings.threads);
    search.setSearchOption(settings.hidden, settings.system);
    search.searchDuplicateFileAtPath(root, settings.limit);
    return groupsOf(search);
}

Groups unordered(Groups groups) {
    for (auto &group : groups)
        std::sort(group.begin(), group.end());
    std::sort(groups.begin(), groups.end());
    return groups;
}

Searched searchFor(const std::filesystem::path &root) {
    DuplicateFilesOpt search(1);
    search.beginSearchAtPath(root, 0);
    Searched found{*search.searchRoot(), {}};
    std::shared_ptr<SimpleTreeNode> tree;
    if (search.getDuplicateFiles(tree)) {
        for (const auto &group : tree->children())
            found.groups.push_back(membersOf(*group));
    }
    return found;
}

std::vector<DuplicateRemoval::Member> &Searched::groupOf(const std::filesystem::path &path) {
    for (auto &group : groups) {
        for (const auto &member : group) {
            if (member.path == path)
                return group;
        }
    }
    throw std::runtime_error("not found: " + path.native());
}

std::size_t Searched::placeOf(const std::filesystem::path &path) {
    const auto &group = groupOf(path);
    const auto isIt = [&](const auto &member) { return member.path == path; };
    return std::size_t(std::find_if(group.begin(), group.end(), isIt) - group.begin());
}

// The checksum is linear: what is changed in the middle is made up for by the last eight bytes.
std::string forgedTwin(std::string text, std::size_t place) {
    std::string change(text.size(), '\0');
    change[place] = 1;
    const std::uint64_t value = crc::fold(0, change.data(), change.size() - 8);
    for (std::size_t i = 0; i < 8; ++i)
        change[change.size() - 8 + i] = char(value >> (8 * i));
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = char(text[i] ^ change[i]);
    return text;
}

std::string bytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string text(size, '\0');
    for (char &byte : text)
        byte = char(random());
    return text;
}

} // namespace brightsweep::test
