#include "results/CleanFileInfo.h"

#include "core/UtilityFunction.h"

#include <utility>

namespace brightsweep {

CleanFileInfo::CleanFileInfo(QString itemIcon, std::string itemName, std::filesystem::path itemPath,
                             QString itemSize, std::uint64_t bytes)
    : icon(std::move(itemIcon)),
      name(std::move(itemName)),
      path(std::move(itemPath)),
      size(std::move(itemSize)),
      fileSizeNum(bytes),
      shownSize(size.size() < 2 ? 0 : UtilityFunction::getVolSpaceFromString(size)) {}

int CleanFileInfo::compareBySize(const CleanFileInfo &other) const {
    const std::uint64_t own = UtilityFunction::getVolSpaceFromString(size);
    const std::uint64_t others = UtilityFunction::getVolSpaceFromString(other.size);
    return others < own ? -1 : others > own ? 1 : 0;
}

CleanFileInfo CleanFileInfo::copyWithZone() const {
    return {icon, name, path, size, fileSizeNum};
}

} // namespace brightsweep
