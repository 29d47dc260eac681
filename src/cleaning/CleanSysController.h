#pragma once

#include "core/OperationQueue.h"
#include "foundation/CallQueue.h"
#include "platform/FileOperations.h"

#include <QLatin1String>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <vector>

namespace brightsweep {

class DeleteFolderOperation;
class RemovalRun;
struct CleanTally;
struct Notification;

/// The quick clean: it measures the categories that the settings mark as whole, empties them and
/// reports in a bubble what went and what stayed, with no choice in between. What went is recorded
/// as the last clean, and quickCleanEndedNotification is posted.
///
/// Main thread. Its two operations run on a queue of its own, one after the other; what they tell
/// is heard on that thread, kept under a lock, and shown on the main thread. It hears its own
/// operations alone, so that a stopped one that still ends disturbs no other. Whoever made it calls
/// closeWindow() in place of destroying it: it goes by itself once its operation and its report
/// have ended. Destroying it earlier cancels, and waits for the operation.
class CleanSysController : public QObject {
    Q_OBJECT

public:
    enum class State { Idle, Scanning, Deleting, Reporting, Closed };

    /// How long the bubble stays, and how long the window stays after it.
    struct Delays {
        std::chrono::milliseconds bubble{5000};
        std::chrono::milliseconds close{1000};
    };

    /// Reads the settings. Without a marked category, and where the settings cannot be read, it
    /// says so in a bubble and posts at once that the window should close; connect to showBubble()
    /// and call windowDidLoad() all the same.
    CleanSysController();
    explicit CleanSysController(Delays delays);
    ~CleanSysController() override;

    // -- What the window does
    /// Starts the run, and asks for the window to be shown. A second call does nothing.
    void windowDidLoad();
    void stopFastClean();
    /// The window has been closed and nobody will ask any more.
    void closeWindow();

    /// Drops the figures and folders of the run before; left alone while one is under way.
    void resetStatus();
    /// Adds the folders of the categories whose state is exactly 1.
    void readSettings();

    // -- What the window shows
    State state() const { return m_state; }
    const std::vector<RemovalRoot> &folders() const { return foldersArr; }
    QString showFixedText() const { return m_showFixedText; }
    /// The path under way; once the run has ended, what stayed and why.
    QString curDeleteFile() const;
    /// As computed: not a number or infinite where the scan found nothing, and over 100 at times.
    double progressVal() const;
    /// The same for a bar, 0 to 100.
    int progressPercent() const;
    bool isIndeterminate() const { return m_indeterminate; }
    bool isCancelBtnHidden() const { return m_cancelHidden; }
    bool isCancelIndicatorShown() const { return m_cancelIndicator; }
    std::uint64_t totalSize() const;
    std::uint64_t fileCount() const;
    std::uint64_t failedCount() const;
    std::uint64_t failedSize() const;
    std::uint64_t totalDelSize() const;

Q_SIGNALS:
    /// Something of what the window shows is another now.
    void changed();
    /// In front of other windows, centred, and the program activated.
    void showWindow();
    /// A bubble of these lines, that many points wide, as the index-th on screen.
    void showBubble(const QStringList &lines, int width, int index);
    void hideBubble();

private:
    using Handler = void (CleanSysController::*)(const Notification &);

    void registerNotifications();
    void unRegisterNotification();
    void observe(QLatin1String name, Handler handler);

    // On the operation's thread.
    void handleSingleFolder(const Notification &notification);
    void handleScanFinish(const Notification &notification);
    void handleBeginFastClean(const Notification &notification);
    void handleDelFileSuccess(const Notification &notification);
    void handleDelFileFailed(const Notification &notification);
    void handleFinishClean(const Notification &notification);
    void handleCancelClean(const Notification &notification);
    void updateFastClean(const Notification &notification);
    void tellOfChange();

    // On the main thread.
    void beginScan();
    void refuse(const QString &words);
    void beginDeleting();
    void cancelRun();
    void report();
    void showCleanFinishBubble(const QString &count, const QString &cleanSpace);
    void bubbleViewWith(const QString &view, const QString &bView);
    void timerDeleteBubble();
    void shouldCloseWindow();
    void operationsEnded();
    void goIfDone();

    const Delays m_delays;
    State m_state = State::Idle;
    std::vector<RemovalRoot> foldersArr;
    std::shared_ptr<RemovalRun> m_run;                ///< from the start of the scan to the report
    std::shared_ptr<DeleteFolderOperation> m_removal; ///< from its start on
    QString m_stayedWords;
    QString m_settingsProblem;
    QString m_showFixedText;
    QTimer m_bubbleTimer;
    QTimer m_closeTimer;
    bool m_bubbleShown = false;
    bool m_indeterminate = false;
    bool m_cancelHidden = false;
    bool m_cancelIndicator = false;
    bool m_stopped = false;
    bool m_closing = false;
    bool m_loaded = false;
    std::chrono::milliseconds m_runPatience{0};

    mutable std::mutex m_mutex; // guards what follows
    std::uint64_t m_totalSize = 0;
    std::uint64_t m_fileCount = 0;
    std::uint64_t m_failedCount = 0;
    std::uint64_t m_failedSize = 0;
    std::uint64_t m_totalDelSize = 0;
    double m_progressVal = 0;
    std::filesystem::path m_curDeleteFile;
    bool m_changePending = false;

    CallQueue m_calls;
    OperationQueue m_queue; // goes first
};

} // namespace brightsweep
