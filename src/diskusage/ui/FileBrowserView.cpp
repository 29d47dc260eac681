#include "diskusage/ui/FileBrowserView.h"

#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/ui/TypedName.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <chrono>

namespace brightsweep {

namespace {

constexpr int columnWidth = 280;
constexpr std::chrono::milliseconds settleTime{400};
constexpr int markSide = 18;
constexpr int iconSide = 18;
constexpr int arrowSide = 10;
constexpr double refusedOpacity = 0.35;

QRect markOf(const QRect &row) {
    const int side = theme::height(markSide);
    return mirrored(row, {row.left() + 2 * theme::grid, row.center().y() - side / 2, side, side});
}

const char *markImage(const QModelIndex &index) {
    switch (index.data(Qt::CheckStateRole).toInt()) {
    case Qt::Checked:
        return "option_yes.png";
    case Qt::PartiallyChecked:
        return "option_a.png";
    default:
        return "option_no.png";
    }
}

bool toggle(QAbstractItemModel &model, const QModelIndex &index) {
    const bool isOn = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model.setData(index, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

} // namespace

class FileBrowserView::Cell : public QStyledItemDelegate {
public:
    explicit Cell(FileBrowserView &browser) : QStyledItemDelegate(&browser), m_browser(browser) {}

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override {
        return {theme::height(columnWidth), theme::height(theme::rowHeight)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRect row = option.rect.adjusted(1, 1, -1, -1);
        const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
        painter->setPen(Qt::NoPen);
        painter->setBrush(isCurrent ? theme::selection()
                          : option.state.testFlag(QStyle::State_MouseOver)
                              ? theme::hover()
                              : QColor(Qt::transparent));
        painter->drawRoundedRect(row, theme::radius / 2, theme::radius / 2);
        const FSNode &node = *m_browser.m_model->nodeOf(index);
        painter->setOpacity(node.refusal ? refusedOpacity : 1);
        paintImage(*painter, QLatin1String(markImage(index)), markOf(option.rect));
        painter->setOpacity(1);
        const int side = theme::height(iconSide);
        const QRect icon(row.left() + 4 * theme::grid + theme::height(markSide),
                         row.center().y() - side / 2, side, side);
        m_browser.m_icons
            .icon(paths::fromVariant(index.data(FileSystemBrowserModel::PathRole)),
                  node._isDirectory)
            .paint(painter, mirrored(row, icon));
        const int arrow = theme::height(arrowSide);
        const QRect arrowPlace(row.right() - theme::grid - arrow, row.center().y() - arrow / 2,
                               arrow, arrow);
        if (!node.children.empty())
            paintImage(*painter,
                       m_browser.isRightToLeft() ? QStringLiteral("arrow_left.png")
                                                 : QStringLiteral("arrow_right.png"),
                       mirrored(row, arrowPlace));
        painter->setFont(theme::font(12));
        const QString size = index.data(FileSystemBrowserModel::SizeRole).toString();
        const int sizeWidth = painter->fontMetrics().horizontalAdvance(size);
        const QRect sizes(arrowPlace.left() - theme::grid - sizeWidth, row.top(), sizeWidth,
                          row.height());
        const int left = icon.right() + 2 * theme::grid;
        const QRect names(left, row.top(), sizes.left() - 2 * theme::grid - left, row.height());
        painter->setPen(isCurrent ? theme::text() : theme::accent());
        painter->drawText(mirrored(row, sizes), Qt::AlignCenter | Qt::TextSingleLine, size);
        painter->setPen(theme::text());
        painter->drawText(mirrored(row, names),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          elidedText(painter->fontMetrics(), index.data().toString(),
                                     Qt::ElideMiddle, names.width()));
        painter->restore();
    }

    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override {
        const bool isClick =
            event->type() == QEvent::MouseButtonRelease &&
            markOf(option.rect)
                .adjusted(-theme::grid, -2 * theme::grid, theme::grid, 2 * theme::grid)
                .contains(static_cast<QMouseEvent &>(*event).position().toPoint());
        return isClick && toggle(*model, index);
    }

private:
    FileBrowserView &m_browser;
};

FileBrowserView::FileBrowserView(DiskUsageAppController &page, QWidget *parent)
    : QColumnView(parent), m_model(new FileSystemBrowserModel(page, this)) {
    setObjectName(QStringLiteral("usage.browser"));
    setAccessibleName(localizedText("USAGE_LIST"));
    setResizeGripsVisible(false);
    setItemDelegate(new Cell(*this));
    setModel(m_model);
    connect(m_model, &QAbstractItemModel::modelReset, this, &FileBrowserView::goToFirst);
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleTime);
    connect(&m_settle, &QTimer::timeout, this, [this] { scrollTo(currentIndex()); });
    // No preview at the end of the columns: an empty one takes no room.
    auto *const nothing = new QWidget(this);
    nothing->setFixedWidth(0);
    setPreviewWidget(nothing);
    new TypedName(*this);
    if (auto *const column =
            qobject_cast<QAbstractScrollArea *>(nothing->parentWidget()->parentWidget())) {
        column->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        column->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
}

// The keyboard is on the largest item.
void FileBrowserView::goToFirst() {
    setCurrentIndex(m_model->index(0, 0, {}));
}

void FileBrowserView::focusInEvent(QFocusEvent *event) {
    QColumnView::focusInEvent(event);
    if (!currentIndex().isValid())
        goToFirst();
}

// Before a column has the keyboard, the browser itself does.
void FileBrowserView::keyPressEvent(QKeyEvent *event) {
    if (!takeKey(event->key()))
        QColumnView::keyPressEvent(event);
}

// True where it was one of the keys of all columns, whichever has the keyboard.
bool FileBrowserView::takeKey(int key) {
    const QModelIndex at = currentIndex();
    if (key == Qt::Key_Delete) {
        Q_EMIT removalRequested();
        return true;
    }
    if (key == Qt::Key_Space && at.isValid()) {
        toggle(*m_model, at);
        return true;
    }
    const auto to = placeBy(key);
    if (to)
        goTo(*to);
    return to.has_value();
}

// While the view moves, the keyboard would be in a column that it then takes away and go anywhere,
// or in one in which there is no further to go.
void FileBrowserView::goTo(const QModelIndex &index) {
    if (!index.isValid())
        return;
    setFocusProxy(nullptr);
    setFocus();
    setCurrentIndex(index);
}

// Where the key leads from the current item; not valid at an end, none for other keys.
std::optional<QModelIndex> FileBrowserView::placeBy(int key) const {
    const QModelIndex at = currentIndex();
    if (!at.isValid())
        return {};
    const int last = m_model->rowCount(at.parent()) - 1;
    const int page = std::max(viewport()->height() / theme::height(theme::rowHeight) - 1, 1);
    const auto row = [&](int to) { return at.siblingAtRow(std::clamp(to, 0, last)); };
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        return (key == Qt::Key_Left) == isRightToLeft() ? m_model->index(0, 0, at) : at.parent();
    case Qt::Key_Up:
        return row(at.row() - 1);
    case Qt::Key_Down:
        return row(at.row() + 1);
    case Qt::Key_PageUp:
        return row(at.row() - page);
    case Qt::Key_PageDown:
        return row(at.row() + page);
    case Qt::Key_Home:
        return row(0);
    case Qt::Key_End:
        return row(last);
    default:
        return {};
    }
}

// While the view moves, it takes no other place to move to.
void FileBrowserView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QColumnView::currentChanged(current, previous);
    m_settle.start();
}

QSize FileBrowserView::sizeHint() const {
    return {theme::height(2 * columnWidth), theme::height(10 * theme::rowHeight)};
}

QAbstractItemView *FileBrowserView::createColumn(const QModelIndex &index) {
    QAbstractItemView *const column = QColumnView::createColumn(index);
    column->setItemDelegate(itemDelegate());
    column->setMinimumWidth(theme::height(columnWidth));
    column->setMouseTracking(true);
    column->setTextElideMode(Qt::ElideMiddle);
    column->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    column->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    column->installEventFilter(this);
    column->viewport()->installEventFilter(this);
    new TypedName(*column);
    return column;
}

bool FileBrowserView::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        if (takeKey(static_cast<QKeyEvent &>(*event).key()))
            return true;
    }
    if (event->type() == QEvent::ContextMenu) {
        auto *const column = qobject_cast<QAbstractItemView *>(watched->parent());
        auto &menu = static_cast<QContextMenuEvent &>(*event);
        const QModelIndex index = column ? column->indexAt(menu.pos()) : QModelIndex();
        if (index.isValid())
            Q_EMIT menuRequested(paths::fromVariant(index.data(FileSystemBrowserModel::PathRole)),
                                 m_model->nodeOf(index)->_isDirectory, menu.globalPos());
        return index.isValid();
    }
    return QColumnView::eventFilter(watched, event);
}

} // namespace brightsweep
