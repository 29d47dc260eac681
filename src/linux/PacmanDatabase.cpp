#include "linux/PacmanDatabase.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>

namespace brightsweep {

namespace {

constexpr std::string_view localFolder = "/var/lib/pacman/local";
constexpr std::string_view configuration = "/etc/pacman.conf";

struct Close {
    void operator()(DIR *stream) const { ::closedir(stream); }
};

template <typename Number>
Number numberOf(const std::string &text) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

} // namespace

std::map<std::string, std::vector<std::string>, std::less<>>
PacmanDatabase::blocksOf(std::string_view text) {
    std::map<std::string, std::vector<std::string>, std::less<>> blocks;
    std::vector<std::string> *block = nullptr;
    forEachLine(text, [&](std::string_view line) {
        if (line.empty())
            block = nullptr;
        else if (block)
            block->emplace_back(line);
        else if (line.size() > 2 && line.front() == '%' && line.back() == '%')
            block = &blocks[std::string(line.substr(1, line.size() - 2))];
    });
    return blocks;
}

bool PacmanDatabase::locate() {
    struct stat status;
    return ::stat(place(localFolder).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool PacmanDatabase::load() {
    const std::unique_ptr<DIR, Close> folder(::opendir(place(localFolder).c_str()));
    while (const dirent *entry = folder ? ::readdir(folder.get()) : nullptr) {
        const std::string_view whole = entry->d_name;
        // Neither the version nor the release has a "-".
        const auto release = whole.rfind('-');
        const auto version =
            release == whole.npos || release == 0 ? whole.npos : whole.rfind('-', release - 1);
        const std::string_view name = whole.substr(0, version);
        if (version != whole.npos && isPackageName(PackageFamily::Pacman, name))
            m_folders.emplace(name, whole);
    }
    std::string text;
    readDatabaseFile(AT_FDCWD, place(configuration).c_str(), text);
    forEachLine(text, [&](std::string_view line) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        const auto equals = line.find('=');
        if (!line.starts_with("HoldPkg") || equals == line.npos)
            return;
        line.remove_prefix(equals + 1);
        while (!line.empty()) {
            const auto end = std::min(line.find_first_of(" \t\r"), line.size());
            if (end > 0)
                m_held.emplace_back(line.substr(0, end));
            line.remove_prefix(std::min(end + 1, line.size()));
        }
    });
    return !m_folders.empty();
}

std::string PacmanDatabase::stamp() const {
    return stampOf(place(localFolder));
}

std::vector<std::string> PacmanDatabase::watched() const {
    return {place(localFolder)};
}

const PackageRecord *PacmanDatabase::find(const std::string &name) {
    if (const auto known = m_records.find(name); known != m_records.end())
        return &known->second;
    const auto folder = m_folders.find(name);
    if (folder == m_folders.end())
        return nullptr;
    const std::string at = place(localFolder) + '/' + folder->second;
    std::string text;
    if (!readDatabaseFile(AT_FDCWD, (at + "/desc").c_str(), text))
        return nullptr;
    const auto blocks = blocksOf(text);
    const auto first = [&](std::string_view key) {
        const auto block = blocks.find(key);
        return block == blocks.end() || block->second.empty() ? std::string()
                                                              : block->second.front();
    };
    PackageRecord record;
    record.name = name;
    record.version = first("VERSION");
    record.bytes = numberOf<std::uint64_t>(first("SIZE"));
    record.installed = numberOf<std::int64_t>(first("INSTALLDATE"));
    if (std::find(m_held.begin(), m_held.end(), name) != m_held.end())
        record.role = PackageRole::Required;
    readDatabaseFile(AT_FDCWD, (at + "/files").c_str(), text);
    const auto files = blocksOf(text);
    if (const auto backup = files.find("BACKUP"); backup != files.end()) {
        for (const std::string &line : backup->second)
            record.settings.push_back('/' + line.substr(0, line.find('\t')));
    }
    return &m_records.emplace(name, std::move(record)).first->second;
}

PathOwners PacmanDatabase::owners(const PathSet &paths) {
    PathOwners owners;
    const WantedPaths wanted(paths);
    std::string text;
    std::string listed;
    for (const auto &package : m_folders) {
        const std::string file = place(localFolder) + '/' + package.second + "/files";
        if (!readDatabaseFile(AT_FDCWD, file.c_str(), text))
            continue;
        // Without the first "/".
        forEachLine(text, [&](std::string_view line) {
            listed.assign(1, '/').append(line);
            if (const std::string *path = wanted.find(listed))
                owners.emplace(*path, package.first);
        });
    }
    return owners;
}

std::vector<std::string> PacmanDatabase::filesOf(const std::string &name) {
    std::vector<std::string> files;
    const auto folder = m_folders.find(name);
    if (folder == m_folders.end())
        return files;
    std::string text;
    readDatabaseFile(AT_FDCWD, (place(localFolder) + '/' + folder->second + "/files").c_str(),
                     text);
    const auto blocks = blocksOf(text);
    if (const auto listed = blocks.find("FILES"); listed != blocks.end()) {
        for (const std::string &file : listed->second)
            files.push_back('/' + file);
    }
    return files;
}

DryRun PacmanDatabase::dryRun(const std::vector<std::string> &names) {
    std::vector<std::string> arguments = {"pacman"};
    if (!root().empty())
        arguments.insert(arguments.end(), {"--root", root(), "--dbpath", place("/var/lib/pacman")});
    // Prints all that would go, what depends on the names included.
    arguments.insert(arguments.end(), {"-Rc", "--print", "--print-format", "%n", "--"});
    arguments.insert(arguments.end(), names.begin(), names.end());
    const ToolOutput output = runTool(arguments);
    DryRun run;
    run.words = output.text;
    std::size_t seen = 0;
    forEachLine(output.text, [&](std::string_view line) {
        if (std::find(names.begin(), names.end(), line) != names.end())
            ++seen;
        else if (m_folders.count(std::string(line)) > 0)
            run.dependents.emplace_back(line);
    });
    run.passes = output.status == 0 && seen == names.size() && run.dependents.empty();
    return run;
}

} // namespace brightsweep
