#pragma once

#include "duplicates/AppAttrbItem.h"
#include "duplicates/fileAttrbItem.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace brightsweep {

class FindDuplicateApp;
class getFileList;

/// One search from start to end: enumerate, compare bundles, compare files.
///
/// searchDuplicateFileAtPath() blocks the calling thread; all else may be called from any thread
/// meanwhile. A search that was stopped, or is still under way, gives the groups found so far,
/// which are the first ones of the full result.
class duplicateFind {
public:
    /// `threads` at most for each stage, 0 for as many as there are processors.
    explicit duplicateFind(unsigned threads = 0);
    ~duplicateFind();

    void setSearchOption(bool hidden, bool system);
    void searchDuplicateFileAtPath(const std::filesystem::path &path, std::uint64_t limittedSize);

    /// 0 to 100. Falls during the bundle stage and need not reach 100 at the end.
    std::uint32_t getProgress();
    std::string getCurrentSearchPath();
    void stopSearch();

    /// Each appends its whole list, or the rest of it from an index on.
    void getAllDuplicateFile(FileList &files) const { findNewDuplicateFile(files, 0); }
    void getAllAppDuplicateDir(std::vector<AppList> &groups) const {
        getNewAppDuplicateDir(groups, 0);
    }
    void findNewDuplicateFile(FileList &files, std::size_t fromIndex) const;
    void getNewAppDuplicateDir(std::vector<AppList> &groups, std::size_t fromIndex) const;

private:
    bool _searchDuplicateFile();
    void getDuplicateApp(const std::vector<std::string> &directories);
    void compareFiles();

    const unsigned m_threads;
    std::filesystem::path m_path;
    FileList m_allFileArray;
    std::atomic<std::uint64_t> m_iProgress{0};
    std::uint64_t m_limittedSize = 0;
    std::vector<std::string> DirectoryArray;
    std::vector<FileIdentity> m_passedOver;
    std::atomic<bool> m_Stop{false};
    bool m_bSearchHiddenFile = false;
    bool m_bSearchSystemDirectory = false;

    mutable std::mutex m_mutex; // all that follows
    std::vector<AppList> m_allAppArray;
    FileList m_newFileArray;
    std::uint64_t m_iAppProgress = 0;
    std::shared_ptr<getFileList> m_fileList;
    std::shared_ptr<FindDuplicateApp> m_findDuplicateApp;
    std::string m_CurrentSearchPath;
};

} // namespace brightsweep
