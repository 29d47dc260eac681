#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep {

/// Bits of VolumeFacts::extendedAttributes.
inline constexpr std::uint32_t volumeIsEjectableBit = 1u << 0;
inline constexpr std::uint32_t volumeIsRemovableBit = 1u << 25;
inline constexpr std::uint32_t volumeIsOnExternalBusBit = 1u << 27;

enum class OpticalMedia { Unknown, No, Yes };

/// What the system knows of one mounted volume.
struct VolumeFacts {
    std::int16_t refNumber = 0; ///< positive, stays with the mount, the same in every process
    std::string name;           ///< the label, else the last component of the root; bytes
    std::filesystem::path root;
    std::uint64_t totalBytes = 0;
    std::uint64_t freeBytes = 0; ///< available to the user
    std::uint16_t version = 3;   ///< of the attributes; below 3 the extended ones do not count
    std::uint32_t attributes = 0;
    std::uint32_t extendedAttributes = 0;
    std::uint32_t serverAddress = 0; ///< not 0 for a network volume
    std::string deviceId;            ///< such as "sda1"; empty without a block device
    OpticalMedia optical = OpticalMedia::Unknown;
    bool parametersKnown = true; ///< false: the attributes could not be read
    int parametersError = 0;     ///< why not, on the scale of VolumesInfo; 0 while they are known
};

struct EjectResult {
    int status = 0;                   ///< 0: gone; else an errno-like number
    std::string message;              ///< the system's words, for the log
    std::vector<std::string> holders; ///< names of the programs that hold the volume, if known
    bool driveStays = false; ///< all is unmounted, but the drive or the image is not let go
};

struct MountEvent {
    bool mounted = false;
    std::string name; ///< as VolumeFacts::name
    std::filesystem::path root;
};

/// The mounted volumes that a user would call such: what they are, their figures, ejecting, events.
///
/// The first enumeration waits for no service and no server; facts and figures that arrive later
/// show at the next one. volumes() and eject() are safe from every thread; eject() blocks until
/// the volume has gone or will not go, which may be minutes, and is not called on the main thread
/// of a program with a window.
class VolumeSource {
public:
    virtual ~VolumeSource();
    virtual std::string unavailableReason() const { return {}; }

    /// In mount order, the root first.
    virtual std::vector<VolumeFacts> volumes() = 0;
    /// Waits at most that long for what volumes() had to leave open: a service's facts, a server's
    /// figures. For programs that ask once.
    virtual void settle(int milliseconds) = 0;
    virtual EjectResult eject(std::int16_t refNumber) = 0;

    /// Called on the thread that set them, through its event loop. Null stops watching.
    virtual void setMountHandler(std::function<void(const MountEvent &)> handler) = 0;
    /// Called when later facts changed the class or the eject flag of a listed volume, or gave one
    /// its first figures.
    virtual void setFactsHandler(std::function<void()> handler) = 0;
};

} // namespace brightsweep
