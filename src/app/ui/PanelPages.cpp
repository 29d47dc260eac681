#include "app/ui/PanelPages.h"

#include "app/PageTable.h"
#include "app/ui/EmptyPanel.h"
#include "cleaning/ui/CleanProgressPanel.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/CleanStartPanel.h"
#include "core/MacLog.h"
#include "core/Texts.h"
#include "diskusage/ui/DiskUsageProgressPanel.h"
#include "diskusage/ui/DiskUsageResultsPanel.h"
#include "diskusage/ui/DiskUsageStartPanel.h"
#include "duplicates/ui/DuplicatesProgressPanel.h"
#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/DuplicatesStartPanel.h"
#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "memory/ui/MemoryPanel.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"
#include "preferences/ui/PreferencesPanel.h"
#include "uninstall/ui/UninstallPanel.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

void openFolder(const fs::path &folder) {
    Platform::current().workspace->open(folder);
}

// The first of the folders that is there.
void openFirst(const std::vector<fs::path> &folders) {
    std::error_code error;
    for (const fs::path &folder : folders) {
        if (fs::is_directory(folder, error)) {
            openFolder(folder);
            return;
        }
    }
}

void openAutostart(const PanelActs &) {
    const fs::path settings = environmentFolder("XDG_CONFIG_HOME", ".config");
    openFirst({settings / "autostart", "/etc/xdg/autostart", settings});
}

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

// What a page that has no screen yet says and offers.
struct EmptyPage {
    const char *page;
    const char *image;
    const char *sentenceKey;
    const char *actKey;
    void (*act)(const PanelActs &);
};

constexpr std::array emptyPages = {
    EmptyPage{"login_items", "start_login_items.png", QT_TRID_NOOP("EMPTY_LOGIN_ITEMS"),
              QT_TRID_NOOP("OPEN_AUTOSTART"), openAutostart},
};

QWidget *makeEmpty(const Page &page, const PanelActs &acts, QWidget *parent) {
    const auto *row = std::find_if(emptyPages.begin(), emptyPages.end(), [&](const auto &each) {
        return QLatin1String(each.page) == QLatin1String(page.identifier);
    });
    if (row == emptyPages.end())
        row = emptyPages.begin();
    return new EmptyPanel({QLatin1String(row->image), localizedText(page.title),
                           localizedText(row->sentenceKey), localizedText(row->actKey),
                           [act = row->act, acts] { act(acts); }},
                          parent);
}

// The panels that have a screen of their own; those of the other pages are empty pages.
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
};

} // namespace

QWidget *makePanelPage(const QString &identifier, const PanelActs &acts, QWidget *parent) {
    for (const PanelMaker &row : panelMakers) {
        if (acts.clean && acts.duplicates && acts.diskUsage && acts.memory && acts.uninstall &&
            acts.preferences && identifier == QLatin1String(row.panel))
            return row.make(acts, parent);
    }
    const Page *const page = pageOfPanel(identifier);
    return page ? makeEmpty(*page, acts, parent) : new QWidget(parent);
}

} // namespace brightsweep
