#include "cleaning/CategoryListModel.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/FolderUtilities.h"
#include "cleaning/ScanViewController.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include "preferences/PreferenceViewController.h"
#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr double fontSize = 12;
constexpr double selectedFontSize = 13.5;

void postCount(const QVariant &object, const QVariantMap &more = {}) {
    QVariantMap userInfo = more;
    userInfo.insert(QStringLiteral("object"), object);
    NotificationCenter::defaultCenter().post(cleanShowSelectNumInBottomNotification, nullptr,
                                             userInfo);
}

} // namespace

CategoryListModel::CategoryListModel(ScanViewController &controller, unsigned category,
                                     QObject *parent)
    : QAbstractTableModel(parent),
      m_controller(controller),
      m_rows(int(controller.rowCount())),
      aTag(category) {}

void CategoryListModel::reload() {
    const int rows = int(m_controller.rowCount());
    if (rows != m_rows) {
        beginResetModel();
        m_rows = rows;
        endResetModel();
    } else if (rows > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rows - 1, columns - 1));
    }
    // A clean may have taken the ticked rows away, or all of them.
    const ScanViewController::Counts counts = m_controller.counts();
    if (m_selectButton && (counts.rows == 0 || counts.ticked < counts.rows))
        setSelectButton(false);
}

void CategoryListModel::setHolders(std::unordered_map<std::string, std::string> programOfPath) {
    m_holders = std::move(programOfPath);
    reload();
}

QString CategoryListModel::holderWords(const CleanFileInfo &row) const {
    const QString holder = holderOf(row);
    return holder.isEmpty() ? QString() : localizedText("IN_USE_BY").arg(holder);
}

QString CategoryListModel::holderOf(const CleanFileInfo &row) const {
    const auto found = m_holders.find(row.path.native());
    return found == m_holders.end() ? QString() : QString::fromUtf8(found->second.c_str());
}

int CategoryListModel::CellClick(int row, int state) {
    if (state != 1)
        return 1;
    const auto item = m_controller.rowAt(std::size_t(row));
    NotificationCenter::defaultCenter().post(
        selectedRowInFastCleanNotification, nullptr,
        {{QStringLiteral("object"), row},
         {QStringLiteral("isSelect"), isSlected},
         {QStringLiteral("iconImage"), item ? paths::toVariant(item->path) : QVariant()}});
    NSLog("CellClick=%d", row);
    return 0;
}

bool CategoryListModel::openFinder(int row) {
    const auto item = m_controller.rowAt(std::size_t(row));
    return item &&
           Platform::current().workspace->open(FolderUtilities::getFolderFromFile(item->path));
}

void CategoryListModel::setTicked(const QModelIndexList &rows, bool ticked) {
    if (!m_enabled || rows.isEmpty())
        return;
    for (const QModelIndex &row : rows)
        m_controller.setSelected(std::size_t(row.row()), ticked);
    isSlected = ticked;
    getSelectAllOrNull();
    reload();
    // One flight for all of them.
    if (ticked)
        CellClick(rows.constFirst().row(), 1);
    postCount(ticked);
}

std::optional<int> CategoryListModel::rowOf(const std::string &path) const {
    const auto row = m_controller.rowOf(path);
    return row ? std::optional(int(*row)) : std::nullopt;
}

void CategoryListModel::cleanShowSelectNumInBottom(bool state) {
    if (!m_enabled)
        return;
    m_controller.selectAll(state);
    getSelectAllOrNull();
    reload();
    postCount(m_controller.rowCount() > 0 && state,
              {{QStringLiteral("startButton"), QStringLiteral("selectButton")},
               {QStringLiteral("animation"), QStringLiteral("animation")}});
}

void CategoryListModel::setAllCheckBoxSelect() {
    selectAll(true);
}

void CategoryListModel::setNoCheckBoxSelect() {
    selectAll(false);
}

void CategoryListModel::selectAll(bool ticked) {
    const ScanViewController::Counts counts = m_controller.counts();
    const bool isSo = counts.ticked == (ticked ? counts.rows : 0);
    if (!isSo)
        m_controller.selectAll(ticked);
    setSelectButton(ticked && counts.rows > 0);
    if (!isSo || int(counts.rows) != m_rows)
        reload();
}

void CategoryListModel::getSelectAllOrNull() {
    const ScanViewController::Counts counts = m_controller.counts();
    const bool all = counts.rows > 0 && counts.ticked == counts.rows;
    setSelectButton(all);
    if (counts.rows > 0)
        changeCheckBoxInUserDefaultsWithNumber(all ? 1 : counts.ticked > 0 ? 2 : 0);
}

