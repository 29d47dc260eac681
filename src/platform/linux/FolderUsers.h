#pragma once

#include "platform/linux/FolderNames.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// What in the user's home starts programs or leads somewhere: links, units, entries and scripts of
/// the usual folders, as they were when this was made. Constant then; any thread.
class FolderUsers {
public:
    using IsOwn = std::function<bool(const std::filesystem::path &program)>;

    /// Reads the disk for what uses one of these folders.
    explicit FolderUsers(std::vector<std::filesystem::path> folders);

    /// True where something leads into one of the folders or names it, but for links to, entries of
    /// and a script of its name that only starts what is the folder's own program.
    bool anyUses(const std::filesystem::path &folder, const IsOwn &isOwn) const;

private:
    struct Use {
        std::size_t folder;
        std::filesystem::path file;
        std::filesystem::path program; ///< that is started by it; none for what does more
    };

    void readFolder(const std::filesystem::path &folder, bool holdsScripts, int depth);
    void readLinksOfFolders(const std::filesystem::path &parent);
    bool readLink(const std::filesystem::path &target);
    void readText(const std::filesystem::path &file, bool isScriptOnly);
    std::filesystem::path startedBy(const std::filesystem::path &file, std::size_t folder,
                                    std::string_view behind) const;

    FolderNames m_names;
    std::vector<std::filesystem::path> m_targets; ///< of links, without further links
    std::vector<Use> m_uses;
};

} // namespace brightsweep
