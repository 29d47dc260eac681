#pragma once

#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace brightsweep {

class CategoryListModel;
class ScanViewController;

/// What is ticked in the six categories, and how that meets the settings. Main thread; the lists
/// and controllers are the page's, in index order.
class CleanSelection {
public:
    struct Counts {
        std::size_t selected = 0;
        std::size_t total = 0;
        /// The ticked rows' sizes as their words read: a sum of rounded figures.
        std::uint64_t bytes = 0;

        Counts &operator+=(const Counts &more);
    };

    CleanSelection(std::vector<ScanViewController *> controllers,
                   std::vector<CategoryListModel *> lists);

    /// The stored state of each category in words: "0" none, "1" all, "2" part.
    const QStringList &selectArray() const { return m_selectArray; }
    void reload();
    /// The categories of which anything is selected.
    int returnSelectNum() const;

    Counts counts(unsigned category) const;

    /// Ticks the rows of each category by its stored state. A part comes back as all, and is stored
    /// so.
    void applyStored();
    /// All or none of a category's rows.
    void tickAll(unsigned category, bool ticked);
    /// 0 none, 1 all, 2 part, as counted; of a category without rows what is stored.
    static int stateOf(unsigned category, const Counts &counts);
    /// Stores the state of each category that has rows. Gives the states of all.
    std::array<int, 6> store();

private:
    std::vector<ScanViewController *> m_controllers;
    std::vector<CategoryListModel *> m_lists;
    QStringList m_selectArray;
};

} // namespace brightsweep
