#include "diskusage/UsageTicks.h"

#include "core/ThreadWorker.h"
#include "diskusage/NodeTreeOperator.h"
#include "foundation/Log.h"
#include "foundation/PathBytes.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "removal/HeldPrograms.h"
#include "removal/RemovalRun.h"
#include "removal/TrashRecord.h"

#include <algorithm>
#include <set>
#include <utility>

namespace brightsweep {

namespace {

std::filesystem::path parentOf(const std::filesystem::path &path) {
    const auto slash = path.native().rfind('/');
    return slash == std::string::npos ? std::string() : path.native().substr(0, slash);
}

bool isBelow(const std::filesystem::path &path, const std::filesystem::path &folder) {
    return path != folder && paths::isSameOrBelow(path.native(), folder.native());
}

} // namespace

UsageTicks::UsageTicks(Targets targets, QObject *parent)
    : QObject(parent), m_targets(std::move(targets)) {}

UsageTicks::~UsageTicks() {
    m_stop = true;
    if (m_run)
        m_run->stop();
    for (const auto &worker : {m_looker, m_worker}) {
        if (worker)
            worker->abandon();
    }
}

// -- Ticks

std::vector<CleanFileInfo> UsageTicks::allSelectArr() const {
    std::vector<CleanFileInfo> items;
    for (const auto &[path, tick] : m_ticks)
        items.push_back(tick.info);
    return items;
}

std::uint64_t UsageTicks::bytes(ChartMeasure measure) const {
    std::uint64_t sum = 0;
    for (const auto &[path, tick] : m_ticks) {
        if (!isBelowTick(path))
            sum += bytesBy(measure, tick.info.fileSizeNum, tick.info.stored);
    }
    return sum;
}

bool UsageTicks::isBelowTick(const std::filesystem::path &path) const {
    for (auto above = parentOf(path); !above.empty(); above = parentOf(above)) {
        const auto tick = m_ticks.find(above.native());
        if (tick != m_ticks.end() && tick->second.info.isDirectory)
            return true;
    }
    return false;
}

void UsageTicks::tick(const CleanFileInfo &item) {
    if (m_run || contains(item.path))
        return;
    const std::string &path = item.path.native();
    CleanFileInfo info = item;
    info.bIsSelected = 1;
    m_ticks.emplace(path, Tick{std::move(info), {}});
    m_generations[path] = ++m_lastGeneration;
    m_toLook.push_back({item.path, m_lastGeneration, {}, {}});
    Q_EMIT changed();
    lookOn();
}

void UsageTicks::untick(const std::filesystem::path &path) {
    if (m_run || m_ticks.erase(path.native()) == 0)
        return;
    m_generations.erase(path.native());
    Q_EMIT changed();
}

void UsageTicks::untickAround(const std::filesystem::path &path, bool alsoBelow) {
    if (m_run)
        return;
    const auto gone = std::erase_if(m_ticks, [&](const auto &tick) {
        const std::filesystem::path each = tick.first;
        return each == path || isBelow(path, each) || (alsoBelow && isBelow(each, path));
    });
    std::erase_if(m_generations, [&](const auto &each) { return !m_ticks.contains(each.first); });
    if (gone > 0)
        Q_EMIT changed();
}

void UsageTicks::clear() {
    if (m_run)
        return;
    m_ticks.clear();
    m_generations.clear();
    m_toLook.clear();
    m_asks = false;
    Q_EMIT changed();
}

void UsageTicks::lookOn() {
    if (m_looker || m_toLook.empty())
        return;
    m_looking = std::exchange(m_toLook, {});
    m_looker = ThreadWorker::workOn(this, &UsageTicks::look, nullptr, &UsageTicks::lookEnded);
}

void UsageTicks::look(std::nullptr_t) {
    FileOperations &files = *Platform::current().files;
    for (Look &each : m_looking) {
        const auto target = m_targets(each.path);
        const auto item = target ? files.openItem(*target) : target.error();
        if (m_stop)
            return;
        if (!item) {
            each.refusal = item.error();
            continue;
        }
        // Want of permission is what the padlock is for.
        const auto error = UsageRemoval::refusalOf(*item);
        if (error && !isForWantOfPermission(error)) {
            each.refusal = error;
            continue;
        }
        if (auto seen = lookAtItem(*target, *item, {0, &m_stop, nullptr}))
            each.seen = *std::move(seen);
    }
}

void UsageTicks::lookEnded() {
    m_looker.reset();
    for (Look &each : std::exchange(m_looking, {})) {
        const auto generation = m_generations.find(each.path.native());
        if (generation == m_generations.end() || generation->second != each.generation)
            continue;
        if (each.refusal && each.refusal != std::errc::no_such_file_or_directory) {
            untick(each.path);
            Q_EMIT refused(each.path, each.refusal);
        } else {
            m_ticks.at(each.path.native()).seen = std::move(each.seen);
        }
    }
    lookOn();
    if (!m_looker && std::exchange(m_asks, false))
        ask();
}

// -- The question

void UsageTicks::ask() {
    if (m_worker || m_ticks.empty())
        return;
    if (m_looker) {
        m_asks = true;
        return;
    }
    m_stop = false;
    m_limit = getLimitSize();
    m_sheet.clear();
    m_freed.clear();
    for (const auto &[path, tick] : m_ticks) {
        SelectFilesListView &row = m_sheet.emplace_back();
        row.aFileInfo = tick.info;
        row.isDir = tick.info.isDirectory;
        row.hasGone = !tick.seen;
        if (tick.seen)
            row.now = *tick.seen;
    }
    m_worker = ThreadWorker::workOn(this, &UsageTicks::survey, nullptr, &UsageTicks::surveyEnded);
}

// Each row holds what was ticked, and then what is there.
void UsageTicks::survey(std::nullptr_t) {
    FileOperations &files = *Platform::current().files;
    const HeldPrograms programs;
    for (SelectFilesListView &row : m_sheet) {
        FreedBytes &freed = m_freed.emplace_back();
        if (row.hasGone)
            continue;
        const UsageItem ticked = row.now;
        const auto item = files.openItem(ticked.target);
        if (!item) {
            row.hasGone = item.error() == std::errc::no_such_file_or_directory;
            row.refusal = row.hasGone ? std::error_code() : item.error();
            continue;
        }
        row.refusal = UsageRemoval::refusalOf(*item);
        if (isForWantOfPermission(row.refusal))
            row.refusal = {};
        const auto now = lookAtItem(ticked.target, *item, {m_limit, &m_stop, &freed});
        if (!now)
            return;
        row.isOther = ticked.isReplacedBy(*now);
        if (ticked.hasGainedBy(*now))
            row.gained = now->below.entries > ticked.below.entries
                             ? now->below.entries - ticked.below.entries
                             : 1;
        if (!row.isOther)
            row.now = *now;
        row.program = programs.of(ticked.target.path());
    }
}

void UsageTicks::surveyEnded() {
    m_worker.reset();
    if (m_stop) {
        m_sheet.clear();
        return;
    }
    for (SelectFilesListView &row : m_sheet)
        row.isSelected = !row.hasGone && !row.refusal && !row.isOther;
    Q_EMIT asked();
}

void UsageTicks::select(std::size_t row, bool selected) {
    if (row >= m_sheet.size() || m_worker)
        return;
    m_sheet[row].isSelected = selected;
    // A folder goes with all that is in it, so that it stays when a part of it is to stay.
    const std::filesystem::path &path = m_sheet[row].aFileInfo.path;
    for (SelectFilesListView &other : m_sheet) {
        if (!selected && other.isDir && isBelow(path, other.aFileInfo.path))
            other.isSelected = false;
    }
}

std::uint64_t UsageTicks::sheetFreed() const {
    FreedBytes all;
    std::set<std::filesystem::path> folders; // selected, each before what lies in it
    for (std::size_t i = 0; i < m_sheet.size() && i < m_freed.size(); ++i) {
        const std::filesystem::path &path = m_sheet[i].aFileInfo.path;
        bool isWithin = !m_sheet[i].isSelected;
        for (auto above = parentOf(path); !isWithin && !above.empty(); above = parentOf(above))
            isWithin = folders.contains(above);
        if (isWithin)
            continue;
        all.add(m_freed[i]);
        if (m_sheet[i].isDir)
            folders.insert(path);
    }
    return all.sum();
}

// -- The removal

void UsageTicks::remove(Act act) {
    if (m_worker || m_sheet.empty())
        return;
    auto begun = RemovalRun::begin("Disk Usage");
    if (!begun.run) {
        Q_EMIT removalRefused(RemovalRun::refusal(begun));
        return;
    }
    m_run = std::move(begun.run);
    m_stop = false;
    m_report = {};
    m_report.act = act;
    m_bytesFreed = 0;
    m_all = std::size_t(std::count_if(m_sheet.begin(), m_sheet.end(),
                                      [](const auto &row) { return row.isSelected; }));
    m_worker =
        ThreadWorker::workOn(this, &UsageTicks::removeAll, nullptr, &UsageTicks::removeEnded);
}

void UsageTicks::removeAll(std::nullptr_t) {
    const RemovalRun::Busy busy(*m_run);
    const TrashBatch batch;
    UsageRemoval removal({.act = m_report.act, .stop = &m_run->stopFlag()});
    for (const SelectFilesListView &row : m_sheet) {
        if (m_stop || m_run->stopFlag())
            return;
        if (!row.isSelected)
            continue;
        Told told{row.aFileInfo, removal.act(row.now)};
        const std::lock_guard lock(m_mutex);
        m_bytesFreed = removal.bytesFreed();
        m_told.push_back(std::move(told));
        // What came by the time that the main thread looks is taken together.
        if (m_told.size() == 1)
            m_calls.post([this] { takeTold(); });
    }
}

void UsageTicks::takeTold() {
    std::vector<Told> told;
    {
        const std::lock_guard lock(m_mutex);
        told.swap(m_told);
        m_report.bytesFreed = m_bytesFreed;
    }
    for (const auto &[info, outcome] : told) {
        // One that has gone before its turn is passed over without a word.
        if (outcome.wasGone)
            continue;
        if (outcome.done) {
            ++m_report.done;
            Q_EMIT itemGone(info);
        } else if (outcome.error != std::errc::operation_canceled) {
            ++m_report.failed;
            m_report.neededRights += outcome.neededRights ? 1 : 0;
            m_report.stayed.emplace_back(info.path, outcome.error);
        }
    }
    if (!told.empty())
        Q_EMIT removing(told.back().info.path.native(), m_report.done + m_report.failed, m_all);
}

void UsageTicks::removeEnded() {
    takeTold();
    m_worker.reset();
    m_run.reset();
    m_report.stopped = m_stop;
    m_sheet.clear();
    m_freed.clear();
    clear();
    Q_EMIT removalEnded();
}

void UsageTicks::stop() {
    m_stop = true;
    m_asks = false;
    if (m_run)
        m_run->stop();
}

} // namespace brightsweep
