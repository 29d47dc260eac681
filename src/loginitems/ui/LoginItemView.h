#pragma once

#include <QElapsedTimer>
#include <QTreeView>

#include <string>

namespace brightsweep {

class LoginItemController;
class EmptyState;
class LoginItemDelegate;

/// The table of login items. Space flips the hidden flag, Enter shows the item in the file manager,
/// Delete removes the entry; rows are dragged into another order, files are dropped on it. The
/// current entry stays current when the list is read anew. The controller outlives it. Main thread.
class LoginItemView : public QTreeView {
    Q_OBJECT

public:
    explicit LoginItemView(LoginItemController &controller, QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;

private:
    void fitColumns();
    void act(const QModelIndex &index);
    void keepPlace();
    void sayEmpty();

    LoginItemController &m_controller;
    LoginItemDelegate *m_delegate;
    EmptyState *m_empty;
    std::string m_currentFile;
    int m_currentRow = -1;
    int m_scroll = 0;
    QElapsedTimer m_sinceMoved;  ///< the rows have last become others
    QElapsedTimer m_sinceDelete; ///< the key was let go
    bool m_isReset = false;      ///< the rows have changed, and the current one has not been found
};

} // namespace brightsweep
