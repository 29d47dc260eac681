#include "duplicates/SearchSupport.h"

#include <algorithm>
#include <random>

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

std::string bytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string text(size, '\0');
    for (char &byte : text)
        byte = char(random());
    return text;
}

} // namespace brightsweep::test
