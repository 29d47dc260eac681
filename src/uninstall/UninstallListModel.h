#pragma once

#include "uninstall/UninstallAppsController.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace brightsweep {

/// The table of the uninstall page: the list that the controller shows, in its order. Main thread.
/// The controller outlives it.
class UninstallListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { checkBox, Name, Size, Date, buddleid, view, columns };
    enum Role {
        PathRole = Qt::UserRole, ///< the exact bytes
        ImageRole,               ///< of a column of images
        FailureRole,             ///< why it stayed at the last removal
    };

    explicit UninstallListModel(UninstallAppsController &page, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    void sort(int column, Qt::SortOrder order) override;

    // What the cell of a name draws.
    const QString &iconForCell(const QModelIndex &index) const;
    const QString &primaryTextForCell(const QModelIndex &index) const;
    const QString &secondaryTextForCell(const QModelIndex &index) const;
    /// How it came onto the machine and what else there is to know, a word or two each.
    QStringList badgesForCell(const QModelIndex &index) const;

    const AppItems::Pointer &itemAt(int row) const;

private:
    QString toolTipOf(const AppItems &item) const;
    QString spokenOf(const QModelIndex &index) const;

    UninstallAppsController &m_page;
    int m_rows = 0; ///< as told last
};

} // namespace brightsweep
