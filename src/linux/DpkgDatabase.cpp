#include "linux/DpkgDatabase.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Trimmed.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <charconv>

namespace brightsweep {

namespace {

constexpr std::string_view statusFile = "/var/lib/dpkg/status";
constexpr std::string_view infoFolder = "/var/lib/dpkg/info";
constexpr std::string_view updatesFolder = "/var/lib/dpkg/updates";
constexpr std::string_view listEnding = ".list";
constexpr std::uint64_t kibibyte = 1024;

struct Close {
    void operator()(DIR *stream) const { ::closedir(stream); }
};
using Folder = std::unique_ptr<DIR, Close>;

// The fields of one package that are read.
struct Stanza {
    std::string_view package, status, priority, section, size, architecture, version, essential,
        isProtected, important, depends, preDepends;
    std::vector<std::string> settings;
};

struct Field {
    std::string_view key;
    std::string_view Stanza::*place;
};

constexpr Field fields[] = {
    {"Package", &Stanza::package},       {"Status", &Stanza::status},
    {"Priority", &Stanza::priority},     {"Section", &Stanza::section},
    {"Installed-Size", &Stanza::size},   {"Architecture", &Stanza::architecture},
    {"Version", &Stanza::version},       {"Essential", &Stanza::essential},
    {"Protected", &Stanza::isProtected}, {"Important", &Stanza::important},
    {"Depends", &Stanza::depends},       {"Pre-Depends", &Stanza::preDepends}};

// "/etc/name 0123456789abcdef obsolete": a path, which may have blanks, a sum and remarks.
std::string settingOf(std::string_view line) {
    for (const std::string_view remark : {" obsolete", " remove-on-upgrade"}) {
        if (line.ends_with(remark))
            line.remove_suffix(remark.size());
    }
    const std::string_view path = line.substr(0, line.rfind(' '));
    return std::string(path.starts_with('/') ? path : std::string_view());
}

Stanza readStanza(std::string_view text) {
    Stanza stanza;
    bool isInSettings = false;
    forEachLine(text, [&](std::string_view line) {
        if (line.starts_with(' ') || line.starts_with('\t')) {
            if (std::string path = isInSettings ? settingOf(trimmed(line)) : std::string();
                !path.empty())
                stanza.settings.push_back(std::move(path));
            return;
        }
        const auto colon = line.find(':');
        const std::string_view key = line.substr(0, colon);
        isInSettings = key == "Conffiles";
        for (const Field &field : fields) {
            if (field.key == key && colon != line.npos)
                stanza.*field.place = trimmed(line.substr(colon + 1));
        }
    });
    return stanza;
}

std::string_view lastWord(std::string_view text) {
    return text.substr(text.rfind(' ') + 1);
}

constexpr std::string_view managersBreak = "The package manager was interrupted. ";
constexpr std::string_view configure = "Run \"dpkg --configure -a\" as administrator first.";
// Where configuring alone does not do it.
constexpr std::string_view fix = "Run \"apt-get -f install\" as administrator first.";
// A script of its own may fail every time.
constexpr std::string_view configureIt =
    "Run \"dpkg --configure -a\" as administrator first; where that fails, remove it with \"dpkg "
    "--remove\" and its name.";
constexpr std::string_view reinstall =
    "Install it again as administrator first, with \"apt-get install --reinstall\" and its name; "
    "where no archive of it is found, remove it with \"dpkg --remove --force-remove-reinstreq\" "
    "and "
    "its name.";

struct BrokenState {
    std::string_view word; ///< of the status
    std::string_view wayOut;
};

// The first that is found counts.
constexpr BrokenState brokenStates[] = {{"reinstreq", reinstall},
                                        {"half-installed", fix},
                                        {"unpacked", fix},
                                        // What is to go is not configured any more.
                                        {"deinstall ok half-configured", fix},
                                        {"purge ok half-configured", fix},
                                        {"half-configured", configureIt},
                                        {"triggers-awaited", configure},
                                        {"triggers-pending", configure}};

std::string_view wayOutOf(std::string_view status) {
    const auto state =
        std::find_if(std::begin(brokenStates), std::end(brokenStates),
                     [&](const BrokenState &row) { return status.find(row.word) != status.npos; });
    return state == std::end(brokenStates) ? std::string_view() : state->wayOut;
}

// "gnome", "contrib/gnome"
std::string_view lastPart(std::string_view section) {
    return section.substr(section.rfind('/') + 1);
}

PackageRole roleOf(const Stanza &stanza) {
    if (stanza.essential == "yes" || stanza.isProtected == "yes" || stanza.important == "yes" ||
        stanza.priority == "required")
        return PackageRole::Required;
    return stanza.priority == "important" || stanza.priority == "standard" ? PackageRole::Standard
                                                                           : PackageRole::None;
}

// The names in "a (>= 1), b:any | c".
template <typename Call>
void forEachDependency(std::string_view text, Call call) {
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of(",|"), text.size());
        const std::string_view one = trimmed(text.substr(0, end));
        call(one.substr(0, one.find_first_of(" (:[")));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

auto positionOf(const std::vector<PackageRecord> &records, std::string_view name) {
    return std::lower_bound(
        records.begin(), records.end(), name,
        [](const PackageRecord &record, std::string_view wanted) { return record.name < wanted; });
}

} // namespace

std::vector<PackageRecord> DpkgDatabase::parseStatus(std::string_view text,
                                                     std::string &architecture) {
    struct Collection {
        std::string name;
        std::string_view depends;
    };
    std::vector<PackageRecord> records;
    std::vector<std::string_view> architectures;
    std::vector<Collection> collections;
    while (!text.empty()) {
        const auto end = text.find("\n\n");
        const Stanza stanza = readStanza(text.substr(0, end));
        text.remove_prefix(end == text.npos ? text.size() : end + 2);
        const std::string_view state = lastWord(stanza.status);
        if (!isPackageName(PackageFamily::Dpkg, stanza.package) || state.empty() ||
            state == "not-installed")
            continue;
        PackageRecord record;
        record.name = stanza.package;
        record.version = stanza.version;
        std::from_chars(stanza.size.data(), stanza.size.data() + stanza.size.size(), record.bytes);
        record.bytes = record.bytes > UINT64_MAX / kibibyte ? 0 : record.bytes * kibibyte;
        record.role = roleOf(stanza);
        record.isInstalled = state != "config-files";
        record.isHeld = stanza.status.starts_with("hold ");
        record.wayOut = wayOutOf(stanza.status);
        record.settings = stanza.settings;
        const std::string_view section = lastPart(stanza.section);
        if (record.isInstalled && (section == "metapackages" || section == "tasks")) {
            collections.push_back({record.name, stanza.depends});
            collections.push_back({record.name, stanza.preDepends});
        }
        // What dpkg itself was built for is the machine's own.
        if (architecture.empty() && stanza.architecture != "all")
            architecture = stanza.architecture;
        if (stanza.package == "dpkg" && record.isInstalled)
            architecture = stanza.architecture;
        architectures.push_back(stanza.architecture);
        records.push_back(std::move(record));
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (architectures[i] != "all" && architectures[i] != architecture)
            records[i].name += ':' + std::string(architectures[i]);
    }
    std::sort(
        records.begin(), records.end(),
        [](const PackageRecord &one, const PackageRecord &other) { return one.name < other.name; });
    for (const Collection &collection : collections) {
        forEachDependency(collection.depends, [&](std::string_view name) {
            const auto found = records.begin() + (positionOf(records, name) - records.begin());
            if (found != records.end() && found->name == name && found->role == PackageRole::None) {
                found->role = PackageRole::Collection;
                found->collection = collection.name;
            }
        });
    }
    return records;
}

bool DpkgDatabase::locate() {
    struct stat status;
    return ::stat(place(statusFile).c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool DpkgDatabase::load() {
    std::string text;
    readDatabaseFile(AT_FDCWD, place(statusFile).c_str(), text);
    m_records = parseStatus(text, m_architecture);
    const auto broken =
        std::find_if(m_records.begin(), m_records.end(),
                     [](const PackageRecord &record) { return !record.wayOut.empty(); });
    if (broken != m_records.end())
        m_unfinished =
            "Work on " + broken->name + " was interrupted. " + std::string(broken->wayOut);
    // Changes that were not written into the status file any more lie beside it, by number. They
    // come first: until then the file is not what dpkg knows.
    if (const Folder updates{::opendir(place(updatesFolder).c_str())}) {
        while (const dirent *entry = ::readdir(updates.get())) {
            if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])))
                m_unfinished = std::string(managersBreak) + std::string(configure);
        }
    }
    return !m_records.empty();
}

