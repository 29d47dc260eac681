#include "diskusage/FolderListing.h"

#include "core/UtilityFunction.h"
#include "foundation/Paths.h"

#include <algorithm>

namespace brightsweep {

void FolderListing::add(std::string_view name, std::uint64_t bytes, std::uint64_t stored,
                        bool isDirectory) {
    m_items.push_back(
        {bytes, stored,
         UtilityFunction::getVolSpaceFromString(UtilityFunction::convertVolSpace(bytes)),
         m_names.size(), std::uint8_t(name.size()), isDirectory});
    m_names += name;
}

void FolderListing::sort() {
    std::sort(m_items.begin(), m_items.end(), [this](const Item &first, const Item &second) {
        return first.shownSize != second.shownSize ? second.shownSize < first.shownSize
                                                   : name(first) < name(second);
    });
    m_items.shrink_to_fit();
    m_names.shrink_to_fit();
}

CleanFileInfo FolderListing::operator[](std::size_t index) const {
    const Item &item = m_items[index];
    CleanFileInfo info(QString(), std::string(name(index)), paths::join(m_folder, name(index)),
                       UtilityFunction::convertVolSpace(item.bytes), item.bytes);
    info.stored = item.stored;
    info.isDirectory = item.isDirectory;
    return info;
}

std::string_view FolderListing::name(const Item &item) const {
    return std::string_view(m_names).substr(item.nameAt, item.nameLength);
}

} // namespace brightsweep
