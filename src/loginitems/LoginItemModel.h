#pragma once

#include "loginitems/AppInformation.h"

#include <QAbstractTableModel>

#include <array>
#include <string>
#include <vector>

namespace brightsweep {

class LoginItemController;

/// A column of the login items page.
struct LoginItemColumn {
    const char *identifier;
    const char *title; ///< the key of its text; null for none
    const char *image; ///< of its buttons; null for none
    const char *act;   ///< the key of what a click on a button does; null for none
};

inline constexpr std::array loginItemColumns = {
    LoginItemColumn{"checkBox", QT_TRID_NOOP("LOGIN_HIDDEN"), nullptr, nullptr},
    LoginItemColumn{"Name", QT_TRID_NOOP("Name"), nullptr, nullptr},
    LoginItemColumn{"buddleid", QT_TRID_NOOP("LOGIN_ENTRY"), nullptr, nullptr},
    LoginItemColumn{"open", nullptr, "open.png", QT_TRID_NOOP("LOGIN_OPEN")},
    LoginItemColumn{"view", nullptr, "search_file.png", QT_TRID_NOOP("REVEAL")},
    LoginItemColumn{"deleteItem", nullptr, "delete_loginitem.png", QT_TRID_NOOP("LOGIN_DELETE")},
};

/// The table of login items: shows the controller's rows, calls its actions for what is done in a
/// cell, and takes drops of files and of its own rows. Main thread.
class LoginItemModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { checkBox, Name, buddleid, open, view, deleteItem, columns };
    static_assert(columns == loginItemColumns.size());
    enum Role {
        PathRole = Qt::UserRole, ///< in the form of paths::toVariant()
        FileRole,                ///< the name of the entry's file, likewise
        IconNameRole,            ///< of the icon theme, or an absolute path; may be empty
        PrimaryTextRole,
        SecondaryTextRole,
        MarkRole, ///< why it starts nothing, in a word or two; empty where it does
        ReasonRole,
        FontSizeRole, ///< 12, of the selected row 13.5
        ImageRole,    ///< of a column of buttons
    };

    explicit LoginItemModel(LoginItemController &controller);

    // -- For the controller
    void beginChange() { beginResetModel(); }
    void endChange() { endResetModel(); }
    void rowChanged(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// A click flips the flag, whatever value the view hands over.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    QStringList mimeTypes() const override;
    /// The rows for the table itself, and the paths that they start for other programs.
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    QVariant textOf(const LoginItemRow &row, int column) const;

    LoginItemController &m_controller;
};

} // namespace brightsweep
