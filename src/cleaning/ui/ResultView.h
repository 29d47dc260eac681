#pragma once

#include <QTreeView>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

class QMenu;

namespace brightsweep {

class CheckHeader;
class EmptyState;
class CleanOutlineController;
class CategoryListModel;
class ResultRowDelegate;
struct ResultRowForm;

/// What the lists of results have in common: rows of one height, a check box for all in the
/// header, Space that ticks, Enter that shows but never removes, and a menu for the item under the
/// pointer. Main thread.
class ResultView : public QTreeView {
    Q_OBJECT

public:
    CheckHeader &checkHeader() { return *m_header; }
    /// After a scan, which lists in its own order.
    void sortAgain();
    void setModel(QAbstractItemModel *model) override;

protected:
    ResultView(const ResultRowForm &form, QWidget *parent);

    struct Column {
        int number;
        QString widest;  ///< of its texts; a column of images has none
        bool isOptional; ///< goes where the names would have too little room
    };
    /// The columns beside that of the names, which takes what they leave; the last optional one
    /// goes first. Sorted by the size, the largest first. Once, with the model set.
    void setColumns(int name, int size, std::vector<Column> columns);

    /// A model without groups, whose rows stay scrolled to where they were when it is reset: then
    /// the view makes a row current by returnTo().
    void setList(QAbstractItemModel *list);
    void returnTo(const QModelIndex &row);

    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

    /// Space: the ticks of what is selected.
    virtual void tickSelection() = 0;
    /// Enter.
    virtual void act(const QModelIndex &index) = 0;
    /// By the path of the row, unless a view knows better.
    virtual void open(const QModelIndex &index);
    virtual void reveal(const QModelIndex &index);
    /// Of what is selected, a line each.
    virtual QString pathText() const;
    /// Whether there is a filter that no row matches, which the view then says.
    virtual bool hasNoMatch() const { return false; }
    /// More for the menu of an item.
    virtual void addActions(QMenu &, const QModelIndex &) {}
    void copyPaths() const;
    /// Says so where hasNoMatch() holds. After each change of the model, and whatever else it
    /// depends on.
    void sayEmpty();

    CheckHeader *m_header;
    ResultRowDelegate *m_delegate;

private:
    void fitColumns();

    EmptyState *const m_empty;
    const int m_pathRole;
    int m_scroll = 0; // before the list was reset
    std::vector<Column> m_columns;
};

/// Groups with their items below. Enter folds and unfolds a group and shows an item in the file
/// manager; where the current row has gone, a neighbour takes its place.
class GroupedResultView : public ResultView {
    Q_OBJECT

protected:
    enum class Neighbour { Group, Item };

    GroupedResultView(const ResultRowForm &form, Neighbour neighbour, QWidget *parent);
    /// Once, in place of setModel().
    void setGroups(QAbstractItemModel *groups);

    void act(const QModelIndex &index) override;

private:
    void rememberPlace();
    void keepPlace();

    const int m_nameColumn;
    const int m_groupRole;
    const Neighbour m_neighbour;
    int m_group = -1; // where the current row was, before the rows changed
    int m_item = -1;
};

/// The outline of results: a group for each category, its items below. The controller outlives it.
class OutlineView : public GroupedResultView {
    Q_OBJECT

public:
    explicit OutlineView(CleanOutlineController &outline, QWidget *parent = nullptr);

    void expandFirst();
    /// The model has another filter: groups with a match are open, and those without out of the
    /// way. What was open before comes back with the last letter that is taken away.
    void followFilter();

protected:
    bool hasNoMatch() const override;
    void tickSelection() override;
    void open(const QModelIndex &index) override;
    void reveal(const QModelIndex &index) override;
    QString pathText() const override;

private:
    void showAllState();

    CleanOutlineController &m_outline;
    std::optional<std::set<unsigned>> m_openBefore; // the categories, while there is a filter
};

/// The list of one category. The model outlives it.
class CategoryView : public ResultView {
    Q_OBJECT

public:
    explicit CategoryView(CategoryListModel &list, QWidget *parent = nullptr);

protected:
    void tickSelection() override;
    void act(const QModelIndex &index) override;

private:
    void keepPlace();

    CategoryListModel &m_list;
    std::string m_currentPath;
    int m_currentRow = -1;
};

} // namespace brightsweep
