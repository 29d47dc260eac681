#pragma once

#include "uninstall/LeftBehindController.h"

#include <QAbstractTableModel>

namespace brightsweep {

/// The table of what was left behind, in the order in which it was found or by size. Main thread.
/// The controller outlives it.
class LeftBehindModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { checkBox, Name, Size, columns };
    enum Role { PathRole = Qt::UserRole, DirectoryRole, FailureRole, NoteRole };

    explicit LeftBehindModel(LeftBehindController &page, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    LeftBehindController &m_page;
    int m_rows = 0; ///< as told last
};

} // namespace brightsweep
