#include "diskusage/ui/BigSizeFilesListView.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "diskusage/V4DiskUsageViewController.h"
#include "diskusage/ui/TypedName.h"
#include "foundation/Paths.h"
#include "removal/RemovalReason.h"
#include "ui/ElidedText.h"
#include "ui/FocusFrame.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QAbstractListModel>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr int markSide = 18;
constexpr int iconSide = 20;
constexpr int leastWidth = 300;

} // namespace

class BigSizeFilesListView::Model : public QAbstractListModel {
public:
    Model(V4DiskUsageViewController &page, QObject *parent)
        : QAbstractListModel(parent), m_page(page), m_count(rows().size()) {}

    const BigSizeFilesRows &rows() const { return m_page.allShowListArr(); }

    void reset() {
        beginResetModel();
        m_count = rows().size();
        endResetModel();
    }
    void marks() {
        if (m_count > 0)
            Q_EMIT dataChanged(index(0), index(int(m_count) - 1), {Qt::CheckStateRole});
    }

    int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : int(std::min(m_count, rows().size()));
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override {
        return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
    }
    QVariant data(const QModelIndex &index, int role) const override {
        if (!index.isValid() || std::size_t(index.row()) >= rows().size())
            return {};
        const BigSizeFilesList row = rows()[std::size_t(index.row())];
        const QString name = paths::display(row.aFileInfo.name);
        const QString size = sizeWords(row.shownBytes);
        switch (role) {
        case Qt::DisplayRole:
            return name;
        case Qt::CheckStateRole:
            return row.isSelected ? Qt::Checked : Qt::Unchecked;
        case Qt::AccessibleTextRole:
            return spokenWords({name, size});
        case Qt::ToolTipRole:
            return plainToolTip(
                {name, size, row.refusal ? localizedText(reasonKey(row.refusal)) : QString()});
        default:
            return {};
        }
    }
    bool setData(const QModelIndex &index, const QVariant &, int role) override {
        if (role != Qt::CheckStateRole || !index.isValid())
            return false;
        m_page.colorButtonAction(std::size_t(index.row()));
        return true;
    }

private:
    V4DiskUsageViewController &m_page;
    std::size_t m_count;
};

