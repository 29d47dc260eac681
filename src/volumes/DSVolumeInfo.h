#pragma once

#include <QString>

#include <cstdint>
#include <filesystem>

namespace brightsweep {

/// The storage classes of volumes, as `DSVolumeInfo::volType` holds them.
enum VolumeType : std::int32_t {
    LocalStorage = 0,    ///< internal, or otherwise unclassified
    ExternalStorage = 1, ///< on an external bus
    SuperDriver = 2,     ///< optical media
    NetworkStorage = 3,
    DiskImage = 4, ///< said to be removable but on no external bus
};

/// One mounted volume as it was when the volumes were last enumerated. A value without ties to the
/// system: the volume may have gone since.
struct DSVolumeInfo {
    std::int16_t volRefNumber = 0; ///< identity for the lifetime of a mount
    std::int32_t volType = -1;     ///< a VolumeType
    bool bIsDefaultVol = false;    ///< `volRootDir` is exactly "/"
    QString volumeName;
    QString freeSpace;                ///< in words
    QString totalSpace;               ///< in words
    std::filesystem::path volRootDir; ///< the mount point
    QString volIcon;                  ///< name of an image of the icon theme
    bool bCanEject = false;           ///< may be offered for ejecting
    std::uint64_t nTotalSize = 0;     ///< bytes
    std::uint64_t nFreeSize = 0;      ///< bytes available to the user

    /// The key of the text that heads the volumes of a class; empty outside the classes.
    static const char *sectionKey(std::int32_t volType);
    /// The icon of the class; empty outside the classes.
    static QString iconName(std::int32_t volType);
};

} // namespace brightsweep
