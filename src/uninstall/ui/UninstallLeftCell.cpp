#include "uninstall/ui/UninstallLeftCell.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/NotificationCenter.h"
#include "uninstall/UninstallAppsController.h"

#include <QAbstractListModel>

#include <array>

namespace brightsweep {

namespace {

using Page = UninstallAppsController;

constexpr int leastWidth = 168;

struct LeftRow {
    const char *name; ///< a key
    const char *image;
};

constexpr std::array<LeftRow, Page::rows> leftRows = {{
    {QT_TRID_NOOP("All Applications"), "uninstall_all.png"},
    {QT_TRID_NOOP("System Applications"), "uninstall_system.png"},
    {QT_TRID_NOOP("Applications"), "uninstall_app.png"},
    {QT_TRID_NOOP("Left behind"), "uninstall_left.png"},
}};

class Rows : public QAbstractListModel {
public:
    Rows(Page &page, QObject *parent) : QAbstractListModel(parent), m_page(page) {
        connect(&page, &Page::countsChanged, this,
                [this] { Q_EMIT dataChanged(index(0), index(Page::rows - 1)); });
    }

    int rowCount(const QModelIndex &parent) const override {
        return parent.isValid() ? 0 : Page::rows;
    }

    QVariant data(const QModelIndex &index, int role) const override {
        if (!index.isValid())
            return {};
        const LeftRow &row = leftRows[std::size_t(index.row())];
        const bool isKnown = index.row() == Page::LeftBehindRow ? m_page.leftBehind().isSearched()
                                                                : m_page.isScaned();
        const QString count = isKnown ? readersNumber(m_page.countOfRow(index.row())) : QString();
        switch (role) {
        case Qt::DisplayRole:
            return localizedText(row.name);
        case Qt::DecorationRole:
            return QLatin1String(row.image);
        case LeftCell::SizeRole:
            return count;
        case Qt::AccessibleTextRole:
            return spokenWords({localizedText(row.name), count});
        default:
            return {};
        }
    }

private:
    Page &m_page;
};

} // namespace

void UninstallLeftCell::reportClick(int row) {
    NotificationCenter::defaultCenter().post(changeSelectCellNotification, nullptr,
                                             {{QStringLiteral("PathName"), QStringLiteral(" ")},
                                              {QStringLiteral("UninstallRowNumber"), row}});
}

UninstallLeftList::UninstallLeftList(Page &page, QWidget *parent)
    : LeftList("uninstall.lists", parent), m_page(page) {
    setRows(new Rows(page, this), new UninstallLeftCell(this), {leastWidth, false});
    const auto follow = [this] { showRow(m_page.nowSelectRow()); };
    connect(&page, &Page::allApplicationsChanged, this, follow);
    follow();
}

void UninstallLeftList::chosen(int row) {
    UninstallLeftCell::reportClick(row);
    showRow(m_page.nowSelectRow());
}

} // namespace brightsweep
