#include "app/ui/MainWindow.h"

#include "app/DBPrefsWindowController.h"
#include "app/ui/PanelToolBar.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "foundation/UserDefaults.h"
#include "ui/Theme.h"
#include "ui/WindowSystem.h"

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QPropertyAnimation>
#include <QScreen>
#include <QShortcut>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace brightsweep {

namespace {

constexpr int stayAboveLevel = 9;
constexpr int leastMenuWidth = 200;
constexpr int titleBarHeight = 32;
constexpr std::chrono::milliseconds sizeSettles{500};

// Of the window, where the screen has room.
constexpr QSize firstSize(1080, 680);

QSize storedSize() {
    const QStringList parts =
        UserDefaults::standardUserDefaults().stringForKey(mainWindowSizeKey).split(u'x');
    return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize();
}

// A plain QWidget would be told to screen readers as a part of some window.
QAccessibleInterface *accessibleWindow(const QString &, QObject *object) {
    auto *const window = qobject_cast<MainWindow *>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

MainWindow::MainWindow(DBPrefsWindowController &controller, PanelMaker panelMaker)
    : m_controller(controller),
      m_panelMaker(std::move(panelMaker)),
      m_toolbar(new PanelToolBar(this)),
      m_menu(new QMenu(this)),
      contentSubview(new QWidget(this)),
      m_panels(new QStackedLayout(contentSubview)),
      viewAnimation(new QPropertyAnimation(this, "size", this)),
      m_sizeSettled(new QTimer(this)) {
    QAccessible::installFactory(accessibleWindow); // once, however often it is called
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(m_controller.title());
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolbar);
    layout->addWidget(contentSubview, 1);
    viewAnimation->setEasingCurve(QEasingCurve::InOutQuad);
    // Larger text may need a larger window; smaller text leaves the user's.
    connect(&theme::look(), &theme::Look::changed, this, [this] {
        if (QWidget *const panel = currentPanel()) {
            resizeToPanel(fittingScreen(panel->sizeHint()), false);
            keepOnScreen();
        }
    });
    m_sizeSettled->setSingleShot(true);
    m_sizeSettled->setInterval(sizeSettles);
    connect(m_sizeSettled, &QTimer::timeout, this, &MainWindow::rememberSize);

    connect(&m_controller, &DBPrefsWindowController::displayPanel, this, &MainWindow::displayPanel);
    connect(&m_controller, &DBPrefsWindowController::selectedItemChanged, this,
            [this](const QString &identifier) {
                ensureToolBar();
                m_toolbar->setSelectedItemIdentifier(identifier);
            });
    connect(&m_controller, &DBPrefsWindowController::titleChanged, this,
            &MainWindow::setWindowTitle);
    connect(&m_controller, &DBPrefsWindowController::windowShown, this, &MainWindow::comeForward);
    connect(&m_controller, &DBPrefsWindowController::centreRequested, this,
            &MainWindow::moveToCentre);
    connect(&m_controller, &DBPrefsWindowController::levelChanged, this, &MainWindow::setLevel);
    connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this,
            &MainWindow::openApplicationMenu);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this,
            &MainWindow::close);
}

void MainWindow::ensureToolBar() {
    if (m_menuButton)
        return;
    for (const ToolbarItem &item : m_controller.toolbarItems()) {
        if (item.identifier == toolbarFlexibleSpaceIdentifier)
            m_toolbar->addFlexibleSpace();
        else if (item.identifier == toolbarSpaceIdentifier)
            m_toolbar->addSpace();
        else
            m_toolbar->addItem(item.identifier, localizedText(item.text), item.image,
                               localizedText(item.name), m_controller.hasPanel(item.identifier));
    }
    connect(m_toolbar, &PanelToolBar::pressed, this, [this](const QString &identifier) {
        if (m_toolbar->item(identifier) == m_menuButton)
            openApplicationMenu();
        else if (m_toolbar->item(identifier) == m_popupButton)
            Q_EMIT popupRequested();
        else
            m_controller.toggleActivePreferenceView(identifier);
    });
    m_popupButton = m_toolbar->addItem(QStringLiteral("popup"), {}, QStringLiteral("disk_ico.png"),
                                       localizedText("VOLUMES_AND_MEMORY"), false);
    m_popupButton->setVisible(m_popupButtonShown);
    m_menuButton =
        m_toolbar->addItem(QStringLiteral("menu"), {}, QStringLiteral("application_menu.png"),
                           localizedText("MENU"), false);
}

void MainWindow::setPopupButtonShown(bool shown) {
    m_popupButtonShown = shown;
    if (m_popupButton)
        m_popupButton->setVisible(shown);
}

QPoint MainWindow::popupPoint() const {
    const QWidget &place = m_popupButton && m_popupButtonShown
                               ? static_cast<const QWidget &>(*m_popupButton)
                               : static_cast<const QWidget &>(*m_toolbar);
    return place.mapToGlobal(QPoint(place.width() / 2, place.height()));
}

QWidget *MainWindow::currentPanel() const {
    return m_panels->currentWidget();
}

