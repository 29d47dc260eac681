#pragma once

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

    /// Reads the disk.
    FolderUsers();

    /// True where something leads into a folder or names it, but for links to and entries of what
    /// is the folder's own program.
    bool anyUses(const std::filesystem::path &folder, const IsOwn &isOwn) const;

    /// True where a command or a script names a folder or what lies in it, however it writes the
    /// way there ("~", "$HOME", a specifier of systemd, from the folder above). Says yes rather
    /// than no.
    static bool isNamedIn(std::string_view text, const std::filesystem::path &folder);

private:
    struct Text {
        std::string text;
        std::filesystem::path program; ///< of an entry, what it starts
    };

    void readFolder(const std::filesystem::path &folder, bool holdsScripts, int depth);
    bool readLink(const std::filesystem::path &target);
    void readText(const std::filesystem::path &file, bool isScriptOnly);

    std::vector<std::filesystem::path> m_targets; ///< of links, without further links
    std::vector<Text> m_texts;
};

} // namespace brightsweep
