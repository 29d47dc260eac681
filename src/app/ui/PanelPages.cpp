#include "app/ui/PanelPages.h"

#include "app/ui/EmptyPanel.h"
#include "cleaning/ui/CleanProgressPanel.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/CleanStartPanel.h"
#include "core/MacLog.h"
#include "core/Texts.h"
#include "foundation/Identity.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"
#include "volumes/VolumeNotifications.h"

#include <QDir>
#include <QStandardPaths>

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

void openHome(const PanelActs &) {
    openFolder(homeFolder());
}

void showVolumes(const PanelActs &acts) {
    acts.showVolumes();
}

void openApplications(const PanelActs &) {
    std::vector<fs::path> folders;
    // The system's folder, the last one, holds most.
    for (const QString &folder :
         QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation))
        folders.insert(folders.begin(), fs::path(QFile::encodeName(folder).toStdString()));
    openFirst(folders);
}

void freeMemory(const PanelActs &) {
    NotificationCenter::defaultCenter().post(cleanMemoryClickActionNotification);
}

void openAutostart(const PanelActs &) {
    const fs::path settings = environmentFolder("XDG_CONFIG_HOME", ".config");
    openFirst({settings / "autostart", "/etc/xdg/autostart", settings});
}

void showLog(const PanelActs &) {
    Platform::current().workspace->reveal(MacLog::supportFolder() / logFileName);
}

struct EmptyPage {
    const char *panel;
    const char *image;
    const char *title;
    const char *sentenceKey;
    const char *actKey;
    void (*act)(const PanelActs &);
};

constexpr std::array emptyPages = {
    EmptyPage{"duplicates_file", "start_duplicates.png", "Duplicates",
              QT_TRID_NOOP("EMPTY_DUPLICATES"), QT_TRID_NOOP("OPEN_HOME"), openHome},
    EmptyPage{"disk_usage", "start_disk_usage.png", "Disk Usage", QT_TRID_NOOP("EMPTY_DISK_USAGE"),
              QT_TRID_NOOP("SHOW_VOLUMES"), showVolumes},
    EmptyPage{"delete", "start_uninstall.png", "Uninstall", QT_TRID_NOOP("EMPTY_UNINSTALL"),
              QT_TRID_NOOP("OPEN_APPLICATIONS"), openApplications},
    EmptyPage{"memory", "start_memory.png", "Free Memory", QT_TRID_NOOP("EMPTY_MEMORY"),
              QT_TRID_NOOP("FREE_MEMORY_NOW"), freeMemory},
    EmptyPage{"login_items", "start_login_items.png", "Login Items",
              QT_TRID_NOOP("EMPTY_LOGIN_ITEMS"), QT_TRID_NOOP("OPEN_AUTOSTART"), openAutostart},
    EmptyPage{"preferences", "start_preferences.png", "Preferences",
              QT_TRID_NOOP("EMPTY_PREFERENCES"), QT_TRID_NOOP("SHOW_LOG"), showLog},
};

// The panels of a feature's later states.
constexpr struct {
    const char *ending;
    const char *panel;
} laterStates[] = {
    {"_Duplicates", "duplicates_file"},
    {"_DiskUsage", "disk_usage"},
};

const EmptyPage &pageOf(const QString &identifier) {
    QString panel = identifier;
    for (const auto &state : laterStates) {
        if (identifier.endsWith(QLatin1String(state.ending)))
            panel = QLatin1String(state.panel);
    }
    for (const EmptyPage &page : emptyPages) {
        if (panel == QLatin1String(page.panel))
            return page;
    }
    return emptyPages.front();
}

} // namespace

QWidget *makePanelPage(const QString &identifier, const PanelActs &acts, QWidget *parent) {
    if (acts.clean) {
        if (identifier == QLatin1String("Scan"))
            return new CleanStartPanel(*acts.clean, parent);
        if (identifier == QLatin1String("QC_FastClean"))
            return new CleanProgressPanel(*acts.clean, parent);
        if (identifier == QLatin1String("DATA_FastClean")) {
            auto *const results = new CleanResultsPanel(*acts.clean, parent);
            QObject::connect(results, &CleanResultsPanel::volumesRequested, results,
                             acts.showVolumes);
            return results;
        }
    }
    const EmptyPage &page = pageOf(identifier);
    return new EmptyPanel({QLatin1String(page.image), QLatin1String(page.title),
                           localizedText(page.sentenceKey), localizedText(page.actKey),
                           [act = page.act, acts] { act(acts); }},
                          parent);
}

} // namespace brightsweep
