#include "app/AppPrefsWindowController.h"

#include "cleaning/NewMainViewController.h"
#include "foundation/UserDefaults.h"

#include <array>
#include <memory>

namespace brightsweep {

namespace {

enum class ToolbarEntry { Panel, Spaces, Item };

struct PanelRow {
    ToolbarEntry kind;
    const char *label;
    const char *text;
};

// In the order of the toolbar; the stored page counts in this order.
constexpr std::array panelTable = {
    PanelRow{ToolbarEntry::Panel, "Scan", "Fast Clean"},
    PanelRow{ToolbarEntry::Panel, "duplicates_file", "Duplicates"},
    PanelRow{ToolbarEntry::Panel, "disk_usage", "Disk Usage"},
    PanelRow{ToolbarEntry::Panel, "delete", "Uninstall"},
    PanelRow{ToolbarEntry::Panel, "memory", "Free Memory"},
    PanelRow{ToolbarEntry::Panel, "login_items", "Login Items"},
    PanelRow{ToolbarEntry::Panel, "QC_FastClean", ""},
    PanelRow{ToolbarEntry::Panel, "DATA_FastClean", ""},
    PanelRow{ToolbarEntry::Panel, "QC_Duplicates", ""},
    PanelRow{ToolbarEntry::Panel, "DATA_Duplicates", ""},
    PanelRow{ToolbarEntry::Panel, "QC_DiskUsage", ""},
    PanelRow{ToolbarEntry::Panel, "DATA_DiskUsage", ""},
    PanelRow{ToolbarEntry::Spaces, "", ""},
    PanelRow{ToolbarEntry::Panel, "preferences", ""},
    PanelRow{ToolbarEntry::Item, "Help", ""},
};

constexpr int uninstallSelection = 6;

std::unique_ptr<AppPrefsWindowController> &shared() {
    // Never destroyed: the process ends without destructors.
    static auto *instance = new std::unique_ptr<AppPrefsWindowController>;
    return *instance;
}

} // namespace

AppPrefsWindowController &AppPrefsWindowController::sharedPrefsWindowController() {
    if (!shared())
        shared() = std::make_unique<AppPrefsWindowController>();
    return *shared();
}

void AppPrefsWindowController::resetSharedPrefsWindowController() {
    shared().reset();
}

AppPrefsWindowController::AppPrefsWindowController(QObject *parent)
    : DBPrefsWindowController(parent) {}

AppPrefsWindowController::~AppPrefsWindowController() = default;

void AppPrefsWindowController::readAnimationSettings() {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    setCrossFade(defaults.boolForKey(QStringLiteral("fade")));
    setShiftSlowsAnimation(defaults.boolForKey(QStringLiteral("shiftSlowsAnimation")));
}

void AppPrefsWindowController::makeCleanPage() {
    NewMainViewController::Surroundings surroundings;
    surroundings.selectedItem = [this] { return selectedItem(); };
    m_v4MainView = std::make_unique<NewMainViewController>(std::move(surroundings));
    const auto *const page = m_v4MainView.get();
    connect(page, &NewMainViewController::restartRequested, this,
            &AppPrefsWindowController::restartRequested);
    connect(page, &NewMainViewController::stateChanged, this,
            [this] { setView4FastClean(m_v4MainView->view4FastClean()); });
    connect(page, &NewMainViewController::displayPanel, this,
            [this](const QString &identifier, bool animate) {
                setView4FastClean(m_v4MainView->view4FastClean());
                displayViewForIdentifier(identifier, animate);
            });
}

void AppPrefsWindowController::setupToolbar() {
    makeCleanPage();
    for (const PanelRow &row : panelTable) {
        const QString label = QString::fromLatin1(row.label);
        switch (row.kind) {
        case ToolbarEntry::Panel:
            addView(label, QString::fromLatin1(row.text));
            break;
        case ToolbarEntry::Spaces:
            addSpaces();
            break;
        case ToolbarEntry::Item:
            addItem(label);
            break;
        }
    }
    readAnimationSettings();
}

void AppPrefsWindowController::beginToSanUninstallListWhenSelect(int selection) {
    if (selection == uninstallSelection)
        Q_EMIT beginSearchApps();
}

} // namespace brightsweep