std::string DpkgDatabase::wayOutOfUnknown() const {
    return std::string(managersBreak) + std::string(fix);
}

std::string DpkgDatabase::stamp() const {
    return stampOf(place(statusFile)) + stampOf(place(updatesFolder));
}

std::vector<std::string> DpkgDatabase::watched() const {
    return {place("/var/lib/dpkg")};
}

const PackageRecord *DpkgDatabase::find(const std::string &name) {
    const auto found = positionOf(m_records, name);
    if (found == m_records.end() || found->name != name)
        return nullptr;
    PackageRecord &record = m_records[std::size_t(found - m_records.begin())];
    // The list of its files is written when it is installed.
    if (record.isInstalled && record.installed == 0) {
        const std::string plain = place(infoFolder) + '/' + record.name;
        for (const std::string &list : {plain + ".list", plain + ':' + m_architecture + ".list"}) {
            struct stat status;
            if (record.installed == 0 && ::stat(list.c_str(), &status) == 0)
                record.installed = status.st_mtim.tv_sec;
        }
    }
    return &record;
}

std::vector<std::string> DpkgDatabase::formerNames() {
    std::vector<std::string> names;
    for (const PackageRecord &record : m_records) {
        if (!record.isInstalled)
            names.push_back(record.name);
    }
    return names;
}

