#pragma once

#include "foundation/Result.h"
#include "platform/StandardDirectories.h"
#include "removal/NvAuthorization.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace brightsweep {

/// Which folders a clean category has, what is no item of theirs, and how large an item is. All
/// calls are safe from every thread.
class FolderUtilities {
public:
    /// The folders of a category, as they were checked; none for an index above 5. Of the trash the
    /// home's comes first, then those of the further local volumes, each once. Folders that are
    /// meant for it but not fit to be cleaned are added to `leftOut`, when given.
    static std::vector<RemovalRoot> getFolderPath(std::uint32_t index,
                                                  std::vector<LeftOutFolder> *leftOut = nullptr);
    /// The folders and why each is left out, in words, a sentence for each.
    static QString wordsOf(const std::vector<LeftOutFolder> &leftOut);

    /// The sum of the logical sizes of all files below; of a file or a link its own. Directories
    /// add nothing, links are not followed, a further name of a file counts again. What cannot be
    /// read counts 0, and everything does while the TaskStopper's flag is set.
    static std::uint64_t sizeOfItemAtPath(const std::filesystem::path &path);

    /// The folder to show for a path: a plain folder itself, else the one that holds it, also for
    /// a package and for what is missing.
    static std::filesystem::path getFolderFromFile(const std::filesystem::path &path);

    /// True for a name that belongs to the owner of the folder and is no item: the lock and the
    /// partial downloads of the package cache.
    static bool isReserved(const RemovalRoot &folder, std::string_view name);

    /// Administrator rights for one act, outside the shared ones' padlock. False when refused.
    static bool CreateAuthoration(AuthorizationReference *reference);
    static bool DeleteAuthoration(const AuthorizationReference &reference);
};

} // namespace brightsweep
