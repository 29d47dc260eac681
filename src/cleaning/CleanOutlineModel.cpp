#include "cleaning/CleanOutlineModel.h"

#include "cleaning/ItemSizes.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace brightsweep {

namespace {

constexpr std::array<const char *, CleanOutlineModel::columns> columnTitles = {
    "", QT_TRID_NOOP("Name"), QT_TRID_NOOP("Selected"), QT_TRID_NOOP("Size"),
    QT_TRID_NOOP("Modified")};

Qt::CheckState checkState(const SimpleNodeData &data) {
    return data.selectNum() == 2   ? Qt::PartiallyChecked
           : data.selectNum() == 1 ? Qt::Checked
                                   : Qt::Unchecked;
}

QString holderWords(const QString &program) {
    return localizedText("IN_USE_BY").arg(program);
}

// A group has the name of its category, which is a key.
QString nameWords(const SimpleNodeData &data) {
    const QString name = paths::display(data.name());
    return data.isGroup() ? localizedText(name) : name;
}

QStringList allWords(const SimpleNodeData &data) {
    QStringList words = {nameWords(data)};
    if (data.isLeaf()) {
        const auto &leaf = static_cast<const CleanNodeData &>(data);
        words += leaf.failure;
        if (!leaf.holder.isEmpty())
            words += holderWords(leaf.holder);
    }
    return words;
}

} // namespace

CleanOutlineModel::CleanOutlineModel(CleanResultTree &tree, QObject *parent)
    : QAbstractItemModel(parent), m_tree(tree) {
    list();
}

void CleanOutlineModel::rebuild(const std::vector<ScanViewController *> &tableControllers) {
    if (m_tree.isStale(tableControllers)) {
        changeLayout([&] { m_tree.constructTree(tableControllers); });
    } else {
        m_tree.constructTree(tableControllers);
        valuesChanged();
    }
}

void CleanOutlineModel::setFilter(const QString &text) {
    if (text != m_filter)
        changeLayout([&] { m_filter = text; });
}

bool CleanOutlineModel::hasShownLeaves() const {
    return std::any_of(m_shown.begin(), m_shown.end(),
                       [](const Shown &group) { return !group.leaves.empty(); });
}

void CleanOutlineModel::sort(int column, Qt::SortOrder order) {
    changeLayout([&] {
        m_sortColumn = column;
        m_sortOrder = order;
    });
}

template <typename Change>
void CleanOutlineModel::changeLayout(Change change) {
    Q_EMIT layoutAboutToBeChanged();
    const std::vector<Place> kept = places();
    change();
    list();
    restore(kept);
    Q_EMIT layoutChanged();
}

std::vector<CleanOutlineModel::Place> CleanOutlineModel::places() const {
    std::vector<Place> places;
    for (const QModelIndex &index : persistentIndexList()) {
        const SimpleTreeNode *node = nodeOf(index);
        const CleanResultTree::Group *group = m_tree.groupOf(node);
        if (group)
            places.push_back({index, group->category,
                              node->data().isLeaf() ? node->data().name() : std::string()});
    }
    return places;
}

void CleanOutlineModel::restore(const std::vector<Place> &places) {
    // Only the groups that somebody remembers a row of are looked through.
    std::unordered_map<unsigned, std::unordered_map<std::string_view, int>> rows;
    for (const Place &place : places) {
        if (!place.path.empty())
            rows[place.category].emplace(place.path, -1);
    }
    std::unordered_map<unsigned, int> groupRows;
    for (int row = 0; row < int(m_shown.size()); ++row) {
        const Shown &shown = m_shown[std::size_t(row)];
        groupRows.emplace(shown.category, row);
        const auto wanted = rows.find(shown.category);
        if (wanted == rows.end())
            continue;
        for (int leaf = 0; leaf < int(shown.leaves.size()); ++leaf) {
            const auto found = wanted->second.find(shown.leaves[std::size_t(leaf)]->data().name());
            if (found != wanted->second.end())
                found->second = leaf;
        }
    }
    QModelIndexList from;
    QModelIndexList to;
    for (const Place &place : places) {
        from += place.before;
        QModelIndex now;
        if (const auto group = groupRows.find(place.category); group != groupRows.end()) {
            now = index(group->second, place.before.column());
            if (!place.path.empty()) {
                const auto &leaves = rows[place.category];
                const auto leaf = leaves.find(place.path);
                now = leaf == leaves.end() || leaf->second < 0
                          ? QModelIndex()
                          : index(leaf->second, place.before.column(), now.siblingAtColumn(0));
            }
        }
        to += now;
    }
    changePersistentIndexList(from, to);
}

