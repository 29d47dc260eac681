#pragma once

#include "app/AppController.h"
#include "app/RunningInstance.h"
#include "cleaning/CleanWindow.h"
#include "core/Clock.h"
#include "core/LaunchAtLogin.h"
#include "core/SettingsWatch.h"
#include "foundation/CallQueue.h"
#include "memory/ClearMemory.h"
#include "memory/cleanMemoryInfo.h"
#include "platform/StatusItem.h"
#include "volumes/BubbleController.h"
#include "volumes/StatusMenu.h"
#include "volumes/VolumeRows.h"
#include "volumes/WatchMountUnmount.h"

#include <QObject>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

struct Notification;
class RefreshLoop;

/// What the application is made of; what is left out is the usual one.
struct AppDelegateParts {
    StatusItem *statusItem = nullptr; ///< else the platform's
    Clock *clock = nullptr;           ///< else that of the event loop
    std::chrono::milliseconds refreshInterval{2000};
    /// Draws the status item's image; without it the item keeps none.
    std::function<std::vector<StatusImage>(const QString &imageName)> renderStatusImage;
    CleanWindowFactory makeCleanWindow;
    std::filesystem::path guide;     ///< what "Help" opens
    std::function<void(int)> exit;   ///< else std::_Exit
    std::function<void()> restart{}; ///< else the program takes its own place
    std::filesystem::path program{}; ///< what starts with the session; else this program
};

/// The one object of the resident program: launch, status item, menu, main loop, quit. It holds
/// the window's front, the volumes and the menu until the process ends; a view shows what its
/// signals say and calls what the user did. Main thread; one at a time. What others post on their
/// threads is handed to the main thread first.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(AppDelegateParts parts = {}, QObject *parent = nullptr);
    /// Only a test gets here. Ends the loop and waits for ejects under way.
    ~AppDelegate() override;

    // -- Launch

    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();
    void registNSnotification();
    /// Builds everything. It runs again when a purchase has succeeded, and then starts a further
    /// loop beside the one that runs.
    void addMainFuction();
    void beginTimer();

    // -- What the view shows

    StatusMenu &menu() { return m_menu; }
    BubbleController &bubbles() { return m_bubbles; }
    AppController *mainWindow() const { return m_mainWindow.get(); }
    bool isCleanWindowOpen() const { return clrSysController != nullptr; }
    /// Whether there is a quick clean window to be had.
    bool canCleanFile() const { return bool(m_parts.makeCleanWindow); }
    /// The name of the status item's image as it is now; empty where there is none.
    QString getStatusImage();
    /// The boot volume is at its alarm level or below it.
    bool getWarningValue() const;
    /// Draws the status item's image again: the look of images has changed.
    void renderStatusImageAgain();

    // -- What the user did

    void showMainWindow(const std::string &activationToken = {});
    /// A second start of the program, or its launcher entry.
    void handleReopenAppEvent(const InstanceRequest &request);
    void onClickScan() { showPage(scanRow, "Scan"); }
    void onClickUninstall() { showPage(uninstallRow, "delete"); }
    void onClickFree() { showPage(freeSpaceRow, "disk_usage"); }
    /// The preferences.
    void Reference();
    void AboutFunCall();
    void help();
    /// The quick clean window.
    void cleaningFile();
    void rejestAllDisk();
    /// `state` is the one that the menu's item has; the other one is wanted.
    void launchAppWhenLogin(int state);
    /// Ends the process with status 1, with no confirmation.
    void quit();
    /// Starts the program anew in the place of this process, with its window shown.
    void restart();

    // -- The menu's content

    void addMenu();
    void showMenuBar();
    void addOtherItem();
    void openMainWindow();
    /// One refresh: the figures of every row, of the memory and of the status item.
    void updateDataForMenuItem();
    /// Enumerates anew; null without a boot volume.
    const DSVolumeInfo *getBootVolume();
    void setStatusIamge();
    void setWarningStatusShowColor(bool warning);
    void setStatusBarHidden(bool hidden);
    void refMenuItemWhenDeleteAndAdd();

Q_SIGNALS:
    /// The status item was clicked: open the menu there, or close it.
    void popupRequested(const brightsweep::StatusActivation &activation);
    void statusImageChanged(const QString &imageName);
    void statusWarningChanged(bool warning);
    /// A message with the stop icon.
    void alertRequested(const QString &text);
    void aboutRequested();
    /// The window for quitting: everything of the user interface goes now.
    void quitting();

private:
    static constexpr int scanRow = 0;
    static constexpr int uninstallRow = 8;
    static constexpr int freeSpaceRow = 9;

    using Handler = void (AppDelegate::*)(const Notification &);
    void observe(const QString &name, Handler handler);
    void handleMount(const Notification &notification);
    void handleUnmount(const Notification &notification);
    void handleOpenFinder(const Notification &notification);
    void handleRebuild(const Notification &) { refMenuItemWhenDeleteAndAdd(); }
    void handleStatusBarHidden(const Notification &notification);
    void handleSetting(const Notification &notification);
    void handleLaunchAtLogin(const Notification &notification);
    void handlePurchase(const Notification &) { addMainFuction(); }
    void handleCloseCleanWindow(const Notification &notification);
    void cleanMemoryClickAction(const Notification &notification);

    void showPage(int row, const char *page, const std::string &activationToken = {});
    void reopen(const InstanceRequest &request);
    void scanNow(const std::string &activationToken);
    void runAsMain();
    void tellWithoutHost();
    void menuAction(MenuAction action);
    void openFinderWhenClickItems(const std::filesystem::path &path);
    void rebuildMenu();
    void freeMemoryListView();
    MenuItem memoryRow();
    void updateMemoryRow();
    void readMemory();
    void showBootVolume(const DSVolumeInfo &volume);
    void showToolTip(const QString &title, const QString &text);
    void showImage(const QString &name);

    AppDelegateParts m_parts;
    StatusItem &_statusItem;
    Clock &m_clock;
    CallQueue m_queue;
    StatusMenu m_menu;
    BubbleController m_bubbles;
    VolumeRows m_volumes;
    RunningInstance m_instance;
    SettingsWatch m_settingsWatch;
    LaunchAtLogin::Watch m_launchWatch;
    std::unique_ptr<WatchMountUnmount> watchMu;
    std::unique_ptr<AppController> m_mainWindow;
    std::unique_ptr<CleanWindow> clrSysController;
    std::unique_ptr<ClearMemory> _clearMemory;
    cleanMemoryInfo _cleanMemInfo;
    MemoryInfo _memoryInfo;
    bool m_releaseSeen = false; ///< the menu has closed since the last release ended
    std::vector<std::unique_ptr<RefreshLoop>> m_loops;

    QString statusFreeSpace;
    QString statusTotalSpace;
    QString m_statusImage;
    QString m_toolTipTitle;
    QString m_toolTipText;
    QString m_title;
    std::optional<bool> m_warning;
    bool m_statusItemMade = false;
    Clock::Handle m_hostTimer = 0;
};

} // namespace brightsweep
