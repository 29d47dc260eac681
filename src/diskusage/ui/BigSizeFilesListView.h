#pragma once

#include "cleaning/ui/FileIcons.h"

#include <QListView>

#include <filesystem>
#include <string>

namespace brightsweep {

class V4DiskUsageViewController;

/// The left list of the results: what the current directory holds, each with its mark, its icon and
/// a bar of its share. A click on the mark ticks, one elsewhere in the row goes into a folder. The
/// controller outlives it. Main thread.
class BigSizeFilesListView : public QListView {
    Q_OBJECT

public:
    explicit BigSizeFilesListView(V4DiskUsageViewController &page, QWidget *parent = nullptr);

    /// Lights the row of a directory, as the mouse would.
    void light(const std::string &path);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The row below the mouse or the keyboard; below 0 for none.
    void rowHovered(int row);
    void removalRequested();
    void menuRequested(int row, const QPoint &place);

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    class Model;
    class Delegate;

    QRect markOf(const QModelIndex &index) const;
    void followList();

    V4DiskUsageViewController &m_page;
    Model *m_model;
    int m_lit = -1;
    std::filesystem::path m_folder; // that is listed
    std::string m_current;          // the name in the current row
    FileIcons m_icons;
};

} // namespace brightsweep
