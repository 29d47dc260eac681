#pragma once

#include "core/Clock.h"
#include "memory/ClearMemory.h"
#include "memory/LargestPrograms.h"
#include "memory/PieChartItem.h"
#include "memory/cleanMemoryInfo.h"
#include "platform/MemorySource.h"

#include <QObject>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brightsweep {

class ThreadWorker;

/// One of the four parts of the memory that the chart shows; their order and colours are fixed.
struct MemoryPart {
    const char *title; ///< a key
    std::uint64_t MemoryInfo::*bytes;
    PieColor color;
};
inline constexpr std::array memoryParts = {
    MemoryPart{QT_TRID_NOOP("MEMORY_FREE"), &MemoryInfo::freeMem, {0, 247, 44}},
    MemoryPart{QT_TRID_NOOP("MEMORY_ACTIVE"), &MemoryInfo::activeMem, {254, 249, 53}},
    MemoryPart{QT_TRID_NOOP("MEMORY_INACTIVE"), &MemoryInfo::inactiveMem, {16, 63, 251}},
    MemoryPart{QT_TRID_NOOP("MEMORY_WIRED"), &MemoryInfo::wiredMem, {255, 42, 26}},
};

/// The memory page without its screen: figures, read once a second from loadView() on, whether
/// anybody sees them or not, a release and what has come of it. What costs more than a glance at
/// two small files is read only while the page is shown. Main thread; exact shares are read on a
/// worker, which is waited for when the page goes.
class CleanMemoryController : public QObject {
    Q_OBJECT

public:
    struct Surroundings {
        std::function<bool()> licenceGate; ///< else open
        Clock *clock = nullptr;            ///< else that of the event loop
    };

    static constexpr std::size_t programCount = 10;

    explicit CleanMemoryController(Surroundings surroundings, QObject *parent = nullptr);
    ~CleanMemoryController() override;

    /// The first reading, and the timer; once.
    void loadView();
    void beginTimer();
    void updateTitleForLabelValue();

    // -- What the user did

    void cleanMemoryButtonClick();
    void CleanButtonAction();
    /// Reads the exact share of each process; refused while that is under way.
    void readExactShares();
    void setShown(bool shown);

    // -- What the page shows

    const MemoryInfo &memoryInfo() const { return _memoryInfo; }
    const cleanMemoryInfo &cleanMemInfo() const { return _cleanMemInfo; }
    /// Of the last reading, in the order of memoryParts.
    const std::vector<PieChartItem> &pieChartItems() const { return m_items; }
    bool isReleasing() const { return m_button == Button::Releasing; }
    /// Of the button.
    QString imageName() const;
    /// The result line; empty until a release has ended.
    QString lastCleanText() const { return m_lastCleanText; }
    /// What the release did for programs; empty until one has ended.
    QString noteTipText() const { return m_noteTipText; }
    /// Unknown on a system that does not tell them.
    const std::optional<MemoryDetails> &details() const { return m_details; }
    /// The pressure in words; empty where it is unknown.
    QString pressureText() const;
    const std::vector<ProgramMemory> &programs() const { return m_programs; }
    bool isReadingShares() const { return m_worker != nullptr; }
    /// Whether what programs() tells is exact, and of how many processes it could not be read.
    QString exactnessText() const;

    std::uint64_t cleanFreeSave() const { return m_cleanFreeSave; }

Q_SIGNALS:
    void refreshed();
    /// Button, result line or note.
    void releaseChanged();
    void programsChanged();

private:
    enum class Button { Enabled, Releasing };

    void tick();
    void finishRelease();
    void cleanBtnCancelHidden();
    void readDetails();
    void readPrograms();
    void workOnShares(std::nullptr_t, ThreadWorker *worker);
    void sharesRead();
    QString availableNote() const;

    Surroundings m_surroundings;
    Clock &m_clock;
    std::unique_ptr<ClearMemory> _clearMemory;
    cleanMemoryInfo _cleanMemInfo;
    MemoryInfo _memoryInfo;
    std::vector<PieChartItem> m_items;
    // Free memory, in spite of their names.
    std::uint64_t oldUsedMemory = 0;
    std::uint64_t newUsedMemory = 0;
    std::uint64_t m_cleanFreeSave = 0;
    bool isFreeing = false;
    Clock::Handle refreshTimer = 0;

    Button m_button = Button::Enabled;
    QString m_lastCleanText;
    QString m_noteTipText;
    std::optional<std::uint64_t> m_availableBefore;
    std::optional<MemoryDetails> m_details;
    std::vector<ProgramMemory> m_programs;
    std::vector<ProcessMemory> m_exactShares;
    std::shared_ptr<ThreadWorker> m_worker;
    struct ShareCounts {
        std::size_t exact = 0;  ///< processes whose share was read
        std::size_t unread = 0; ///< those whose share is an estimate
    };
    std::optional<ShareCounts> m_shareCounts; ///< set while exact shares are on show
    int m_ticksToPrograms = 0;
    int m_ticksOfExactShares = 0;
    bool m_shown = false;
};

} // namespace brightsweep
