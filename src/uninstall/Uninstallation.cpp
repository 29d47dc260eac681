#include "uninstall/Uninstallation.h"

#include "foundation/Log.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "linux/RemovalError.h"
#include "linux/ToolWords.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"
#include "uninstall/FolderNames.h"
#include "uninstall/KeptFolders.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/RemovalPlanner.h"
#include "uninstall/UninstallApp.h"

#include <algorithm>
#include <set>

namespace brightsweep {

namespace {

std::set<std::string> setOf(const RemovalPlan &plan) {
    std::set<std::string> names(plan.also.begin(), plan.also.end());
    names.insert(plan.application.key);
    return names;
}

bool overlaps(const std::set<std::string> &one, const std::set<std::string> &other) {
    return std::any_of(one.begin(), one.end(),
                       [&](const std::string &name) { return other.contains(name); });
}

// Packages alone have sets.
bool isMerged(const RemovalPlan &plan) {
    return plan.blocker == Blocker::None && plan.application.kind == ApplicationKind::Package;
}

// What the way with rights has to say counts where they were needed.
std::string wordsOf(const RemovalOutcome &outcome) {
    const bool hasOwnReason = outcome.error && !outcome.neededRights;
    return hasOwnReason || outcome.words.empty() ? outcome.error.message() : outcome.words;
}

Uninstallation::Item itemOf(const Leftover &shown, const RemovalOutcome &outcome) {
    return {shown.path, shown.bytes, outcome.removed,
            outcome.removed ? std::string() : wordsOf(outcome), outcome.neededRights};
}

void logWhatStayed(const Uninstallation::Record &record) {
    for (const Uninstallation::Item &item : record.items) {
        if (!item.removed)
            NSLog("%@ has gone, but for %@: %@", record.plan.application.key, item.path,
                  item.error);
    }
}

std::vector<std::string> namesGoing(const RemovalRoot &folder,
                                    const std::vector<std::filesystem::path> &kept) {
    auto names = namesInFolder(folder);
    std::erase_if(names, [&](const std::string &name) {
        return std::any_of(kept.begin(), kept.end(), [&](const std::filesystem::path &path) {
            return path.filename() == name;
        });
    });
    return names;
}

bool holdsProgram(const RemovalPlan &plan, const std::vector<std::filesystem::path> &kept) {
    const std::vector<std::string> &programs = plan.application.programs;
    return std::any_of(programs.begin(), programs.end(), [&](const std::string &program) {
        return std::any_of(kept.begin(), kept.end(), [&](const std::filesystem::path &path) {
            return paths::isSameOrBelow(program, path.native());
        });
    });
}

std::int64_t lastArrivalIn(const RemovalTarget &folder) {
    std::vector<FileTimes> times;
    LeftoverLook look;
    look.times = &times;
    look.timesFolders = true;
    lookAtLeftover(folder, LeftoverKind::Data, {}, look);
    std::int64_t last = 0;
    for (const FileTimes &each : times)
        last = std::max(last, each.came);
    return last;
}

} // namespace

bool Uninstallation::Record::isWhole() const {
    return outcome == UninstallOutcome::Removed &&
           std::all_of(items.begin(), items.end(), [](const Item &item) { return item.removed; });
}

bool Uninstallation::Record::isOpen() const {
    if (plan.blocker != Blocker::None)
        return false;
    return !isTried || outcome == UninstallOutcome::NeedsRights ||
           (outcome == UninstallOutcome::Removed &&
            std::any_of(items.begin(), items.end(),
                        [](const Item &item) { return !item.removed && item.neededRights; }));
}

Uninstallation::Uninstallation(std::vector<RemovalPlan> plans) {
    for (RemovalPlan &plan : plans) {
        Record record;
        if (plan.blocker != Blocker::None)
            record.message = plan.reason;
        record.plan = std::move(plan);
        m_records.push_back(std::move(record));
    }
    mergeSets();
}

// Sets that overlap go as one. A union of sets that nothing outside depends on is such a set again.
void Uninstallation::mergeSets() {
    std::vector<std::set<std::string>> sets;
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        m_leaders.push_back(i);
        sets.push_back(isMerged(m_records[i].plan) ? setOf(m_records[i].plan)
                                                   : std::set<std::string>());
    }
    for (std::size_t i = 0; i < sets.size(); ++i) {
        for (std::size_t j = 0; j < sets.size(); ++j) {
            if (i == j || !overlaps(sets[i], sets[j]))
                continue;
            sets[i].merge(sets[j]);
            sets[j].clear();
            std::replace(m_leaders.begin(), m_leaders.end(), j, i);
            j = std::size_t(-1); // the larger one may overlap what it did not before
        }
    }
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        if (m_leaders[i] != i)
            continue;
        RemovalPlan plan = m_records[i].plan;
        sets[i].erase(plan.application.key);
        if (isMerged(plan))
            plan.also.assign(sets[i].begin(), sets[i].end());
        for (std::size_t j = 0; j < m_records.size(); ++j) {
            if (j != i && m_leaders[j] == i && m_records[j].plan.purge)
                plan.alsoPurged.push_back(m_records[j].plan.application.key);
        }
        m_sets[i] = std::move(plan);
    }
}

