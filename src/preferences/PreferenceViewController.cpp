#include "preferences/PreferenceViewController.h"

#include "core/SettingKeys.h"
#include "foundation/UserDefaults.h"

namespace brightsweep {

namespace {

constexpr QLatin1String uninstallKey("DSUninstall");
constexpr QLatin1String freeSpaceKey("DSFreeSpace");
constexpr QLatin1String lastClickRowKey("DSLastClickRow");

UserDefaults &defaults() {
    return UserDefaults::standardUserDefaults();
}

void setAndSynchronize(const QString &key, const QVariant &value) {
    defaults().setObject(key, value);
    defaults().synchronize();
}

} // namespace

void PreferenceViewController::initialize() {
    QVariantMap registered = defaultsOf(SettingOwner::PreferenceViewController);
    // The disk usage's controller registers false over it.
    registered.insert(DSDiskUsageShowStyle, true);
    defaults().registerDefaults(registered);
    defaults().synchronize();
}

void PreferenceViewController::setCategoryClicked(unsigned category, int number) {
    setAndSynchronize(QLatin1String(cleanCategories[category].key), number);
}

void PreferenceViewController::setSystemCashesClicked(int number) {
    setAndSynchronize(DSSystemCachesKey, number);
}
QVariant PreferenceViewController::getSystemCashesClicked() {
    return defaults().objectForKey(DSSystemCachesKey);
}

void PreferenceViewController::setUserCashesClicked(int number) {
    setAndSynchronize(DSUserCachesKey, number);
}
QVariant PreferenceViewController::getUserCashesClicked() {
    return defaults().objectForKey(DSUserCachesKey);
}

void PreferenceViewController::setSystemLogsClicked(int number) {
    setAndSynchronize(DSSystemLogsKey, number);
}
QVariant PreferenceViewController::getSystemLogsClickedClicked() {
    return defaults().objectForKey(DSSystemLogsKey);
}

void PreferenceViewController::setUserLogsClicked(int number) {
    setAndSynchronize(DSUserLogsKey, number);
}
QVariant PreferenceViewController::getUserLogsClicked() {
    return defaults().objectForKey(DSUserLogsKey);
}

void PreferenceViewController::setUserTrashClicked(int number) {
    setAndSynchronize(DSUserTrashKey, number);
}
QVariant PreferenceViewController::getUserTrashClicked() {
    return defaults().objectForKey(DSUserTrashKey);
}

void PreferenceViewController::setUserDownLoadsFolderClicked(int number) {
    setAndSynchronize(DSUserDownloadsKey, number);
}
QVariant PreferenceViewController::getUserDownLoadsFoldeClicked() {
    return defaults().objectForKey(DSUserDownloadsKey);
}

void PreferenceViewController::setUninstallClicked(int number) {
    defaults().setObject(uninstallKey, number);
}
bool PreferenceViewController::getUninstallClicked() {
    return defaults().boolForKey(uninstallKey);
}

void PreferenceViewController::setFreeSpaceClicked(int number) {
    defaults().setObject(freeSpaceKey, number);
}
bool PreferenceViewController::getFreeSpaceClicked() {
    return defaults().boolForKey(freeSpaceKey);
}

void PreferenceViewController::setLastClickRow(int row) {
    defaults().setObject(lastClickRowKey, row);
}
int PreferenceViewController::getLastClickRow() {
    return int(defaults().integerForKey(lastClickRowKey));
}

void PreferenceViewController::setLoginItemIsHide(int number) {
    defaults().setObject(DSLoginItemIsHide, number);
}
bool PreferenceViewController::getLoginItemIsHide() {
    return defaults().boolForKey(DSLoginItemIsHide);
}

void PreferenceViewController::setHiddenStatusItem(bool hidden) {
    setAndSynchronize(DSShowStatusItem, hidden);
}
bool PreferenceViewController::getHiddenStatusItem() {
    return defaults().boolForKey(DSShowStatusItem);
}

} // namespace brightsweep
