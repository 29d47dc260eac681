#include "uninstall/UninstallListModel.h"

#include "core/CheckImage.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "uninstall/UninstallTexts.h"

#include <array>
#include <optional>

namespace brightsweep {

namespace {

using Page = UninstallAppsController;

struct ColumnForm {
    const char *title; ///< a key, or null
    std::optional<Page::SortKey> sortKey;
    bool isFigure = false;
};

// In the order of the columns.
constexpr std::array<ColumnForm, UninstallListModel::columns> columnForms = {{
    {nullptr, {}},
    {QT_TRID_NOOP("Name"), Page::SortKey::Name},
    {QT_TRID_NOOP("Size"), Page::SortKey::Size, true},
    {QT_TRID_NOOP("COLUMN_INSTALLED"), Page::SortKey::Date},
    {QT_TRID_NOOP("COLUMN_ID"), {}},
    {nullptr, {}},
}};

} // namespace

UninstallListModel::UninstallListModel(Page &page, QObject *parent)
    : QAbstractTableModel(parent), m_page(page), m_rows(int(page.allApplications().size())) {
    connect(&m_page, &Page::allApplicationsChanged, this, [this] {
        beginResetModel();
        m_rows = int(m_page.allApplications().size());
        endResetModel();
    });
    connect(&m_page, &Page::rowsChanged, this, [this] {
        if (m_rows > 0)
            Q_EMIT dataChanged(index(0, 0), index(m_rows - 1, columns - 1));
    });
}

int UninstallListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int UninstallListModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(columns);
}

const AppItems::Pointer &UninstallListModel::itemAt(int row) const {
    return m_page.allApplications().at(std::size_t(row));
}

QVariant UninstallListModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const AppItems &item = *itemAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case Name:
            return item.name;
        case Size:
            return item.fileSizeNum > 0 ? sizeWords(item.fileSizeNum) : QString();
        case Date:
            return item.date.isValid() ? reader().toString(item.date.date(), QLocale::ShortFormat)
                                       : QString();
        case buddleid:
            return item.bundleID;
        default:
            return {};
        }
    case Qt::CheckStateRole:
        if (index.column() == checkBox)
            return item.bIsSelected ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::TextAlignmentRole:
        return columnForms[std::size_t(index.column())].isFigure ? int(Qt::AlignRight)
                                                                 : int(Qt::AlignLeft);
    case Qt::ToolTipRole:
        return index.column() == view ? localizedText("UNINSTALL_DETAILS") : toolTipOf(item);
    case Qt::AccessibleTextRole:
        return spokenOf(index);
    case PathRole:
        return paths::toVariant(item.path);
    case ImageRole:
        return index.column() == view ? QStringLiteral("search_file.png") : QString();
    case FailureRole:
        return m_page.failureOf(item);
    default:
        return {};
    }
}

bool UninstallListModel::setData(const QModelIndex &index, const QVariant &, int role) {
    if (!index.isValid() || index.column() != checkBox || role != Qt::CheckStateRole ||
        !m_page.isIdle())
        return false;
    m_page.tick(index.row());
    return true;
}

QVariant UninstallListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns)
        return {};
    const ColumnForm &form = columnForms[std::size_t(section)];
    if (role == Qt::DisplayRole)
        return form.title ? localizedText(form.title) : QString();
    if (role == Qt::TextAlignmentRole)
        return int((form.isFigure ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags UninstallListModel::flags(const QModelIndex &index) const {
    if (!index.isValid())
        return {};
    const auto flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == checkBox ? flags | Qt::ItemIsUserCheckable : flags;
}

void UninstallListModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columns)
        return;
    if (const auto key = columnForms[std::size_t(column)].sortKey)
        m_page.sort(*key, order == Qt::DescendingOrder);
}

const QString &UninstallListModel::iconForCell(const QModelIndex &index) const {
    return itemAt(index.row())->image;
}

const QString &UninstallListModel::primaryTextForCell(const QModelIndex &index) const {
    return itemAt(index.row())->name;
}

const QString &UninstallListModel::secondaryTextForCell(const QModelIndex &index) const {
    return itemAt(index.row())->bundleVersion;
}

QStringList UninstallListModel::badgesForCell(const QModelIndex &index) const {
    const AppItems &item = *itemAt(index.row());
    QStringList badges;
    if (item.application)
        badges += UninstallTexts::kind(item.application->kind);
    if (item.isSystemApp)
        badges += localizedText("BADGE_SYSTEM");
    if (item.isRunning)
        badges += localizedText("BADGE_RUNNING");
    return badges;
}

QString UninstallListModel::toolTipOf(const AppItems &item) const {
    return plainToolTip(
        {item.name, paths::displayFromHome(item.path),
         item.isSystemApp ? UninstallTexts::systemReason(*item.application) : QString(),
         m_page.failureOf(item)});
}

QString UninstallListModel::spokenOf(const QModelIndex &index) const {
    const AppItems &item = *itemAt(index.row());
    if (index.column() == checkBox)
        return item.name;
    if (index.column() == view)
        return localizedText("UNINSTALL_DETAILS");
    if (index.column() != Name)
        return data(index, Qt::DisplayRole).toString();
    return spokenWords(QStringList{item.name, item.bundleVersion} + badgesForCell(index) +
                       QStringList{m_page.failureOf(item)});
}

} // namespace brightsweep
