#include "loginitems/ui/LoginItemView.h"

#include "core/Texts.h"
#include "foundation/Paths.h"
#include "loginitems/LoginItemController.h"
#include "loginitems/ui/LoginItemDelegate.h"
#include "ui/EmptyState.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

#include <algorithm>

namespace brightsweep {

namespace {

using Model = LoginItemModel;

constexpr int buttonWidth = 44;
constexpr int leastNameWidth = 320; // before the column of entries goes
constexpr int mostEntryWidth = 240;
// A key that is held may come as one that is let go and pressed again at once, in milliseconds. The
// times of the events are lost where assistive programs listen.
constexpr int heldTime = 10;

// A double click of a slow hand, in milliseconds.
int slowDoubleClick() {
    return 3 * QApplication::doubleClickInterval() / 2;
}

} // namespace

LoginItemView::LoginItemView(LoginItemController &controller, QWidget *parent)
    : QTreeView(parent),
      m_controller(controller),
      m_delegate(new LoginItemDelegate(this)),
      m_empty(new EmptyState(*this, QStringLiteral("start_login_items.png"))) {
    setObjectName(QStringLiteral("tableView"));
    setAccessibleName(localizedText("Login Items"));
    setItemDelegate(m_delegate);
    setModel(&controller.model());
    setRootIsDecorated(false);
    setUniformRowHeights(false); // The selected one is a little higher.
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::CopyAction);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(false);
    header()->setHighlightSections(false);
    header()->setMinimumSectionSize(1);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setSectionResizeMode(Model::Name, QHeaderView::Stretch);
    connect(m_delegate, &LoginItemDelegate::clicked, this, &LoginItemView::act);
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        m_scroll = verticalScrollBar()->value();
        m_isReset = true;
    });
    connect(model(), &QAbstractItemModel::modelReset, this, &LoginItemView::keepPlace);
    connect(&controller, &LoginItemController::listChanged, this, &LoginItemView::sayEmpty);
    header()->setVisible(model()->rowCount() > 0);
    sayEmpty();
    theme::keep(this, [this] {
        scheduleDelayedItemsLayout();
        fitColumns();
    });
}

void LoginItemView::fitColumns() {
    const int button = theme::height(buttonWidth);
    int room = viewport()->width();
    const int check =
        std::max(button, header()->fontMetrics().horizontalAdvance(
                             model()->headerData(Model::checkBox, Qt::Horizontal).toString()) +
                             8 * theme::grid);
    header()->resizeSection(Model::checkBox, check);
    room -= check;
    for (int column = 0; column < Model::columns; ++column) {
        if (!loginItemColumns[std::size_t(column)].image)
            continue;
        header()->resizeSection(column, button);
        room -= button;
    }
    const int entry = std::min(theme::height(mostEntryWidth), room / 3);
    setColumnHidden(Model::buddleid, room - entry < theme::height(leastNameWidth));
    header()->resizeSection(Model::buddleid, entry);
}

void LoginItemView::resizeEvent(QResizeEvent *event) {
    QTreeView::resizeEvent(event);
    fitColumns();
}

void LoginItemView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QTreeView::currentChanged(current, previous);
    if (m_isReset)
        return;
    m_currentRow = current.row();
    m_currentFile = paths::fromVariant(current.data(Model::FileRole)).native();
}

void LoginItemView::selectionChanged(const QItemSelection &selected,
                                     const QItemSelection &deselected) {
    QTreeView::selectionChanged(selected, deselected);
    const QModelIndexList rows = selectionModel()->selectedRows();
    m_controller.shouldSelectRow(rows.isEmpty() ? -1 : rows.constFirst().row());
}

