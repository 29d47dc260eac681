#include "platform/linux/FolderNames.h"

#include "foundation/Identity.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/OwnPlaces.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

// Names for the folder of data besides its own.
constexpr std::array<std::string_view, 2> dataNames = {"XDG_DATA_HOME", "%D"};
constexpr std::string_view homeName = "$HOME";
constexpr std::string_view wordBeginnings = " \t\n\"'=:;&|(`";
constexpr std::size_t longestWord = 4096;

bool isVariableCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

bool isNameCharacter(char character) {
    return isVariableCharacter(character) || character == '-' || character == '+' ||
           character == '.' || character == '~' || character == '@' || character < 0;
}

// The characters of a name that a text goes on with.
std::string_view nameAt(std::string_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isNameCharacter);
    return text.substr(0, std::size_t(end - text.begin()));
}

// As a shell has it, its blanks behind backslashes.
std::string escaped(const std::string &name) {
    std::string text;
    for (const char character : name) {
        if (character == ' ')
            text += '\\';
        text += character;
    }
    return text;
}

// True where a slash behind it is the root's: "/opt", but not "$HOME"/opt.
bool endsBeforeWord(std::string_view text) {
    const bool isQuoted = text.ends_with('"') || text.ends_with('\'');
    if (isQuoted)
        text.remove_suffix(1);
    constexpr std::string_view beginnings = " \t\n=:;&|(";
    return text.empty() || beginnings.find(text.back()) != beginnings.npos;
}

// Without what may stand between a folder's name and that of what lies in it: slashes, a variable's
// end, a closing quote.
std::string_view withoutEnd(std::string_view text) {
    while (text.ends_with('/') || text.ends_with("/."))
        text.remove_suffix(1);
    while (text.ends_with('}') || text.ends_with('"') || text.ends_with('\''))
        text.remove_suffix(1);
    return text;
}

// True for the beginning of a way that goes from the home, but from another place that is written
// with that: "$HOME2/", "/x$HOME/".
bool leadsElsewhere(std::string_view text) {
    if (text.size() > longestWord)
        text.remove_prefix(text.size() - longestWord);
    const auto word = text.substr(text.find_last_of(wordBeginnings) + 1);
    const auto at = word.find(homeName);
    if (at == word.npos)
        return false;
    const auto before = word.substr(0, at);
    const auto behind = word.substr(at + homeName.size());
    return (!behind.empty() && isVariableCharacter(behind.front())) ||
           (before.find('/') != before.npos && isNameCharacter(before.back()));
}

} // namespace

FolderNames::FolderNames(std::vector<std::filesystem::path> folders)
    : m_folders(std::move(folders)) {
    const auto dataFolder = folderOfRole(FolderRole::Data);
    const auto realData = realPath(dataFolder);
    for (std::size_t i = 0; i < m_folders.size(); ++i) {
        const auto parent = m_folders[i].parent_path();
        auto &parents = m_parents.emplace_back();
        parents.push_back(parent.filename().native());
        m_isInRoot.push_back(parent == realPath(systemPath("/" + parent.filename().native())));
        if (parent == realData) {
            parents.push_back(dataFolder.filename().native());
            parents.insert(parents.end(), dataNames.begin(), dataNames.end());
        }
        const std::string name = m_folders[i].filename().native();
        auto &written = m_byBeginning[std::string(nameAt(name))];
        written.push_back({i, name});
        if (const std::string inShell = escaped(name); inShell != name)
            written.push_back({i, inShell});
    }
}

void FolderNames::addAlias(const std::string &name, const std::filesystem::path &parent) {
    for (std::size_t i = 0; i < m_folders.size(); ++i) {
        if (m_folders[i].parent_path() == parent)
            m_parents[i].push_back(name);
    }
}

bool FolderNames::isBehindParent(std::string_view text, std::size_t folder) const {
    text = withoutEnd(text);
    const auto &parents = m_parents[folder];
    return std::any_of(parents.begin(), parents.end(), [&](const std::string &parent) {
        if (!text.ends_with(parent))
            return false;
        const auto before = text.substr(0, text.size() - parent.size());
        // "/opt" is another one than "~/opt".
        const bool isInRoot =
            before.ends_with('/') && endsBeforeWord(before.substr(0, before.size() - 1));
        return (before.empty() || !isNameCharacter(before.back())) &&
               (!isInRoot || m_isInRoot[folder]) && !leadsElsewhere(before);
    });
}

// "D=~/.local/share; cd $D/".
bool FolderNames::isBehindVariable(std::string_view text, std::size_t folder) const {
    const auto word = withoutEnd(text);
    const auto begin = std::find_if_not(word.rbegin(), word.rend(), isVariableCharacter).base();
    const std::string_view name = word.substr(std::size_t(begin - word.begin()));
    const auto before = word.substr(0, word.size() - name.size());
    if (name.empty() || !(before.ends_with('$') || before.ends_with("${")))
        return false;
    const std::string assignment = std::string(name) + '=';
    for (auto at = before.find(assignment); at != before.npos;
         at = before.find(assignment, at + 1)) {
        if (at > 0 && isNameCharacter(before[at - 1]))
            continue;
        const auto value = before.substr(0, before.find_first_of(" \t\n;&", at));
        if (value.size() > at + assignment.size() && isBehindParent(value, folder))
            return true;
    }
    return false;
}

void FolderNames::find(std::string_view text, const Told &told) const {
    for (auto at = text.find('/'); at != text.npos; at = text.find('/', at + 1)) {
        auto rest = text.substr(at + 1);
        if (rest.starts_with('"') || rest.starts_with('\''))
            rest.remove_prefix(1);
        const auto found = m_byBeginning.find(nameAt(rest));
        if (found == m_byBeginning.end())
            continue;
        for (const Written &written : found->second) {
            const auto behind = rest.substr(std::min(written.name.size(), rest.size()));
            if (rest.starts_with(written.name) &&
                (behind.empty() || !isNameCharacter(behind.front())) &&
                (isBehindParent(text.substr(0, at + 1), written.folder) ||
                 isBehindVariable(text.substr(0, at + 1), written.folder)))
                told(written.folder, behind);
        }
    }
}

} // namespace brightsweep
