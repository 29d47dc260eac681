#include "app/LaunchAtLogin.h"

#include "core/SettingKeys.h"
#include "foundation/Log.h"
#include "foundation/UserDefaults.h"

#include <algorithm>
#include <limits>

namespace brightsweep {

void LaunchAtLogin::writeFileOfLaunchAppWhenLogin(const QString &state) {
    using Limits = std::numeric_limits<int>;
    const auto number =
        std::clamp<std::int64_t>(integerFromText(state), Limits::min(), Limits::max());
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setObject(DSLoginCheckKey, int(number));
    defaults.synchronize();
}

QString LaunchAtLogin::readeFileOfLaunchAppWhenLogin() {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const auto number = int(defaults.integerForKey(DSLoginCheckKey));
    // A word such as "YES" is true and no number.
    return QString::number(number == 0 && defaults.boolForKey(DSLoginCheckKey) ? 1 : number);
}

void LaunchAtLogin::launchAppWhenLogin(int state, const std::filesystem::path &program,
                                       LoginItemRegistry &registry) {
    writeFileOfLaunchAppWhenLogin(QString::number(state));
    const int index = registry.indexForLoginItemWithPath(program);
    if (index != -1)
        registry.removeLoginItemAtIndex(index);
    if (state != 1 || registry.addLoginItemWithPath(program, false))
        return;
    NSLog("Registry login item failed!!!");
    if (const std::string reason = registry.unavailableReason(); !reason.empty())
        NSLog("Login items are not available: %@", reason);
}

} // namespace brightsweep
