#pragma once

#include "foundation/CallQueue.h"
#include "linux/MountTableReader.h"
#include "platform/VolumeSource.h"
#include "platform/linux/MountWatch.h"
#include "platform/linux/ReferenceNumbers.h"
#include "platform/linux/RemoteFigures.h"
#include "platform/linux/UDisksWatch.h"

#include <sys/types.h>

#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace brightsweep {

/// The volumes of the mount table, with what the kernel, UDisks2 and, for network and
/// user file systems, their servers tell of them. Service and servers answer on threads of their
/// own; volumes() gives what is known by then.
///
/// The handlers belong to the thread that sets them; they are set and taken back there, and that
/// thread outlives this object or takes them back before.
class LinuxVolumeSource final : public VolumeSource {
public:
    LinuxVolumeSource();
    ~LinuxVolumeSource() override;

    std::vector<VolumeFacts> volumes() override;
    void settle(int milliseconds) override;
    EjectResult eject(std::int16_t refNumber) override;
    void setMountHandler(std::function<void(const MountEvent &)> handler) override;
    void setFactsHandler(std::function<void()> handler) override;

private:
    struct Volume {
        SelectedVolume selected;
        MountIdentity identity = 0;
        VolumeFacts facts;
        bool isDirectory = true;
    };
    /// A handler and the queue that brings calls to its thread.
    template <typename... Arguments>
    struct Receiver {
        std::shared_ptr<std::function<void(Arguments...)>> handler;
        std::unique_ptr<CallQueue> queue;

        void set(std::function<void(Arguments...)> function);
    };
    using Volumes = std::shared_ptr<const std::vector<Volume>>;
    /// What the volumes were made of. While it is the same, they are.
    struct Origin {
        std::shared_ptr<const UDisksSnapshot> snapshot;
        std::string home;
        std::string prefix;
        timespec labelsChanged = {};
        ino_t labels = 0;

        bool operator==(const Origin &other) const;
    };

    Origin currentOrigin() const;
    Volumes mounted();
    std::vector<Volume> makeVolumes(const Origin &origin);
    static bool hasOtherClass(const std::vector<Volume> &before, const std::vector<Volume> &now);
    void mountsChanged();
    void announceFacts();

    ReferenceNumbers m_numbers;
    std::mutex m_knownMutex; ///< of the next five
    MountTableReader m_table;
    std::vector<Mount> m_mounts;
    Origin m_origin;
    Volumes m_known;         ///< as they were made last
    bool m_mayStand = false; ///< false where they must be made anew
    std::mutex m_mutex;      ///< of the receivers
    Receiver<const MountEvent &> m_mountReceiver;
    Receiver<> m_factsReceiver;
    std::mutex m_watchMutex; ///< of what is announced; taken before the other
    std::map<MountIdentity, MountEvent> m_announced;

    // Last, so that their threads end first.
    RemoteFigures m_figures;
    UDisksWatch m_disks;
    std::unique_ptr<MountWatch> m_watch;
};

} // namespace brightsweep
