#include "app/ui/PanelPages.h"

#include "cleaning/ui/CleanProgressPanel.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/CleanStartPanel.h"
#include "diskusage/ui/DiskUsageProgressPanel.h"
#include "diskusage/ui/DiskUsageResultsPanel.h"
#include "diskusage/ui/DiskUsageStartPanel.h"
#include "duplicates/ui/DuplicatesProgressPanel.h"
#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/DuplicatesStartPanel.h"
#include "loginitems/ui/LoginItemsPanel.h"
#include "memory/ui/MemoryPanel.h"
#include "preferences/ui/PreferencesPanel.h"
#include "uninstall/ui/UninstallPanel.h"

#include <array>

namespace brightsweep {

namespace {

template <typename Panel>
QWidget *makeClean(const PanelActs &acts, QWidget *parent) {
    return new Panel(*acts.clean, parent);
}

template <typename Panel>
QWidget *makeDuplicates(const PanelActs &acts, QWidget *parent) {
    return new Panel(*acts.duplicates, parent);
}

template <typename Panel>
QWidget *makeDiskUsage(const PanelActs &acts, QWidget *parent) {
    return new Panel(*acts.diskUsage, parent);
}

QWidget *makeMemory(const PanelActs &acts, QWidget *parent) {
    return new MemoryPanel(*acts.memory, parent);
}

QWidget *makeLoginItems(const PanelActs &acts, QWidget *parent) {
    return new LoginItemsPanel(*acts.loginItems, parent);
}

QWidget *makeUninstall(const PanelActs &acts, QWidget *parent) {
    return new UninstallPanel(*acts.uninstall, parent);
}

QWidget *makePreferences(const PanelActs &acts, QWidget *parent) {
    return new PreferencesPanel(*acts.preferences, parent);
}

QWidget *makeCleanResults(const PanelActs &acts, QWidget *parent) {
    auto *const results = new CleanResultsPanel(*acts.clean, parent);
    QObject::connect(results, &CleanResultsPanel::volumesRequested, results, acts.showVolumes);
    return results;
}

// How the screen of each panel is made.
struct PanelMaker {
    const char *panel;
    QWidget *(*make)(const PanelActs &, QWidget *);
};

constexpr std::array panelMakers = {
    PanelMaker{"Scan", makeClean<CleanStartPanel>},
    PanelMaker{"QC_FastClean", makeClean<CleanProgressPanel>},
    PanelMaker{"DATA_FastClean", makeCleanResults},
    PanelMaker{"duplicates_file", makeDuplicates<DuplicatesStartPanel>},
    PanelMaker{"QC_Duplicates", makeDuplicates<DuplicatesProgressPanel>},
    PanelMaker{"DATA_Duplicates", makeDuplicates<DuplicatesResultsPanel>},
    PanelMaker{"disk_usage", makeDiskUsage<DiskUsageStartPanel>},
    PanelMaker{"QC_DiskUsage", makeDiskUsage<DiskUsageProgressPanel>},
    PanelMaker{"DATA_DiskUsage", makeDiskUsage<DiskUsageResultsPanel>},
    PanelMaker{"delete", makeUninstall},
    PanelMaker{"memory", makeMemory},
    PanelMaker{"preferences", makePreferences},
    PanelMaker{"login_items", makeLoginItems},
};

} // namespace

QWidget *makePanelPage(const QString &identifier, const PanelActs &acts, QWidget *parent) {
    for (const PanelMaker &row : panelMakers) {
        if (acts.clean && acts.duplicates && acts.diskUsage && acts.memory && acts.uninstall &&
            acts.loginItems && acts.preferences && identifier == QLatin1String(row.panel))
            return row.make(acts, parent);
    }
    return new QWidget(parent);
}

} // namespace brightsweep
