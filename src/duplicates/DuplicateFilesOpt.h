#pragma once

#include "duplicates/AppAttrbItem.h"
#include "duplicates/SearchedFile.h"
#include "duplicates/fileAttrbItem.h"
#include "results/SimpleTreeNode.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brightsweep {

class duplicateFind;

/// What the duplicates page and the command line search with: runs one search, passes on progress,
/// path and stop, and makes the result tree.
///
/// One object serves one search. beginSearchAtPath() blocks its thread; getProgress(),
/// getCurrentSearchFile() and stopSearch() may be called from any thread; getDuplicateFiles() after
/// the search, stopped or not, or while one that does not come to its end is left alone.
class DuplicateFilesOpt {
public:
    struct SearchOption {
        bool hidden = true;
        bool system = true;
    };

    /// `threads` at most, 0 for as many as there are processors. The result does not depend on it.
    explicit DuplicateFilesOpt(unsigned threads = 0);
    ~DuplicateFilesOpt();

    void setSearchOption(const SearchOption &option) { m_option = option; }
    /// Files strictly larger than the limit, in bytes, are compared.
    void beginSearchAtPath(const std::filesystem::path &path, std::uint64_t withLimitSize);
    /// 0 to 100; 0 before the search.
    std::uint32_t getProgress();
    std::string getCurrentSearchFile();
    /// Answered within a second, also by a search that has not begun.
    void stopSearch();
    /// A tree of groups, those of bundles first, with the members as leaves. False, and the pointer
    /// left alone, where nothing was found. To be called once.
    /// The leaves are DuplicateLeaf objects.
    bool getDuplicateFiles(std::shared_ptr<SimpleTreeNode> &root);
    /// Where the search began; after it. Nothing where the folder could not be reached.
    const Result<SearchRoot> &searchRoot() const { return m_root; }

private:
    std::shared_ptr<duplicateFind> find();

    const unsigned m_threads;
    SearchOption m_option;
    FileList m_findArray;
    std::vector<AppList> m_findAppArray;
    Result<SearchRoot> m_root = std::errc::no_such_file_or_directory;
    std::size_t m_Index = 0; // length of m_findArray before the last copy

    std::mutex m_mutex; // all that follows
    std::shared_ptr<duplicateFind> m_findDuplicate;
    std::string m_CurrentSearchPath;
    bool m_isStopped = false;
};

} // namespace brightsweep
