#include "uninstall/ui/UninstallTable.h"

#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/ResultRowDelegate.h"
#include "core/Texts.h"
#include "ui/Theme.h"
#include "uninstall/UninstallListModel.h"
#include "uninstall/ui/ImageTextCell.h"

#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

namespace brightsweep {

namespace {

using Model = UninstallListModel;
using Page = UninstallAppsController;

ResultRowForm rowForm() {
    ResultRowForm form;
    form.checkColumn = Model::checkBox;
    form.nameColumn = Model::Name;
    form.openColumn = Model::view;
    form.pathRole = Model::PathRole;
    form.failureRole = Model::FailureRole;
    form.imageRole = Model::ImageRole;
    return form;
}

} // namespace

UninstallTable::UninstallTable(Page &page, UninstallListModel &model, QWidget *parent)
    : ResultView(rowForm(), parent),
      m_page(page),
      m_list(model),
      m_cells(new ImageTextCell(rowForm(), model, this)) {
    setObjectName(QStringLiteral("uninstall.table"));
    setAccessibleName(localizedText("Applications"));
    setItemDelegate(m_cells);
    setList(&m_list);
    m_header->setSortIndicator(Model::Name, Qt::AscendingOrder);
    setColumns(Model::Name, Model::Name,
               {{Model::checkBox, {}, false},
                {Model::view, {}, false},
                {Model::Size, theme::widestSize(), false},
                {Model::Date, QStringLiteral("88.88.8888"), true},
                {Model::buddleid, QStringLiteral("org.gnome.SystemMonitor.Devel.desk"), true}});
    m_header->setSortIndicator(Model::Name, Qt::AscendingOrder);
    m_header->moveSection(m_header->visualIndex(Model::buddleid), Model::Size);
    connect(m_header, &CheckHeader::checkBoxClicked, &m_page, &Page::selectAllList);
    connect(m_cells, &ResultRowDelegate::openClicked, this,
            [this](const QModelIndex &index) { m_page.cellClickOfView(index.row()); });
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &index) {
                if (index.isValid())
                    m_page.setSelectRow(index.row());
            });
    connect(&m_list, &QAbstractItemModel::modelReset, this, &UninstallTable::keepPlace);
    connect(&m_page, &Page::messageChanged, this, &UninstallTable::followTicks);
    followTicks();
}

QPixmap UninstallTable::iconOf(int row) const {
    return m_cells->icon(m_list.index(row, Model::Name), devicePixelRatioF());
}

// The page remembers which record was current.
void UninstallTable::keepPlace() {
    if (m_list.rowCount() == 0)
        return;
    const int row = std::clamp(m_page.selectRow(), 0, m_list.rowCount() - 1);
    returnTo(m_list.index(row, Model::checkBox));
}

void UninstallTable::followTicks() {
    m_header->setCheckState(m_page.selectButton()        ? Qt::Checked
                            : m_page.selectedCount() > 0 ? Qt::PartiallyChecked
                                                         : Qt::Unchecked);
}

void UninstallTable::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Delete && m_page.isIdle() && m_page.uninstallButton())
        m_page.uninstallButtonAction();
    else
        ResultView::keyPressEvent(event);
}

bool UninstallTable::hasNoMatch() const {
    return !m_page.filter().isEmpty() && m_list.rowCount() == 0;
}

void UninstallTable::tickSelection() {
    std::vector<int> rows;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        rows.push_back(row.row());
    if (rows.size() == 1)
        return m_page.tick(rows.front());
    const bool isAnyOff = std::any_of(rows.begin(), rows.end(),
                                      [this](int row) { return !m_list.itemAt(row)->bIsSelected; });
    m_page.tick(rows, isAnyOff);
}

void UninstallTable::act(const QModelIndex &index) {
    m_page.cellClickOfView(index.row());
}

void UninstallTable::addActions(QMenu &menu, const QModelIndex &index) {
    menu.addSeparator();
    menu.addAction(localizedText("UNINSTALL_DETAILS"), this,
                   [this, row = QPersistentModelIndex(index)] {
                       if (row.isValid())
                           m_page.cellClickOfView(row.row());
                   });
}

} // namespace brightsweep
