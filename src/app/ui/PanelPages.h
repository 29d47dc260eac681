#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace brightsweep {

class CleanMemoryController;
class DiskUsageAppController;
class LoginItemController;
class NewMainViewController;
class PreferenceViewController;
class SameFileDeleteViewController;
class UninstallAppsController;

/// What the pages ask for beyond themselves.
struct PanelActs {
    std::function<void()> showVolumes;                  ///< opens the list of volumes
    NewMainViewController *clean = nullptr;             ///< the clean page's
    SameFileDeleteViewController *duplicates = nullptr; ///< the duplicates page's
    DiskUsageAppController *diskUsage = nullptr;        ///< the disk usage page's
    CleanMemoryController *memory = nullptr;            ///< the memory page's
    LoginItemController *loginItems = nullptr;          ///< the login items page's
    UninstallAppsController *uninstall = nullptr;       ///< the uninstall page's
    PreferenceViewController *preferences = nullptr;    ///< the preferences page's
};

/// The page of a panel of the main window; an empty one where a controller is missing.
QWidget *makePanelPage(const QString &identifier, const PanelActs &acts, QWidget *parent);

} // namespace brightsweep
