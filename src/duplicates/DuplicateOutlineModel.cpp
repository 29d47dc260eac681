#include "duplicates/DuplicateOutlineModel.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/FreedBytes.h"
#include "foundation/Paths.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace brightsweep {

namespace {

struct ColumnRow {
    const char *name; ///< of the page's own
    const char *title;
};
constexpr std::array<ColumnRow, DuplicateOutlineModel::columns> columnRows = {{
    {"Checkbox", ""},
    {"NameColumn", QT_TRID_NOOP("Name")},
    {"allSelectNum", QT_TRID_NOOP("Selected")},
    {"FileSize", QT_TRID_NOOP("Size")},
    {"ModifyDate", QT_TRID_NOOP("Modified")},
}};

// What makes a file something else than a copy.
QString leafNote(const DuplicateLeaf &leaf) {
    if (leaf.searched().kind == SearchedFile::Kind::Link)
        return localizedText("DUP_LINK");
    if (leaf.names() > 1)
        return localizedText("DUP_HARD_LINK", leaf.names());
    return leaf.sharesBlocks() ? localizedText("DUP_SHARES") : QString();
}

} // namespace

DuplicateOutlineModel::DuplicateOutlineModel(SameFileDeleteViewController &page, QObject *parent)
    : QAbstractItemModel(parent), m_page(page) {
    connect(&page, &SameFileDeleteViewController::listChanged, this,
            [this] { changeLayout([] {}); });
    connect(&page, &SameFileDeleteViewController::selectionChanged, this,
            &DuplicateOutlineModel::valuesChanged);
    list();
}

// -- Rows

template <typename Change>
void DuplicateOutlineModel::changeLayout(Change change) {
    // The page tells of a change that began here.
    if (m_changing)
        return;
    m_changing = true;
    Q_EMIT layoutAboutToBeChanged();
    std::vector<Place> places;
    for (const QModelIndex &index : persistentIndexList()) {
        const bool isLeaf = index.internalId() != 0;
        places.push_back({index, rowOf(index).group, isLeaf ? nodeOf(index) : nullptr});
    }
    change();
    list();
    restore(places);
    m_changing = false;
    Q_EMIT layoutChanged();
}

void DuplicateOutlineModel::restore(const std::vector<Place> &places) {
    if (places.empty())
        return;
    std::unordered_map<const TreeNode *, int> rows;
    for (const Place &place : places)
        rows.emplace(place.group.get(), -1);
    for (int row = 0; row < int(m_rows.size()); ++row) {
        const auto wanted = rows.find(m_rows[std::size_t(row)].group.get());
        if (wanted != rows.end())
            wanted->second = row;
    }
    QModelIndexList from;
    QModelIndexList to;
    for (const Place &place : places) {
        const int row = rows[place.group.get()];
        QModelIndex now = row < 0 ? QModelIndex() : index(row, place.before.column());
        if (now.isValid() && place.before.internalId() != 0) {
            const QModelIndex group = now.siblingAtColumn(0);
            now = {};
            for (int leaf = 0; place.leaf && leaf < rowCount(group) && !now.isValid(); ++leaf) {
                const QModelIndex each = index(leaf, place.before.column(), group);
                if (nodeOf(each) == place.leaf)
                    now = each;
            }
        }
        from += place.before;
        to += now;
    }
    changePersistentIndexList(from, to);
}

void DuplicateOutlineModel::list() {
    m_rows.clear();
    m_shownLeaves.clear();
    m_wasted = 0;
    m_isFiltered = !m_page.filter().isEmpty();
    m_oneFolder.reset();
    bool isOneFolder = true;
    const TreeNode::Pointer &tree = m_page.treeData();
    const std::int32_t groups = tree ? tree->numberOfChildren() : 0;
    m_rows.reserve(std::size_t(groups));
    for (std::int32_t i = 0; i < groups; ++i) {
        Row row{tree->childAtIndex(i)};
        row.wasted = wastedBy(*row.group);
        m_wasted += row.wasted;
        listLeaves(row);
        for (std::int32_t leaf = 0; isOneFolder && leaf < row.group->numberOfChildren(); ++leaf) {
            const auto folder = paths::parent(dataOf(*row.group->childAtIndex(leaf)).name());
            isOneFolder = folder == m_oneFolder.value_or(folder);
            m_oneFolder = folder;
        }
        if (row.leaves > 0)
            m_rows.push_back(std::move(row));
    }
    if (!isOneFolder)
        m_oneFolder.reset();
    if (m_page.lastColumn().isEmpty())
        std::stable_sort(m_rows.begin(), m_rows.end(),
                         [](const Row &a, const Row &b) { return a.wasted > b.wasted; });
}