bool Uninstallation::isOpen() const {
    return std::any_of(m_records.begin(), m_records.end(),
                       [](const Record &record) { return record.isOpen(); });
}

bool Uninstallation::run(RemovalRun &run) {
    const RemovalRun::Busy busy(run);
    m_stop = &run.stopFlag();
    m_results.clear();
    for (Record &record : m_records) {
        if (!record.isOpen() || *m_stop)
            continue;
        if (m_progress)
            m_progress(record.plan.application);
        removeApplication(record);
        record.isTried = true;
        if (record.outcome != UninstallOutcome::Removed)
            NSLog("uninstall can not work! %@: %@", record.plan.application.key, record.message);
        else
            logWhatStayed(record);
    }
    return std::all_of(m_records.begin(), m_records.end(),
                       [](const Record &record) { return record.isWhole(); });
}

void Uninstallation::removeApplication(Record &record) {
    const InstalledApplication &application = record.plan.application;
    // What is left of a first attempt is its leftovers.
    if (record.isTried && record.outcome == UninstallOutcome::Removed)
        return removeLeftovers(record);
    if (application.kind == ApplicationKind::Bundle)
        return removeBundle(record);
    if (isPlainFiles(application)) {
        removeFiles(record);
    } else {
        const RemovalResult result = removeSet(m_leaders[std::size_t(&record - m_records.data())]);
        record.outcome = result.outcome;
        record.message = decisiveLine(result.message);
        record.output = result.message;
        record.wayOut = result.wayOut;
    }
    if (record.outcome != UninstallOutcome::Removed)
        return;
    if (record.plan.purge)
        lookForSystemSettings(record);
    removeLeftovers(record);
}

// A purge is told by what has gone.
void Uninstallation::lookForSystemSettings(Record &record) {
    for (const auto &file : record.plan.systemSettings) {
        const auto found = Platform::current().files->attributes(file);
        const bool hasGone = !found && found.error() == std::errc::no_such_file_or_directory;
        record.items.push_back(
            {file, 0, hasGone, hasGone ? std::string() : "its package manager has kept it", false});
    }
}

// Once in a run: a set that failed is not tried again for the next of its applications.
RemovalResult Uninstallation::removeSet(std::size_t leader) {
    const auto [result, isNew] = m_results.try_emplace(leader);
    ApplicationSource *source = sourceOf(m_sets[leader].application.kind);
    if (isNew && source) {
        const auto rights = NvAuthorization::shareNvAuthorization().getAuthorizationRet();
        result->second = source->remove(m_sets[leader], rights ? &rights->token : nullptr);
    }
    return result->second;
}

void Uninstallation::removeBundle(Record &record) {
    const Leftover &bundle = record.plan.itself;
    // Not its leftovers either, which would go first.
    if (needsRights(record.plan) && !holdsRights()) {
        record.items = {itemOf(bundle, lackOfRights())};
        record.message = record.items.front().error;
        record.outcome = UninstallOutcome::NeedsRights;
        return;
    }
    std::vector<Leftover> ticked;
    for (const Leftover &leftover : record.plan.leftovers) {
        if (leftover.ticked)
            ticked.push_back(leftover);
    }
    UninstallApp removal(m_stop);
    const auto id = QString::fromStdString(record.plan.application.desktopId());
    const bool isGone = removal.uninstallApp(id, ticked, record.plan.itself);
    record.items.clear();
    record.outcome = isGone                           ? UninstallOutcome::Removed
                     : removal.outcome().neededRights ? UninstallOutcome::NeedsRights
                                                      : UninstallOutcome::Failed;
    const std::string why = isGone ? std::string() : wordsOf(removal.outcome());
    record.message = why;
    if (!isGone && removal.stayed() != bundle.path)
        record.message = removal.stayed().native() + ": " + why;
    ticked.push_back(record.plan.itself);
    for (const Leftover &leftover : ticked) {
        const bool stays = !isGone && leftover.path == removal.stayed();
        record.items.push_back({leftover.path, leftover.bytes, !stays, stays ? why : std::string(),
                                stays && removal.outcome().neededRights});
        if (stays)
            break;
    }
}