void CleanOutlineModel::list() {
    m_shown.clear();
    for (const CleanResultTree::Group &group : m_tree.groups()) {
        Shown shown{group.category, group.node.get(), {}};
        shown.leaves.reserve(group.leaves.size());
        for (const CleanResultTree::Node &leaf : group.leaves) {
            const std::string &name = leaf->data().name();
            if (m_filter.isEmpty() ||
                paths::text(std::string_view(name).substr(name.rfind('/') + 1))
                    .contains(m_filter, Qt::CaseInsensitive))
                shown.leaves.push_back(leaf.get());
        }
        order(shown.leaves);
        m_shown.push_back(std::move(shown));
    }
}

void CleanOutlineModel::order(std::vector<SimpleTreeNode *> &leaves) const {
    // Keys side by side: a comparison does not go through the nodes.
    const auto sortBy = [&](auto keyOf) {
        std::vector<std::pair<decltype(keyOf(leaves.front()->data())), SimpleTreeNode *>> keyed;
        keyed.reserve(leaves.size());
        for (SimpleTreeNode *leaf : leaves)
            keyed.emplace_back(keyOf(leaf->data()), leaf);
        const bool ascending = m_sortOrder == Qt::AscendingOrder;
        std::stable_sort(keyed.begin(), keyed.end(), [&](const auto &a, const auto &b) {
            return ascending ? a.first < b.first : b.first < a.first;
        });
        for (std::size_t i = 0; i < leaves.size(); ++i)
            leaves[i] = keyed[i].second;
    };
    switch (m_sortColumn) {
    case Checkbox:
        return sortBy([](const SimpleNodeData &data) { return data.selectNum(); });
    case NameColumn:
        return sortBy([](const SimpleNodeData &data) { return std::string_view(data.name()); });
    case FileSize:
        return sortBy([](const SimpleNodeData &data) { return data.fileSize(); });
    case ModifyDate:
        return sortBy([](const SimpleNodeData &data) { return data.ModificationDate(); });
    default:
        return;
    }
}

void CleanOutlineModel::valuesChanged() {
    if (m_shown.empty())
        return;
    for (int row = 0; row < int(m_shown.size()); ++row) {
        const QModelIndex group = index(row, 0);
        const int leaves = rowCount(group);
        if (leaves > 0)
            Q_EMIT dataChanged(index(0, 0, group), index(leaves - 1, columns - 1, group));
    }
    Q_EMIT dataChanged(index(0, 0), index(int(m_shown.size()) - 1, columns - 1));
}

std::vector<SimpleTreeNode *> CleanOutlineModel::shownLeaves(const QModelIndex &index) const {
    SimpleTreeNode *node = nodeOf(index);
    if (!node)
        return {};
    const Shown *group = shownOf(node);
    return group ? group->leaves : std::vector{node};
}

std::vector<SimpleTreeNode *> CleanOutlineModel::shownLeaves() const {
    std::vector<SimpleTreeNode *> all;
    for (const Shown &shown : m_shown)
        all.insert(all.end(), shown.leaves.begin(), shown.leaves.end());
    return all;
}

const CleanOutlineModel::Shown *CleanOutlineModel::shownOf(const SimpleTreeNode *group) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [&](const Shown &shown) { return shown.group == group; });
    return found == m_shown.end() ? nullptr : &*found;
}

SimpleTreeNode *CleanOutlineModel::nodeOf(const QModelIndex &index) const {
    return index.isValid() ? static_cast<SimpleTreeNode *>(index.internalPointer()) : nullptr;
}

QModelIndex CleanOutlineModel::index(int row, int column, const QModelIndex &parent) const {
    if (row < 0 || column < 0 || column >= columns || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, m_shown[std::size_t(row)].group);
    return createIndex(row, column, m_shown[std::size_t(parent.row())].leaves[std::size_t(row)]);
}

