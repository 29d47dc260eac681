#include "core/AppController.h"

#include "core/SettingKeys.h"
#include "foundation/UserDefaults.h"

namespace brightsweep {

void AppController::initialize() {
    UserDefaults::standardUserDefaults().registerDefaults(defaultsOf(SettingOwner::AppController));
}

} // namespace brightsweep
