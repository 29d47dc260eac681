#include "loginitems/AppInformation.h"

#include "core/LaunchAtLogin.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "uninstall/UninstallAppDelegate.h"
#include "volumes/VolumeNotifications.h"

namespace brightsweep {

void AppInformation::getAppInfo(std::vector<LoginItemRow::Pointer> *appsInfo,
                                const std::vector<LoginItem> &items) {
    for (const LoginItem &item : items) {
        const std::filesystem::path path = UKLoginItemRegistry::pathOfURL(item.url);
        if (path.empty()) {
            NSLog("A login item has no path in its URL: %@", item.url);
            continue;
        }
        const auto row = constructAppItem(path, item.hidden);
        row->entry = item.entry;
        // The entry's own name and icon are what the desktop shows.
        if (!item.entry.name.empty())
            row->name = paths::display(item.entry.name);
        row->image = paths::text(item.entry.icon);
        if (row->bundleID.isNull()) {
            const std::string &file = item.entry.file;
            row->bundleID = paths::text(file.substr(0, file.rfind(".desktop")));
        }
        appsInfo->push_back(row);
    }
}

LoginItemRow::Pointer AppInformation::constructAppItem(const std::filesystem::path &path,
                                                       bool hide) {
    const auto bundle = UninstallAppDelegate().constructAppItem(path);
    auto row = std::make_shared<LoginItemRow>();
    row->bIsSelected = hide;
    row->path = path;
    row->image = bundle->image;
    row->name = bundle->name.isEmpty() ? paths::display(paths::lastComponent(path)) : bundle->name;
    row->bundleID = bundle->bundleID;
    row->isSystemApp = bundle->isSystemApp;
    row->bundleVersion = bundle->bundleVersion;
    row->date = bundle->date;
    row->fileSize = QString();
    row->entry.path = path;
    row->entry.hidden = hide;
    return row;
}

void AppInformation::writeFileOfLaunchAppWhenLogin(int number) {
    LaunchAtLogin::writeFileOfLaunchAppWhenLogin(QString::number(number));
    NotificationCenter::defaultCenter().post(refMenuItemWhenDeleteAndAddNotification);
}

} // namespace brightsweep
