#include "uninstall/LeftBehindModel.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "uninstall/UninstallTexts.h"

namespace brightsweep {

LeftBehindModel::LeftBehindModel(LeftBehindController &page, QObject *parent)
    : QAbstractTableModel(parent), m_page(page), m_rows(int(page.items().size())) {
    connect(&page, &LeftBehindController::itemsChanged, this, [this] {
        beginResetModel();
        m_rows = int(m_page.items().size());
        endResetModel();
    });
    connect(&page, &LeftBehindController::ticksChanged, this, [this] {
        if (m_rows > 0)
            Q_EMIT dataChanged(index(0, 0), index(m_rows - 1, columns - 1));
    });
}

int LeftBehindModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int LeftBehindModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(columns);
}

QVariant LeftBehindModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const Leftover &item = m_page.items().at(std::size_t(index.row()));
    const QString failure = m_page.failureOf(std::size_t(index.row()));
    const QString note =
        UninstallTexts::leftoverNote(item, UninstallTexts::translated(item.reason));
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Name   ? paths::display(paths::lastComponent(item.path))
               : index.column() == Size ? sizeWords(item.bytes)
                                        : QString();
    case Qt::CheckStateRole:
        if (index.column() == checkBox)
            return item.ticked ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::TextAlignmentRole:
        return int(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::ToolTipRole:
        return plainToolTip({paths::displayFromHome(item.path), note, failure});
    case Qt::AccessibleTextRole:
        return index.column() == Name
                   ? spokenWords({paths::displayFromHome(item.path), note, failure})
                   : data(index, Qt::DisplayRole);
    case PathRole:
        return paths::toVariant(item.path);
    case DirectoryRole:
        return item.seen.type == EntryType::Directory;
    case FailureRole:
        return failure;
    case NoteRole:
        return note;
    default:
        return {};
    }
}

bool LeftBehindModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || index.column() != checkBox || role != Qt::CheckStateRole ||
        !m_page.isReady())
        return false;
    m_page.tick({index.row()}, value.toInt() == Qt::Checked);
    return true;
}

QVariant LeftBehindModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return section == Name   ? localizedText("Name")
               : section == Size ? localizedText("Size")
                                 : QString();
    if (role == Qt::TextAlignmentRole)
        return int((section == Size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags LeftBehindModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return {};
    const auto flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    const bool canGo = !m_page.items().at(std::size_t(index.row())).refusal;
    return index.column() == checkBox && canGo ? flags | Qt::ItemIsUserCheckable : flags;
}

} // namespace brightsweep
