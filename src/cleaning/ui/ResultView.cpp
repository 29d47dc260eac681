#include "cleaning/ui/ResultView.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanOutlineController.h"
#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/ResultRowDelegate.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "ui/EmptyState.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int fewRows = 200;
constexpr int checkWidth = 36;
constexpr int leastNameWidth = 248; // before a column of lesser use goes

ResultRowForm outlineForm() {
    ResultRowForm form;
    form.checkColumn = CleanOutlineModel::Checkbox;
    form.nameColumn = CleanOutlineModel::NameColumn;
    form.spannedColumn = CleanOutlineModel::allSelectNum;
    form.pathRole = CleanOutlineModel::PathRole;
    form.directoryRole = CleanOutlineModel::IsDirectoryRole;
    form.failureRole = CleanOutlineModel::FailureRole;
    form.reasonRole = CleanOutlineModel::ReasonRole;
    form.holderRole = CleanOutlineModel::HolderRole;
    form.shareRole = CleanOutlineModel::ShareRole;
    form.fontSize = 11;
    form.isBold = true;
    form.groupRole = CleanOutlineModel::IsGroupRole;
    form.categoryRole = CleanOutlineModel::CategoryRole;
    form.iconRole = CleanOutlineModel::IconRole;
    return form;
}

ResultRowForm listForm() {
    ResultRowForm form;
    form.checkColumn = CategoryListModel::checkBox;
    form.nameColumn = CategoryListModel::Name;
    form.openColumn = CategoryListModel::openFiled;
    form.pathRole = CategoryListModel::PathRole;
    form.directoryRole = CategoryListModel::IsDirectoryRole;
    form.failureRole = CategoryListModel::FailureRole;
    form.reasonRole = CategoryListModel::ReasonRole;
    form.holderRole = CategoryListModel::HolderRole;
    form.shareRole = CategoryListModel::ShareRole;
    form.imageRole = CategoryListModel::ImageRole;
    return form;
}

} // namespace

ResultView::ResultView(const ResultRowForm &form, QWidget *parent)
    : QTreeView(parent),
      m_header(new CheckHeader(this)),
      m_delegate(new ResultRowDelegate(form, this)),
      m_empty(new EmptyState(*this)),
      m_pathRole(form.pathRole) {
    setHeader(m_header);
    setItemDelegate(m_delegate);
    setUniformRowHeights(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    m_header->setStretchLastSection(false);
    m_header->setMinimumSectionSize(1);
    m_header->setSectionResizeMode(QHeaderView::Fixed);
}

void ResultView::setColumns(int name, int size, std::vector<Column> columns) {
    m_columns = std::move(columns);
    m_header->setSectionResizeMode(QHeaderView::Fixed);
    m_header->setSectionResizeMode(name, QHeaderView::Stretch);
    m_header->setSortIndicator(size, Qt::DescendingOrder);
    setSortingEnabled(true);
    theme::keep(this, [this] {
        // The size of a list's rows is asked for once, until its layout is made anew.
        scheduleDelayedItemsLayout();
        fitColumns();
    });
}

void ResultView::setList(QAbstractItemModel *list) {
    setModel(list);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    connect(list, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { m_scroll = verticalScrollBar()->value(); });
}

void ResultView::returnTo(const QModelIndex &row) {
    setAutoScroll(false);
    setCurrentIndex(row);
    setAutoScroll(true);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scroll);
}

void ResultView::open(const QModelIndex &index) {
    Platform::current().workspace->open(paths::fromVariant(index.data(m_pathRole)));
}

void ResultView::reveal(const QModelIndex &index) {
    Platform::current().workspace->reveal(paths::fromVariant(index.data(m_pathRole)));
}

QString ResultView::pathText() const {
    QStringList lines;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        lines += paths::text(paths::fromVariant(row.data(m_pathRole)).native());
    return lines.join(u'\n');
}

void ResultView::sortAgain() {
    model()->sort(m_header->sortIndicatorSection(), m_header->sortIndicatorOrder());
}

void ResultView::fitColumns() {
    int room = viewport()->width();
    std::vector<int> widths;
    for (const Column &column : m_columns) {
        const int words = column.widest.isEmpty() ? theme::height(checkWidth)
                                                  : m_delegate->widthOf(column.widest);
        const int header = column.widest.isEmpty() ? 0 : m_header->contentWidth(column.number);
        widths.push_back(std::max(words, header));
        room -= widths.back();
    }
    // The last ones go first.
    for (std::size_t i = m_columns.size(); i-- > 0;) {
        const bool goes = m_columns[i].isOptional && room < theme::height(leastNameWidth);
        setColumnHidden(m_columns[i].number, goes);
        if (goes)
            room += widths[i];
        else
            m_header->resizeSection(m_columns[i].number, widths[i]);
    }
}

