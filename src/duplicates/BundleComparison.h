#pragma once

#include "duplicates/FileComparison.h"

#include <filesystem>
#include <vector>

namespace brightsweep {

/// Compares two bundles whole: relative paths, types, what links lead to, and every byte. Entries
/// that are no file, directory or link are equal to nothing.
///
/// For one thread. What was met stays known, so that it can be looked at again before an act.
class BundleComparison {
public:
    /// A file of the bundle that is to go, and the one in its place in the other.
    struct Pair {
        std::filesystem::path file;
        std::filesystem::path other;
        FileAttributes fileAttributes;
        FileAttributes otherAttributes;
    };

    BundleComparison(FileOperations &files, const std::atomic<bool> *stop);

    /// Errors as of FileComparison::compare().
    std::error_code compare(const std::filesystem::path &bundle,
                            const std::filesystem::path &other);
    /// Empty while nothing in either has been touched since it was compared.
    std::error_code lookAgain();

    const std::vector<Pair> &files() const { return m_pairs; }
    /// The size of all files of the bundle, links included, and the latest change of one.
    std::uint64_t size() const { return m_size; }
    std::int64_t changed() const { return m_changed; }
    /// What goes back to the file system with the bundle: nothing of a file that has a name
    /// elsewhere.
    std::uint64_t unsharedBytes() const;

private:
    struct Entry {
        std::string name;
        EntryType type = EntryType::Unknown;
    };
    struct Seen {
        std::filesystem::path path;
        FileAttributes attributes;
        bool isOther = false;
    };
    using Entries = std::vector<Entry>;

    Result<Entries> entriesOf(const std::filesystem::path &folder, const FileAttributes &expected);
    std::error_code compareFolders(const std::filesystem::path &relative);
    std::error_code compareEntry(const std::filesystem::path &relative, EntryType type);
    std::error_code compareFiles(const std::filesystem::path &one,
                                 const std::filesystem::path &other);

    FileOperations &m_files;
    const std::atomic<bool> *m_stop;
    FileComparison m_comparison;
    std::filesystem::path m_bundle;
    std::filesystem::path m_other;
    std::vector<std::filesystem::path> m_folders; ///< still to be compared, relative
    std::vector<Seen> m_seen;
    std::vector<Pair> m_pairs;
    std::vector<std::uint64_t> m_unshared; ///< of each pair's first file
    std::uint64_t m_size = 0;
    std::int64_t m_changed = 0;
};

} // namespace brightsweep
