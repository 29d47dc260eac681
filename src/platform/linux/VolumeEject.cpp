#include "platform/linux/VolumeEject.h"

#include "foundation/FileDescriptor.h"
#include "platform/linux/BlockDevice.h"
#include "platform/linux/ChildProcess.h"
#include "platform/linux/UDisks.h"
#include "platform/linux/VolumeHolders.h"

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <optional>
#include <system_error>

namespace brightsweep {

namespace {

constexpr struct {
    std::string_view ending;
    int status;
} busErrors[] = {
    {".DeviceBusy", EBUSY},
    {".NotAuthorized", EPERM},
    {".NotAuthorizedCanObtain", EPERM},
    {".NotAuthorizedDismissed", EPERM},
    {".AccessDenied", EPERM},
    {".AlreadyUnmounting", EBUSY},
    {".Timedout", ETIMEDOUT},
    {".NotSupported", EOPNOTSUPP},
    {".OptionNotPermitted", EPERM},
};

std::string words(int number) {
    return std::generic_category().message(number);
}

EjectResult failure(const UDisksError &error) {
    const std::string name = error.name.toStdString();
    return {statusOfBusError(name), name + ": " + error.message.toStdString(), {}};
}

EjectResult driveStays(EjectResult result) {
    result.driveStays = true;
    return result;
}

// The object, or what it could do, has gone before the call arrived.
bool isGone(const UDisksError &error) {
    return error.name.endsWith(QLatin1String(".UnknownObject")) ||
           error.name.endsWith(QLatin1String(".UnknownMethod")) ||
           error.name.endsWith(QLatin1String(".UnknownInterface"));
}

bool isMounted(const Mount &mount) {
    const auto mounts = currentMounts();
    return std::any_of(mounts.begin(), mounts.end(), [&](const Mount &other) {
        return other.id == mount.id && other.mountPoint == mount.mountPoint &&
               other.deviceMajor == mount.deviceMajor && other.deviceMinor == mount.deviceMinor;
    });
}

EjectResult unmountByTool(const std::vector<std::string> &arguments, const Mount &mount) {
    const auto tool = runTool(arguments);
    if (!tool)
        return {tool.error().value(), arguments[0] + ": " + tool.error().message(), {}};
    if (!isMounted(mount))
        return {};
    const bool busy = (*tool).output.find("busy") != std::string::npos;
    return {busy ? EBUSY : EIO, (*tool).output, {}};
}

// The tool knows helpers of single file systems and what the user may unmount; where it is missing
// the system call does.
EjectResult unmount(const Mount &mount) {
    EjectResult result = unmountByTool({"umount", "--", mount.mountPoint}, mount);
    if (result.status != ENOENT)
        return result;
    if (::umount2(mount.mountPoint.c_str(), UMOUNT_NOFOLLOW) == 0)
        return {};
    return {errno, words(errno), {}};
}

EjectResult unmountUserFileSystem(const Mount &mount) {
    if (ownerOfUserFileSystem(mount) != long(::getuid()))
        return unmount(mount);
    EjectResult result;
    for (const char *tool : {"fusermount3", "fusermount"}) {
        result = unmountByTool({tool, "-u", "--", mount.mountPoint}, mount);
        if (result.status != ENOENT)
            return result;
    }
    return ::geteuid() == 0 ? unmount(mount) : result;
}

/// A drive, or a single device where it has no drive of its own.
class Drive {
public:
    explicit Drive(const Mount &mount) : m_mount(mount), m_device(deviceOfMount(mount)) {
        const std::atomic<bool> never{false};
        if (m_service.isConnected())
            m_snapshot = m_service.snapshot(never);
    }

    EjectResult eject();

private:
    bool owns(const std::optional<BlockDevice> &device) const {
        return device && m_device && !m_device->disk.empty() && device->disk == m_device->disk;
    }
    bool holds(const Mount &mount) const {
        return (mount.deviceMajor == m_mount.deviceMajor &&
                mount.deviceMinor == m_mount.deviceMinor) ||
               owns(deviceOfMount(mount));
    }
    std::vector<Mount> mounts() const;
    EjectResult unmountAll();
    EjectResult unmountOne(const Mount &mount);
    EjectResult lockAll();
    EjectResult letGo();
    EjectResult detachImage();

