#pragma once

#include "linux/MountTable.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brightsweep {

/// A device's number, as the mount table and stat(2) give it.
struct DeviceNumber {
    std::uint32_t majorNumber = 0;
    std::uint32_t minorNumber = 0;

    auto operator<=>(const DeviceNumber &) const = default;
};

/// What the kernel itself tells of a block device.
struct BlockDevice {
    DeviceNumber number;
    std::string name; ///< such as "sda1" or "dm-0"
    /// The whole device at the bottom of partitions and mapped devices, where there is exactly one.
    std::string disk;
    DeviceNumber diskNumber;
    bool removable = false; ///< the disk takes media in and out
    bool external = false;  ///< the disk hangs on usb, ieee1394 or sdio
    bool optical = false;
    bool image = false; ///< the disk is a loop device
};

/// Nothing where the kernel knows no such device.
std::optional<BlockDevice> readBlockDevice(DeviceNumber number);

/// The device that a mount shows, also for file systems whose mounts carry a number of their own.
std::optional<BlockDevice> deviceOfMount(const Mount &mount);

/// A text that changes whenever a device of that number gets another medium; empty where the
/// kernel does not count them.
std::string mediumSequence(std::uint32_t majorNumber, std::uint32_t minorNumber);

/// The label of the file system on a device, as udev has noted it; exact bytes,
/// empty where there is none.
std::string labelOfDevice(const std::string &name);

} // namespace brightsweep
