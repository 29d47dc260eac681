#include "app/ui/ApplicationViews.h"

#include "app/AppDelegate.h"
#include "app/AppPrefsWindowController.h"
#include "app/ui/AboutPanel.h"
#include "app/ui/MainWindow.h"
#include "app/ui/PanelPages.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/FolderUtilities.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/AlertSheet.h"
#include "ui/WindowSystem.h"
#include "volumes/ui/BubbleView.h"
#include "volumes/ui/CustomStatusItemView.h"
#include "volumes/ui/StatusPopup.h"

#include <QApplication>
#include <QMenu>

namespace brightsweep {

namespace {

// What a quick clean empties, one line for each category that is ticked as a whole.
QStringList quickCleanFolders() {
    const QString whole = QString::number(int(CategorySelection::All));
    const QStringList selections = getDefaultsValue();
    QStringList folders;
    for (unsigned category = 0; category < categoryCount; ++category) {
        if (selections.value(int(category)) != whole)
            continue;
        const auto roots = FolderUtilities::getFolderPath(category);
        if (roots.empty())
            continue;
        const QString place = paths::displayFromHome(roots.front().path);
        const QString name = localizedText(cleanCategories[category].name);
        folders += roots.size() == 1
                       ? localizedText("QUICK_CLEAN_FOLDER").arg(name, place)
                       : localizedText("QUICK_CLEAN_FOLDERS", roots.size() - 1).arg(name, place);
    }
    return folders;
}

} // namespace

ApplicationViews::ApplicationViews(AppDelegate &delegate, CustomStatusItemView &statusItem,
                                   QObject *parent)
    : QObject(parent), m_delegate(delegate) {
    m_mainWindow = std::make_unique<MainWindow>(
        AppPrefsWindowController::sharedPrefsWindowController(),
        [this](const QString &identifier, QWidget *page) {
            PanelActs acts;
            acts.showVolumes = [this] { showPopupAtWindow(); };
            acts.clean = AppPrefsWindowController::sharedPrefsWindowController().v4MainView();
            acts.duplicates =
                AppPrefsWindowController::sharedPrefsWindowController().sameFileDeleteView();
            acts.diskUsage =
                AppPrefsWindowController::sharedPrefsWindowController().diskUsageView();
            acts.memory = AppPrefsWindowController::sharedPrefsWindowController().memoryView();
            acts.loginItems =
                AppPrefsWindowController::sharedPrefsWindowController().loginItemView();
            acts.uninstall =
                AppPrefsWindowController::sharedPrefsWindowController().uninstallView();
            acts.preferences = AppPrefsWindowController::sharedPrefsWindowController().prefView();
            return makePanelPage(identifier, acts, page);
        });
    m_popup = std::make_unique<StatusPopup>(m_delegate.menu());
    if (windowsPlaceThemselves())
        m_bubbles = std::make_unique<BubbleView>(m_delegate.bubbles());
    else
        m_delegate.bubbles().setShownAsNotifications(true);
    fillApplicationMenu();

    connect(m_mainWindow.get(), &MainWindow::popupRequested, this,
            &ApplicationViews::showPopupAtWindow);
    connect(m_mainWindow.get(), &MainWindow::lookChanged, &m_delegate,
            &AppDelegate::renderStatusImageAgain);
    connect(&statusItem, &CustomStatusItemView::hostChanged, this,
            [this](bool present) { m_mainWindow->setPopupButtonShown(!present); });
    connect(&AppPrefsWindowController::sharedPrefsWindowController(),
            &AppPrefsWindowController::restartRequested, &m_delegate, &AppDelegate::restart);
    connect(&m_delegate, &AppDelegate::popupRequested, m_popup.get(), &StatusPopup::toggle);
    connect(&m_delegate, &AppDelegate::alertRequested, this, &ApplicationViews::showAlert);
    connect(&m_delegate, &AppDelegate::aboutRequested, this, &ApplicationViews::showAbout);
    connect(&m_delegate, &AppDelegate::quitting, this, &ApplicationViews::closeAll);
}

ApplicationViews::~ApplicationViews() = default;

QAction *ApplicationViews::addMenuItem(const char *name, const QString &shortcut,
                                       void (AppDelegate::*act)()) {
    auto *const action = m_mainWindow->applicationMenu().addAction(localizedText(name));
    action->setObjectName(QStringLiteral("menu.") + QLatin1String(name));
    if (!shortcut.isEmpty())
        action->setShortcut(QKeySequence(shortcut));
    connect(action, &QAction::triggered, &m_delegate, act);
    // The shortcuts hold while the menu is closed, too.
    m_mainWindow->addAction(action);
    return action;
}

void ApplicationViews::fillApplicationMenu() {
    QMenu &menu = m_mainWindow->applicationMenu();
    addMenuItem(QT_TRID_NOOP("Scan"), {}, &AppDelegate::onClickScan);
    auto *const quickClean = menu.addAction(localizedText("Quick Clean…"));
    quickClean->setObjectName(QStringLiteral("menu.Quick Clean…"));
    connect(quickClean, &QAction::triggered, this, &ApplicationViews::askForQuickClean);
    connect(&menu, &QMenu::aboutToShow, quickClean,
            [this, quickClean] { quickClean->setEnabled(m_delegate.canCleanFile()); });
    addMenuItem(QT_TRID_NOOP("Free Space"), {}, &AppDelegate::onClickFree);
    addMenuItem(QT_TRID_NOOP("Uninstall"), {}, &AppDelegate::onClickUninstall);
    menu.addSeparator();
    addMenuItem(QT_TRID_NOOP("Preferences"), QStringLiteral("Ctrl+,"), &AppDelegate::Reference);
    addMenuItem(QT_TRID_NOOP("Help"), QStringLiteral("F1"), &AppDelegate::help);
    addMenuItem(QT_TRID_NOOP("About"), {}, &AppDelegate::AboutFunCall);
    menu.addSeparator();
    addMenuItem(QT_TRID_NOOP("Quit"), QStringLiteral("Ctrl+Q"), &AppDelegate::quit);
}

void ApplicationViews::askForQuickClean() {
    const QStringList folders = quickCleanFolders();
    AlertContent content;
    content.imageName = QStringLiteral("warning.png");
    if (folders.isEmpty()) {
        const QString problem = selectionProblem();
        content.text = problem.isEmpty() ? localizedText("NO_FOLDER_CONTENT") : problem;
    } else {
        content.text = localizedText("QUICK_CLEAN_ASK");
        content.informativeText = folders.join(u'\n');
        content.isList = true;
        content.buttons = {
            {localizedText("QUICK_CLEAN"), true, [this] { m_delegate.cleaningFile(); }, false, {}},
            {localizedText("CANCEL"), false, {}, false, {}}};
    }
    AlertSheet::show(std::move(content), m_mainWindow.get());
}

void ApplicationViews::showAlert(const QString &text) {
    AlertSheet::show({QStringLiteral("error.png"), text, {}, {}, {}}, m_mainWindow.get());
}

void ApplicationViews::showAbout() {
    if (!m_about) {
        m_about = new AboutPanel(m_mainWindow->isVisible() ? m_mainWindow.get() : nullptr);
        m_about->setAttribute(Qt::WA_DeleteOnClose);
    }
    showInFront(*m_about, {});
}

void ApplicationViews::showPopupAtWindow() {
    const QPoint point = m_mainWindow->popupPoint();
    m_popup->toggle({point.x(), point.y(), windowsPlaceThemselves(), {}});
}

void ApplicationViews::closeAll() {
    for (QWidget *const window : QApplication::topLevelWidgets())
        window->hide();
}

} // namespace brightsweep
