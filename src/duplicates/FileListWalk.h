#pragma once

#include "duplicates/fileAttrbItem.h"
#include "platform/DirectoryWalk.h"

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

namespace brightsweep {

/// One pass over a tree, several directories at once, whose finds are put back into the order of a
/// plain walk: names in system order, what lies below a directory in its place, the directory
/// itself behind that.
///
/// walkRoot() or walkFolder() runs the pass on the calling thread and helpers of its own; after it
/// the finds are given out once. What could not be read is passed over and told with the finds.
class FileListWalk : private DirectoryWalk::Visitor {
public:
    enum class Collect {
        Candidates, ///< files above the limit; those of bundles register the bundle instead
        Paths,      ///< everything but links
        Names,      ///< everything
        Members,    ///< everything but directories; links count by what they lead to
    };

    struct Rules {
        Collect collect = Collect::Candidates;
        bool hidden = true;
        std::uint64_t limit = 0;
        unsigned threads = 0;
        const std::atomic<bool> *stop = nullptr;
        /// Directories below the root that are left out with all they hold; sorted.
        std::vector<FileIdentity> passedOver = {};
        /// Called with each directory as it is read, on any thread.
        std::function<void(std::string path)> current = {};
        /// Asked for a directory directly below the root; true leaves it out.
        std::function<bool(const std::string &path)> skipsTopDirectory = {};
    };

    FileListWalk(FileOperations &files, Rules rules);

    /// By the rules of the first level, where links are followed: `missing` is told of names that
    /// lead nowhere. The error is the root's own.
    std::error_code walkRoot(const std::string &root,
                             const std::function<void(const std::string &path)> &missing);
    /// By the rules that hold below the first level.
    std::error_code walkFolder(const std::string &folder);

    struct Finds {
        std::function<void(std::shared_ptr<fileAttrbItem>)> candidate;
        std::function<void(const std::string &path)> bundle;
        std::function<void(const std::string &description)> failure;
        std::function<void(const std::string &path)> folder; ///< where paths or names are collected
    };
    /// In order, until the stop flag is set. Once only: finds are released as they are given out.
    void giveOut(const Finds &finds);
    /// True when some directory below the start could not be read.
    bool hasFailures() const { return m_failed; }

    static bool isBundleName(std::string_view name);
    /// The part of the path up to the first component that names a bundle; empty without one.
    static std::string bundlePrefix(std::string_view path);
    /// True as soon as one component of the path begins with a point.
    static bool isHidden(std::string_view path);

private:
    // Lives while finds may still be given out; only the thread that reads the directory changes
    // it.
    struct Bundle {
        std::string path;
        std::atomic<bool> qualifies{false};
    };
    struct Folder;
    using Find = std::variant<std::shared_ptr<fileAttrbItem>, Folder *, Bundle *>;
    struct Folder {
        Bundle *bundle = nullptr;
        std::vector<Find> finds;
        std::string path; // of a start of the walk, and of all where paths are collected
        std::unique_ptr<std::string> failure;
        bool isStart = false;
        bool followsLink = false;
        bool isRead = false;
        bool isShown = false;
    };

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override;
    void read(DirectoryWalk::Directory &directory, std::error_code error) override;
    bool nextRoot(DirectoryWalk &walk) override;

    void run();
    void addFile(Folder &folder, std::string path, const DirectoryEntry &entry);
    void addMember(Folder &folder, std::string path, const DirectoryEntry &entry);
    void addTopEntry(const std::string &path, const DirectoryEntry &entry,
                     const std::function<void(const std::string &path)> &missing);
    void fail(Folder &folder, const std::string &path, std::error_code error);
    Folder *newFolder(Bundle *bundle);
    Bundle *newBundle(std::string path);
    static std::string pathOf(const DirectoryWalk::Directory &directory);
    bool isPassedOver(const DirectoryWalk::Directory &directory) const;
    bool stopped() const { return m_rules.stop && m_rules.stop->load(std::memory_order_relaxed); }

    FileOperations &m_files;
    Rules m_rules;
    DirectoryWalk *m_walk = nullptr;
    std::mutex m_mutex; // the two lists below
    std::deque<Folder> m_folders;
    std::deque<Bundle> m_bundles;
    Folder *m_root = nullptr;
    bool m_rootIsHidden = false;
    std::shared_ptr<const OpenDirectory> m_rootDirectory;
    std::vector<Folder *> m_starts;
    std::size_t m_nextStart = 0;
    std::atomic<bool> m_failed{false};
};

} // namespace brightsweep
