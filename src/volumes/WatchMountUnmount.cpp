#include "volumes/WatchMountUnmount.h"

#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"

namespace brightsweep {

WatchMountUnmount::WatchMountUnmount(QObject *parent)
    : WatchMountUnmount(*Platform::current().volumes, parent) {}

WatchMountUnmount::WatchMountUnmount(VolumeSource &source, QObject *parent)
    : QObject(parent), wsnc(source) {
    registerNotifications();
}

WatchMountUnmount::~WatchMountUnmount() {
    wsnc.setMountHandler(nullptr);
}

void WatchMountUnmount::registerNotifications() {
    wsnc.setMountHandler([this](const MountEvent &event) {
        const QVariantMap userInfo = {
            {NSWorkspaceVolumeLocalizedNameKey, paths::text(event.name)},
            {NSDevicePath, paths::toVariant(event.root)},
        };
        if (event.mounted)
            mountedVolume(userInfo);
        else
            unmountedVolume(userInfo);
    });
}

void WatchMountUnmount::mountedVolume(const QVariantMap &userInfo) {
    NotificationCenter::defaultCenter().post(DSVolumeMountNotification, this, userInfo);
}

void WatchMountUnmount::unmountedVolume(const QVariantMap &userInfo) {
    NotificationCenter::defaultCenter().post(DSVolumeUnmountNotification, this, userInfo);
}

} // namespace brightsweep
