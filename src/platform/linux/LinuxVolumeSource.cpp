#include "platform/linux/LinuxVolumeSource.h"

#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "platform/linux/VolumeEject.h"

#include <QThread>

#include <arpa/inet.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

namespace brightsweep {

namespace {

// Where udev links devices by their labels.
constexpr char labelFolder[] = "/dev/disk/by-label";
// A change within one tick of the file system's clock leaves the time of the change as it is.
constexpr std::time_t clockSeconds = 1;

std::string canonicalPrefix(const std::string &prefix) {
    if (prefix.empty())
        return prefix;
    std::error_code error;
    const auto canonical = std::filesystem::canonical(prefix, error);
    return error ? prefix : canonical.native();
}

// A read soon after a change may have missed what changed next.
bool isSettled(const timespec &changed) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec > changed.tv_sec + clockSeconds;
}

// The address that the mount names; of a server that is named by a word alone, a number made of
// the word.
std::uint32_t serverAddress(const Mount &mount) {
    in_addr address = {};
    const std::string named(mountOption(mount.superOptions, "addr"));
    if (::inet_pton(AF_INET, named.c_str(), &address) == 1 && address.s_addr != 0)
        return ntohl(address.s_addr);
    std::uint32_t hash = 0x811c9dc5;
    for (const char byte : mount.source)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x01000193;
    return hash | 1;
}

void readFigures(const std::string &mountPoint, VolumeFacts &facts) {
    struct statvfs status;
    if (::statvfs(mountPoint.c_str(), &status) != 0)
        return;
    facts.totalBytes = std::uint64_t(status.f_blocks) * status.f_frsize;
    facts.freeBytes = std::uint64_t(status.f_bavail) * status.f_frsize;
    facts.attributes = std::uint32_t(status.f_flag);
}

void readDevice(const Mount &mount, const UDisksSnapshot *snapshot, VolumeFacts &facts) {
    const auto device = deviceOfMount(mount);
    if (!device)
        return;
    facts.deviceId = device->name;
    facts.name = labelOfDevice(device->name);
    const UDisksBlock *const block = snapshot ? snapshot->block(device->number) : nullptr;
    if (facts.name.empty() && block)
        facts.name = block->label;

    bool ejectable = device->removable;
    bool removable = device->removable;
    bool external = device->external;
    bool optical = device->optical;
    if (device->image) {
        ejectable = removable = true;
    } else if (const auto *drive = snapshot ? snapshot->drive(device->diskNumber) : nullptr) {
        ejectable = drive->ejectable;
        removable = drive->removable;
        external = drive->external;
        optical = drive->optical;
    }
    facts.optical = optical ? OpticalMedia::Yes : OpticalMedia::No;
    facts.extendedAttributes = (ejectable ? volumeIsEjectableBit : 0) |
                               (removable ? volumeIsRemovableBit : 0) |
                               (external ? volumeIsOnExternalBusBit : 0);
}

// What this program offers for ejecting, by the same facts.
bool isEjectable(const VolumeFacts &facts) {
    return facts.serverAddress != 0 || facts.optical == OpticalMedia::Yes ||
           (facts.extendedAttributes & (volumeIsEjectableBit | volumeIsOnExternalBusBit)) != 0;
}

// What decides how a menu shows a volume: its class, by the first fact that holds, and whether it
// can be ejected. The removable bit counts only where no other fact has decided.
std::pair<int, bool> looks(const VolumeFacts &facts) {
    const auto has = [&](std::uint32_t bit) { return (facts.extendedAttributes & bit) != 0; };
    const bool decides[] = {facts.serverAddress != 0, facts.optical == OpticalMedia::Yes,
                            has(volumeIsOnExternalBusBit), has(volumeIsRemovableBit)};
    const auto first = std::find(std::begin(decides), std::end(decides), true);
    return {int(first - std::begin(decides)), isEjectable(facts)};
}

std::uint64_t combined(const std::vector<MountIdentity> &identities) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const MountIdentity identity : identities)
        hash = (hash ^ identity) * 0x100000001b3;
    return hash;
}

} // namespace

