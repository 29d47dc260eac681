#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

/// Looks for folders in the words of commands and scripts. Constant once made; any thread.
class FolderNames {
public:
    /// The text behind the folder's name runs to the end of the text.
    using Told = std::function<void(std::size_t folder, std::string_view behind)>;

    explicit FolderNames(std::vector<std::filesystem::path> folders);

    /// Before the first find(): another name for a folder where some of these lie.
    void addAlias(const std::string &name, const std::filesystem::path &parent);

    const std::vector<std::filesystem::path> &folders() const { return m_folders; }

    /// Tells of each place where the text names a folder or what lies in it, however it writes the
    /// way there ("~", "$HOME", a specifier of systemd, from the folder above, a variable that it
    /// sets). Says yes rather than no. One pass over the text, however many folders there are.
    void find(std::string_view text, const Told &told) const;

private:
    struct Written {
        std::size_t folder;
        std::string name; ///< as it is, or as a shell has it
    };

    bool isBehindParent(std::string_view text, std::size_t folder) const;
    bool isBehindVariable(std::string_view text, std::size_t folder) const;

    std::vector<std::filesystem::path> m_folders;
    std::vector<std::vector<std::string>> m_parents; ///< of each folder, what it may be written in
    std::vector<bool> m_isInRoot; ///< of each folder, whether its parent lies in the root
    std::map<std::string, std::vector<Written>, std::less<>> m_byBeginning;
};

} // namespace brightsweep
