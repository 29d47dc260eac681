#pragma once

#include "duplicates/SameFileDeleteViewController.h"

#include <QAbstractItemModel>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace brightsweep {

/// The list of the duplicates page as a view shows it: groups, and their files below. Main thread;
/// the page outlives it.
///
/// Groups stand in the order of what they waste until the user asks for another one. A row costs
/// its place alone: an index holds the number of its group, and words are made for what is asked
/// for. Changes come under layoutChanged(), so that expansion and current row stay.
class DuplicateOutlineModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { Checkbox, NameColumn, allSelectNum, FileSize, ModifyDate, columns };
    enum Role {
        PathRole = Qt::UserRole, ///< of a file, in the form of paths::toVariant()
        IconRole,                ///< the path that the row's icon is looked up by
        IsGroupRole,
        NoteRole,    ///< of a group: how many files, and what could go; of a file: whether it is a
                     ///< link
        FailureRole, ///< why a file stayed; empty where it did not
        IsDirectoryRole,
        ShareRole, ///< of a group in the bytes that all waste, from 0 to 1
    };

    explicit DuplicateOutlineModel(SameFileDeleteViewController &page, QObject *parent = nullptr);

    /// What would come back if one file of each group of the list stayed, whatever the filter
    /// shows. Names of one file count once.
    std::uint64_t wastedBytes() const { return m_wasted; }
    /// The folder that all files of the list lie in, where it is one.
    const std::optional<std::filesystem::path> &oneFolder() const { return m_oneFolder; }
    /// Files of a group that stayed at the last removal.
    std::size_t failures(const QModelIndex &group) const;
    /// Null where the rows are gone.
    TreeNode::Pointer nodeOf(const QModelIndex &index) const;
    /// The page's name of a column.
    static QLatin1String columnName(int column);
    /// The page's own actions, with the rows held in place.
    void didClickTableColumn(int column);
    void refViewBgColor(int row);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Row {
        TreeNode::Pointer group;
        std::uint64_t wasted = 0;
        std::uint32_t first = 0; ///< in m_shownLeaves, where there is a filter
        std::uint32_t leaves = 0;
    };
    struct Place {
        QModelIndex before;
        TreeNode::Pointer group;
        TreeNode::Pointer leaf; ///< null for a group
    };

    template <typename Change>
    void changeLayout(Change change);
    void restore(const std::vector<Place> &places);
    void list();
    void listLeaves(Row &row);
    void valuesChanged();
    const Row &rowOf(const QModelIndex &index) const;
    QVariant text(const QModelIndex &index, const TreeNode &node) const;
    QString groupNote(const QModelIndex &group) const;
    QString failureWords(const TreeNode &node) const;

    SameFileDeleteViewController &m_page;
    std::vector<Row> m_rows;
    std::vector<std::uint32_t> m_shownLeaves; ///< children by number, group after group
    bool m_isFiltered = false;
    bool m_changing = false;
    std::uint64_t m_wasted = 0;
    std::optional<std::filesystem::path> m_oneFolder;
};

} // namespace brightsweep