template <typename... Arguments>
void LinuxVolumeSource::Receiver<Arguments...>::set(std::function<void(Arguments...)> function) {
    // The queue stays where it can: the call may come from within one of its functions.
    handler.reset();
    if (!function)
        return;
    if (!queue || queue->thread() != QThread::currentThread())
        queue = std::make_unique<CallQueue>();
    handler = std::make_shared<std::function<void(Arguments...)>>(std::move(function));
}

LinuxVolumeSource::LinuxVolumeSource()
    : m_figures([this] { announceFacts(); }), m_disks([this] { mounted(); }) {}

LinuxVolumeSource::~LinuxVolumeSource() {
    m_watch.reset();
}

bool LinuxVolumeSource::Origin::operator==(const Origin &other) const {
    return snapshot == other.snapshot && home == other.home && prefix == other.prefix &&
           labels == other.labels && labelsChanged.tv_sec == other.labelsChanged.tv_sec &&
           labelsChanged.tv_nsec == other.labelsChanged.tv_nsec;
}

LinuxVolumeSource::Origin LinuxVolumeSource::currentOrigin() const {
    Origin origin;
    origin.snapshot = m_disks.snapshot();
    origin.home = homeFolder().native();
    const char *const prefix = std::getenv("BRIGHTSWEEP_SYSTEM_ROOT");
    if (prefix && *prefix == '/')
        origin.prefix = prefix;
    struct stat status;
    if (::stat(labelFolder, &status) == 0) {
        origin.labels = status.st_ino;
        origin.labelsChanged = status.st_mtim;
    }
    return origin;
}

LinuxVolumeSource::Volumes LinuxVolumeSource::mounted() {
    const std::lock_guard lock(m_knownMutex);
    Origin origin = currentOrigin();
    auto changed = m_table.changedMounts();
    if (!changed && m_mayStand && origin == m_origin)
        return m_known;
    if (changed)
        m_mounts = *std::move(changed);
    const Volumes before =
        std::exchange(m_known, std::make_shared<const std::vector<Volume>>(makeVolumes(origin)));
    m_mayStand = isSettled(origin.labelsChanged);
    m_origin = std::move(origin);
    // Here nobody can come between what was known and what is known now.
    if (before && hasOtherClass(*before, *m_known))
        announceFacts();
    return m_known;
}

// True when a volume has become another kind of thing than it seemed before.
bool LinuxVolumeSource::hasOtherClass(const std::vector<Volume> &before,
                                      const std::vector<Volume> &now) {
    return std::any_of(now.begin(), now.end(), [&](const Volume &volume) {
        return std::any_of(before.begin(), before.end(), [&](const Volume &old) {
            return old.identity == volume.identity && looks(old.facts) != looks(volume.facts);
        });
    });
}

std::vector<LinuxVolumeSource::Volume> LinuxVolumeSource::makeVolumes(const Origin &origin) {
    const UDisksSnapshot *const snapshot = origin.snapshot.get();
    const auto selected = selectVolumes(m_mounts, {canonicalPrefix(origin.prefix), origin.home});
    const auto identities = mountIdentities(selected);
    const auto numbers = m_numbers.assign(identities);
    std::vector<Volume> volumes;
    for (std::size_t i = 0; i < selected.size(); ++i) {
        const Mount &mount = selected[i].mount;
        Volume volume{selected[i], identities[i], {}, true};
        VolumeFacts &facts = volume.facts;
        facts.refNumber = numbers[i];
        facts.root = mount.mountPoint;
        if (selected[i].kind == VolumeKind::BlockDevice) {
            // A single file can be a mount point too; that is nobody's volume.
            struct stat status;
            volume.isDirectory =
                ::stat(mount.mountPoint.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
            readDevice(mount, snapshot, facts);
        } else {
            facts.optical = OpticalMedia::No;
            if (selected[i].kind == VolumeKind::Network)
                facts.serverAddress = serverAddress(mount);
            else if (ownerOfUserFileSystem(mount) == long(::getuid()))
                facts.extendedAttributes = volumeIsEjectableBit;
        }
        if (facts.name.empty())
            facts.name = paths::lastComponent(facts.root);
        if (volume.isDirectory)
            volumes.push_back(std::move(volume));
    }
    return volumes;
}

std::vector<VolumeFacts> LinuxVolumeSource::volumes() {
    std::vector<VolumeFacts> result;
    std::vector<MountIdentity> identities;
    const Volumes volumes = mounted();
    for (const Volume &volume : *volumes) {
        identities.push_back(volume.identity);
        VolumeFacts &facts = result.emplace_back(volume.facts);
        if (volume.selected.kind == VolumeKind::BlockDevice) {
            readFigures(volume.selected.mount.mountPoint, facts);
        } else if (const auto figures =
                       m_figures.ask(volume.identity, volume.selected.mount.mountPoint)) {
            facts.totalBytes = figures->totalBytes;
            facts.freeBytes = figures->freeBytes;
        }
    }
    m_figures.keepOnly(identities);
    m_disks.request(combined(identities));
    return result;
}

void LinuxVolumeSource::settle(int milliseconds) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    m_disks.wait(until);
    m_figures.wait(until);
}