QModelIndex CleanOutlineModel::parent(const QModelIndex &index) const {
    const SimpleTreeNode *node = nodeOf(index);
    if (!node || !node->data().isLeaf())
        return {};
    const Shown *group = shownOf(static_cast<SimpleTreeNode *>(node->nodeParent()));
    return group ? createIndex(int(group - m_shown.data()), 0, group->group) : QModelIndex();
}

int CleanOutlineModel::rowCount(const QModelIndex &parent) const {
    if (!parent.isValid())
        return int(m_shown.size());
    const bool isGroup = parent.column() == 0 && !parent.parent().isValid();
    return isGroup ? int(m_shown[std::size_t(parent.row())].leaves.size()) : 0;
}

int CleanOutlineModel::columnCount(const QModelIndex &) const {
    return columns;
}

QVariant CleanOutlineModel::text(const SimpleNodeData &data, int column) const {
    switch (column) {
    case NameColumn:
        return nameWords(data);
    case allSelectNum:
        return data.isGroup() ? QVariant(QString::fromStdString(data.showSelectNumStr()))
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

QVariant CleanOutlineModel::data(const QModelIndex &index, int role) const {
    const SimpleTreeNode *node = nodeOf(index);
    if (!node)
        return {};
    const SimpleNodeData &data = node->data();
    const auto *leaf = data.isLeaf() ? static_cast<const CleanNodeData *>(&data) : nullptr;
    switch (role) {
    case Qt::DisplayRole:
        return text(data, index.column());
    case Qt::CheckStateRole:
        return index.column() == Checkbox ? QVariant(checkState(data)) : QVariant();
    case Qt::ToolTipRole:
        return plainToolTip(allWords(data));
    case Qt::AccessibleTextRole:
        return index.column() <= NameColumn ? QVariant(spokenWords(allWords(data))) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == FileSize ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                          : QVariant();
    case PathRole:
        return leaf ? paths::toVariant(data.name()) : QVariant();
    case IconRole:
        return paths::toVariant(leaf ? data.name() : data.iconRep());
    case CategoryRole: {
        const auto *group = m_tree.groupOf(node);
        return group ? QVariant(group->category) : QVariant();
    }
    case IsGroupRole:
        return data.isGroup();
    case BytesRole:
        return qulonglong(data.fileSize());
    case FailureRole:
        return leaf ? leaf->failure : QString();
    case ReasonRole:
        return leaf ? QLatin1String(leaf->reasonKey) : QString();
    case ShareRole: {
        const auto *own = leaf ? m_tree.groupOf(node) : nullptr;
        std::uint64_t whole = own ? own->node->data().fileSize() : 0;
        for (const CleanResultTree::Group &group : m_tree.groups())
            whole = leaf ? whole : addSaturating(whole, group.node->data().fileSize());
        return whole > 0 ? double(data.fileSize()) / double(whole) : 0.0;
    }
    case HolderRole:
        return leaf ? leaf->holder : QString();
    case IsDirectoryRole:
        return leaf && leaf->isDirectory;
    default:
        return {};
    }
}

// The value plays no part: the page's own rules say what a click does.
bool CleanOutlineModel::setData(const QModelIndex &index, const QVariant &, int role) {
    if (role != Qt::CheckStateRole || !m_enabled || !index.isValid())
        return false;
    Q_EMIT checkBoxClicked(index);
    return true;
}

Qt::ItemFlags CleanOutlineModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return {};
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == Checkbox && m_enabled)
        flags |= Qt::ItemIsUserCheckable;
    if (nodeOf(index)->data().isLeaf())
        flags |= Qt::ItemNeverHasChildren;
    return flags;
}

QVariant CleanOutlineModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns)
        return {};
    if (role == Qt::AccessibleTextRole && section == Checkbox)
        return localizedText("TICK_ALL");
    // What is large or new is what one looks for first.
    if (role == Qt::InitialSortOrderRole && (section == FileSize || section == ModifyDate))
        return Qt::DescendingOrder;
    if (role == Qt::DisplayRole)
        return localizedText(columnTitles[std::size_t(section)]);
    return role == Qt::TextAlignmentRole && section == FileSize
               ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
               : QVariant();
}

} // namespace brightsweep
