#include "volumes/DSVolumeInfo.h"

#include <array>

namespace brightsweep {

namespace {

struct VolumeClass {
    const char *sectionKey;
    const char *iconName;
};

// By VolumeType.
constexpr std::array volumeClasses = {
    VolumeClass{QT_TRID_NOOP("LOCAL_STORAGE"), "drive-harddisk"},
    VolumeClass{QT_TRID_NOOP("EXTERNAL_STORAGE"), "drive-removable-media"},
    VolumeClass{QT_TRID_NOOP("SUPER_DRIVER"), "drive-optical"},
    VolumeClass{QT_TRID_NOOP("NETWOR_STORAGE"), "folder-remote"},
    VolumeClass{QT_TRID_NOOP("DISK_IMAGE"), "media-removable"},
};

VolumeClass classOf(std::int32_t volType) {
    if (volType < 0 || std::size_t(volType) >= volumeClasses.size())
        return {"", ""};
    return volumeClasses[std::size_t(volType)];
}

} // namespace

const char *DSVolumeInfo::sectionKey(std::int32_t volType) {
    return classOf(volType).sectionKey;
}

QString DSVolumeInfo::iconName(std::int32_t volType) {
    return QLatin1String(classOf(volType).iconName);
}

} // namespace brightsweep
