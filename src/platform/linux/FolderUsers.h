#pragma once

#include "platform/linux/FolderNames.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brightsweep {

/// What in the user's home, and among the units and commands of this machine, starts programs or
/// leads somewhere: links, units, entries, browsers' manifests and scripts of the usual folders, as
/// they were when this was made. Constant then; any thread.
class FolderUsers {
public:
    using IsOwn = std::function<bool(const std::filesystem::path &program)>;
    /// Links among the commands, a shell's PATH and files of its name are a program folder's own.
    /// Where its programs lie in one subfolder, links to others lead to another application. A
    /// folder among other programs' data may be one of theirs, so that all these count as its
    /// users.
    enum class Standing { Programs, ProgramsInSubfolder, Data };

    /// Reads the disk for what uses one of these folders, paths without links.
    explicit FolderUsers(std::vector<std::filesystem::path> folders);

    /// A file by which something else uses the folder, one of those of the beginning: it leads into
    /// it or names it, and neither starts nor stands for what is the folder's own. Empty where
    /// nothing does.
    std::filesystem::path userOf(const std::filesystem::path &folder, Standing standing,
                                 const IsOwn &isOwn) const;
    /// True for a script that is called as the folder and starts what is its own.
    bool isLauncher(const std::filesystem::path &program, const std::filesystem::path &folder,
                    const IsOwn &isOwn) const;
    /// True where a file's name, or a part of it behind a dot, begins with the word that is the
    /// folder's name: "x-wrapper.desktop", "org.x.host.json". "my-x" may be of somebody's own.
    static bool isNamedAfter(const std::filesystem::path &file,
                             const std::filesystem::path &folder);

private:
    struct Place;
    struct Use {
        std::filesystem::path file;
        std::filesystem::path reached; ///< in or by the folder; none for what does more
        bool isNamedAfter = false;     ///< the file, or the folder that it belongs to
        bool isPersonal = false;       ///< how a person gets at programs, no program itself
        bool isScript = false;
    };

    void nameAliases();
    void readFolder(const Place &place, const std::filesystem::path &folder, int depth);
    void readLinksOfFolders(const std::filesystem::path &parent);
    void readLinksBelow(const std::filesystem::path &owner);
    bool readLink(const std::filesystem::path &link, const std::filesystem::path &owner,
                  bool isPersonal);
    bool addTarget(Use use, const std::filesystem::path &owner);
    void readText(const std::filesystem::path &file, bool isScriptOnly, bool isPersonal);
    std::filesystem::path startedBy(const std::filesystem::path &file, std::size_t folder,
                                    std::string_view behind) const;

    FolderNames m_names;
    std::unordered_map<std::string, std::vector<Use>> m_uses; ///< by folder
};

} // namespace brightsweep
