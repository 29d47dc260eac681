#include "duplicates/ui/DuplicatesView.h"

#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/ResultRowDelegate.h"
#include "core/Texts.h"
#include "duplicates/ui/TickMenu.h"
#include "foundation/Paths.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QMenu>

namespace brightsweep {

namespace {

using Model = DuplicateOutlineModel;
using Page = SameFileDeleteViewController;

// Groups, so that a list of very many stays one that can be overlooked.
constexpr int mostUnfolded = 50;

ResultRowForm rowForm() {
    ResultRowForm form;
    form.checkColumn = Model::Checkbox;
    form.nameColumn = Model::NameColumn;
    form.spannedColumn = Model::allSelectNum;
    form.pathRole = Model::PathRole;
    form.directoryRole = Model::IsDirectoryRole;
    form.failureRole = Model::FailureRole;
    form.reasonRole = Model::FailureRole;
    form.shareRole = Model::ShareRole;
    form.groupRole = Model::IsGroupRole;
    form.iconRole = Model::IconRole;
    form.noteRole = Model::NoteRole;
    form.fontSize = 12;
    return form;
}

} // namespace

DuplicatesView::DuplicatesView(Page &page, DuplicateOutlineModel &model, QWidget *parent)
    : GroupedResultView(rowForm(), Neighbour::Group, parent), m_page(page), m_model(model) {
    setObjectName(QStringLiteral("duplicates.outline"));
    setAccessibleName(localizedText("RESULTS"));
    setGroups(&m_model);
    setColumns(Model::NameColumn, Model::FileSize,
               {{Model::Checkbox, {}, false},
                {Model::FileSize, theme::widestSize(), false},
                {Model::allSelectNum, QStringLiteral("888/888"), true},
                {Model::ModifyDate, theme::widestDate(), true}});
    // The page sorts; a click tells it, and the arrow follows what it did.
    setSortingEnabled(false);
    m_header->setSectionsClickable(true);
    m_header->setSortIndicatorShown(true);
    connect(m_header, &QHeaderView::sectionClicked, this, &DuplicatesView::sortClicked);
    connect(m_header, &CheckHeader::checkBoxClicked, &m_page, &Page::setAllSelectOrNoSelect);
    connect(&m_page, &Page::controlsChanged, this, &DuplicatesView::follow);
    connect(&m_page, &Page::selectionChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&m_model, &QAbstractItemModel::layoutChanged, this, &DuplicatesView::follow);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &index) { select(index); });
    follow();
}

void DuplicatesView::follow() {
    m_header->setCheckState(m_page.controls().allSelectState);
    // What wastes most comes first until an order is asked for: that is no column's.
    int column = -1;
    for (int each = 0; each < Model::columns; ++each) {
        if (m_page.lastColumn() == Model::columnName(each))
            column = each;
    }
    m_header->setSortIndicator(column,
                               m_page.sortDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void DuplicatesView::sortClicked(int column) {
    if (column == Model::NameColumn || column == Model::FileSize || column == Model::ModifyDate)
        m_model.didClickTableColumn(column);
    follow();
}

void DuplicatesView::expandFirst() {
    const QModelIndex first = m_model.index(0, 0);
    if (!first.isValid())
        return;
    setExpanded(first, true);
    scrollToTop();
    setCurrentIndex(first);
}

void DuplicatesView::showFailures() {
    QModelIndex first;
    int unfolded = 0;
    for (int row = 0; row < m_model.rowCount() && unfolded < mostUnfolded; ++row) {
        const QModelIndex group = m_model.index(row, 0);
        if (m_model.failures(group) == 0)
            continue;
        setExpanded(group, true);
        ++unfolded;
        for (int leaf = 0; !first.isValid() && leaf < m_model.rowCount(group); ++leaf) {
            const QModelIndex each = m_model.index(leaf, 0, group);
            if (!each.data(Model::FailureRole).toString().isEmpty())
                first = each;
        }
    }
    if (first.isValid()) {
        scrollTo(first.parent(), PositionAtTop);
        setCurrentIndex(first);
    }
}

void DuplicatesView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Delete && m_page.controls().remove)
        m_page.removeBtnClicked();
    else
        GroupedResultView::keyPressEvent(event);
}

// More than one row: all of them are ticked or, where they are ticked, unticked.
void DuplicatesView::tickSelection() {
    TreeNode::List nodes;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        nodes.push_back(m_model.nodeOf(row));
    if (nodes.size() <= 1) {
        if (const auto node = m_model.nodeOf(currentIndex()))
            m_page.setSelectState(node);
        return;
    }
    m_page.setSelectState(nodes);
}

bool DuplicatesView::select(const QModelIndex &index) {
    const auto node = m_model.nodeOf(index);
    if (node)
        m_page.shouldSelectItem(*node);
    return node != nullptr;
}

void DuplicatesView::open(const QModelIndex &index) {
    if (select(index))
        m_page.openFinderBtnClicked();
}

void DuplicatesView::reveal(const QModelIndex &index) {
    if (select(index))
        m_page.RevealInFinderBtnClicked();
}

QString DuplicatesView::pathText() const {
    QStringList lines;
    const auto add = [&](const QModelIndex &leaf) {
        lines += paths::text(paths::fromVariant(leaf.data(Model::PathRole)).native());
    };
    for (const QModelIndex &row : selectionModel()->selectedRows()) {
        if (!row.data(Model::IsGroupRole).toBool())
            add(row);
        // Of a group that is folded, all of it.
        for (int leaf = 0; !isExpanded(row) && leaf < m_model.rowCount(row); ++leaf)
            add(m_model.index(leaf, 0, row));
    }
    return lines.join(u'\n');
}

void DuplicatesView::addActions(QMenu &menu, const QModelIndex &index) {
    const TreeNode::Pointer node = m_model.nodeOf(index);
    if (!node || !m_page.controls().outline)
        return;
    menu.addSeparator();
    const bool isLeaf = !index.data(Model::IsGroupRole).toBool();
    if (isLeaf)
        menu.addAction(localizedText("DUP_KEEP_THIS"), &m_page,
                       [this, node] { m_page.keepOnly(node); });
    TickMenu::addRules(menu, m_page, isLeaf ? node->nodeParent()->shared_from_this() : node);
}

bool DuplicatesView::hasNoMatch() const {
    return !m_page.filter().isEmpty() && m_model.rowCount() == 0;
}

} // namespace brightsweep
