#include "uninstall/LeftoverRules.h"

#include "foundation/LowerCase.h"
#include "linux/DesktopFolders.h"
#include "results/FileClasses.h"

#include <algorithm>
#include <iterator>

namespace brightsweep {

namespace {

constexpr std::size_t shortestName = 3;
// The classes of what people make and collect: documents, music, video, archives and pictures.
constexpr std::int32_t firstMadeClass = 1;
constexpr std::int32_t lastMadeClass = 5;

// clang-format off
// Folders and files that many programs write to, or that tools and shells own.
constexpr std::string_view sharedFolders[] = {
    "aws", "azure", "cargo", "dmrc", "docker", "enchant", "environment", "face", "fcitx",
    "fcitx5", "gegl-0.4", "gem", "gpg", "gradle", "kube", "maven", "mesa_shader_cache",
    "mozilla", "netrc", "npm", "password-store", "pip", "pki", "qt", "qtproject", "rustup",
    "ssh", "trolltech", "wget", "xauthority", "xdefaults", "xinit", "xmodmap", "xorg",
    "xprofile", "xresources", "xsession",
};
// Shells, whose files in the home begin with their names.
constexpr std::string_view shells[] = {
    "bash", "csh", "dash", "fish", "ksh", "oh-my-zsh", "tcsh", "zlog", "zprofile", "zsh",
};
// Programs that run those of others.
constexpr std::string_view runners[] = {
    "appimage", "bin", "curl", "dotnet", "electron", "env", "git", "git-credentials", "gitconfig",
    "gitignore", "gjs", "go", "java", "mono", "node", "perl", "php", "python", "python3", "ruby",
    "sudo",
};
// Words that say nothing about whose a folder is.
constexpr std::string_view commonWords[] = {
    "app", "application", "apps", "assistant", "audio", "backup", "browser", "cache", "chat",
    "client", "common", "conf", "config", "core", "data", "default", "desktop", "documents",
    "downloads", "editor", "file-manager", "files", "game", "games", "gui", "help", "history",
    "home", "icon", "images", "info", "input", "install", "kernel", "launcher", "lib", "local",
    "log", "login", "logs", "mail", "main", "man", "manager", "music", "office", "opt", "pictures",
    "player", "preferences", "profile", "profiles", "public", "recent", "root", "run", "scripts",
    "server", "settings", "setup", "share", "shell", "src", "state", "system", "terminal", "tool",
    "tools", "user", "var", "videos",
};
// clang-format on

// Names that come in versions, such as "python3.11".
constexpr std::string_view commonBeginnings[] = {"dbus-", "gtk-",     "gstreamer-", "java-",
                                                 "lua5",  "openjdk-", "python2.",   "python3."};

constexpr std::string_view settingsEndings[] = {"rc", ".conf", ".ini"};

// In lower case, as all comparisons here are.
// clang-format off
constexpr std::string_view dataNames[] = {
    "bookmarks", "cert9.db", "cookies", "databases", "favicons", "history", "identities",
    "imapmail", "indexeddb", "key3.db", "key4.db", "keyring", "leveldb", "local storage",
    "login data", "logins.json", "mail", "maildir", "places.sqlite", "profile", "profiles",
    "profiles.ini", "saves", "session storage", "sync data", "wallet.dat", "web data",
};
// clang-format on
constexpr std::string_view dataEndings[] = {
    ".sqlite", ".sqlite3", ".sqlite-wal", ".db", ".db3", ".mdb", ".ldb", ".kdbx", ".kdb", ".mbox",
    ".msf", ".maildir", ".gpg", ".asc", ".pem", ".p12", ".keystore", ".jks", ".keyring",
    // Of the same kind as the classes of files, which do not know them.
    ".7z", ".avif", ".bib", ".bz2", ".csv", ".eml", ".epub", ".flac", ".gz", ".heic", ".ics",
    ".ipynb", ".iso", ".kdenlive", ".kra", ".m4a", ".md", ".mid", ".mscz", ".opus", ".org", ".rst",
    ".svgz", ".tex", ".tgz", ".tif", ".vcf", ".webm", ".webp", ".xcf", ".xopp", ".xz", ".zst",
    // Photographs as cameras take them.
    ".3fr", ".arw", ".cr2", ".cr3", ".crw", ".dcr", ".dng", ".erf", ".iiq", ".kdc", ".mef", ".mos",
    ".mrw", ".nef", ".nrw", ".orf", ".pef", ".raf", ".raw", ".rw2", ".rwl", ".sr2", ".srf", ".srw",
    ".x3f",
    // Diagrams.
    ".dia", ".drawio", ".graphml", ".mm", ".mmd", ".puml", ".vsd", ".vsdx", ".xmind",
    // Constructions and bodies.
    ".3dm", ".3ds", ".3mf", ".blend", ".c4d", ".dae", ".dwg", ".dxf", ".f3d", ".fbx", ".fcstd",
    ".glb", ".gltf", ".iges", ".igs", ".kicad_pcb", ".kicad_sch", ".obj", ".ply", ".scad", ".skp",
    ".sldprt", ".step", ".stl", ".stp", ".usdz"};

template <std::size_t Size>
bool holds(const std::string_view (&table)[Size], std::string_view name) {
    return std::find(std::begin(table), std::end(table), name) != std::end(table);
}

std::string_view withoutFolders(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string_view lastPart(std::string_view id) {
    return id.substr(id.rfind('.') + 1);
}

} // namespace

namespace LeftoverRules {

bool isReverseDns(std::string_view id) {
    return std::count(id.begin(), id.end(), '.') >= 2 && id.front() != '.' && id.back() != '.' &&
           id.find("..") == id.npos && id.find('/') == id.npos;
}

// With what may stand behind such a name as well: "mimeapps.list", "bashrc", "zsh_history".
bool isCommonName(std::string_view name) {
    const std::string key = lowerCase(name);
    const auto begins = [&](std::string_view beginning) { return key.starts_with(beginning); };
    const auto isOfShell = [&](std::string_view shell) {
        return begins(shell) &&
               (key.size() == shell.size() || key[shell.size()] == '_' || key[shell.size()] == '.');
    };
    if (std::any_of(std::begin(shells), std::end(shells), isOfShell) ||
        std::any_of(std::begin(commonBeginnings), std::end(commonBeginnings), begins))
        return true;
    std::string_view plain = key;
    if (!isReverseDns(name))
        plain = plain.substr(0, plain.find('.'));
    std::string_view withoutRc = plain;
    if (withoutRc.ends_with("rc"))
        withoutRc.remove_suffix(2);
    const auto isListed = [](std::string_view word) {
        return isDesktopFolder(word) || holds(sharedFolders, word) || holds(runners, word) ||
               holds(commonWords, word) || holds(shells, word);
    };
    return isListed(key) || isListed(plain) || isListed(withoutRc);
}

bool isListedForBundle(std::string_view entry, std::string_view id) {
    return !id.empty() && entry.starts_with(id);
}

bool isTickedForBundle(std::string_view entry, std::string_view id) {
    if (!isListedForBundle(entry, id) || id.size() < shortestName || isCommonName(id))
        return false;
    return entry.size() == id.size() || (isReverseDns(id) && entry[id.size()] == '.');
}

bool isDataName(std::string_view name) {
    const std::string key = lowerCase(name);
    const auto ends = [&](std::string_view ending) { return key.ends_with(ending); };
    if (holds(dataNames, key) || std::any_of(std::begin(dataEndings), std::end(dataEndings), ends))
        return true;
    const auto point = key.rfind('.');
    if (point == key.npos || point == 0)
        return false;
    const auto fileClass = fileTypeOfExtension(key.substr(point + 1));
    return fileClass >= firstMadeClass && fileClass <= lastMadeClass;
}

std::int64_t endOfInstallation(std::int64_t begun, std::vector<std::int64_t> arrivals,
                               std::int64_t pause) {
    std::sort(arrivals.begin(), arrivals.end());
    std::int64_t end = begun;
    for (const std::int64_t time : arrivals) {
        if (time > end + pause)
            break;
        end = std::max(end, time);
    }
    return end;
}

} // namespace LeftoverRules

LeftoverNames LeftoverNames::of(const ApplicationNames &application) {
    LeftoverNames names;
    const auto addName = [&](std::string_view name) {
        if (name.size() >= shortestName && name.front() != '.' && name.find('/') == name.npos &&
            !LeftoverRules::isCommonName(name))
            names.m_names.insert(lowerCase(name));
    };
    addName(application.package);
    for (const std::string &program : application.programs)
        addName(withoutFolders(program));
    for (const std::string &id : application.desktopIds) {
        if (LeftoverRules::isReverseDns(id)) {
            names.m_ids.insert(lowerCase(id));
            addName(lastPart(id));
        } else {
            addName(id);
        }
    }
    return names;
}

LeftoverNames LeftoverNames::claimedBy(std::span<const std::string> names) {
    LeftoverNames claimed;
    for (const std::string &given : names) {
        const std::string name = lowerCase(withoutFolders(given));
        if (name.empty())
            continue;
        if (!LeftoverRules::isReverseDns(name)) {
            claimed.m_names.insert(name);
            continue;
        }
        claimed.m_ids.insert(name);
        if (!LeftoverRules::isCommonName(lastPart(name)))
            claimed.m_names.emplace(lastPart(name));
    }
    return claimed;
}

bool LeftoverNames::matches(LeftoverPlace place, std::string_view entry) const {
    std::string key = lowerCase(entry);
    if (place == LeftoverPlace::Home)
        return key.starts_with('.') && m_names.contains(std::string_view(key).substr(1));
    const auto has = [&](std::string_view name) {
        return m_names.contains(name) || m_ids.contains(name);
    };
    if (has(key))
        return true;
    for (auto point = key.find('.'); point != key.npos; point = key.find('.', point + 1)) {
        if (m_ids.contains(std::string_view(key).substr(0, point)))
            return true;
    }
    if (place != LeftoverPlace::Config)
        return false;
    return std::any_of(std::begin(settingsEndings), std::end(settingsEndings),
                       [&](std::string_view end) {
                           return key.ends_with(end) &&
                                  has(std::string_view(key).substr(0, key.size() - end.size()));
                       });
}

} // namespace brightsweep
