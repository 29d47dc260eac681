#pragma once

#include <QListView>

namespace brightsweep {

class LeftCell;

/// The list on the left of a page, of which one row is chosen. It follows the page without choosing
/// anything itself. Main thread.
class LeftList : public QListView {
    Q_OBJECT

protected:
    LeftList(const char *name, QWidget *parent);

    struct Width {
        int least; ///< before theme::height()
        bool hasCheckBoxes;
    };
    /// Once, before the list is shown.
    void setRows(QAbstractItemModel *rows, LeftCell *cell, Width width);
    /// Shows the row that the page has chosen, or none where it is not in the list.
    void showRow(int row);
    /// The user has chosen another row.
    virtual void chosen(int row) = 0;

    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    bool m_following = false;
};

} // namespace brightsweep
