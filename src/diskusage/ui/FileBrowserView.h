#pragma once

#include "cleaning/ui/FileIcons.h"
#include "diskusage/FileSystemBrowserModel.h"

#include <QColumnView>
#include <QTimer>

#include <optional>

namespace brightsweep {

/// The column browser of the list mode. A click on a box ticks, Space too; Delete asks. Main
/// thread; the controller outlives it.
class FileBrowserView : public QColumnView {
    Q_OBJECT

public:
    explicit FileBrowserView(DiskUsageAppController &page, QWidget *parent = nullptr);

    QSize sizeHint() const override;

Q_SIGNALS:
    void removalRequested();
    void menuRequested(const std::filesystem::path &path, bool isFolder, const QPoint &place);

protected:
    QAbstractItemView *createColumn(const QModelIndex &index) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    class Cell;

    void goToFirst();
    bool takeKey(int key);
    std::optional<QModelIndex> placeBy(int key) const;
    void goTo(const QModelIndex &index);

    FileSystemBrowserModel *m_model;
    FileIcons m_icons;
    QTimer m_settle;
};

} // namespace brightsweep
