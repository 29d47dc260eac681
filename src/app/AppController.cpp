#include "app/AppController.h"

#include "app/AppPrefsWindowController.h"
#include "app/LicenceGate.h"
#include "core/SettingKeys.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

namespace brightsweep {

namespace {

constexpr int normalWindowLevelKey = 4;

} // namespace

AppController::~AppController() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

void AppController::initialize() {
    UserDefaults::standardUserDefaults().registerDefaults(defaultsOf(SettingOwner::AppController));
}

void AppController::awakeFromNib() {
    NotificationCenter::defaultCenter().addObserver(
        this, UserDefaultsDidChangeNotification, [this](const Notification &notification) {
            observeValueForKeyPath(notification.userInfo.value(QStringLiteral("key")).toString());
        });
    if (UserDefaults::standardUserDefaults().boolForKey(QStringLiteral("openAtStartup")))
        openPreferences();
}

void AppController::openPreferences() {
    // No window opens from here.
    if (!LicenceGate::isOpen())
        NSLog("can not use.");
}

void AppController::showMainWindow(const std::string &activationToken) {
    auto &window = AppPrefsWindowController::sharedPrefsWindowController();
    window.setActivationToken(activationToken);
    window.showWindow();
    window.setLevel(normalWindowLevelKey);
    window.center();
}

void AppController::observeValueForKeyPath(const QString &keyPath) {
    if (keyPath == QLatin1String("fade") || keyPath == QLatin1String("shiftSlowsAnimation"))
        AppPrefsWindowController::sharedPrefsWindowController().readAnimationSettings();
}

} // namespace brightsweep