void ResultView::setModel(QAbstractItemModel *model) {
    QTreeView::setModel(model);
    connect(model, &QAbstractItemModel::modelReset, this, &ResultView::sayEmpty);
    connect(model, &QAbstractItemModel::layoutChanged, this, &ResultView::sayEmpty);
    connect(model, &QAbstractItemModel::rowsInserted, this, &ResultView::sayEmpty);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &ResultView::sayEmpty);
}

void ResultView::sayEmpty() {
    m_empty->say(hasNoMatch() ? localizedText("FILTER_NO_MATCH") : QString());
}

void ResultView::resizeEvent(QResizeEvent *event) {
    QTreeView::resizeEvent(event);
    fitColumns();
}

void ResultView::keyPressEvent(QKeyEvent *event) {
    if (event->matches(QKeySequence::Copy)) {
        copyPaths();
    } else if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        openMenuByKeyboard(*this);
    } else if (event->key() == Qt::Key_Space) {
        tickSelection();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (currentIndex().isValid())
            act(currentIndex());
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void ResultView::contextMenuEvent(QContextMenuEvent *event) {
    // The place is the viewport's.
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex clicked = isByKey ? currentIndex() : indexAt(event->pos());
    if (!clicked.isValid())
        return;
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QPersistentModelIndex item(clicked);
    if (!model()->hasChildren(clicked.siblingAtColumn(0))) {
        menu->addAction(localizedText("Open"), this, [this, item] { open(item); });
        menu->addAction(localizedText("REVEAL"), this, [this, item] { reveal(item); });
    }
    menu->addAction(localizedText("COPY_PATH"), this, &ResultView::copyPaths);
    addActions(*menu, clicked);
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(clicked).bottomLeft())
                        : event->globalPos());
}

// The tree looks for the place of every changed row, which takes long where all have changed.
void ResultView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                             const QList<int> &roles) {
    if (bottomRight.row() - topLeft.row() < fewRows || QAccessible::isActive())
        QTreeView::dataChanged(topLeft, bottomRight, roles);
    else
        viewport()->update();
}

void ResultView::copyPaths() const {
    QGuiApplication::clipboard()->setText(pathText());
}

// -- Groups

GroupedResultView::GroupedResultView(const ResultRowForm &form, Neighbour neighbour,
                                     QWidget *parent)
    : ResultView(form, parent),
      m_nameColumn(form.nameColumn),
      m_groupRole(form.groupRole),
      m_neighbour(neighbour) {}

void GroupedResultView::setGroups(QAbstractItemModel *groups) {
    setModel(groups);
    setTreePosition(m_nameColumn);
    theme::keep(this, [this] { setIndentation(theme::height(5 * theme::grid)); });
    connect(groups, &QAbstractItemModel::layoutAboutToBeChanged, this,
            &GroupedResultView::rememberPlace);
    connect(groups, &QAbstractItemModel::layoutChanged, this, &GroupedResultView::keepPlace);
}

void GroupedResultView::rememberPlace() {
    const QModelIndex current = currentIndex();
    const QModelIndex group = current.parent();
    m_group = group.isValid() ? group.row() : current.row();
    m_item = group.isValid() && m_neighbour == Neighbour::Item ? current.row() : -1;
}

// The keyboard goes on where the row was.
void GroupedResultView::keepPlace() {
    if (m_group < 0 || currentIndex().isValid() || model()->rowCount() == 0)
        return;
    const QModelIndex group = model()->index(std::min(m_group, model()->rowCount() - 1), 0);
    const int items = m_item >= 0 && isExpanded(group) ? model()->rowCount(group) : 0;
    setAutoScroll(false);
    setCurrentIndex(items > 0 ? model()->index(std::min(m_item, items - 1), 0, group) : group);
    setAutoScroll(true);
}

void GroupedResultView::act(const QModelIndex &index) {
    if (index.data(m_groupRole).toBool()) {
        const QModelIndex group = index.siblingAtColumn(0);
        setExpanded(group, !isExpanded(group));
    } else {
        reveal(index);
    }
}

// -- The outline

OutlineView::OutlineView(CleanOutlineController &outline, QWidget *parent)
    : GroupedResultView(outlineForm(), Neighbour::Item, parent), m_outline(outline) {
    setObjectName(QStringLiteral("outline"));
    setAccessibleName(localizedText("RESULTS"));
    setGroups(&m_outline.model());
    setColumns(CleanOutlineModel::NameColumn, CleanOutlineModel::FileSize,
               {{CleanOutlineModel::Checkbox, {}, false},
                {CleanOutlineModel::FileSize, theme::widestSize(), false},
                {CleanOutlineModel::allSelectNum, QStringLiteral("88888/88888"), true},
                {CleanOutlineModel::ModifyDate, theme::widestDate(), true}});
    connect(m_header, &CheckHeader::checkBoxClicked, &m_outline,
            &CleanOutlineController::setAllSelectOrNoSelect);
    connect(&m_outline, &CleanOutlineController::ticksChanged, this, &OutlineView::showAllState);
    connect(&m_outline, &CleanOutlineController::reloaded, this, &OutlineView::showAllState);
    showAllState();
}

