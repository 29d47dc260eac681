#pragma once

#include <QAbstractItemModel>

namespace brightsweep {

class DiskUsageAppController;
class FSNode;

/// The list mode's tree for a column browser, with its boxes. Main thread; the controller outlives
/// it.
class FileSystemBrowserModel : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Roles { SizeRole = Qt::UserRole, PathRole };

    explicit FileSystemBrowserModel(DiskUsageAppController &page, QObject *parent = nullptr);

    FSNode *nodeOf(const QModelIndex &index) const;
    QModelIndex indexOf(FSNode &node) const;

    QModelIndex index(int row, int column, const QModelIndex &parent) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent) const override;
    int columnCount(const QModelIndex &parent) const override;
    bool hasChildren(const QModelIndex &parent) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    void tellBoxes(const QModelIndex &parent);

    DiskUsageAppController &m_page;
};

} // namespace brightsweep
