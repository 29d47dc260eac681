#pragma once

#include "duplicates/AppAttrbItem.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// Finds application bundles with the same contents. Names and arrangement of the members play no
/// part: two bundles are equal when their files can be paired off by size and checksums.
///
/// Runs on the calling thread, reading on helpers that end with the call. m_Progress(),
/// m_CurrentSearchFile() and setM_StopSearch() may be called from any thread. A bundle that cannot
/// be read whole drops out, and so does one that shares a file with an equal one found before.
class FindDuplicateApp {
public:
    explicit FindDuplicateApp(unsigned threads = 0);

    /// Directories that are no part of a bundle that they lie in; sorted.
    void setPassedOver(std::vector<FileIdentity> directories) {
        m_passedOver = std::move(directories);
    }
    /// The stage. Appends the groups; in each the bundle that was found first stands last.
    void FindAppInArray(const std::vector<std::string> &directories,
                        std::vector<AppList> &outArray);
    /// The same; each group is handed out as it is found, on the calling thread.
    void FindAppInArray(const std::vector<std::string> &directories,
                        const std::function<void(AppList group)> &found);

    /// Reads what the bundles hold, each bundle once, by whatever paths it is given.
    void InitInputAppDirectory(const std::vector<std::string> &directories);
    bool getAllFilePathName(const std::string &path, AppAttrbItem &item);
    static bool getSameSizeDirInArray(const AppList &list, const AppAttrbItem &item,
                                      AppList &outResult);
    bool CompareDir(const std::shared_ptr<AppAttrbItem> &item,
                    const std::shared_ptr<AppAttrbItem> &other);
    bool getDuplicateAppDirInArray(const AppList &list, const std::shared_ptr<AppAttrbItem> &item,
                                   AppList &outArray);

    /// What is left of the bundles given, in percent; it falls as the stage goes on.
    std::uint32_t m_Progress() const { return m_progress; }
    /// The bundle under comparison; empty outside one.
    std::string m_CurrentSearchFile() const;
    void setM_StopSearch(bool stop) { m_StopSearch = stop; }

private:
    void dropSharing(AppList &bundles);
    void readHeads(const AppList &bundles);
    void readWholes(const AppList &bundles);
    template <typename Read>
    void readMembers(const AppList &bundles, Read read);
    void setCurrentSearchFile(const std::string &path);

    FileOperations &m_files;
    unsigned m_threads;
    std::vector<FileIdentity> m_passedOver;
    AppList m_AllAppItem;
    std::atomic<std::uint32_t> m_progress{0};
    std::uint64_t m_AppCount = 0;
    std::atomic<bool> m_StopSearch{false};
    mutable std::mutex m_mutex;
    std::string m_currentSearchFile;
};

} // namespace brightsweep
