#include "duplicates/ReferenceSearch.h"

#include "support/TestTree.h"

#include <dirent.h>
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>

namespace brightsweep::test {

namespace {

struct stat statusOf(const std::string &path) {
    struct stat status {};
    ::lstat(path.c_str(), &status);
    return status;
}

bool isDirectory(const std::string &path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool equalFiles(const std::string &a, const std::string &b) {
    return statusOf(a).st_size == statusOf(b).st_size && textOf(a) == textOf(b);
}

bool equalBundles(const std::string &a, const std::string &b) {
    std::vector<std::string> members[2];
    for (int side = 0; side < 2; ++side) {
        if (!isDirectory(side ? b : a))
            return false;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(side ? b : a)) {
            if (!entry.is_directory())
                members[side].push_back(textOf(entry.path()));
        }
        std::sort(members[side].begin(), members[side].end());
    }
    return members[0] == members[1];
}

} // namespace

void ReferenceSearch::run(const std::filesystem::path &root) {
    std::vector<std::string> work;
    list(root.native(), true, work);
    filter(work);
    group(bundles, equalBundles);
    group(candidates, equalFiles);
}

void ReferenceSearch::list(const std::string &directory, bool isTop,
                           std::vector<std::string> &work) {
    DIR *stream = ::opendir(directory.c_str());
    while (const dirent *entry = stream ? ::readdir(stream) : nullptr) {
        const std::string name = entry->d_name;
        const std::string path = directory + "/" + name;
        struct stat ignored;
        if (name == "." || name == ".." || ::stat(path.c_str(), &ignored) != 0)
            continue;
        if (!isTop && S_ISLNK(statusOf(path).st_mode))
            continue;
        if (isDirectory(path))
            list(path, false, work);
        if (!isTop || !isDirectory(path))
            work.push_back(path);
    }
    if (stream)
        ::closedir(stream);
}

void ReferenceSearch::filter(const std::vector<std::string> &work) {
    for (const std::string &path : work) {
        if (!hidden && path.find("/.") != path.npos)
            continue;
        std::string bundle;
        for (std::size_t end = 1; bundle.empty() && end <= path.size(); ++end) {
            if ((end == path.size() || path[end] == '/') && end > 5 &&
                ::strcasecmp(path.substr(end - 4, 4).c_str(), ".app") == 0 && path[end - 5] != '/')
                bundle = path.substr(0, end);
        }
        const bool isLarge = std::uint64_t(statusOf(path).st_size) > limit;
        if (!bundle.empty()) {
            if (isLarge && std::find(bundles.begin(), bundles.end(), bundle) == bundles.end())
                bundles.push_back(bundle);
        } else if (!isDirectory(path) && isLarge) {
            candidates.push_back(path);
        }
    }
}

void ReferenceSearch::group(std::vector<std::string> items,
                            bool (*equal)(const std::string &, const std::string &)) {
    while (!items.empty()) {
        const std::string item = items.front();
        items.erase(items.begin());
        std::vector<std::string> found;
        for (const std::string &other : items) {
            if (equal(item, other))
                found.push_back(other);
        }
        if (found.empty())
            continue;
        std::erase_if(items, [&](const std::string &each) {
            return std::find(found.begin(), found.end(), each) != found.end();
        });
        found.push_back(item);
        groups.push_back(std::move(found));
    }
}

} // namespace brightsweep::test