    const Mount m_mount;
    const std::optional<BlockDevice> m_device;
    UDisks m_service;
    std::optional<UDisksSnapshot> m_snapshot;
};

std::vector<Mount> Drive::mounts() const {
    auto all = currentMounts();
    std::erase_if(all, [this](const Mount &mount) { return !holds(mount); });
    return all;
}

EjectResult Drive::eject() {
    for (const Mount &mount : mounts()) {
        if (mount.mountPoint == "/")
            return {EBUSY, "the running system is on this drive", {}};
    }
    EjectResult result = unmountAll();
    if (result.status == 0)
        result = lockAll();
    if (result.status == 0)
        result = letGo();
    return result;
}

EjectResult Drive::unmountAll() {
    std::vector<Mount> left = mounts();
    while (!left.empty()) {
        // The last one first, since it may lie on another.
        EjectResult result = unmountOne(left.back());
        std::vector<Mount> now = mounts();
        if (result.status == 0 && now.size() >= left.size())
            result = {EBUSY, "the volume was mounted again", {}};
        if (result.status != 0) {
            result.holders = holdersOf(now);
            return result;
        }
        left = std::move(now);
    }
    return {};
}

EjectResult Drive::unmountOne(const Mount &mount) {
    const auto device = deviceOfMount(mount);
    const UDisksBlock *const block =
        m_snapshot && device ? m_snapshot->block(device->number) : nullptr;
    if (!block)
        return unmount(mount);
    const UDisksError error = m_service.call(block->path, "Filesystem", "Unmount");
    if (!error || !isMounted(mount))
        return {};
    // The service does not see this mount, or has gone meanwhile.
    if (error.name.endsWith(QLatin1String(".NotMounted")) || isGone(error) ||
        !m_service.isConnected() || error.name.endsWith(QLatin1String(".ServiceUnknown")) ||
        error.name.endsWith(QLatin1String(".NoReply")))
        return unmount(mount);
    return failure(error);
}

EjectResult Drive::lockAll() {
    if (!m_snapshot)
        return {};
    for (const UDisksBlock &block : m_snapshot->blocks) {
        const bool unlocked = std::any_of(
            m_snapshot->blocks.begin(), m_snapshot->blocks.end(),
            [&](const UDisksBlock &other) { return other.cryptoBacking == block.path; });
        if (!block.encrypted || !unlocked || !owns(readBlockDevice(block.number)))
            continue;
        const UDisksError error = m_service.call(block.path, "Encrypted", "Lock");
        if (error && !isGone(error))
            return driveStays(failure(error));
    }
    return {};
}

EjectResult Drive::letGo() {
    if (!m_device || m_device->disk.empty())
        return {};
    if (m_device->image)
        return detachImage();
    const UDisksBlock *const block = m_snapshot ? m_snapshot->block(m_device->diskNumber) : nullptr;
    const UDisksDrive *const drive = m_snapshot ? m_snapshot->drive(m_device->diskNumber) : nullptr;
    if (!drive)
        return {};
    if (drive->ejectable) {
        const UDisksError error = m_service.call(block->drive, "Drive", "Eject");
        if (error && !isGone(error) && !error.name.endsWith(QLatin1String(".NotSupported")))
            return driveStays(failure(error));
    }
    if (drive->canPowerOff) {
        const UDisksError error = m_service.call(block->drive, "Drive", "PowerOff");
        // All of it is unmounted, so that the volume has gone all the same.
        if (error && !isGone(error))
            return driveStays({0, failure(error).message, {}});
    }
    return {};
}

EjectResult Drive::detachImage() {
    const auto attached = [this] {
        const auto disk = readBlockDevice(m_device->diskNumber);
        return disk && disk->image;
    };
    if (!attached())
        return {};
    const UDisksBlock *const block = m_snapshot ? m_snapshot->block(m_device->diskNumber) : nullptr;
    if (block && block->loop) {
        const UDisksError error = m_service.call(block->path, "Loop", "Delete");
        if (!error || isGone(error) || !attached())
            return {};
        return driveStays(failure(error));
    }
    const FileDescriptor device(
        ::open(("/dev/" + m_device->disk).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!device || (::ioctl(device.get(), LOOP_CLR_FD) != 0 && errno != ENXIO))
        return driveStays({0, m_device->disk + ": " + words(errno), {}});
    return {};
}

} // namespace

int statusOfBusError(std::string_view name) {
    for (const auto &row : busErrors) {
        if (name.ends_with(row.ending))
            return row.status;
    }
    return EIO;
}

EjectResult ejectVolume(const SelectedVolume &volume) {
    if (volume.mount.mountPoint == "/")
        return {EBUSY, "the running system is on this volume", {}};
    if (volume.kind == VolumeKind::BlockDevice)
        return Drive(volume.mount).eject();
    EjectResult result = isUserFileSystem(volume.mount.type) ? unmountUserFileSystem(volume.mount)
                                                             : unmount(volume.mount);
    if (result.status != 0)
        result.holders = holdersOf({volume.mount});
    return result;
}

} // namespace brightsweep
