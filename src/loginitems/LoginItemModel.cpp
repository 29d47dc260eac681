#include "loginitems/LoginItemModel.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "loginitems/LoginItemController.h"
#include "loginitems/LoginItemWords.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>
#include <QUrl>

#include <memory>
#include <set>

namespace brightsweep {

namespace {

constexpr double fontSize = 12;
constexpr double selectedFontSize = 13.5;

const QString ownRows = QStringLiteral("MyPrivateTableViewDataType");
const QString fileNames = QStringLiteral("text/uri-list");

} // namespace

LoginItemModel::LoginItemModel(LoginItemController &controller) : m_controller(controller) {}

void LoginItemModel::rowChanged(int row) {
    Q_EMIT dataChanged(index(row, 0), index(row, columns - 1));
}

int LoginItemModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_controller.allLoginItemsInfo().size());
}

int LoginItemModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant LoginItemModel::textOf(const LoginItemRow &row, int column) const {
    return column == Name       ? QVariant(row.name)
           : column == buddleid ? QVariant(row.bundleID)
                                : QVariant();
}

QVariant LoginItemModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const LoginItemRow &row = *m_controller.allLoginItemsInfo()[std::size_t(index.row())];
    const LoginItemColumn &column = loginItemColumns[std::size_t(index.column())];
    switch (role) {
    case Qt::DisplayRole:
        return textOf(row, index.column());
    case Qt::CheckStateRole:
        return index.column() == checkBox ? QVariant(row.bIsSelected ? Qt::Checked : Qt::Unchecked)
                                          : QVariant();
    case Qt::AccessibleTextRole:
        if (column.act)
            return localizedText(column.act);
        return index.column() == buddleid ? textOf(row, buddleid)
                                          : QVariant(spokenWords({row.name, reasonOf(row.entry)}));
    case Qt::ToolTipRole:
        return column.act ? plainToolTip({localizedText(column.act)})
                          : plainToolTip({startedBy(row.entry), reasonOf(row.entry),
                                          paths::display(row.entry.file)});
    case PathRole:
        return paths::toVariant(row.path);
    case FileRole:
        return paths::toVariant(row.entry.file);
    case IconNameRole:
        return row.image;
    case PrimaryTextRole:
        return row.name;
    case SecondaryTextRole:
        return startedBy(row.entry);
    case MarkRole:
        return markOf(row.entry);
    case ReasonRole:
        return reasonOf(row.entry);
    case FontSizeRole:
        return index.row() == m_controller.selectRow() ? selectedFontSize : fontSize;
    case ImageRole:
        return QLatin1String(column.image ? column.image : "");
    default:
        return {};
    }
}

bool LoginItemModel::setData(const QModelIndex &index, const QVariant &, int role) {
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() != checkBox)
        return false;
    m_controller.changeHideState(index.row());
    // The cell shows it once the entry says it.
    return false;
}

QVariant LoginItemModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columns)
        return {};
    const LoginItemColumn &column = loginItemColumns[std::size_t(section)];
    if (role == Qt::DisplayRole)
        return column.title ? localizedText(column.title) : QString();
    if (role == Qt::AccessibleTextRole && column.act)
        return localizedText(column.act);
    if (role == Qt::TextAlignmentRole && section == checkBox)
        return Qt::AlignCenter;
    if (role == Qt::ToolTipRole && section == checkBox)
        return localizedText("LOGIN_HIDDEN_HOW");
    return {};
}

Qt::ItemFlags LoginItemModel::flags(const QModelIndex &index) const {
    // Between the rows as well as on them.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    const Qt::ItemFlags flags =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    return index.column() == checkBox ? flags | Qt::ItemIsUserCheckable : flags;
}

QStringList LoginItemModel::mimeTypes() const {
    return {ownRows, fileNames};
}

QMimeData *LoginItemModel::mimeData(const QModelIndexList &indexes) const {
    std::set<int> rows;
    for (const QModelIndex &index : indexes)
        rows.insert(index.row());
    QByteArray archive;
    QDataStream stream(&archive, QIODevice::WriteOnly);
    QList<QUrl> urls;
    for (const int row : rows) {
        stream << qint32(row);
        const QVariant path = data(index(row, Name), PathRole);
        urls += QUrl(paths::toFileUrl(paths::fromVariant(path)));
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(ownRows, archive);
    data->setUrls(urls);
    return data.release();
}

Qt::DropActions LoginItemModel::supportedDropActions() const {
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

bool LoginItemModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int, int,
                                     const QModelIndex &) const {
    return data->hasFormat(ownRows) || data->hasFormat(fileNames);
}

bool LoginItemModel::dropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                  const QModelIndex &parent) {
    if (data->hasFormat(ownRows)) {
        NSLog("zStrAvailableType=%@", ownRows);
        QDataStream stream(data->data(ownRows));
        std::set<int> moved;
        for (qint32 each = 0; !stream.atEnd();) {
            stream >> each;
            moved.insert(each);
        }
        const int place = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
        m_controller.moveRows(moved, place);
        return true;
    }
    if (!data->hasFormat(fileNames))
        return false;
    NSLog("zStrAvailableType=%@", fileNames);
    std::vector<std::filesystem::path> paths;
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        if (auto path = paths::fromFileUrl(QString::fromLatin1(url.toEncoded())))
            paths.push_back(*std::move(path));
    }
    m_controller.addPaths(std::move(paths));
    return true;
}

} // namespace brightsweep
