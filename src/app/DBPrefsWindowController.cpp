#include "app/DBPrefsWindowController.h"

#include "app/PageTable.h"
#include "core/SettingKeys.h"
#include "foundation/Log.h"
#include "foundation/UserDefaults.h"

namespace brightsweep {

namespace {

constexpr QLatin1String helpIdentifier("Help");
constexpr QLatin1String uninstallIdentifier("delete");
constexpr std::chrono::milliseconds usualDuration{250};
constexpr std::chrono::milliseconds slowDuration{1250};

} // namespace

QList<ToolbarItem> DBPrefsWindowController::toolbarItems() const {
    QList<ToolbarItem> items;
    for (const QString &identifier : m_identifiers) {
        if (const auto found = m_items.find(identifier); found != m_items.end())
            items += *found;
    }
    return items;
}

void DBPrefsWindowController::showWindow() {
    if (!alreadyInitilized) {
        m_identifiers.clear();
        m_panels.clear();
        m_items.clear();
        setupToolbar();
        if (m_identifiers.isEmpty()) {
            NSLog("No items were added to the toolbar in -setupToolbar.");
            return;
        }
        center();
        alreadyInitilized = true;
    }
    const QString identifier = storedItem();
    setSelectedItem(identifier);
    displayViewForIdentifier(panelForIdentifier(identifier), false);
    m_visible = true;
    Q_EMIT windowShown();
}

QString DBPrefsWindowController::storedItem() const {
    const auto index = UserDefaults::standardUserDefaults().unsignedForKey(DSToobarItem);
    // What is stored may be anything; without a panel the window would stay empty.
    if (index < std::uint64_t(m_identifiers.size()) && hasPanel(m_identifiers[qsizetype(index)]))
        return m_identifiers[qsizetype(index)];
    return m_identifiers.constFirst();
}

void DBPrefsWindowController::toggleActivePreferenceView(const QString &identifier) {
    if (const Page *const page = pageWithIdentifier(identifier); page && !page->atTheEnd) {
        UserDefaults &defaults = UserDefaults::standardUserDefaults();
        defaults.setObject(DSToobarItem, int(page - pageTable.data()));
        defaults.synchronize();
    }
    // The help has no panel: the page on show stays the selected one, and goes on by itself.
    if (hasPanel(identifier))
        setSelectedItem(identifier);
    displayViewForIdentifier(panelForIdentifier(identifier), true);
}

QString DBPrefsWindowController::panelForIdentifier(const QString &identifier) const {
    const Page *const page = pageWithIdentifier(identifier);
    if (!page || !page->state)
        return identifier;
    const auto state = std::uint64_t((this->*page->state)());
    return state < page->panels.size() ? QString(QLatin1String(page->panels[state])) : identifier;
}

void DBPrefsWindowController::displayViewForIdentifier(const QString &identifier, bool animate) {
    if (identifier == helpIdentifier) {
        Q_EMIT helpRequested();
        return;
    }
    if (!hasPanel(identifier))
        return;
    if (identifier != m_currentPanel) {
        m_currentPanel = identifier;
        Q_EMIT displayPanel(identifier, animate);
    }
    Q_EMIT titleChanged(title());
    // The list is made anew also when the page was on show already.
    if (identifier == uninstallIdentifier)
        beginToSanUninstallListWhenSelect(uninstallSelection);
}

void DBPrefsWindowController::setSelectedItem(const QString &identifier) {
    if (m_selectedItem == identifier)
        return;
    m_selectedItem = identifier;
    Q_EMIT selectedItemChanged(identifier);
}

void DBPrefsWindowController::setLevel(int levelKey) {
    m_levelKey = levelKey;
    Q_EMIT levelChanged(levelKey);
}

void DBPrefsWindowController::center() {
    Q_EMIT centreRequested();
}

void DBPrefsWindowController::windowWillClose() {
    NSLog("main window will close.");
    m_visible = false;
}

QString DBPrefsWindowController::title() const {
    return QStringLiteral("Brightsweep");
}

std::chrono::milliseconds DBPrefsWindowController::crossFadeDuration(bool shiftPressed) const {
    return _crossFade && _shiftSlowsAnimation && shiftPressed ? slowDuration : usualDuration;
}

QRect DBPrefsWindowController::frameForView(const QRect &windowFrame, const QSize &content,
                                            const QSize &panel) {
    const int toolbarHeight = windowFrame.height() - content.height();
    return {windowFrame.topLeft(), QSize(panel.width(), panel.height() + toolbarHeight)};
}

void DBPrefsWindowController::addView(const QString &label, const QString &text,
                                      const QString &name) {
    m_identifiers += label;
    m_panels += label;
    if (label.startsWith(QLatin1String("QC_")) || label.startsWith(QLatin1String("DATA_")))
        return;
    m_items.insert(label, {label, text, name, label});
}

void DBPrefsWindowController::addItem(const QString &label, const QString &name) {
    m_identifiers += label;
    m_items.insert(label, {label, {}, name, label});
}

void DBPrefsWindowController::addSpaces() {
    for (const QLatin1String space : {toolbarFlexibleSpaceIdentifier, toolbarSpaceIdentifier}) {
        m_identifiers += space;
        m_items.insert(space, {space, {}, {}, {}});
    }
}

} // namespace brightsweep