void DuplicateOutlineModel::listLeaves(Row &row) {
    row.leaves = std::uint32_t(row.group->numberOfChildren());
    if (!m_isFiltered)
        return;
    row.first = std::uint32_t(m_shownLeaves.size());
    for (std::uint32_t leaf = 0; leaf < row.leaves; ++leaf) {
        if (m_page.isShown(*row.group->childAtIndex(std::int32_t(leaf))))
            m_shownLeaves.push_back(leaf);
    }
    row.leaves = std::uint32_t(m_shownLeaves.size()) - row.first;
}

void DuplicateOutlineModel::valuesChanged() {
    if (!m_rows.empty() && !m_changing)
        Q_EMIT dataChanged(index(0, 0), index(int(m_rows.size()) - 1, columns - 1));
}

QLatin1String DuplicateOutlineModel::columnName(int column) {
    return QLatin1String(columnRows[std::size_t(column)].name);
}

void DuplicateOutlineModel::didClickTableColumn(int column) {
    changeLayout([&] { m_page.didClickTableColumn(columnName(column)); });
}

void DuplicateOutlineModel::refViewBgColor(int row) {
    changeLayout([&] { m_page.refViewBgColor(row); });
}

// -- Places

// The number of an index is 0 for a group, and for a file that of its group, from 1 on.
QModelIndex DuplicateOutlineModel::index(int row, int column, const QModelIndex &parent) const {
    if (row < 0 || column < 0 || column >= columns || row >= rowCount(parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) + 1 : quintptr(0));
}

QModelIndex DuplicateOutlineModel::parent(const QModelIndex &index) const {
    if (!index.isValid() || index.internalId() == 0)
        return {};
    return createIndex(int(index.internalId()) - 1, 0, quintptr(0));
}

int DuplicateOutlineModel::rowCount(const QModelIndex &parent) const {
    if (!parent.isValid())
        return int(m_rows.size());
    return parent.internalId() == 0 && parent.column() == 0 ? int(rowOf(parent).leaves) : 0;
}

int DuplicateOutlineModel::columnCount(const QModelIndex &) const {
    return columns;
}

const DuplicateOutlineModel::Row &DuplicateOutlineModel::rowOf(const QModelIndex &index) const {
    return m_rows[index.internalId() == 0 ? std::size_t(index.row()) : index.internalId() - 1];
}

TreeNode::Pointer DuplicateOutlineModel::nodeOf(const QModelIndex &index) const {
    if (!index.isValid())
        return nullptr;
    const Row &row = rowOf(index);
    if (index.internalId() == 0)
        return row.group;
    const auto place = std::size_t(index.row());
    const auto leaf = std::int32_t(m_isFiltered ? m_shownLeaves[row.first + place] : place);
    // While files are being removed a group has fewer than when its rows were made.
    return leaf < row.group->numberOfChildren() ? row.group->childAtIndex(leaf) : nullptr;
}

// -- Words

QVariant DuplicateOutlineModel::text(const QModelIndex &index, const TreeNode &node) const {
    const SimpleNodeData &data = dataOf(node);
    switch (index.column()) {
    case NameColumn:
        return paths::display(data.isGroup() ? data.name() : paths::lastComponent(data.name()));
    case allSelectNum:
        return data.isGroup() ? QVariant(QString::fromStdString(DuplicateSelection::countOf(node)))
                              : QVariant();
    case FileSize:
        return sizeWords(data.fileSize());
    case ModifyDate:
        return data.isLeaf() && data.ModificationDate()
                   ? QVariant(dateWords(*data.ModificationDate()))
                   : QVariant();
    default:
        return {};
    }
}