void CategoryListModel::changeCheckBoxInUserDefaultsWithNumber(int number) {
    PreferenceViewController::setCategoryClicked(aTag, number);
}

void CategoryListModel::setSelectButton(bool on) {
    m_selectButton = on;
    Q_EMIT selectButtonChanged(on);
}

bool CategoryListModel::shouldSelectRow(int row) {
    m_selectRowNum = row;
    reload();
    return true;
}

bool CategoryListModel::shouldSelectTableColumn(int column) {
    return column != checkBox && column != openFiled;
}

int CategoryListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int CategoryListModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant CategoryListModel::data(const QModelIndex &index, int role) const {
    const auto row = index.isValid() ? m_controller.rowAt(std::size_t(index.row())) : std::nullopt;
    if (!row)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Name   ? QVariant(paths::display(row->name))
               : index.column() == Size ? QVariant(readersSize(row->size))
                                        : QVariant();
    case Qt::CheckStateRole:
        return index.column() == checkBox
                   ? QVariant(row->bIsSelected != 0 ? Qt::Checked : Qt::Unchecked)
                   : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == openFiled ? QVariant(localizedText("REVEAL"))
               : index.column() == Size    ? QVariant()
                                           : QVariant(spokenWords({paths::display(row->name),
                                                                   row->failure, holderWords(*row)}));
    case Qt::ToolTipRole:
        return plainToolTip({paths::display(row->path), row->failure, holderWords(*row)});
    case Qt::TextAlignmentRole:
        return index.column() == Size ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case PathRole:
    case IconRole:
        return paths::toVariant(row->path);
    case PrimaryTextRole:
        return paths::display(row->name);
    case SecondaryTextRole:
        return paths::display(row->path);
    case FailureRole:
        return row->failure;
    case ReasonRole:
        return QLatin1String(row->reasonKey);
    case HolderRole:
        return holderOf(*row);
    case ShareRole: {
        const std::uint64_t whole =
            UtilityFunction::getVolSpaceFromString(m_controller.filesSize());
        return whole > 0 ? std::min(1.0, double(row->shownSize) / double(whole)) : 0.0;
    }
    case IsDirectoryRole:
        return row->isDirectory;
    case FontSizeRole:
        return index.row() == m_selectRowNum ? selectedFontSize : fontSize;
    case ImageRole:
        return index.column() == openFiled ? QVariant(QStringLiteral("search_file.png"))
                                           : QVariant();
    default:
        return {};
    }
}

// A click flips the tick, whatever value the view hands over.
bool CategoryListModel::setData(const QModelIndex &index, const QVariant &, int role) {
    if (!m_enabled || role != Qt::CheckStateRole || !index.isValid() || index.column() != checkBox)
        return false;
    const auto row = m_controller.rowAt(std::size_t(index.row()));
    if (!row)
        return false;
    isSlected = row->bIsSelected == 0;
    m_controller.setSelected(std::size_t(index.row()), isSlected);
    getSelectAllOrNull();
    Q_EMIT dataChanged(index, index);
    if (isSlected)
        CellClick(index.row(), 1);
    postCount(isSlected);
    return true;
}

QVariant CategoryListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole && section == Size)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::InitialSortOrderRole && section == Size)
        return Qt::DescendingOrder;
    if (role == Qt::AccessibleTextRole && section == checkBox)
        return localizedText("TICK_ALL");
    if (role != Qt::DisplayRole)
        return {};
    return section == Name   ? localizedText("Name")
           : section == Size ? localizedText("Size")
                             : QString();
}

Qt::ItemFlags CategoryListModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return {};
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return index.column() == checkBox ? flags | Qt::ItemIsUserCheckable : flags;
}

void CategoryListModel::sort(int column, Qt::SortOrder order) {
    if (!m_enabled || column < 0 || column >= columns)
        return;
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<std::string> paths;
    for (const QModelIndex &index : before) {
        const auto row = m_controller.rowAt(std::size_t(index.row()));
        paths.push_back(row ? row->path.native() : std::string());
    }
    const bool ascending = order == Qt::AscendingOrder;
    m_controller.sortRows([&](const CleanFileInfo &first, const CleanFileInfo &second) {
        const CleanFileInfo &a = ascending ? first : second;
        const CleanFileInfo &b = ascending ? second : first;
        // Sizes as shown: rows that show the same keep their places.
        return column == Size       ? a.shownSize < b.shownSize
               : column == checkBox ? a.bIsSelected < b.bIsSelected
                                    : a.name < b.name;
    });
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto row = m_controller.rowOf(paths[std::size_t(i)]);
        after += row ? index(int(*row), before[i].column()) : QModelIndex();
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

} // namespace brightsweep
