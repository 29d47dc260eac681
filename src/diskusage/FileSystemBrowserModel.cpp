#include "diskusage/FileSystemBrowserModel.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/FSNodeStates.h"
#include "foundation/Paths.h"
#include "removal/RemovalReason.h"

#include <algorithm>

namespace brightsweep {

FileSystemBrowserModel::FileSystemBrowserModel(DiskUsageAppController &page, QObject *parent)
    : QAbstractItemModel(parent), m_page(page) {
    connect(&page, &DiskUsageAppController::rowsWillChange, this, [this] { beginResetModel(); });
    connect(&page, &DiskUsageAppController::rowsChanged, this, [this] { endResetModel(); });
    connect(&page, &DiskUsageAppController::boxesChanged, this, [this] { tellBoxes({}); });
}

// Every column that is open shows boxes.
void FileSystemBrowserModel::tellBoxes(const QModelIndex &parent) {
    const int rows = rowCount(parent);
    if (rows == 0)
        return;
    Q_EMIT dataChanged(index(0, 0, parent), index(rows - 1, 0, parent), {Qt::CheckStateRole});
}

FSNode *FileSystemBrowserModel::nodeOf(const QModelIndex &index) const {
    return index.isValid() ? static_cast<FSNode *>(index.internalPointer()) : m_page._rootNode();
}

QModelIndex FileSystemBrowserModel::indexOf(FSNode &node) const {
    if (!node.father)
        return {};
    const auto &siblings = node.father->children;
    const auto place = std::find_if(siblings.begin(), siblings.end(),
                                    [&node](const auto &each) { return each.get() == &node; });
    return createIndex(int(place - siblings.begin()), 0, &node);
}

QModelIndex FileSystemBrowserModel::index(int row, int column, const QModelIndex &parent) const {
    const FSNode *const node = nodeOf(parent);
    if (!node || column != 0 || row < 0 || std::size_t(row) >= node->children.size())
        return {};
    return createIndex(row, column, node->children[std::size_t(row)].get());
}

QModelIndex FileSystemBrowserModel::parent(const QModelIndex &index) const {
    const FSNode *const node = index.isValid() ? nodeOf(index) : nullptr;
    return node && node->father ? indexOf(*node->father) : QModelIndex();
}

int FileSystemBrowserModel::rowCount(const QModelIndex &parent) const {
    const FSNode *const node = nodeOf(parent);
    return node ? int(node->children.size()) : 0;
}

int FileSystemBrowserModel::columnCount(const QModelIndex &) const {
    return 1;
}

bool FileSystemBrowserModel::hasChildren(const QModelIndex &parent) const {
    return rowCount(parent) > 0;
}

Qt::ItemFlags FileSystemBrowserModel::flags(const QModelIndex &index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                           : Qt::ItemFlags();
}

QVariant FileSystemBrowserModel::data(const QModelIndex &index, int role) const {
    const FSNode *const node = index.isValid() ? nodeOf(index) : nullptr;
    if (!node)
        return {};
    const auto size = [node] { return sizeWords(node->size); };
    switch (role) {
    case Qt::DisplayRole:
        return paths::display(node->displayName());
    case Qt::CheckStateRole:
        return node->_state == NodeOn      ? Qt::Checked
               : node->_state == NodeMixed ? Qt::PartiallyChecked
                                           : Qt::Unchecked;
    case Qt::AccessibleTextRole:
        return spokenWords({paths::display(node->displayName()), size()});
    case Qt::ToolTipRole:
        return plainToolTip({paths::display(node->_path()),
                             node->refusal ? localizedText(reasonKey(node->refusal)) : QString()});
    case SizeRole:
        return size();
    case PathRole:
        return paths::toVariant(node->_path());
    default:
        return {};
    }
}

bool FileSystemBrowserModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    FSNode *const node = index.isValid() ? nodeOf(index) : nullptr;
    if (!node || role != Qt::CheckStateRole)
        return false;
    m_page.setNodeTicked(*node, value.toInt() == Qt::Checked);
    for (QModelIndex above = index; above.isValid(); above = above.parent())
        tellBoxes(above.parent());
    tellBoxes(index);
    return true;
}

} // namespace brightsweep