std::size_t DuplicateOutlineModel::failures(const QModelIndex &group) const {
    const TreeNode &node = *rowOf(group).group;
    std::size_t count = 0;
    for (std::int32_t i = 0; m_page.report().failed > 0 && i < node.numberOfChildren(); ++i)
        count += m_page.failureOf(node.childAtIndex(i).get()).isEmpty() ? 0 : 1;
    return count;
}

// How many files there are, what could go of them, and what stayed though it was to go.
QString DuplicateOutlineModel::groupNote(const QModelIndex &group) const {
    const Row &row = rowOf(group);
    const QString note = localizedText("DUP_GROUP_NOTE", std::size_t(row.group->numberOfChildren()))
                             .arg(sizeWords(row.wasted));
    const std::size_t failed = failures(group);
    return failed == 0 ? note
                       : note + QStringLiteral(" · ") + localizedText("DUP_GROUP_STAYED", failed);
}

QString DuplicateOutlineModel::failureWords(const TreeNode &node) const {
    const QString failure = m_page.failureOf(&node);
    return failure.isEmpty() ? QString() : localizedText(failure);
}

QVariant DuplicateOutlineModel::data(const QModelIndex &index, int role) const {
    const TreeNode::Pointer node = nodeOf(index);
    if (!node)
        return {};
    const SimpleNodeData &data = dataOf(*node);
    const auto note = [&] { return data.isGroup() ? groupNote(index) : leafNote(leafOf(*node)); };
    switch (role) {
    case Qt::DisplayRole:
        return text(index, *node);
    case Qt::CheckStateRole:
        if (index.column() != Checkbox)
            return {};
        return data.selectNum() == 2   ? Qt::PartiallyChecked
               : data.selectNum() == 1 ? Qt::Checked
                                       : Qt::Unchecked;
    case Qt::ToolTipRole:
        return plainToolTip({paths::display(data.name()), failureWords(*node)});
    case Qt::AccessibleTextRole:
        return index.column() > NameColumn ? QVariant()
                                           : QVariant(spokenWords({paths::display(data.name()),
                                                                   note(), failureWords(*node)}));
    case Qt::TextAlignmentRole:
        return index.column() == FileSize ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                          : QVariant();
    case PathRole:
        return data.isLeaf() ? paths::toVariant(data.name()) : QVariant();
    case IconRole:
        return paths::toVariant(data.name());
    case IsGroupRole:
        return data.isGroup();
    case NoteRole:
        return note();
    case FailureRole:
        return data.isGroup() ? QString() : m_page.failureOf(node.get());
    case IsDirectoryRole: {
        const TreeNode::Pointer leaf = data.isLeaf() ? node : node->firstChild();
        return leaf && leafOf(*leaf).searched().kind == SearchedFile::Kind::Bundle;
    }
    case ShareRole:
        return data.isGroup() && m_wasted > 0 ? double(rowOf(index).wasted) / double(m_wasted)
                                              : 0.0;
    default:
        return {};
    }
}

// The value plays no part: the page's own rules say what a click does.
bool DuplicateOutlineModel::setData(const QModelIndex &index, const QVariant &, int role) {
    const TreeNode::Pointer node = role == Qt::CheckStateRole ? nodeOf(index) : nullptr;
    if (node)
        m_page.setSelectState(node);
    return node != nullptr;
}

Qt::ItemFlags DuplicateOutlineModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return {};
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == Checkbox)
        flags |= Qt::ItemIsUserCheckable;
    if (index.internalId() != 0)
        flags |= Qt::ItemNeverHasChildren;
    return flags;
}

QVariant DuplicateOutlineModel::headerData(int section, Qt::Orientation orientation,
                                           int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns)
        return {};
    if (role == Qt::AccessibleTextRole && section == Checkbox)
        return localizedText("TICK_ALL");
    if (role == Qt::DisplayRole)
        return localizedText(columnRows[std::size_t(section)].title);
    return role == Qt::TextAlignmentRole && section == FileSize
               ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
               : QVariant();
}

} // namespace brightsweep
