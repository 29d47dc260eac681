#pragma once

#include "platform/VolumeSource.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace brightsweep {

inline const QString DSVolumeMountNotification = QStringLiteral("DSVolumeMount");
inline const QString DSVolumeUnmountNotification = QStringLiteral("DSVolumeUnmount");

/// Keys of the user info of both: the volume's name, a text to show, and its root, in the form of
/// paths::toVariant().
inline const QString NSWorkspaceVolumeLocalizedNameKey =
    QStringLiteral("NSWorkspaceVolumeLocalizedNameKey");
inline const QString NSDevicePath = QStringLiteral("NSDevicePath");

/// Turns the system's mounts and unmounts into the program's own notifications, posted on the
/// thread that made it, with itself as object. The source has one watcher at a time and outlives
/// it.
class WatchMountUnmount : public QObject {
    Q_OBJECT

public:
    explicit WatchMountUnmount(QObject *parent = nullptr);
    explicit WatchMountUnmount(VolumeSource &source, QObject *parent = nullptr);
    ~WatchMountUnmount() override;

    void registerNotifications();
    void mountedVolume(const QVariantMap &userInfo);
    void unmountedVolume(const QVariantMap &userInfo);

private:
    VolumeSource &wsnc;
};

} // namespace brightsweep
