#include "cleaning/CleanSysController.h"

#include "cleaning/BrowseFolderOperation.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/CleanPageTexts.h"
#include "cleaning/CleanWindow.h"
#include "cleaning/DeleteFolderOperation.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/ItemSizes.h"
#include "core/ParseFileLog.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunctionOfData.h"
#include "core/UtilityObject.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "removal/RemovalRun.h"
#include "volumes/VolumeNotifications.h"

#include <QDateTime>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

namespace brightsweep {

namespace {

using namespace std::chrono_literals;

constexpr int wideBubble = 280;
constexpr int narrowBubble = 220;
// How long a stopped run of this program may take to end, and between two looks at it.
constexpr std::chrono::milliseconds runPatience = 2s;
constexpr std::chrono::milliseconds runPause = 50ms;

// The settings of the categories, in their order.
constexpr std::array<QString SettingItems::*, 6> categorySettings = {
    &SettingItems::systemCaches, &SettingItems::userCaches, &SettingItems::systemLogs,
    &SettingItems::userLogs,     &SettingItems::userTrash,  &SettingItems::downloads,
};

constexpr struct {
    StayReason reason;
    const char *text;
} stayedTexts[] = {
    {StayReason::NeedsRights, QT_TRID_NOOP("STAYED_RIGHTS")},
    {StayReason::InUse, QT_TRID_NOOP("STAYED_IN_USE")},
    {StayReason::ReadOnly, QT_TRID_NOOP("STAYED_READ_ONLY")},
    {StayReason::Other, QT_TRID_NOOP("STAYED_OTHER")},
};

QString stayedWords(const CleanTally &tally) {
    QStringList words;
    for (const auto &text : stayedTexts) {
        const std::size_t items = tally.stayed[std::size_t(text.reason)];
        if (items > 0)
            words += localizedText(text.text, items);
    }
    return words.join(QStringLiteral(", "));
}

std::uint64_t number(const Notification &notification, const char *key) {
    return notification.userInfo.value(QLatin1String(key)).toULongLong();
}

} // namespace

CleanSysController::CleanSysController() : CleanSysController(Delays()) {}

CleanSysController::CleanSysController(Delays delays) : m_delays(delays) {
    m_bubbleTimer.setSingleShot(true);
    m_closeTimer.setSingleShot(true);
    connect(&m_bubbleTimer, &QTimer::timeout, this, &CleanSysController::timerDeleteBubble);
    connect(&m_closeTimer, &QTimer::timeout, this, &CleanSysController::shouldCloseWindow);
    m_queue.setIdleHandler([this] { m_calls.post([this] { operationsEnded(); }); });
    resetStatus();
    readSettings();
    UtilityObject::getMyObject().isCanBeAction = foldersArr.empty();
    if (foldersArr.empty()) {
        refuse(m_settingsProblem.isEmpty() ? localizedText("NO_FOLDER_CONTENT")
                                           : m_settingsProblem);
    } else {
        registerNotifications();
    }
    NotificationCenter::defaultCenter().post(refMenuItemWhenDeleteAndAddNotification);
}

// Once whoever made it listens.
void CleanSysController::refuse(const QString &words) {
    m_calls.post([this, words] {
        bubbleViewWith(words, QString());
        m_state = State::Closed;
        NotificationCenter::defaultCenter().post(DSShouldCloseWindow, this);
    });
}

CleanSysController::~CleanSysController() {
    if (m_run)
        m_run->stop();
    unRegisterNotification();
    if (m_bubbleShown)
        timerDeleteBubble();
}

void CleanSysController::observe(QLatin1String name, Handler handler) {
    NotificationCenter::defaultCenter().addObserver(
        this, name, [this, handler](const Notification &notification) {
            // A quick clean that was stopped may still be telling of its end on its own thread.
            if (m_queue.isOwnThread())
                (this->*handler)(notification);
        });
}

void CleanSysController::registerNotifications() {
    observe(DSScanSingleFolder, &CleanSysController::handleSingleFolder);
    observe(DSScanOperationFinish, &CleanSysController::handleScanFinish);
    observe(DSBeginFastClean, &CleanSysController::handleBeginFastClean);
    observe(DSDeleteFileSuccess, &CleanSysController::handleDelFileSuccess);
    observe(DSDeleteFileFailed, &CleanSysController::handleDelFileFailed);
    observe(DSFastCleanFinish, &CleanSysController::handleFinishClean);
    observe(DSCleanCanceled, &CleanSysController::handleCancelClean);
}

void CleanSysController::unRegisterNotification() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

void CleanSysController::resetStatus() {
    if (m_state == State::Scanning || m_state == State::Deleting || m_state == State::Reporting) {
        NSLog("A quick clean is under way and keeps its figures");
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_totalSize = m_fileCount = m_failedSize = m_failedCount = m_totalDelSize = 0;
        m_progressVal = 0;
    }
    foldersArr.clear();
    m_showFixedText = QStringLiteral(QT_TRID_NOOP("Scanning system..."));
    Q_EMIT changed();
}

void CleanSysController::readSettings() {
    m_settingsProblem = selectionProblem();
    if (!m_settingsProblem.isEmpty()) {
        NSLog("No quick clean: %@", m_settingsProblem);
        return;
    }
    const SettingItems settings = UtilityFunctionOfData::getMyData().readerTxtForSettingValue();
    for (std::uint32_t category = 0; category < categorySettings.size(); ++category) {
        // A category of which a part is ticked, 2, is left out.
        if ((settings.*categorySettings[category]).toInt() != 1)
            continue;
        for (auto &folder : FolderUtilities::getFolderPath(category))
            foldersArr.push_back(std::move(folder));
    }
}

void CleanSysController::windowDidLoad() {
    if (m_loaded || m_state != State::Idle)
        return;
    m_loaded = true;
    resetStatus();
    readSettings();
    if (foldersArr.empty())
        return;
    m_state = State::Scanning;
    m_indeterminate = true;
    m_cancelHidden = false;
    m_runPatience = runPatience;
    Q_EMIT changed();
    Q_EMIT showWindow();
    beginScan();
}

// Another run of this process may be one that was stopped and is about to end.
void CleanSysController::beginScan() {
    if (m_stopped)
        return;
    RemovalRun::Begun begun = RemovalRun::begin(QT_TRID_NOOP("Quick Clean"));
    if (!begun.run && begun.process == ::getpid() && m_runPatience > 0ms) {
        m_runPatience -= runPause;
        QTimer::singleShot(runPause, this, &CleanSysController::beginScan);
        return;
    }
    if (!begun.run) {
        unRegisterNotification();
        m_state = State::Idle;
        refuse(RemovalRun::refusal(begun));
        return;
    }
    m_run = std::move(begun.run);
    m_queue.addOperation(std::make_shared<BrowseFolderOperation>(foldersArr));
}

void CleanSysController::tellOfChange() {
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_changePending, true))
        return;
    m_calls.post([this] {
        {
            const std::lock_guard again(m_mutex);
            m_changePending = false;
        }
        Q_EMIT changed();
    });
}

