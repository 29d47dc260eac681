#include "diskusage/BigSizeFilesRows.h"

#include "foundation/SaturatingSum.h"

#include <algorithm>

namespace brightsweep {

void BigSizeFilesRows::show(FolderListing::Pointer listing, std::vector<std::error_code> refusals,
                            std::uint64_t limit, const IsLeftOut &isLeftOut) {
    m_listing = std::move(listing);
    m_refusals = std::move(refusals);
    m_rows.clear();
    m_leftOut = m_small = 0;
    m_smallBytes = m_smallStored = 0;
    const FolderListing &items = *m_listing;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items.isDirectory(i)) {
            if (isLeftOut(items.name(i))) {
                ++m_leftOut;
                continue;
            }
        } else if (items.shownSize(i) < limit) {
            // By what the words read as, like everything that the page shows.
            ++m_small;
            m_smallBytes = addSaturating(m_smallBytes, items.bytes(i));
            m_smallStored = addSaturating(m_smallStored, items.stored(i));
            continue;
        }
        m_rows.push_back(std::uint32_t(i));
    }
    m_rows.shrink_to_fit();
    setMeasure(m_measure);
}

// By size that is the order of the listing.
void BigSizeFilesRows::setMeasure(ChartMeasure measure) {
    m_measure = measure;
    std::sort(m_rows.begin(), m_rows.end());
    if (measure == ChartMeasure::Stored) {
        std::stable_sort(m_rows.begin(), m_rows.end(), [this](std::uint32_t a, std::uint32_t b) {
            return m_listing->stored(a) > m_listing->stored(b);
        });
    }
}

BigSizeFilesList BigSizeFilesRows::operator[](std::size_t row) const {
    const std::size_t item = m_rows[row];
    BigSizeFilesList result;
    result.aFileInfo = (*m_listing)[item];
    result.isSelected = m_isTicked(result.aFileInfo.path);
    result.isDir = result.aFileInfo.isDirectory;
    result.shownBytes = shownBytes(item);
    if (item < m_refusals.size())
        result.refusal = m_refusals[item];
    return result;
}

std::size_t BigSizeFilesRows::find(std::string_view name) const {
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](std::uint32_t item) {
        return m_listing->name(item) == name;
    });
    return std::size_t(row - m_rows.begin());
}

std::uint64_t BigSizeFilesRows::smallBytes() const {
    return bytesBy(m_measure, m_smallBytes, m_smallStored);
}

std::uint64_t BigSizeFilesRows::shownBytes(std::size_t item) const {
    return bytesBy(m_measure, m_listing->bytes(item), m_listing->stored(item));
}

} // namespace brightsweep
