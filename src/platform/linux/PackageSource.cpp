#include "platform/linux/PackageSource.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/ToolWords.h"
#include "platform/Platform.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/GivesMemoryBack.h"
#include "platform/linux/RunningPrograms.h"
#include "platform/linux/SoftwareCentres.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace brightsweep {

namespace {

constexpr std::string_view systemTools = "/usr/sbin:/usr/bin:/sbin:/bin";
constexpr std::uint64_t blockSize = 512; // of st_blocks

// A tool that is asked something: as the user, in the C locale.
ToolOutput askTool(const std::vector<std::string> &arguments) {
    std::vector<std::string> environment = {"LC_ALL=C", "PATH=" + std::string(systemTools)};
    for (std::string &entry : environmentOfChildren()) {
        if (entry.starts_with("HOME="))
            environment.push_back(std::move(entry));
    }
    return runToEnd(arguments, environment);
}

// A path of this machine as the package manager knows it.
std::string inSystem(const std::filesystem::path &path, const std::string &root) {
    const std::string &whole = path.native();
    return !root.empty() && whole.starts_with(root + '/') ? whole.substr(root.size()) : whole;
}

std::string lastPart(std::string_view text, char separator) {
    return std::string(text.substr(text.rfind(separator) + 1));
}

PathSet runningFiles() {
    PathSet files;
    for (const RunningProgram &program : runningPrograms()) {
        for (const std::string &file : {program.file, program.script}) {
            if (!file.empty())
                files.insert(file);
        }
    }
    return files;
}

bool isSettingsEntry(const DesktopEntryFile &file) {
    const auto categories = file.entry.list("Categories");
    return std::find(categories.begin(), categories.end(), "Settings") != categories.end() ||
           file.id.find("settings") != file.id.npos || file.id.find("preferences") != file.id.npos;
}

bool isSameName(std::string_view one, std::string_view other) {
    return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

// How well an entry stands for its package; the highest is the main one.
int standing(const DesktopEntryFile &file, std::string_view package) {
    const std::string program = lastPart(execProgram(file.entry.string("Exec")), '/');
    const bool hasItsName =
        isSameName(file.id, package) || isSameName(lastPart(file.id, '.'), package);
    // A file manager's bulk renamer starts the file manager, too.
    return (hasItsName ? 4 : 0) + (isSameName(program, package) ? 2 : 0) +
           (isSettingsEntry(file) ? 0 : 1);
}

std::string systemReasonOf(const PackageRecord &record) {
    switch (record.role) {
    case PackageRole::None:
        break;
    case PackageRole::Collection:
        return "part of the collection " + record.collection;
    case PackageRole::Standard:
        return "part of every standard installation";
    case PackageRole::Required:
        return "the system cannot do without it";
    }
    return {};
}

Blocker blockerOf(PackageRefusal why) {
    switch (why) {
    case PackageRefusal::None:
        return Blocker::None;
    case PackageRefusal::Essential:
        return Blocker::Essential;
    case PackageRefusal::ImageBased:
        return Blocker::ImageBased;
    case PackageRefusal::NeededByUs:
        return Blocker::NeededByUs;
    case PackageRefusal::Interrupted:
        return Blocker::Interrupted;
    case PackageRefusal::Held:
        return Blocker::Unsupported;
    case PackageRefusal::Gone:
        return Blocker::Gone;
    }
    return Blocker::Unsupported;
}

UninstallOutcome outcomeOf(PackagesOutcome outcome) {
    switch (outcome) {
    case PackagesOutcome::Removed:
        return UninstallOutcome::Removed;
    case PackagesOutcome::Refused:
    case PackagesOutcome::Failed:
        break;
    case PackagesOutcome::Changed:
        return UninstallOutcome::Changed;
    case PackagesOutcome::Busy:
        return UninstallOutcome::Busy;
    case PackagesOutcome::Broken:
        return UninstallOutcome::Broken;
    }
    return UninstallOutcome::Failed;
}

using EntriesOfPackage = std::vector<const DesktopEntryFile *>;

InstalledApplication describe(const PackageRecord &record, EntriesOfPackage entries,
                              const std::vector<std::string> &locales) {
    // The first among equals stays first; what is not shown stands for nothing.
    std::stable_sort(entries.begin(), entries.end(), [&](const auto *one, const auto *other) {
        const auto rank = [&](const DesktopEntryFile &file) {
            return std::pair(file.isShown, standing(file, record.name));
        };
        return rank(*one) > rank(*other);
    });
    InstalledApplication application;
    application.kind = ApplicationKind::Package;
    application.key = record.name;
    application.version = upstreamVersion(record.version);
    application.installed = record.installed;
    application.bytes = record.bytes;
    application.partOfSystem = record.role != PackageRole::None;
    application.systemReason = systemReasonOf(record);
    const DesktopEntryFile &main = *entries.front();
    application.name = main.entry.localeString("Name", locales);
    if (application.name.empty())
        application.name = record.name;
    application.icon = main.entry.string("Icon");
    application.path = main.program.empty() ? main.path : main.program;
    std::error_code error;
    if (auto resolved = std::filesystem::canonical(application.path, error); !error)
        application.path = std::move(resolved);
    for (const DesktopEntryFile *file : entries) {
        application.ids.push_back(file->id);
        const std::string name = file->entry.localeString("Name", locales);
        if (file != &main && file->isShown && !name.empty() && name != application.name)
            application.otherEntries.push_back(name);
        const std::string program = file->program.native();
        if (!program.empty() && std::find(application.programs.begin(), application.programs.end(),
                                          program) == application.programs.end())
            application.programs.push_back(program);
    }
    return application;
}

} // namespace

std::string upstreamVersion(std::string_view version) {
    if (const auto colon = version.find(':'); colon != version.npos)
        version.remove_prefix(colon + 1);
    return std::string(version.substr(0, version.rfind('-')));
}

PackageSource::PackageSource() = default;
PackageSource::~PackageSource() = default;

PackageDatabase *PackageSource::database() const {
    const std::string root = systemRoot();
    if (m_database && root == m_root && m_database->stamp() == m_stamp)
        return m_database.get();
    m_safety.reset();
    m_knownOwners.clear();
    m_root = root;
    m_database = PackageDatabase::open(root, askTool);
    m_stamp = m_database ? m_database->stampWhenRead() : std::string();
    return m_database.get();
}

const PackageSafety &PackageSource::safety() {
    if (!m_safety)
        m_safety = std::make_unique<PackageSafety>(*m_database, m_root);
    return *m_safety;
}

std::string PackageSource::unavailableReason() const {
    const std::lock_guard lock(m_mutex);
    return database() ? "" : "this system has no package manager that is known";
}

PathOwners PackageSource::owners(const PathSet &paths) {
    const std::lock_guard lock(m_mutex);
    return ownersOf(paths);
}

// Asked about the same entries and programs again and again, it passes over the lists once.
PathOwners PackageSource::ownersOf(const PathSet &paths) {
    PackageDatabase *known = database();
    if (!known)
        return {};
    PathSet unknown;
    for (const std::string &path : paths) {
        const std::string inside = inSystem(path, m_root);
        if (m_knownOwners.count(inside) == 0)
            unknown.insert(inside);
    }
    if (!unknown.empty()) {
        m_knownOwners.merge(known->owners(unknown));
        for (const std::string &path : unknown)
            m_knownOwners.try_emplace(path);
    }
    PathOwners owners;
    for (const std::string &path : paths) {
        if (const std::string &name = m_knownOwners[inSystem(path, m_root)]; !name.empty())
            owners.emplace(path, name);
    }
    return owners;
}

Result<std::vector<InstalledApplication>> PackageSource::applications() {
    const std::lock_guard lock(m_mutex);
    const GivesMemoryBack givesBack;
    m_claims.clear();
    std::vector<InstalledApplication> applications;
    PackageDatabase *known = database();
    if (!known)
        return applications;
    const std::vector<DesktopEntryFile> files = readDesktopEntries();
    PathSet paths;
    for (const DesktopEntryFile &file : files) {
        // What Flatpak and snap export is theirs.
        if (!file.isUsers && !file.entry.has("X-Flatpak") && !file.entry.has("X-SnapInstanceName"))
            paths.insert(file.path.native());
    }
    const PathOwners owners = ownersOf(paths);
    std::map<std::string, EntriesOfPackage> packages;
    for (const DesktopEntryFile &file : files) {
        if (const auto owner = owners.find(file.path.native()); owner != owners.end())
            packages[owner->second].push_back(&file);
    }
    const auto locales = messageLocales();
    for (const auto &[name, entries] : packages) {
        m_claims.push_back({name, name});
        for (const DesktopEntryFile *file : entries) {
            m_claims.push_back({file->id, name});
            if (const std::string program = execProgram(file->entry.string("Exec"));
                !program.empty())
                m_claims.push_back({lastPart(program, '/'), name});
        }
        const PackageRecord *record = known->find(name);
        const bool isShown = std::any_of(entries.begin(), entries.end(),
                                         [](const auto *file) { return file->isShown; });
        if (record && isShown)
            applications.push_back(describe(*record, entries, locales));
    }
    return applications;
}

std::vector<ClaimedName> PackageSource::claims() {
    const std::lock_guard lock(m_mutex);
    return m_claims;
}

std::vector<std::string> PackageSource::formerNames() {
    const std::lock_guard lock(m_mutex);
    PackageDatabase *known = database();
    return known ? known->formerNames() : std::vector<std::string>();
}

std::vector<std::string>
PackageSource::runningOf(const std::vector<InstalledApplication> &applications) {
    const std::lock_guard lock(m_mutex);
    std::set<std::string> owners;
    for (const auto &[path, name] : ownersOf(runningFiles()))
        owners.insert(name);
    std::vector<std::string> keys;
    for (const InstalledApplication &application : applications) {
        if (owners.count(application.key) > 0)
            keys.push_back(application.key);
    }
    return keys;
}

std::vector<std::filesystem::path> PackageSource::watched() const {
    const std::lock_guard lock(m_mutex);
    PackageDatabase *known = database();
    if (!known)
        return {};
    const auto paths = known->watched();
    return {paths.begin(), paths.end()};
}

RemovalPlan PackageSource::plan(const InstalledApplication &application) {
    const std::lock_guard lock(m_mutex);
    RemovalPlan plan;
    plan.application = application;
    const auto blocked = [&](Blocker blocker, std::string reason) {
        plan.blocker = blocker;
        plan.reason = std::move(reason);
        return plan;
    };
    PackageDatabase *known = database();
    if (!known)
        return blocked(Blocker::Unsupported, "No package manager that is known is here.");
    if (!isPackageName(known->family(), application.key))
        return blocked(Blocker::Unsupported, "This is no name of a package.");
    if (const Refusal refusal = safety().refusalOf({application.key}))
        return blocked(blockerOf(refusal.why), refusal.words);
    const PackageClosure closure = closureOf(*known, application.key);
    if (closure.end == PackageClosure::End::TooMany)
        return blocked(Blocker::TooMany, "Too much depends on " + application.key + '.');
    plan.also.assign(closure.names.begin() + 1, closure.names.end());
    if (const Refusal refusal = safety().refusalOf(closure.names))
        return blocked(blockerOf(refusal.why), refusal.words);
    if (closure.end == PackageClosure::End::Refused)
        return blocked(Blocker::Unsupported, decisiveLine(closure.words));
    if (const PackageRecord *record = known->find(application.key)) {
        for (const std::string &setting : record->settings) {
            const std::filesystem::path path = m_root + setting;
            if (struct stat status; ::lstat(path.c_str(), &status) == 0)
                plan.systemSettings.push_back(path);
        }
    }
    const std::set<std::string> names(closure.names.begin(), closure.names.end());
    for (const auto &[path, name] : ownersOf(runningFiles())) {
        if (names.count(name) > 0)
            plan.running.push_back(lastPart(path, '/'));
    }
    std::sort(plan.running.begin(), plan.running.end());
    return plan;
}

RemovalResult PackageSource::remove(const RemovalPlan &plan, const RightsToken *rights) {
    PackageRemoval removal;
    {
        const std::lock_guard lock(m_mutex);
        PackageDatabase *known = database();
        if (!known || plan.blocker != Blocker::None)
            return {UninstallOutcome::Failed, plan.reason, {}};
        removal.family = known->family();
        removal.names = {plan.application.key};
        removal.names.insert(removal.names.end(), plan.also.begin(), plan.also.end());
        const bool isGone =
            std::none_of(removal.names.begin(), removal.names.end(),
                         [&](const auto &name) { return known->isInstalled(name); });
        if (isGone)
            return {UninstallOutcome::Removed, {}, removal.names};
    }
    removal.purge = plan.alsoPurged;
    if (plan.purge)
        removal.purge.push_back(plan.application.key);
    if (!rights)
        return {UninstallOutcome::NeedsRights, "administrator rights are needed", {}};
    AdministratorRights &held = *Platform::current().rights;
    if (!held.accepts(*rights))
        return {UninstallOutcome::NeedsRights, "administrator rights are no longer held", {}};
    PackagesReply reply = held.removePackages(*rights, removal);
    NSLog("Package manager, for %@: %@", removal.names.front(), reply.words);
    if (!reply.gone.empty() && systemRoot().empty())
        tellSoftwareCentres();
    // What it says of a success is for the log.
    if (reply.outcome == PackagesOutcome::Removed)
        reply.words.clear();
    RemovalResult result{outcomeOf(reply.outcome), std::move(reply.words), std::move(reply.gone)};
    if (result.outcome == UninstallOutcome::Busy)
        result.wayOut = "Another program is using it. Wait until that has ended, and try again.";
    if (result.outcome == UninstallOutcome::Broken) {
        const std::lock_guard lock(m_mutex);
        if (const PackageDatabase *after = database()) {
            result.wayOut = after->unfinished();
            if (result.wayOut.empty())
                result.wayOut = after->wayOutOfUnknown();
        }
        if (result.message == result.wayOut)
            result.message.clear();
    }
    return result;
}

std::uint64_t PackageSource::sizeOf(const InstalledApplication &application) {
    const std::lock_guard lock(m_mutex);
    PackageDatabase *known = database();
    if (!known || !isPackageName(known->family(), application.key))
        return 0;
    std::uint64_t bytes = 0;
    std::set<std::pair<dev_t, ino_t>> linked; // a file of several names counts once
    for (const std::string &name : closureOf(*known, application.key).names) {
        for (const std::string &file : known->filesOf(name)) {
            struct stat status;
            if (::lstat((m_root + file).c_str(), &status) != 0 || S_ISDIR(status.st_mode))
                continue;
            if (status.st_nlink == 1 || linked.emplace(status.st_dev, status.st_ino).second)
                bytes += std::uint64_t(status.st_blocks) * blockSize;
        }
    }
    return bytes;
}

} // namespace brightsweep