class BigSizeFilesListView::Delegate : public QStyledItemDelegate {
public:
    explicit Delegate(BigSizeFilesListView &list) : QStyledItemDelegate(&list), m_list(list) {}

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override {
        return {0, theme::height(theme::rowHeight)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        const auto &rows = m_list.m_model->rows();
        if (std::size_t(index.row()) >= rows.size())
            return;
        const BigSizeFilesList row = rows[std::size_t(index.row())];
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRect frame = option.rect.adjusted(1, 1, -1, -1);
        const bool isLit = option.state.testFlag(QStyle::State_MouseOver) ||
                           index.row() == m_list.m_lit ||
                           (FocusFrame::isShown(m_list) && index == m_list.currentIndex());
        painter->setPen(Qt::NoPen);
        if (isLit) {
            painter->setBrush(index.row() == m_list.m_lit ? theme::selection() : theme::hover());
            painter->drawRoundedRect(frame, theme::radius / 2, theme::radius / 2);
        }
        const std::uint64_t all = m_list.m_page.shownRootBytes();
        if (all > 0) {
            const double share = std::min(1.0, double(row.shownBytes) / double(all));
            QRect bar(frame.left(), frame.bottom() - 2, int(frame.width() * share), 3);
            painter->setBrush(isLit ? theme::accent() : theme::shareLine());
            painter->drawRect(mirrored(frame, bar));
        }
        const QRect mark = m_list.markOf(index);
        if (row.refusal)
            painter->setOpacity(0.35);
        const char *const image = row.isDir ? row.isSelected ? "Folder_yes.png" : "Folder_no.png"
                                  : row.isSelected ? "File_yes.png"
                                                   : "File_no.png";
        paintImage(*painter, QLatin1String(image), mark);
        painter->setOpacity(1);
        const int side = theme::height(iconSide);
        const int left = frame.left() + 4 * theme::grid + theme::height(markSide);
        const QRect icon(left, frame.center().y() - side / 2, side, side);
        m_list.m_icons.icon(row.aFileInfo.path, row.isDir).paint(painter, mirrored(frame, icon));
        painter->setFont(theme::font(12));
        const QString size = sizeWords(row.shownBytes);
        const int sizeWidth = painter->fontMetrics().horizontalAdvance(size);
        const QRect sizes(frame.right() - 2 * theme::grid - sizeWidth, frame.top(), sizeWidth,
                          frame.height());
        const int nameLeft = icon.right() + 2 * theme::grid;
        const QRect names(nameLeft, frame.top(), sizes.left() - 3 * theme::grid - nameLeft,
                          frame.height());
        painter->setPen(isLit ? theme::text() : theme::secondary());
        painter->drawText(mirrored(frame, sizes), Qt::AlignCenter | Qt::TextSingleLine, size);
        painter->setPen(row.refusal && !isLit ? theme::secondary() : theme::text());
        painter->drawText(mirrored(frame, names),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          elidedText(painter->fontMetrics(), index.data().toString(),
                                     Qt::ElideMiddle, names.width()));
        painter->restore();
    }

private:
    BigSizeFilesListView &m_list;
};

BigSizeFilesListView::BigSizeFilesListView(V4DiskUsageViewController &page, QWidget *parent)
    : QListView(parent),
      m_page(page),
      m_model(new Model(page, this)),
      m_folder(page.currentPath()) {
    setObjectName(QStringLiteral("usage.list"));
    new TypedName(*this);
    setAccessibleName(localizedText("USAGE_LIST"));
    setModel(m_model);
    setItemDelegate(new Delegate(*this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    connect(&page, &V4DiskUsageViewController::listChanged, this,
            &BigSizeFilesListView::followList);
    connect(&page, &V4DiskUsageViewController::marksChanged, m_model, &Model::marks);
}

// A folder that is listed anew keeps its place and its current row; the row of the folder that one
// comes up from is the current one.
void BigSizeFilesListView::followList() {
    const std::filesystem::path before = std::exchange(m_folder, m_page.currentPath());
    const bool isSame = before == m_folder;
    const int place = isSame ? verticalScrollBar()->value() : 0;
    const int row = currentIndex().row();
    const std::string name = isSame                              ? m_current
                             : paths::parent(before) == m_folder ? paths::lastComponent(before)
                                                                 : std::string();
    m_lit = -1;
    m_model->reset();
    const int count = m_model->rowCount();
    if (count == 0)
        return;
    int current = int(std::min(m_model->rows().find(name), std::size_t(count)));
    if (current == count)
        current = isSame ? std::clamp(row, 0, count - 1) : 0;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(place);
    setCurrentIndex(m_model->index(current));
    if (isSame)
        verticalScrollBar()->setValue(place);
}

QSize BigSizeFilesListView::sizeHint() const {
    return {theme::height(leastWidth), theme::height(10 * theme::rowHeight)};
}

QRect BigSizeFilesListView::markOf(const QModelIndex &index) const {
    const QRect row = visualRect(index).adjusted(1, 1, -1, -1);
    const int side = theme::height(markSide);
    return mirrored(row, {row.left() + 2 * theme::grid, row.center().y() - side / 2, side, side});
}

void BigSizeFilesListView::light(const std::string &path) {
    // What is found may lie deeper: its folder in this list is lit.
    const std::size_t row = m_page.rowOf(path);
    const int lit = row < m_model->rows().size() ? int(row) : -1;
    if (lit == m_lit)
        return;
    m_lit = lit;
    viewport()->update();
}

void BigSizeFilesListView::mouseMoveEvent(QMouseEvent *event) {
    QListView::mouseMoveEvent(event);
    Q_EMIT rowHovered(indexAt(event->position().toPoint()).row());
}

void BigSizeFilesListView::leaveEvent(QEvent *event) {
    QListView::leaveEvent(event);
    Q_EMIT rowHovered(-1);
}

void BigSizeFilesListView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QListView::currentChanged(current, previous);
    if (current.isValid())
        m_current = m_model->rows()[std::size_t(current.row())].aFileInfo.name;
    if (FocusFrame::isShown(*this))
        Q_EMIT rowHovered(current.row());
}

void BigSizeFilesListView::mousePressEvent(QMouseEvent *event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid() || event->button() != Qt::LeftButton) {
        QListView::mousePressEvent(event);
        return;
    }
    setCurrentIndex(index);
    const QRect mark =
        markOf(index).adjusted(-theme::grid, -2 * theme::grid, theme::grid, 2 * theme::grid);
    if (mark.contains(event->position().toPoint()))
        m_page.colorButtonAction(std::size_t(index.row()));
    else
        m_page.mouseDownClick(std::size_t(index.row()));
}

void BigSizeFilesListView::keyPressEvent(QKeyEvent *event) {
    const auto row = std::size_t(currentIndex().row());
    const bool hasRow = currentIndex().isValid();
    switch (event->key()) {
    case Qt::Key_Space:
        if (hasRow)
            m_page.colorButtonAction(row);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (hasRow)
            m_page.mouseDownClick(row);
        return;
    case Qt::Key_Backspace:
        m_page.openGLView().goUp();
        return;
    case Qt::Key_Delete:
        Q_EMIT removalRequested();
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void BigSizeFilesListView::contextMenuEvent(QContextMenuEvent *event) {
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKeyboard ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    Q_EMIT menuRequested(index.row(), byKeyboard
                                          ? viewport()->mapToGlobal(visualRect(index).center())
                                          : event->globalPos());
}

} // namespace brightsweep