// The entry stays current wherever it stands now; where it has gone, the keyboard goes on at a
// neighbour.
void LoginItemView::keepPlace() {
    m_isReset = false;
    m_sinceMoved.start();
    int row = -1;
    for (int each = 0; each < model()->rowCount() && row < 0; ++each) {
        const QModelIndex index = model()->index(each, Model::Name);
        if (paths::fromVariant(index.data(Model::FileRole)).native() == m_currentFile)
            row = each;
    }
    if (row < 0 && m_currentRow >= 0)
        row = std::min(m_currentRow, model()->rowCount() - 1);
    if (row >= 0) {
        setAutoScroll(false);
        setCurrentIndex(model()->index(row, Model::Name));
        setAutoScroll(true);
    }
    header()->setVisible(model()->rowCount() > 0);
    sayEmpty();
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scroll);
}

void LoginItemView::act(const QModelIndex &index) {
    switch (index.column()) {
    case Model::open:
        return m_controller.openButtonAction(index.row());
    case Model::view:
        return m_controller.viewButtonAction(index.row());
    case Model::deleteItem:
        // Nobody has seen yet that another row lies below the pointer.
        if (m_sinceMoved.isValid() && m_sinceMoved.elapsed() < slowDoubleClick())
            return;
        return m_controller.delLoginItem(index.row());
    default:
        break;
    }
}

void LoginItemView::keyPressEvent(QKeyEvent *event) {
    const QModelIndex current = currentIndex();
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        openMenuByKeyboard(*this);
    } else if (!current.isValid()) {
        QTreeView::keyPressEvent(event);
    } else if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(current.data(Model::SecondaryTextRole).toString());
    } else if (event->key() == Qt::Key_Space) {
        m_controller.changeHideState(current.row());
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        m_controller.viewButtonAction(current.row());
    } else if (event->key() == Qt::Key_Delete) {
        const bool isHeld = event->isAutoRepeat() ||
                            (m_sinceDelete.isValid() && m_sinceDelete.elapsed() < heldTime);
        if (!isHeld)
            m_controller.delLoginItem(current.row());
    } else {
        QTreeView::keyPressEvent(event);
    }
}

void LoginItemView::keyReleaseEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Delete)
        m_sinceDelete.start();
    QTreeView::keyReleaseEvent(event);
}

void LoginItemView::contextMenuEvent(QContextMenuEvent *event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex clicked = isByKey ? currentIndex() : indexAt(event->pos());
    if (!clicked.isValid())
        return;
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // The rows may change while the menu is open; what is meant is told by the entry's file.
    const std::string file = paths::fromVariant(clicked.data(Model::FileRole)).native();
    const auto add = [&](const char *key, void (LoginItemController::*slot)(int)) {
        menu->addAction(localizedText(key), this, [this, file, slot] {
            const auto &rows = m_controller.allLoginItemsInfo();
            const auto found = std::find_if(
                rows.begin(), rows.end(), [&](const auto &row) { return row->entry.file == file; });
            if (found != rows.end())
                (m_controller.*slot)(int(found - rows.begin()));
        });
    };
    add("LOGIN_OPEN", &LoginItemController::openButtonAction);
    add("REVEAL", &LoginItemController::viewButtonAction);
    const bool isHidden =
        clicked.siblingAtColumn(Model::checkBox).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    add(isHidden ? QT_TRID_NOOP("LOGIN_SHOW") : QT_TRID_NOOP("LOGIN_HIDE"),
        &LoginItemController::changeHideState);
    menu->addSeparator();
    add("LOGIN_DELETE", &LoginItemController::delLoginItem);
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(clicked).bottomLeft())
                        : event->globalPos());
}

void LoginItemView::sayEmpty() {
    if (model()->rowCount() > 0 || !m_controller.isListed())
        m_empty->say({});
    else if (m_controller.readProblem().isEmpty())
        m_empty->say(localizedText("LOGIN_NONE"), localizedText("LOGIN_NONE_HOW"));
    else
        m_empty->say(localizedText("LOGIN_CANNOT_READ"),
                     localizedText("LOGIN_CANNOT_READ_HOW").arg(m_controller.readProblem()));
}

} // namespace brightsweep