void OutlineView::showAllState() {
    const TickState state = m_outline.allSelectState();
    m_header->setCheckState(state == TickState::All    ? Qt::Checked
                            : state == TickState::Part ? Qt::PartiallyChecked
                                                       : Qt::Unchecked);
}

void OutlineView::expandFirst() {
    const QModelIndex first = model()->index(0, 0);
    if (!first.isValid())
        return;
    setExpanded(first, true);
    if (!currentIndex().isValid())
        setCurrentIndex(first);
}

void OutlineView::followFilter() {
    const bool isFiltered = !m_outline.model().filter().isEmpty();
    const bool begins = isFiltered && !m_openBefore;
    std::set<unsigned> open;
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex group = model()->index(row, 0);
        const unsigned category = group.data(CleanOutlineModel::CategoryRole).toUInt();
        if (begins && isExpanded(group))
            open.insert(category);
        const bool hasMatch = model()->rowCount(group) > 0;
        setRowHidden(row, {}, isFiltered && !hasMatch);
        if (isFiltered)
            setExpanded(group, hasMatch);
        else if (m_openBefore)
            setExpanded(group, m_openBefore->contains(category));
    }
    if (begins)
        m_openBefore = std::move(open);
    else if (!isFiltered)
        m_openBefore.reset();
    sayEmpty();
}

bool OutlineView::hasNoMatch() const {
    return !m_outline.model().filter().isEmpty() && !m_outline.model().hasShownLeaves();
}

void OutlineView::tickSelection() {
    const QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.size() <= 1) {
        if (currentIndex().isValid())
            m_outline.toggle(currentIndex());
        return;
    }
    const bool isAnyOff = std::any_of(rows.begin(), rows.end(), [](const QModelIndex &row) {
        return row.siblingAtColumn(CleanOutlineModel::Checkbox).data(Qt::CheckStateRole).toInt() !=
               Qt::Checked;
    });
    m_outline.setTicked(rows, isAnyOff);
}

void OutlineView::open(const QModelIndex &index) {
    m_outline.open(index);
}

void OutlineView::reveal(const QModelIndex &index) {
    m_outline.reveal(index);
}

QString OutlineView::pathText() const {
    return m_outline.pathText(selectionModel()->selectedRows());
}

// -- The list of a category

CategoryView::CategoryView(CategoryListModel &list, QWidget *parent)
    : ResultView(listForm(), parent), m_list(list) {
    setObjectName(QStringLiteral("categoryList"));
    setAccessibleName(localizedText("ITEMS"));
    setList(&m_list);
    setColumns(CategoryListModel::Name, CategoryListModel::Size,
               {{CategoryListModel::checkBox, {}, false},
                {CategoryListModel::Size, theme::widestSize(), false},
                {CategoryListModel::openFiled, {}, false}});
    m_header->setCheckState(m_list.selectButton() ? Qt::Checked : Qt::Unchecked);
    connect(m_header, &CheckHeader::checkBoxClicked, &m_list,
            &CategoryListModel::cleanShowSelectNumInBottom);
    connect(&m_list, &CategoryListModel::selectButtonChanged, m_header,
            [this](bool on) { m_header->setCheckState(on ? Qt::Checked : Qt::Unchecked); });
    connect(m_delegate, &ResultRowDelegate::openClicked, this,
            [this](const QModelIndex &index) { m_list.openFinder(index.row()); });
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &index) {
                if (!index.isValid())
                    return;
                m_currentPath = paths::fromVariant(index.data(CategoryListModel::PathRole));
                m_currentRow = index.row();
                m_list.shouldSelectRow(index.row());
            });
    connect(&m_list, &QAbstractItemModel::modelReset, this, &CategoryView::keepPlace);
}

// Rows have gone: what was current stays so, or the row that took its place is.
void CategoryView::keepPlace() {
    const int rows = m_list.rowCount();
    if (m_currentRow < 0 || rows == 0)
        return;
    const int row = m_list.rowOf(m_currentPath).value_or(std::min(m_currentRow, rows - 1));
    returnTo(m_list.index(row, CategoryListModel::checkBox));
}

void CategoryView::tickSelection() {
    const QModelIndexList rows = selectionModel()->selectedRows(CategoryListModel::checkBox);
    const bool isAnyOff = std::any_of(rows.begin(), rows.end(), [](const QModelIndex &row) {
        return row.data(Qt::CheckStateRole).toInt() != Qt::Checked;
    });
    m_list.setTicked(rows, isAnyOff);
}

void CategoryView::act(const QModelIndex &index) {
    m_list.openFinder(index.row());
}

} // namespace brightsweep