EjectResult LinuxVolumeSource::eject(std::int16_t refNumber) {
    const Volumes volumes = mounted();
    for (const Volume &volume : *volumes) {
        if (volume.facts.refNumber != refNumber)
            continue;
        if (!isEjectable(volume.facts))
            return {EPERM, "the volume is not one to be ejected", {}};
        if (volume.selected.kind == VolumeKind::BlockDevice)
            return ejectVolume(volume.selected);
        // A question for its figures that is still open would hold the volume.
        m_figures.pause(volume.identity);
        const EjectResult result = ejectVolume(volume.selected);
        m_figures.resume(volume.identity);
        return result;
    }
    return {ENODEV, "there is no such volume", {}};
}

void LinuxVolumeSource::setMountHandler(std::function<void(const MountEvent &)> handler) {
    m_watch.reset();
    const bool watches = bool(handler);
    {
        const std::lock_guard lock(m_mutex);
        m_mountReceiver.set(std::move(handler));
    }
    if (!watches)
        return;
    // Watching begins before the state to compare with is read, and comparing waits for it.
    const std::lock_guard order(m_watchMutex);
    m_announced.clear();
    m_watch = std::make_unique<MountWatch>([this] { mountsChanged(); });
    const Volumes volumes = mounted();
    for (const Volume &volume : *volumes)
        m_announced[volume.identity] = {false, volume.facts.name, volume.facts.root};
}

void LinuxVolumeSource::setFactsHandler(std::function<void()> handler) {
    m_disks.listen(bool(handler));
    const std::lock_guard lock(m_mutex);
    m_factsReceiver.set(std::move(handler));
}

void LinuxVolumeSource::mountsChanged() {
    const std::lock_guard order(m_watchMutex);
    std::map<MountIdentity, MountEvent> now;
    std::vector<MountEvent> events;
    std::vector<MountEvent> added;
    const Volumes volumes = mounted();
    for (const Volume &volume : *volumes) {
        const MountEvent event{false, volume.facts.name, volume.facts.root};
        now[volume.identity] = event;
        if (!m_announced.contains(volume.identity))
            added.push_back({true, event.name, event.root});
    }
    for (const auto &[identity, event] : m_announced) {
        if (!now.contains(identity))
            events.push_back(event);
    }
    events.insert(events.end(), added.begin(), added.end());
    m_announced = std::move(now);

    const std::lock_guard lock(m_mutex);
    const std::weak_ptr handler = m_mountReceiver.handler;
    for (const MountEvent &event : events) {
        m_mountReceiver.queue->post([handler, event] {
            if (const auto held = handler.lock())
                (*held)(event);
        });
    }
}

void LinuxVolumeSource::announceFacts() {
    const std::lock_guard lock(m_mutex);
    if (!m_factsReceiver.handler)
        return;
    m_factsReceiver.queue->post([handler = std::weak_ptr(m_factsReceiver.handler)] {
        if (const auto held = handler.lock())
            (*held)();
    });
}

} // namespace brightsweep
