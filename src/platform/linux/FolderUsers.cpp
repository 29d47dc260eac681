#include "platform/linux/FolderUsers.h"

#include "foundation/Identity.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/OwnPlaces.h"

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

using std::filesystem::path;

struct UserPlace {
    FolderRole role;
    const char *way;
    bool holdsScripts; ///< of its files only scripts say where they lead
    int depth;         ///< of folders in it that are read as well
};
constexpr std::array userPlaces = {
    UserPlace{FolderRole::Config, "systemd/user", false, 1},
    UserPlace{FolderRole::Config, "autostart", false, 0},
    UserPlace{FolderRole::Config, "", true, 0},
    UserPlace{FolderRole::Data, "systemd/user", false, 1},
    UserPlace{FolderRole::Data, "dbus-1/services", false, 0},
    UserPlace{FolderRole::Data, "applications", false, 0},
    UserPlace{FolderRole::Data, "", true, 0},
    UserPlace{FolderRole::Desktop, "", false, 0},
};
constexpr std::array homePlaces = {"",           ".local/bin", "bin",         ".local",
                                   ".local/opt", "opt",        "Applications"};
// What a shell reads when it starts.
constexpr std::array shellFiles = {".bashrc",  ".bash_profile", ".bash_aliases",
                                   ".profile", ".xprofile",     ".xsessionrc",
                                   ".zshrc",   ".zprofile",     ".zshenv"};
constexpr std::string_view scriptMark = "#!";
constexpr std::size_t longestScript = std::size_t(64) << 10;

// What may stand between a folder and a name in it: a variable's end, a closing quote.
constexpr std::array<std::string_view, 6> separators = {"/", "}/", "\"/", "}\"/", "'/", "}'/"};
// Names for the folder of data besides its own.
constexpr std::array<std::string_view, 2> dataNames = {"XDG_DATA_HOME", "%D"};

bool isNameCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-' ||
           character == '+' || character < 0;
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

bool isWordIn(std::string_view text, const std::string &word) {
    for (auto at = text.find(word); at != text.npos; at = text.find(word, at + 1)) {
        const auto end = at + word.size();
        if (end == text.size() || !isNameCharacter(text[end]))
            return true;
    }
    return false;
}

} // namespace

bool FolderUsers::isNamedIn(std::string_view text, const path &folder) {
    std::vector<std::string> parents = {folder.parent_path().filename().native()};
    if (folder.parent_path() == realPath(folderOfRole(FolderRole::Data)))
        parents.insert(parents.end(), dataNames.begin(), dataNames.end());
    const std::string name = folder.filename().native();
    for (const std::string &parent : parents) {
        for (const std::string_view separator : separators) {
            const std::string way = parent + std::string(separator);
            if (isWordIn(text, way + name) || isWordIn(text, way + escaped(name)))
                return true;
        }
    }
    return false;
}

FolderUsers::FolderUsers() {
    const path home = homeFolder();
    for (const char *const way : homePlaces)
        readFolder(paths::join(home, way), true, 0);
    for (const UserPlace &place : userPlaces)
        readFolder(paths::join(folderOfRole(place.role), place.way), place.holdsScripts,
                   place.depth);
    for (const char *const name : shellFiles)
        readText(paths::join(home, name), false);
}

void FolderUsers::readFolder(const path &folder, bool holdsScripts, int depth) {
    std::error_code error;
    for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (i->is_symlink(unknown) &&
            !readLink(folder / std::filesystem::read_symlink(i->path(), unknown)))
            continue;
        if (i->is_regular_file(unknown))
            readText(i->path(), holdsScripts);
        else if (depth > 0 && i->is_directory(unknown) && !i->is_symlink(unknown))
            readFolder(i->path(), holdsScripts, depth - 1);
    }
}

// What it names, and what that leads to. False for what lies out of the home, of which nothing is
// asked: it may be a server that does not answer.
bool FolderUsers::readLink(const path &target) {
    const path named = target.lexically_normal();
    if (!paths::isSameOrBelow(named.native(), homeFolder().native()))
        return false;
    m_targets.push_back(paths::join(realPath(named.parent_path()), named.filename().native()));
    m_targets.push_back(realPath(named));
    return true;
}

void FolderUsers::readText(const path &file, bool isScriptOnly) {
    if (isScriptOnly) {
        const auto beginning = readSmallFile(file, scriptMark.size());
        if (!beginning || *beginning != scriptMark)
            return;
    }
    auto text = readSmallFile(file, longestScript);
    if (!text)
        return;
    Text found{*std::move(text), {}};
    if (file.extension() == ".desktop")
        found.program = realPath(findProgram(execProgram(DesktopEntry(found.text).string("Exec"))));
    m_texts.push_back(std::move(found));
}

bool FolderUsers::anyUses(const path &folder, const IsOwn &isOwn) const {
    return std::any_of(m_targets.begin(), m_targets.end(),
                       [&](const path &target) {
                           return paths::isSameOrBelow(target.native(), folder.native()) &&
                                  !isOwn(target);
                       }) ||
           std::any_of(m_texts.begin(), m_texts.end(), [&](const Text &each) {
               return isNamedIn(each.text, folder) &&
                      (each.program.empty() || !isOwn(each.program));
           });
}

} // namespace brightsweep
