#include "linux/RpmDatabase.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace brightsweep {

namespace {

// Before and since the database moved below "/usr"; and its file in each of rpm's three formats.
constexpr std::array databaseFolders = {"/usr/lib/sysimage/rpm", "/var/lib/rpm"};
constexpr std::array databaseFiles = {"/rpmdb.sqlite", "/Packages.db", "/Packages"};
constexpr std::array protectedFolders = {"/etc/dnf/protected.d", "/etc/yum/protected.d"};
constexpr char queryFormat[] = "%{NAME}\\t%{VERSION}\\t%{SIZE}\\t%{INSTALLTIME}\\n";
constexpr std::size_t fieldCount = 4;
// rpm takes paths as arguments; far below any limit of the system.
constexpr std::size_t pathsAtOnce = 1000;

struct Close {
    void operator()(DIR *stream) const { ::closedir(stream); }
};

std::string fileOf(const std::string &folder) {
    for (const char *name : databaseFiles) {
        struct stat status;
        const std::string file = folder + name;
        if (::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
            return file;
    }
    return {};
}

} // namespace

bool RpmDatabase::locate() {
    for (const char *folder : databaseFolders) {
        if (m_folder.empty() && !fileOf(place(folder)).empty())
            m_folder = folder;
    }
    return !m_folder.empty();
}

bool RpmDatabase::load() {
    // Debian's machines often have a database with nothing in it.
    if (rpm({"-qa", "--qf", "%{NAME}\\n"}).text.empty())
        return false;
    std::string text;
    for (const char *folder : protectedFolders) {
        const std::unique_ptr<DIR, Close> stream(::opendir(place(folder).c_str()));
        while (const dirent *entry = stream ? ::readdir(stream.get()) : nullptr) {
            if (std::string_view(entry->d_name).ends_with(".conf") &&
                readDatabaseFile(::dirfd(stream.get()), entry->d_name, text))
                forEachLine(text, [&](std::string_view line) {
                    if (isPackageName(PackageFamily::Rpm, line))
                        m_protected.emplace(line);
                });
        }
    }
    return true;
}

ToolOutput RpmDatabase::rpm(std::vector<std::string> arguments) const {
    std::vector<std::string> all = {"rpm"};
    if (!root().empty())
        all.insert(all.end(), {"--root", root()});
    // Debian's rpm looks in the user's home otherwise.
    all.insert(all.end(), {"--dbpath", m_folder});
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runTool(all);
}

std::string RpmDatabase::stamp() const {
    const std::string file = fileOf(place(m_folder));
    return stampOf(file) + stampOf(file + "-wal");
}

std::vector<std::string> RpmDatabase::watched() const {
    return {place(m_folder)};
}

std::string RpmDatabase::note(std::string_view line) {
    std::array<std::string, fieldCount> fields;
    for (std::size_t i = 0; i < fieldCount; ++i) {
        const auto end = line.find('\t');
        if ((end == line.npos) != (i + 1 == fieldCount))
            return {};
        fields[i] = line.substr(0, end);
        line.remove_prefix(std::min(line.size(), end == line.npos ? line.size() : end + 1));
    }
    if (!isPackageName(PackageFamily::Rpm, fields[0]))
        return {};
    PackageRecord record;
    record.name = fields[0];
    record.version = fields[1];
    std::from_chars(fields[2].data(), fields[2].data() + fields[2].size(), record.bytes);
    std::from_chars(fields[3].data(), fields[3].data() + fields[3].size(), record.installed);
    if (m_protected.count(record.name) > 0)
        record.role = PackageRole::Required;
    m_records[record.name] = std::move(record);
    return fields[0];
}

const PackageRecord *RpmDatabase::find(const std::string &name) {
    auto known = m_records.find(name);
    if (known == m_records.end() && isPackageName(PackageFamily::Rpm, name)) {
        const ToolOutput output = rpm({"-q", "--qf", queryFormat, "--", name});
        if (output.status == 0)
            forEachLine(output.text, [&](std::string_view line) { note(line); });
        known = m_records.find(name);
    }
    return known == m_records.end() ? nullptr : &known->second;
}

// A line for each path, in their order; a file of several packages has several. Where the lines do
// not match the paths, the halves are asked.
void RpmDatabase::findOwners(const std::vector<std::string> &paths, PathOwners &owners) {
    if (paths.empty())
        return;
    std::vector<std::string> arguments = {"-qf", "--qf", queryFormat, "--"};
    arguments.insert(arguments.end(), paths.begin(), paths.end());
    const ToolOutput output = rpm(arguments);
    std::vector<std::string_view> lines;
    forEachLine(output.text, [&](std::string_view line) { lines.push_back(line); });
    if (lines.size() != paths.size() && paths.size() > 1) {
        const auto middle = paths.begin() + std::ptrdiff_t(paths.size() / 2);
        findOwners({paths.begin(), middle}, owners);
        findOwners({middle, paths.end()}, owners);
        return;
    }
    for (std::size_t i = 0; i < std::min(lines.size(), paths.size()); ++i) {
        if (std::string name = note(lines[i]); !name.empty())
            owners.emplace(paths[i], std::move(name));
    }
}

PathOwners RpmDatabase::owners(const PathSet &paths) {
    PathOwners owners;
    std::vector<std::string> some;
    for (const std::string &path : paths) {
        // A line end in a name would be another path's line.
        if (path.find('\n') == path.npos)
            some.push_back(path);
        if (some.size() == pathsAtOnce) {
            findOwners(some, owners);
            some.clear();
        }
    }
    findOwners(some, owners);
    return owners;
}

std::vector<std::string> RpmDatabase::filesOf(const std::string &name) {
    std::vector<std::string> files;
    const ToolOutput output = rpm({"-ql", "--", name});
    forEachLine(output.status == 0 ? std::string_view(output.text) : std::string_view(),
                [&](std::string_view line) {
                    if (line.starts_with('/'))
                        files.emplace_back(line);
                });
    return files;
}

std::vector<std::string> RpmDatabase::dependentsIn(std::string_view words) {
    constexpr std::string_view needed = " is needed by (installed) ";
    std::vector<std::string> names;
    forEachLine(words, [&](std::string_view line) {
        const auto at = line.find(needed);
        if (at == line.npos)
            return;
        // NAME-VERSION-RELEASE.ARCH
        std::string_view name = line.substr(at + needed.size());
        for (int part = 0; part < 2; ++part)
            name = name.substr(0, std::min(name.rfind('-'), name.size()));
        if (isPackageName(PackageFamily::Rpm, name))
            names.emplace_back(name);
    });
    return names;
}

DryRun RpmDatabase::dryRun(const std::vector<std::string> &names) {
    std::vector<std::string> arguments = {"-e", "--test", "--"};
    arguments.insert(arguments.end(), names.begin(), names.end());
    const ToolOutput output = rpm(arguments);
    DryRun run;
    run.words = output.text;
    run.passes = output.status == 0;
    if (!run.passes)
        run.dependents = dependentsIn(output.text);
    return run;
}

} // namespace brightsweep
