#pragma once

#include "diskusage/ChartView.h"
#include "diskusage/FolderListing.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <system_error>
#include <vector>

namespace brightsweep {

/// One row of the left list.
struct BigSizeFilesList {
    CleanFileInfo aFileInfo;
    bool isSelected = false;
    bool isDir = false;
    std::uint64_t shownBytes = 0; ///< by the measure of the chart
    std::error_code refusal;      ///< why no removal would take it, as far as that is known
};

/// The rows of the left list: every directory, and the files that are large enough. A row is made
/// when it is asked for. For the main thread.
class BigSizeFilesRows {
public:
    using IsTicked = std::function<bool(const std::filesystem::path &)>;
    using IsLeftOut = std::function<bool(std::string_view name)>;

    explicit BigSizeFilesRows(IsTicked isTicked) : m_isTicked(std::move(isTicked)) {}

    /// Files below the limit get no row, nor do directories that are left out. The refusals are of
    /// the first items.
    void show(FolderListing::Pointer listing, std::vector<std::error_code> refusals,
              std::uint64_t limit, const IsLeftOut &isLeftOut);
    /// Largest first by that measure.
    void setMeasure(ChartMeasure measure);

    std::size_t size() const { return m_rows.size(); }
    bool empty() const { return m_rows.empty(); }
    BigSizeFilesList operator[](std::size_t row) const;
    /// The row of the directory or file with that name; none is `size()`.
    std::size_t find(std::string_view name) const;
    /// Directories without a row.
    std::size_t leftOut() const { return m_leftOut; }
    /// Files without a row.
    std::size_t small() const { return m_small; }
    std::uint64_t smallBytes() const;

private:
    std::uint64_t shownBytes(std::size_t item) const;

    IsTicked m_isTicked;
    FolderListing::Pointer m_listing = std::make_shared<FolderListing>();
    std::vector<std::error_code> m_refusals;
    std::vector<std::uint32_t> m_rows; // of the listing
    ChartMeasure m_measure = ChartMeasure::Size;
    std::size_t m_leftOut = 0;
    std::size_t m_small = 0;
    std::uint64_t m_smallBytes = 0;
    std::uint64_t m_smallStored = 0;
};

} // namespace brightsweep
