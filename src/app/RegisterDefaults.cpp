#include "app/RegisterDefaults.h"

#include "app/AppController.h"
#include "core/SettingKeys.h"
#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"

namespace brightsweep {

void registerAllDefaults() {
    PreferenceViewController::initialize();
    UserDefaults::standardUserDefaults().registerDefaults({{DSDiskUsageShowStyle, false}});
    AppController::initialize();
}

} // namespace brightsweep
