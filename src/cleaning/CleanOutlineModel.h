#pragma once

#include "cleaning/CleanResultTree.h"

#include <QAbstractItemModel>

#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// The outline of results as a view shows it: groups at the top, their leaves below, sorted within
/// their group and narrowed to names that hold a text. Main thread.
///
/// It makes words only for what is asked for, so that 100,000 rows cost no more than their places.
/// Rebuilds, sorting and filtering change places under layoutChanged(): expansion, current row and
/// scroll stay with the rows that stay. A tick is only passed on; the page carries it out.
class CleanOutlineModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { Checkbox, NameColumn, allSelectNum, FileSize, ModifyDate, columns };
    enum Role {
        PathRole = Qt::UserRole, ///< of a leaf, in the form of paths::toVariant()
        IconRole,                ///< a leaf's own path, to look its icon up by; a group's icon name
        CategoryRole,            ///< the index of the category
        IsGroupRole,
        BytesRole,
        FailureRole, ///< why the last removal failed; empty where none did
        ReasonRole,  ///< the key of the same in two or three words
        HolderRole,  ///< the program that holds something of the item open; empty where none does
        IsDirectoryRole, ///< of a leaf, as the scan found it
        ShareRole,       ///< of a leaf in its group, of a group in all, from 0 to 1
    };

    explicit CleanOutlineModel(CleanResultTree &tree, QObject *parent = nullptr);

    /// Takes the controllers' rows over.
    void rebuild(const std::vector<ScanViewController *> &tableControllers);
    /// Shows only the leaves whose name (the last component) holds the text in any case of letters;
    /// the groups stay, so that what was expanded is so afterwards. An empty text shows all.
    void setFilter(const QString &text);
    QString filter() const { return m_filter; }
    /// False where the filter leaves nothing.
    bool hasShownLeaves() const;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    /// While false no tick is taken.
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// The leaves of a group that are shown; of a leaf, itself.
    std::vector<SimpleTreeNode *> shownLeaves(const QModelIndex &index) const;
    std::vector<SimpleTreeNode *> shownLeaves() const;
    SimpleTreeNode *nodeOf(const QModelIndex &index) const;
    /// Ticks, figures or marks of any rows have changed, their places not.
    void valuesChanged();

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /// The user clicked the check box of a row.
    void checkBoxClicked(const QModelIndex &index);

private:
    struct Shown {
        unsigned category = 0;
        SimpleTreeNode *group = nullptr;
        std::vector<SimpleTreeNode *> leaves;
    };
    /// A row by what it stands for, which outlives its node. The path is empty for a group.
    struct Place {
        QModelIndex before;
        unsigned category = 0;
        std::string path;
    };

    template <typename Change>
    void changeLayout(Change change);
    std::vector<Place> places() const;
    void restore(const std::vector<Place> &places);
    void list();
    void order(std::vector<SimpleTreeNode *> &leaves) const;
    const Shown *shownOf(const SimpleTreeNode *group) const;
    QVariant text(const SimpleNodeData &data, int column) const;

    CleanResultTree &m_tree;
    std::vector<Shown> m_shown;
    QString m_filter;
    int m_sortColumn = -1; // in the order of the rows
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    bool m_enabled = true;
};

} // namespace brightsweep
