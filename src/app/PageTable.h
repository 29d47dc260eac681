#pragma once

#include "app/DBPrefsWindowController.h"

#include <array>
#include <cstdint>

namespace brightsweep {

/// One page of the main window, apart from its screen, which app/ui/PanelPages makes.
struct Page {
    const char *identifier; ///< of the item, its image and the panel that it shows at first
    const char *title;      ///< a key
    bool hasLabel = true;   ///< the item shows the title below its image
    bool atTheEnd = false;  ///< the item stands at the far end of the toolbar
    bool hasPanel = true;
    /// How the page is remembered; below 0 not at all, since it is looked at in passing.
    int storedIndex = -1;
    /// The sub-panel on show, an index into `panels`; null for a page of one panel.
    std::int64_t (DBPrefsWindowController::*state)() const = nullptr;
    /// At the start, in progress, with data.
    std::array<const char *, 3> panels = {};
};

/// In the order of the toolbar. A stored page counts in this order with the later sub-panels
/// behind the pages that are not at the end.
inline constexpr std::array pageTable = {
    Page{"Scan",
         QT_TRID_NOOP("Fast Clean"),
         true,
         false,
         true,
         0,
         &DBPrefsWindowController::view4FastClean,
         {"Scan", "QC_FastClean", "DATA_FastClean"}},
    Page{"duplicates_file",
         QT_TRID_NOOP("Duplicates"),
         true,
         false,
         true,
         1,
         &DBPrefsWindowController::view4Duplicates,
         {"duplicates_file", "QC_Duplicates", "DATA_Duplicates"}},
    Page{"disk_usage",
         QT_TRID_NOOP("Disk Usage"),
         true,
         false,
         true,
         2,
         &DBPrefsWindowController::view4DiskUsage,
         {"disk_usage", "QC_DiskUsage", "DATA_DiskUsage"}},
    Page{"delete", QT_TRID_NOOP("Uninstall"), true, false, true, 3},
    Page{"memory", QT_TRID_NOOP("Free Memory"), true, false, true, 4},
    Page{"login_items", QT_TRID_NOOP("Login Items"), true, false, true, 5},
    Page{"preferences", QT_TRID_NOOP("Preferences"), false, true},
    Page{"Help", QT_TRID_NOOP("Help"), false, true, false},
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
