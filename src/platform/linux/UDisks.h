#pragma once

#include "foundation/Result.h"
#include "platform/linux/BlockDevice.h"

#include <QDBusConnection>
#include <QString>
#include <QVariantMap>

#include <atomic>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brightsweep {

/// What UDisks2 knows of a drive.
struct UDisksDrive {
    bool ejectable = false;
    bool removable = false; ///< the drive or its medium
    bool external = false;  ///< on usb, ieee1394 or sdio
    bool optical = false;
    bool canPowerOff = false;
};

/// What it knows of a block device.
struct UDisksBlock {
    QString path; ///< of the object
    DeviceNumber number;
    QString drive;         ///< path of the drive's object; "/" without one
    QString cryptoBacking; ///< path of what holds it encrypted; "/" where it is not unlocked
    std::string label;
    bool encrypted = false;
    bool loop = false;
};

struct UDisksSnapshot {
    std::vector<UDisksBlock> blocks;
    std::map<QString, UDisksDrive> drives;

    const UDisksBlock *block(DeviceNumber number) const;
    /// The drive that a whole device is; null where the service knows none.
    const UDisksDrive *drive(DeviceNumber disk) const;
};

/// How a call ended; an empty name is success.
struct UDisksError {
    QString name;
    QString message;

    explicit operator bool() const { return !name.isEmpty(); }
};

/// A connection of its own to UDisks2 over the system bus. Belongs to one thread. A bus
/// that does not answer is none, which takes a second to find out.
class UDisks {
public:
    UDisks();
    ~UDisks();
    UDisks(const UDisks &) = delete;
    UDisks &operator=(const UDisks &) = delete;

    const QString &connectionName() const { return m_name; }
    bool isConnected() const { return m_connection.isConnected(); }
    /// True where the bus took the connection and did not answer.
    bool busWasSilent() const { return m_busWasSilent; }
    /// False once the bus has said that it is not to be had.
    bool isOffered() const { return m_offered; }
    /// All that the service knows. Waits some seconds at most, and no longer once `stop` is set.
    std::optional<UDisksSnapshot> snapshot(const std::atomic<bool> &stop);
    /// Calls a method that takes options only, and waits however long it takes.
    UDisksError call(const QString &object, const char *interface, const char *method);

private:
    QString m_name;
    bool m_busWasSilent;
    QDBusConnection m_connection;
    bool m_offered = true;
};

} // namespace brightsweep