void Uninstallation::removeFiles(Record &record) {
    const auto kept = keptIn(record.plan);
    record.items.clear();
    record.message.clear();
    const bool isGone =
        kept.empty() ? removeItem(record, record.plan.itself) : removeFolder(record, kept);
    record.outcome = isGone ? UninstallOutcome::Removed : UninstallOutcome::Failed;
    for (const Item &item : record.items) {
        if (item.removed)
            continue;
        record.message = item.error;
        record.outcome =
            item.neededRights ? UninstallOutcome::NeedsRights : UninstallOutcome::Failed;
        break;
    }
}

const char *Uninstallation::whyNothingGoes(const RemovalPlan &plan) {
    return holdsProgram(plan, keptIn(plan)) ? "its program lies in what is kept"
                                            : "there is nothing in it but what is kept";
}

std::optional<std::vector<std::filesystem::path>>
Uninstallation::partsGoing(const RemovalPlan &plan) {
    const auto kept = keptIn(plan);
    if (kept.empty())
        return {};
    if (holdsProgram(plan, kept))
        return std::vector<std::filesystem::path>();
    const auto root = Platform::current().files->rememberRoot(plan.application.path);
    if (!root)
        return {};
    std::vector<std::filesystem::path> parts;
    for (const std::string &name : namesGoing(*root, kept))
        parts.push_back(paths::join(root->path, name));
    return parts;
}

// Everything in it but what is kept; the folder stays for that.
bool Uninstallation::removeFolder(Record &record, const std::vector<std::filesystem::path> &kept) {
    const Leftover &itself = record.plan.itself;
    const auto now = lookAtLeftover(itself.target, itself.kind, {}, {m_stop});
    const auto root = Platform::current().files->rememberRoot(record.plan.application.path);
    if (!root || !now || hasLeftoverChanged(itself, *now) || root->device != itself.seen.device ||
        root->inode != itself.seen.inode) {
        const auto error = root ? make_error_code(RemovalError::Changed) : root.error();
        record.items.push_back({record.plan.application.path, 0, false, error.message(), false});
        return false;
    }
    bool isGone = true;
    std::vector<Leftover> going;
    for (const std::string &name : namesGoing(*root, kept)) {
        const auto item = lookAtLeftover({*root, name}, LeftoverKind::Data, {}, {m_stop});
        if (item)
            going.push_back(*item);
        else
            isGone = false;
    }
    if (going.empty() || holdsProgram(record.plan, kept)) {
        record.items.push_back({itself.path, 0, false, whyNothingGoes(record.plan), false});
        return false;
    }
    const auto needsRights = [](const Leftover &item) { return item.needsRights; };
    if (std::any_of(going.begin(), going.end(), needsRights) && !holdsRights()) {
        record.items.push_back(itemOf(itself, lackOfRights()));
        return false;
    }
    for (const Leftover &item : going)
        isGone = removeItem(record, item) && isGone;
    if (isGone)
        noteKeptFolder({itself.path, lastArrivalIn(itself.target)});
    return isGone;
}

void Uninstallation::removeLeftovers(Record &record) {
    for (const Leftover &leftover : record.plan.leftovers) {
        const auto before =
            std::find_if(record.items.begin(), record.items.end(),
                         [&](const Item &item) { return item.path == leftover.path; });
        const bool wasTried = before != record.items.end();
        if (!leftover.ticked || (wasTried && (before->removed || !before->neededRights)))
            continue;
        if (wasTried)
            record.items.erase(before);
        removeItem(record, leftover);
    }
}

bool Uninstallation::removeItem(Record &record, const Leftover &shown) {
    record.items.push_back(removeItem(shown, *m_stop));
    return record.items.back().removed;
}

Uninstallation::Item Uninstallation::removeItem(const Leftover &shown,
                                                const std::atomic<bool> &stop) {
    RemovalOutcome outcome;
    outcome.error = std::make_error_code(std::errc::operation_canceled);
    ItemRemoval removal(&stop);
    if (!stop)
        outcome = removeAsShown(removal, shown, &stop);
    Item item = itemOf(shown, outcome);
    if (item.removed)
        forgetKeptFolder(shown.path);
    return item;
}

} // namespace brightsweep