std::string DpkgDatabase::withoutOwnArchitecture(std::string_view name) const {
    const auto colon = name.find(':');
    const bool isOwn = colon != name.npos && name.substr(colon + 1) == m_architecture;
    return std::string(isOwn ? name.substr(0, colon) : name);
}

PathOwners DpkgDatabase::owners(const PathSet &paths) {
    PathOwners owners;
    const Folder folder{::opendir(place(infoFolder).c_str())};
    if (!folder)
        return owners;
    const WantedPaths wanted(paths);
    std::string text;
    while (const dirent *entry = ::readdir(folder.get())) {
        std::string_view file = entry->d_name;
        if (!file.ends_with(listEnding))
            continue;
        file.remove_suffix(listEnding.size());
        if (!readDatabaseFile(::dirfd(folder.get()), entry->d_name, text))
            continue;
        std::string name; // told only where the list is of use
        forEachLine(text, [&](std::string_view line) {
            const std::string *path = wanted.find(line);
            if (!path)
                return;
            if (name.empty())
                name = withoutOwnArchitecture(file);
            const auto record = positionOf(m_records, name);
            // The list of a package that has gone names its settings.
            if (record != m_records.end() && record->name == name && record->isInstalled)
                owners.emplace(*path, name);
        });
    }
    return owners;
}

std::vector<std::string> DpkgDatabase::filesOf(const std::string &name) {
    const std::string plain = place(infoFolder) + '/' + name;
    std::string text;
    if (!readDatabaseFile(AT_FDCWD, (plain + ".list").c_str(), text))
        readDatabaseFile(AT_FDCWD, (plain + ':' + m_architecture + ".list").c_str(), text);
    std::vector<std::string> files;
    forEachLine(text, [&](std::string_view line) {
        if (line.starts_with('/') && line != "/.")
            files.emplace_back(line);
    });
    return files;
}

std::vector<std::string> DpkgDatabase::dependentsIn(std::string_view words) {
    std::vector<std::string> names;
    forEachLine(words, [&](std::string_view line) {
        // " a pre-depends on b." and " a depends on b | c; however:"; what explains it stands
        // further in.
        if (!line.starts_with(' ') || line.starts_with("  "))
            return;
        line.remove_prefix(1);
        const auto blank = std::min(line.find(' '), line.size());
        const std::string_view rest = line.substr(blank);
        if ((rest.starts_with(" depends on ") || rest.starts_with(" pre-depends on ")) &&
            isPackageName(PackageFamily::Dpkg, line.substr(0, blank)))
            names.emplace_back(line.substr(0, blank));
    });
    return names;
}

DryRun DpkgDatabase::dryRun(const std::vector<std::string> &names) {
    std::vector<std::string> arguments = {"dpkg", "--log=/dev/null"};
    if (!root().empty())
        arguments.push_back("--admindir=" + place("/var/lib/dpkg"));
    arguments.insert(arguments.end(), {"--dry-run", "--remove", "--"});
    arguments.insert(arguments.end(), names.begin(), names.end());
    const ToolOutput output = runTool(arguments);
    DryRun run;
    run.words = output.text;
    run.passes = output.status == 0;
    if (!run.passes) {
        for (const std::string &name : dependentsIn(output.text))
            run.dependents.push_back(withoutOwnArchitecture(name));
    }
    return run;
}

} // namespace brightsweep
