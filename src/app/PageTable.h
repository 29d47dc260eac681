#pragma once

#include "app/DBPrefsWindowController.h"

#include <array>
#include <cstdint>

namespace brightsweep {

/// One page of the main window, apart from its screen, which app/ui/PanelPages makes.
struct Page {
    const char *identifier; ///< of the item, its image and the panel that it shows at first
    const char *title;      ///< a key
    /// The sub-panel on show, an index into `panels`; null for a page of one panel.
    std::int64_t (DBPrefsWindowController::*state)() const = nullptr;
    /// At the start, in progress, with data.
    std::array<const char *, 3> panels = {};
    /// The item stands at the far end of the toolbar, without its title, and its page is looked at
    /// in passing: it is not remembered.
    bool atTheEnd = false;
    bool hasPanel = true;
};

/// In the order of the toolbar. A page is remembered by its place here; behind the pages that are
/// not at the end a stored number counts the later sub-panels.
inline constexpr std::array pageTable = {
    Page{"Scan",
         QT_TRID_NOOP("Fast Clean"),
         &DBPrefsWindowController::view4FastClean,
         {"Scan", "QC_FastClean", "DATA_FastClean"}},
    Page{"duplicates_file",
         QT_TRID_NOOP("Duplicates"),
         &DBPrefsWindowController::view4Duplicates,
         {"duplicates_file", "QC_Duplicates", "DATA_Duplicates"}},
    Page{"disk_usage",
         QT_TRID_NOOP("Disk Usage"),
         &DBPrefsWindowController::view4DiskUsage,
         {"disk_usage", "QC_DiskUsage", "DATA_DiskUsage"}},
    Page{"delete", QT_TRID_NOOP("Uninstall")},
    Page{"memory", QT_TRID_NOOP("Free Memory")},
    Page{"login_items", QT_TRID_NOOP("Login Items")},
    Page{.identifier = "preferences", .title = QT_TRID_NOOP("Preferences"), .atTheEnd = true},
    Page{.identifier = "Help", .title = QT_TRID_NOOP("Help"), .atTheEnd = true, .hasPanel = false},
};

/// The page with that identifier, or null.
inline const Page *pageWithIdentifier(const QString &identifier) {
    for (const Page &page : pageTable) {
        if (identifier == QLatin1String(page.identifier))
            return &page;
    }
    return nullptr;
}

/// The page that a panel belongs to, or null.
inline const Page *pageOfPanel(const QString &panel) {
    for (const Page &page : pageTable) {
        for (const char *const own : page.panels) {
            if (own && panel == QLatin1String(own))
                return &page;
        }
    }
    return pageWithIdentifier(panel);
}

} // namespace brightsweep
