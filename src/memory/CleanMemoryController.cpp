#include "memory/CleanMemoryController.h"

#include "core/Texts.h"
#include "core/ThreadWorker.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "platform/Platform.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds refreshInterval{1000};
// Readings between two looks at all processes, and while exact shares stay on show.
constexpr int programsEvery = 3;
constexpr int exactSharesStay = 30;

constexpr double highPressure = 10; // percent

QString inWords(std::uint64_t bytes) {
    return readersSize(UtilityFunction::covertCleanMemory(bytes));
}

std::optional<std::uint64_t> availableNow() {
    const auto available = Platform::current().memory->availableBytes();
    return available ? std::optional(*available) : std::nullopt;
}

} // namespace

CleanMemoryController::CleanMemoryController(Surroundings surroundings, QObject *parent)
    : QObject(parent),
      m_surroundings(std::move(surroundings)),
      m_clock(m_surroundings.clock ? *m_surroundings.clock : Clock::eventLoop()) {}

CleanMemoryController::~CleanMemoryController() {
    m_clock.cancel(refreshTimer);
    if (m_worker) {
        m_worker->markAsCancelled();
        m_worker->abandon();
    }
}

void CleanMemoryController::loadView() {
    if (refreshTimer != 0)
        return;
    updateTitleForLabelValue();
    beginTimer();
}

void CleanMemoryController::beginTimer() {
    refreshTimer = m_clock.callAfter(refreshInterval, [this] { tick(); });
}

void CleanMemoryController::tick() {
    beginTimer();
    updateTitleForLabelValue();
}

void CleanMemoryController::updateTitleForLabelValue() {
    if (!_clearMemory)
        _clearMemory = std::make_unique<ClearMemory>();
    _clearMemory->getMemoryInfo(&_memoryInfo);
    _cleanMemInfo = cleanMemoryInfo(_memoryInfo);
    if (isFreeing && !_clearMemory->isRuning())
        finishRelease();
    m_items.clear();
    for (const MemoryPart &part : memoryParts)
        m_items.push_back(
            PieChartItem::itemWithName({}, part.color, float(_memoryInfo.*part.bytes)));
    if (m_shown)
        readDetails();
    Q_EMIT refreshed();
}

void CleanMemoryController::finishRelease() {
    isFreeing = false;
    newUsedMemory = _memoryInfo.freeMem;
    if (newUsedMemory > oldUsedMemory) {
        m_cleanFreeSave = newUsedMemory - oldUsedMemory;
    } else {
        NSLog("释放变小了");
        m_cleanFreeSave = 0;
    }
    cleanBtnCancelHidden();
}

void CleanMemoryController::cleanBtnCancelHidden() {
    m_button = Button::Enabled;
    m_lastCleanText = localizedText("%@ freed.").arg(inWords(m_cleanFreeSave));
    m_noteTipText =
        _clearMemory->couldDoNothing() ? localizedText("NOTHING_RELEASED_WHY") : availableNote();
    Q_EMIT releaseChanged();
}

QString CleanMemoryController::availableNote() const {
    const auto now = availableNow();
    if (!now || !m_availableBefore)
        return {};
    const QString before = inWords(*m_availableBefore);
    const QString after = inWords(*now);
    return before == after ? localizedText("AVAILABLE_UNCHANGED").arg(after)
                           : localizedText("AVAILABLE_BEFORE_AFTER").arg(before, after);
}

void CleanMemoryController::cleanMemoryButtonClick() {
    if (!m_surroundings.licenceGate || m_surroundings.licenceGate())
        CleanButtonAction();
}

void CleanMemoryController::CleanButtonAction() {
    if (!_clearMemory || _clearMemory->isRuning())
        return;
    m_button = Button::Releasing;
    oldUsedMemory = _memoryInfo.freeMem;
    m_availableBefore = availableNow();
    NSLog("begin clear memory");
    const bool started = _clearMemory->clearMemory() >= 0;
    NSLog("end clear memory");
    if (started) {
        isFreeing = true;
        Q_EMIT releaseChanged();
    } else {
        // Nothing runs that a later reading could find ended.
        m_cleanFreeSave = 0;
        cleanBtnCancelHidden();
    }
    updateTitleForLabelValue();
}

QString CleanMemoryController::imageName() const {
    return isReleasing() ? QStringLiteral("cleaning.png")
                         : QStringLiteral("clean_memory_button.png");
}

QString CleanMemoryController::pressureText() const {
    if (!m_details || !m_details->pressure)
        return {};
    const double percent = *m_details->pressure;
    return localizedText(percent <= 0             ? QT_TRID_NOOP("PRESSURE_NONE")
                         : percent < highPressure ? QT_TRID_NOOP("PRESSURE_SOME")
                                                  : QT_TRID_NOOP("PRESSURE_HIGH"));
}

QString CleanMemoryController::exactnessText() const {
    if (!m_shareCounts)
        return localizedText("PROGRAMS_ESTIMATED");
    if (m_shareCounts->exact == 0)
        return localizedText("PROGRAMS_NOT_EXACT", m_shareCounts->unread);
    return m_shareCounts->unread == 0 ? localizedText("PROGRAMS_EXACT")
                                      : localizedText("PROGRAMS_EXACT_BUT", m_shareCounts->unread);
}

// -- What is read while the page is shown

void CleanMemoryController::setShown(bool shown) {
    if (std::exchange(m_shown, shown) == shown || !shown)
        return;
    m_ticksToPrograms = 0;
    m_ticksOfExactShares = 0;
    updateTitleForLabelValue();
}

void CleanMemoryController::readDetails() {
    const auto details = Platform::current().memory->details();
    m_details = details ? std::optional(*details) : std::nullopt;
    if (m_ticksOfExactShares > 0)
        --m_ticksOfExactShares;
    else if (m_ticksToPrograms-- <= 0)
        readPrograms();
}

void CleanMemoryController::readPrograms() {
    m_ticksToPrograms = programsEvery - 1;
    m_shareCounts.reset();
    m_programs = largestPrograms(
        Platform::current().memory->processes(ProcessReading::Quick, nullptr), programCount);
    Q_EMIT programsChanged();
}

void CleanMemoryController::readExactShares() {
    if (m_worker)
        return;
    m_worker = ThreadWorker::workOn(this, &CleanMemoryController::workOnShares, nullptr,
                                    &CleanMemoryController::sharesRead);
    Q_EMIT programsChanged();
}

void CleanMemoryController::workOnShares(std::nullptr_t, ThreadWorker *worker) {
    m_exactShares =
        Platform::current().memory->processes(ProcessReading::Exact, &worker->cancelledFlag());
}

void CleanMemoryController::sharesRead() {
    m_worker.reset();
    const auto shares = std::exchange(m_exactShares, {});
    if (!shares.empty()) {
        m_programs = largestPrograms(shares, programCount);
        const auto exact = std::size_t(std::count_if(
            shares.begin(), shares.end(), [](const auto &process) { return process.isExact; }));
        m_shareCounts = ShareCounts{exact, shares.size() - exact};
        m_ticksOfExactShares = exactSharesStay;
    }
    Q_EMIT programsChanged();
}

} // namespace brightsweep
