#include "app/AppDelegate.h"

#include "app/AppPrefsWindowController.h"
#include "app/RefreshLoop.h"
#include "cleaning/NewMainViewController.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "core/UtilityObject.h"
#include "diskusage/DiskUsageAppController.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "platform/DesktopNotifier.h"
#include "platform/Platform.h"
#include "platform/VolumeSource.h"
#include "platform/Workspace.h"
#include "preferences/PreferenceViewController.h"
#include "volumes/VolumeNotifications.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QThread>

namespace brightsweep {

namespace {

constexpr std::chrono::seconds hostPatience{10};

} // namespace

AppDelegate::AppDelegate(AppDelegateParts parts, QObject *parent)
    : QObject(parent),
      m_parts(std::move(parts)),
      _statusItem(m_parts.statusItem ? *m_parts.statusItem : *Platform::current().statusItem),
      m_clock(m_parts.clock ? *m_parts.clock : Clock::eventLoop()),
      m_bubbles(m_clock),
      m_volumes(m_menu, m_bubbles, [this](const std::string &token) { scanNow(token); }),
      m_instance({[this](const InstanceRequest &request) { reopen(request); },
                  [this] {
                      Q_EMIT quitting();
                      _statusItem.setShown(false);
                  },
                  m_parts.exit, m_parts.restart}),
      m_launchWatch(m_parts.program) {
    connect(&m_menu, &StatusMenu::actionTriggered, this, &AppDelegate::menuAction);
    connect(&m_menu, &StatusMenu::menuVisibleChanged, this, [this](bool visible) {
        if (visible)
            updateMemoryRow();
        else
            m_releaseSeen = !_clearMemory || !_clearMemory->isUncollected();
    });
    connect(&m_volumes, &VolumeRows::bootVolumeSeen, this, &AppDelegate::showBootVolume);
    connect(&m_volumes, &VolumeRows::warningChanged, this, &AppDelegate::setWarningStatusShowColor);
}

AppDelegate::~AppDelegate() {
    NotificationCenter::defaultCenter().removeObserver(this);
    Platform::current().volumes->setFactsHandler(nullptr);
    _statusItem.setActivatedHandler(nullptr);
    m_clock.cancel(m_hostTimer);
    m_loops.clear();
}

void AppDelegate::applicationWillFinishLaunching() {
    m_instance.listen();
}

void AppDelegate::applicationDidFinishLaunching() {
    registNSnotification();
    addMainFuction();
    m_hostTimer = m_clock.callAfter(hostPatience, [this] { tellWithoutHost(); });
    m_instance.launched();
}

void AppDelegate::observe(const QString &name, Handler handler) {
    NotificationCenter::defaultCenter().addObserver(
        this, name, [this, handler](const Notification &notification) {
            if (QThread::currentThread() == thread())
                (this->*handler)(notification);
            else
                m_queue.post([this, handler, notification] { (this->*handler)(notification); });
        });
}

void AppDelegate::registNSnotification() {
    observe(DSVolumeMountNotification, &AppDelegate::handleMount);
    observe(DSVolumeUnmountNotification, &AppDelegate::handleUnmount);
    observe(openFinderWhenClickItemsNotification, &AppDelegate::handleOpenFinder);
    observe(refMenuItemWhenDeleteAndAddNotification, &AppDelegate::handleRebuild);
    observe(DSShouldCloseWindow, &AppDelegate::handleCloseCleanWindow);
    observe(cleanMemoryClickActionNotification, &AppDelegate::cleanMemoryClickAction);
    observe(QStringLiteral("PurchaseSuccess"), &AppDelegate::handlePurchase);
    observe(setStatusBarHiddenNotification, &AppDelegate::handleStatusBarHidden);
    observe(UserDefaultsDidChangeNotification, &AppDelegate::handleSetting);
    observe(LaunchAtLoginDidChangeNotification, &AppDelegate::handleLaunchAtLogin);
}

// A setting is used as soon as it is made, here or elsewhere.
void AppDelegate::handleSetting(const Notification &notification) {
    const QString key = notification.userInfo.value(QStringLiteral("key")).toString();
    if (key == DSSpaceAlarmKey || key == DSMemoryAlarmKey) {
        if (watchMu)
            updateDataForMenuItem();
    } else if (key == DSShowStatusItem) {
        setStatusBarHidden(PreferenceViewController::getHiddenStatusItem());
    } else if (key == DSLoginCheckKey) {
        m_menu.setChecked(MenuAction::LaunchAtLogin, LaunchAtLogin::isOn());
    } else if (notification.userInfo.value(QStringLiteral("elsewhere")).toBool()) {
        AppPrefsWindowController::sharedPrefsWindowController().showCategorySetting(key);
    }
}

void AppDelegate::handleLaunchAtLogin(const Notification &) {
    m_menu.setChecked(MenuAction::LaunchAtLogin, LaunchAtLogin::isOn());
}

void AppDelegate::addMainFuction() {
    PreferenceViewController::setLastClickRow(0);
    UtilityFunction::callSelectNotificationForMainWindowLeft(
        PreferenceViewController::getLastClickRow());
    _clearMemory.reset();
    m_menu.removeItems();
    // A watcher takes its handler away when it goes, so the old one goes first.
    watchMu.reset();
    VolumeSource &source = *Platform::current().volumes;
    watchMu = std::make_unique<WatchMountUnmount>(source);
    m_volumes.begin(source);
    source.setFactsHandler(
        [] { NotificationCenter::defaultCenter().post(refMenuItemWhenDeleteAndAddNotification); });
    addMenu();
    showMenuBar();
    addOtherItem();
    _statusItem.setShown(!PreferenceViewController::getHiddenStatusItem());
    if (LaunchAtLogin::readeFileOfLaunchAppWhenLogin().toInt() == 0) {
        m_mainWindow->showMainWindow();
        UtilityFunction::callSelectNotificationForMainWindowLeft(0);
    }
    beginTimer();
}

void AppDelegate::beginTimer() {
    m_loops.push_back(std::make_unique<RefreshLoop>(m_parts.refreshInterval,
                                                    [this] { updateDataForMenuItem(); }));
}

void AppDelegate::tellWithoutHost() {
    m_hostTimer = 0;
    if (_statusItem.hostPresent() ||
        AppPrefsWindowController::sharedPrefsWindowController().isVisible())
        return;
    DesktopNotification notification;
    notification.summary = localizedText("RUNS_WITHOUT_ITEM");
    notification.body = localizedText("RUNS_WITHOUT_ITEM_HOW");
    notification.actionLabel = localizedText("Open");
    notification.action = [self = QPointer(this)](const std::string &token) {
        if (self)
            self->showMainWindow(token);
    };
    Platform::current().notifier->show(notification);
}

void AppDelegate::openMainWindow() {
    if (m_mainWindow)
        return;
    m_mainWindow = std::make_unique<AppController>();
    connect(&AppPrefsWindowController::sharedPrefsWindowController(),
            &DBPrefsWindowController::helpRequested, this, &AppDelegate::help);
    m_mainWindow->awakeFromNib();
}

void AppDelegate::showMainWindow(const std::string &activationToken) {
    openMainWindow();
    m_mainWindow->showMainWindow(activationToken);
    UtilityFunction::callSelectNotificationForMainWindowLeft(
        PreferenceViewController::getLastClickRow());
}

void AppDelegate::handleReopenAppEvent(const InstanceRequest &request) {
    m_instance.handleReopenAppEvent(request);
}

void AppDelegate::reopen(const InstanceRequest &request) {
    showMainWindow(request.activationToken);
    auto &window = AppPrefsWindowController::sharedPrefsWindowController();
    switch (request.page) {
    case RequestedPage::None:
        break;
    case RequestedPage::Duplicates:
        window.toggleActivePreferenceView(QStringLiteral("duplicates_file"));
        if (!request.folder.empty())
            window.sameFileDeleteView()->viewDragAction(request.folder);
        break;
    case RequestedPage::Usage:
        window.toggleActivePreferenceView(QStringLiteral("disk_usage"));
        if (!request.folder.empty())
            window.diskUsageView()->viewDragAction(request.folder);
        break;
    }
}

void AppDelegate::scanNow(const std::string &activationToken) {
    showPage(scanRow, "Scan", activationToken);
    NewMainViewController &page =
        *AppPrefsWindowController::sharedPrefsWindowController().v4MainView();
    using State = NewMainViewController::State;
    if ((page.state() == State::Idle || page.state() == State::Results) && !page.needsRestart())
        page.clickScanBtn();
}

void AppDelegate::showPage(int row, const char *page, const std::string &activationToken) {
    showMainWindow(activationToken);
    AppPrefsWindowController::sharedPrefsWindowController().toggleActivePreferenceView(
        QLatin1String(page));
    // The text only fills the place of the first element.
    const QVariantList object{QStringLiteral("s"), row};
    NotificationCenter::defaultCenter().post(shouldSelectRowNotification, nullptr,
                                             {{QStringLiteral("object"), object}});
}

void AppDelegate::Reference() {
    openMainWindow();
    auto &window = AppPrefsWindowController::sharedPrefsWindowController();
    const QString preferences = QStringLiteral("preferences");
    window.showWindow();
    window.displayViewForIdentifier(preferences, true);
    window.setSelectedItem(preferences);
}

void AppDelegate::AboutFunCall() {
    Q_EMIT aboutRequested();
}

void AppDelegate::help() {
    if (m_parts.guide.empty() || !Platform::current().workspace->open(m_parts.guide))
        Q_EMIT alertRequested(localizedText("NO_GUIDE"));
}

void AppDelegate::cleaningFile() {
    if (!canCleanFile())
        return;
    if (!clrSysController)
        clrSysController = m_parts.makeCleanWindow();
    clrSysController->resetStatus();
    clrSysController->showWindow();
}

void AppDelegate::handleCloseCleanWindow(const Notification &) {
    if (clrSysController) {
        clrSysController->close();
        // It may be the window's own call that led here, so it goes from the event loop.
        m_queue.post([window = std::shared_ptr<CleanWindow>(std::move(clrSysController))] {});
    }
    runAsMain();
}

void AppDelegate::runAsMain() {
    UtilityObject::getMyObject().isCanBeAction = true;
}

void AppDelegate::launchAppWhenLogin(int state) {
    const int wanted = state == 0 ? 1 : 0;
    m_menu.setChecked(MenuAction::LaunchAtLogin, wanted == 1);
    LaunchAtLogin::launchAppWhenLogin(wanted, [this](const QString &problem) {
        if (!problem.isEmpty())
            Q_EMIT alertRequested(problem);
    });
}

void AppDelegate::menuAction(MenuAction action) {
    switch (action) {
    case MenuAction::EjectAll:
        return rejestAllDisk();
    case MenuAction::MainWindow:
        return showMainWindow();
    case MenuAction::LaunchAtLogin:
        return launchAppWhenLogin(m_menu.isChecked(MenuAction::LaunchAtLogin) ? 1 : 0);
    case MenuAction::Quit:
        return quit();
    case MenuAction::None:
        break;
    }
}

void AppDelegate::restart() {
    m_instance.restart();
}

void AppDelegate::quit() {
    m_instance.quit();
}

} // namespace brightsweep