void CleanSysController::handleSingleFolder(const Notification &notification) {
    {
        const std::lock_guard lock(m_mutex);
        m_curDeleteFile =
            paths::fromVariant(notification.userInfo.value(QStringLiteral("FolderPath")));
    }
    tellOfChange();
}

void CleanSysController::handleScanFinish(const Notification &notification) {
    {
        const std::lock_guard lock(m_mutex);
        m_totalSize = number(notification, "FolderSize");
        m_fileCount = number(notification, "FileCount");
    }
    m_calls.post([this] { beginDeleting(); });
}

void CleanSysController::beginDeleting() {
    // Stopped when the scan had just ended: no operation is left to tell of it.
    if (m_stopped)
        return report();
    m_state = State::Deleting;
    m_removal = std::make_shared<DeleteFolderOperation>(foldersArr, m_run);
    m_queue.addOperation(m_removal);
    Q_EMIT changed();
}

void CleanSysController::handleBeginFastClean(const Notification &) {
    m_calls.post([this] {
        m_indeterminate = false;
        if (!foldersArr.empty())
            m_showFixedText = QStringLiteral(QT_TRID_NOOP("Deleting items..."));
        Q_EMIT changed();
    });
}

void CleanSysController::updateFastClean(const Notification &notification) {
    {
        const std::lock_guard lock(m_mutex);
        m_curDeleteFile =
            paths::fromVariant(notification.userInfo.value(QStringLiteral("FilePath")));
        m_totalDelSize = addSaturating(m_totalDelSize, number(notification, "FileSize"));
        // Neither guarded nor capped.
        m_progressVal = double(m_totalDelSize) / (double(m_totalSize) / 100.0);
    }
    tellOfChange();
}

void CleanSysController::handleDelFileSuccess(const Notification &notification) {
    updateFastClean(notification);
}

// What failed counts as progress, and twice: it is told of both ways.
void CleanSysController::handleDelFileFailed(const Notification &notification) {
    updateFastClean(notification);
    const std::lock_guard lock(m_mutex);
    m_failedSize = addSaturating(m_failedSize, number(notification, "FileSize"));
    ++m_failedCount;
}

void CleanSysController::handleFinishClean(const Notification &) {
    m_calls.post([this] { report(); });
}

void CleanSysController::handleCancelClean(const Notification &) {
    m_calls.post([this] { report(); });
}

