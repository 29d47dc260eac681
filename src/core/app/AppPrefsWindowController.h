#pragma once

#include "core/app/DBPrefsWindowController.h"

namespace brightsweep {

/// The program's one window: its table of panels. Main thread.
class AppPrefsWindowController : public DBPrefsWindowController {
    Q_OBJECT

public:
    using DBPrefsWindowController::DBPrefsWindowController;

    /// The one instance, made at the first call.
    static AppPrefsWindowController &sharedPrefsWindowController();
    /// Lets the next call make another one; for tests.
    static void resetSharedPrefsWindowController();

    /// Copies the settings of the animation.
    void readAnimationSettings();

Q_SIGNALS:
    /// The uninstall page is shown and wants its list.
    void beginSearchApps();

protected:
    void setupToolbar() override;
    void beginToSanUninstallListWhenSelect(int selection) override;
};

} // namespace brightsweep
