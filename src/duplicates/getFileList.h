#pragma once

#include "duplicates/fileAttrbItem.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// Turns a search root into the candidate files and the application bundles below it. Opens no
/// file. One object serves one search.
///
/// The job runs on the calling thread and helpers that end with it; stopSearch() and
/// m_CurrentPath() may be called from any thread meanwhile. What cannot be read is logged and
/// passed over.
class getFileList {
public:
    /// `threads` at most, 0 for as many as there are processors. `stop`, if given, is a flag of the
    /// owner's that ends the job as stopSearch() does, but is not cleared at its start.
    explicit getFileList(unsigned threads = 0, const std::atomic<bool> *stop = nullptr);

    /// The whole job. Appends files strictly larger than the limit, in the order of a plain walk,
    /// and each bundle that has such a member. True if the root could be listed; a job that was
    /// stopped gives a part from the beginning.
    bool getListAtPath(const std::filesystem::path &root, FileList &fileArray,
                       std::vector<std::string> &directoryArray, std::uint64_t limittedSize);

    /// The paths below a root by the rules of the first level, without any filter on files.
    bool getDirectoryAtPath(const std::filesystem::path &root,
                            std::vector<std::string> *resultArray);
    /// The paths below a directory, each directory behind what it holds; no links.
    bool getSubpathsOfDirectoryAtPath(std::vector<std::string> *resultArray,
                                      const std::filesystem::path &inPath);

    static bool IsHiddenFile(const std::filesystem::path &path);
    static bool IsSystemDirectory(const std::filesystem::path &path);
    /// True if the path lies in a bundle or is one. Appends the outermost bundle unless it is there
    /// already or the item at the path is not larger than the limit.
    static bool getAppDirectory(const std::filesystem::path &path,
                                std::vector<std::string> *outArray, std::uint64_t limitSize);
    static bool IsAppDirectory(const std::filesystem::path &path);
    /// True if any component ends in ".app", whatever the case.
    static bool HasAppDirectory(const std::filesystem::path &path);

    void stopSearch() { m_bStopSearch = true; }
    /// The directory that the walk is in now; of several at once, the one begun last.
    std::string m_CurrentPath() const;
    void setM_bSearchHiddenFile(bool value) { m_bSearchHiddenFile = value; }
    void setM_bSearchSystemDirectory(bool value) { m_bSearchSystemDirectory = value; }

    /// Directories to be left out with all they hold; sorted.
    void setPassedOver(std::vector<FileIdentity> directories) {
        m_passedOver = std::move(directories);
    }

private:
    void setCurrentPath(std::string path);
    bool skipsTopDirectory(const std::filesystem::path &root, const std::string &path) const;

    std::atomic<bool> m_bStopSearch{false};
    bool m_bSearchHiddenFile = false;
    bool m_bSearchSystemDirectory = false;
    unsigned m_threads;
    std::vector<FileIdentity> m_passedOver;
    const std::atomic<bool> *m_ownersStop;
    mutable std::mutex m_mutex;
    std::string m_currentPath;
};

} // namespace brightsweep
