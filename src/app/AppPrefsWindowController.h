#pragma once

#include "app/DBPrefsWindowController.h"

#include <memory>

namespace brightsweep {

class CleanMemoryController;
class DiskUsageAppController;
class LoginItemController;
class NewMainViewController;
class PreferenceViewController;
class SameFileDeleteViewController;
class UninstallAppsController;
struct Page;

/// The program's one window: its table of panels. Main thread.
class AppPrefsWindowController : public DBPrefsWindowController {
    Q_OBJECT

public:
    explicit AppPrefsWindowController(QObject *parent = nullptr);
    ~AppPrefsWindowController() override;

    /// The one instance, made at the first call.
    static AppPrefsWindowController &sharedPrefsWindowController();
    /// Lets the next call make another one; for tests.
    static void resetSharedPrefsWindowController();

    /// The clean page; null before the window was first shown.
    NewMainViewController *v4MainView() const { return m_v4MainView.get(); }

    /// The duplicates page; null before the window was first shown.
    SameFileDeleteViewController *sameFileDeleteView() const { return m_sameFileDeleteView.get(); }

    /// The disk usage page; null before the window was first shown.
    DiskUsageAppController *diskUsageView() const { return m_diskUsageView.get(); }

    /// The login items page; null before the window was first shown.
    LoginItemController *loginItemView() const { return m_loginItemView.get(); }

    /// The memory page; null before the window was first shown.
    CleanMemoryController *memoryView() const { return m_memoryView.get(); }

    /// The uninstall page; null before the window was first shown.
    UninstallAppsController *uninstallView() const { return m_uninstallView.get(); }

    /// The preferences page; null before the window was first shown.
    PreferenceViewController *prefView() const { return m_prefView.get(); }

    /// The clean page follows what another process has set for the category with that key, unless
    /// its ticks are in use.
    void showCategorySetting(const QString &key);
    /// Copies the settings of the animation.
    void readAnimationSettings();

Q_SIGNALS:
    /// The uninstall page is shown and wants its list.
    void beginSearchApps();
    /// A page needs the program to be started anew.
    void restartRequested();

protected:
    void setupToolbar() override;
    void beginToSanUninstallListWhenSelect(int selection) override;

private:
    void makeCleanPage();
    void makeDuplicatesPage();
    void makeDiskUsagePage();
    void makePreferencesPage();
    bool categoriesAreFree() const;
    void addPage(const Page &page);

    std::unique_ptr<NewMainViewController> m_v4MainView;
    std::unique_ptr<SameFileDeleteViewController> m_sameFileDeleteView;
    std::unique_ptr<DiskUsageAppController> m_diskUsageView;
    std::unique_ptr<CleanMemoryController> m_memoryView;
    std::unique_ptr<LoginItemController> m_loginItemView;
    std::unique_ptr<UninstallAppsController> m_uninstallView;
    std::unique_ptr<PreferenceViewController> m_prefView;
};

} // namespace brightsweep