void MainWindow::displayPanel(const QString &identifier, bool animate) {
    ensureToolBar();
    QWidget *&panel = m_panelViews[identifier];
    if (!panel) {
        panel = m_panelMaker(identifier, contentSubview);
        panel->setObjectName(QStringLiteral("panel.") + identifier);
        m_panels->addWidget(panel);
    }
    const QSize least = fittingScreen(panel->sizeHint());
    // A key that chose the panel stays on its item.
    const bool fromToolbar = focusWidget() && m_toolbar->isAncestorOf(focusWidget());
    m_panels->setCurrentWidget(panel);
    if (!fromToolbar)
        panel->setFocus(Qt::OtherFocusReason);
    // The panels change at once; only the window's frame takes its time.
    resizeToPanel(least, animate);
}

// A small screen shows less than a panel would like.
QSize MainWindow::fittingScreen(const QSize &panel) const {
    const QScreen *const place = screen();
    if (!place)
        return panel;
    const QSize room = place->availableGeometry().size() -
                       QSize(0, m_toolbar->sizeHint().height() + titleBarHeight);
    return panel.boundedTo(room);
}

void MainWindow::resizeToPanel(const QSize &least, bool animate) {
    const QSize bar(0, m_toolbar->sizeHint().height());
    const QSize stored = storedSize();
    const QSize present =
        isVisible() ? size() - bar : fittingScreen(stored.isValid() ? stored : firstSize - bar);
    const QSize wanted = present.expandedTo(least);
    const QSize content = isVisible() ? present : wanted;
    const QRect now = isVisible() ? geometry() : QRect(pos(), content + bar);
    contentSubview->setMinimumSize(least.expandedTo({0, 0}));
    const QRect frame = DBPrefsWindowController::frameForView(now, content, wanted);
    viewAnimation->stop();
    if (!isVisible() || !animate || theme::appearance().reducedMotion || frame.size() == size()) {
        resize(frame.size());
        return;
    }
    const bool shift = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ShiftModifier);
    viewAnimation->setDuration(int(m_controller.crossFadeDuration(shift).count()));
    viewAnimation->setStartValue(size());
    viewAnimation->setEndValue(frame.size());
    viewAnimation->start();
}

void MainWindow::comeForward() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    if (!isVisible())
        moveToCentre();
    showInFront(*this, m_controller.takeActivationToken());
}

void MainWindow::moveToCentre() {
    const QScreen *const place = screen();
    if (!place)
        return;
    ensureToolBar();
    const QRect available = place->availableGeometry();
    const QPoint corner = available.center() - QRect(QPoint(), frameGeometry().size()).center();
    // The title bar and the toolbar are to be seen in any case.
    move(std::max(corner.x(), available.left()), std::max(corner.y(), available.top()));
}

// What has grown beyond an edge of the screen comes back, as far as it fits.
void MainWindow::keepOnScreen() {
    const QScreen *const place = screen();
    if (!place || !isVisible() || isMaximized() || isFullScreen())
        return;
    const QRect available = place->availableGeometry();
    const QRect frame = frameGeometry();
    const QPoint most = available.bottomRight() - frame.bottomRight() + frame.topLeft();
    move(std::max(std::min(frame.left(), most.x()), available.left()),
         std::max(std::min(frame.top(), most.y()), available.top()));
}

void MainWindow::setLevel(int levelKey) {
    const bool above = levelKey >= stayAboveLevel;
    if (windowFlags().testFlag(Qt::WindowStaysOnTopHint) == above)
        return;
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, above);
    // A change of the flags hides the window.
    if (shown)
        show();
}

void MainWindow::openApplicationMenu() {
    if (!m_menuButton || m_menu->isEmpty())
        return;
    m_menu->setMinimumWidth(theme::height(leastMenuWidth));
    const int wide = m_menu->sizeHint().expandedTo(m_menu->minimumSize()).width();
    const int left = isRightToLeft() ? 0 : m_menuButton->width() - wide;
    m_menu->popup(m_menuButton->mapToGlobal(QPoint(left, m_menuButton->height())));
    m_menu->setActiveAction(m_menu->actions().constFirst());
}

void MainWindow::rememberSize() {
    if (!isVisible() || isMaximized() || isFullScreen())
        return;
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const QSize size = contentSubview->size();
    const QString words = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    if (defaults.stringForKey(mainWindowSizeKey) == words)
        return;
    defaults.setObject(mainWindowSizeKey, words);
    defaults.synchronize();
}

void MainWindow::closeEvent(QCloseEvent *event) {
    rememberSize();
    m_controller.windowWillClose();
    QWidget::closeEvent(event);
}

void MainWindow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    if (viewAnimation->state() != QPropertyAnimation::Running)
        m_sizeSettled->start();
}

void MainWindow::changeEvent(QEvent *event) {
    if (event->type() == QEvent::PaletteChange)
        Q_EMIT lookChanged();
    QWidget::changeEvent(event);
}

void MainWindow::paintEvent(QPaintEvent *) {
    QPainter(this).fillRect(rect(), theme::window());
    if (!std::exchange(m_painted, true))
        Q_EMIT firstFramePainted();
}

} // namespace brightsweep