// A cancel may be told more than once, and only the first counts.
void CleanSysController::report() {
    if (m_state == State::Reporting || m_state == State::Closed)
        return;
    unRegisterNotification();
    m_run.reset();
    m_state = State::Reporting;
    m_indeterminate = false;
    m_cancelHidden = true;
    m_cancelIndicator = false;
    {
        const std::lock_guard lock(m_mutex);
        m_progressVal = 100;
    }
    const CleanTally tally = m_removal ? m_removal->tally() : CleanTally();
    m_showFixedText = cleanPageTexts::cleanedLine(tally.wentBytes).text;
    m_stayedWords = stayedWords(tally);
    ParseFileLog().recordClean(tally.wentBytes);
    Q_EMIT changed();
    showCleanFinishBubble(readersNumber(tally.wentItems), sizeWords(tally.wentBytes));
    NotificationCenter::defaultCenter().post(
        quickCleanEndedNotification, this,
        {{QStringLiteral("object"), qulonglong(tally.wentItems)}});
}

void CleanSysController::stopFastClean() {
    if (m_stopped || (m_state != State::Scanning && m_state != State::Deleting))
        return;
    m_stopped = true;
    {
        const std::lock_guard lock(m_mutex);
        m_progressVal = 100;
    }
    m_cancelHidden = true;
    m_cancelIndicator = true;
    cancelRun();
    Q_EMIT changed();
    NotificationCenter::defaultCenter().post(DSShouldCloseWindow, this);
}

void CleanSysController::cancelRun() {
    if (m_run)
        m_run->stop();
    m_queue.cancelAllOperations();
    // Between two operations, or without a thread to run them, none tells of the end.
    if (m_queue.isIdle())
        m_calls.post([this] { report(); });
}

void CleanSysController::showCleanFinishBubble(const QString &count, const QString &cleanSpace) {
    const QString counted = localizedText("CLEAN_FILES_COUNT") + QLatin1Char(' ') + count;
    const QString sized = localizedText("CLEAN_FILES_SIZE") + QLatin1Char(' ') + cleanSpace;
    // Two lines are all that a bubble has.
    if (m_stayedWords.isEmpty())
        bubbleViewWith(counted, sized);
    else
        bubbleViewWith(counted + QStringLiteral(", ") + cleanSpace, m_stayedWords);
}

void CleanSysController::bubbleViewWith(const QString &view, const QString &bView) {
    QStringList lines{view};
    if (!bView.isNull())
        lines += bView;
    UtilityObject &shared = UtilityObject::getMyObject();
    const int index = shared.totalBubbleCount;
    ++shared.totalBubbleCount;
    ++shared.liveBubbleCount;
    m_bubbleShown = true;
    Q_EMIT showBubble(lines, bView.isNull() ? narrowBubble : wideBubble, index);
    m_queue.cancelAllOperations();
    m_bubbleTimer.start(m_delays.bubble);
}

void CleanSysController::timerDeleteBubble() {
    UtilityObject &shared = UtilityObject::getMyObject();
    if (--shared.liveBubbleCount == 0)
        shared.totalBubbleCount = 0;
    m_bubbleShown = false;
    Q_EMIT hideBubble();
    m_closeTimer.start(m_delays.close);
}

void CleanSysController::shouldCloseWindow() {
    if (std::exchange(m_state, State::Closed) == State::Reporting && !m_closing)
        NotificationCenter::defaultCenter().post(DSShouldCloseWindow, this);
    goIfDone();
}

void CleanSysController::closeWindow() {
    if (m_closing)
        return;
    m_closing = true;
    if (m_state == State::Scanning || m_state == State::Deleting) {
        m_stopped = true;
        cancelRun();
    } else if (m_state == State::Idle) {
        m_state = State::Closed;
    }
    goIfDone();
}

// After what an operation told of its own end; one that failed tells nothing.
void CleanSysController::operationsEnded() {
    if (m_queue.isIdle() && (m_state == State::Scanning || m_state == State::Deleting))
        report();
    goIfDone();
}

void CleanSysController::goIfDone() {
    if (m_closing && m_state == State::Closed && m_queue.isIdle() && !m_bubbleShown)
        deleteLater();
}

QString CleanSysController::curDeleteFile() const {
    if (m_state == State::Reporting || m_state == State::Closed)
        return m_stayedWords;
    const std::lock_guard lock(m_mutex);
    return paths::display(m_curDeleteFile);
}

double CleanSysController::progressVal() const {
    const std::lock_guard lock(m_mutex);
    return m_progressVal;
}

int CleanSysController::progressPercent() const {
    const double value = progressVal();
    return value >= 100 ? 100 : value > 0 ? int(value) : 0;
}

std::uint64_t CleanSysController::totalSize() const {
    const std::lock_guard lock(m_mutex);
    return m_totalSize;
}

std::uint64_t CleanSysController::fileCount() const {
    const std::lock_guard lock(m_mutex);
    return m_fileCount;
}

std::uint64_t CleanSysController::failedCount() const {
    const std::lock_guard lock(m_mutex);
    return m_failedCount;
}

std::uint64_t CleanSysController::failedSize() const {
    const std::lock_guard lock(m_mutex);
    return m_failedSize;
}

std::uint64_t CleanSysController::totalDelSize() const {
    const std::lock_guard lock(m_mutex);
    return m_totalDelSize;
}

} // namespace brightsweep
