#include "cleaning/ui/ResultRowDelegate.h"

#include "cleaning/CleanCategories.h"
#include "core/CheckImage.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QTreeView>

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

constexpr int markSide = 18;
constexpr int iconSide = 30;
constexpr int selectedIconSide = 32;
constexpr double noteSize = 11;
constexpr int nameShare = 60; // percent of the width, whatever else there is to say
constexpr int barHeight = 3;  // along the lower edge, so that it cuts no name in two
constexpr int cellLeft = 2 * theme::grid;
constexpr int cellRight = 4 * theme::grid;
constexpr int leastFolderWidth = 120; // less says nothing
constexpr int folderShare = 45;       // percent of the width, where it tells the rows apart

// In index order.
constexpr std::array groupImages = {
    "system_caches_m.png", "user_caches_m.png", "system_logs_m.png",
    "user_logs_m.png",     "user_trash_m.png",  "download_folder_m.png",
};

QRect middle(const QRect &area, int stated) {
    // Within the row, which has one height whatever stands out in it.
    const int side = std::min(theme::height(stated), area.height() - theme::grid);
    return {area.left() + 2 * theme::grid, area.center().y() - side / 2 + 1, side, side};
}

// Icons of all rows take the same room, so that names stand in one line.
int nameLeft() {
    return theme::height(selectedIconSide) + 5 * theme::grid;
}

// The words of a line one after the other, each cut where the room ends.
class Line {
public:
    Line(QPainter &painter, const QRect &row, const QRect &area)
        : m_painter(painter), m_row(row), m_rest(area) {}

    void add(const QString &text, const QFont &font, const QColor &color,
             Qt::TextElideMode mode = Qt::ElideMiddle, int reserve = 0) {
        if (text.isEmpty() || m_rest.width() <= reserve)
            return;
        const QFontMetrics metrics(font);
        const QString cut = elidedPath(metrics, text, mode, m_rest.width() - reserve);
        m_painter.setFont(font);
        m_painter.setPen(color);
        m_painter.drawText(mirrored(m_row, m_rest),
                           Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, cut);
        m_rest.setLeft(m_rest.left() + metrics.horizontalAdvance(cut) + 2 * theme::grid);
    }

    int room() const { return m_rest.width(); }

private:
    QPainter &m_painter;
    const QRect m_row;
    QRect m_rest;
};

} // namespace

ResultRowDelegate::ResultRowDelegate(const ResultRowForm &form, QObject *parent)
    : QStyledItemDelegate(parent), m_form(form) {}

QSize ResultRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const {
    return {0, theme::height(theme::rowHeight)};
}

int ResultRowDelegate::widthOf(const QString &text) const {
    return theme::textWidth({text}, m_form.selectedFontSize, true) + cellLeft + cellRight;
}

QFont ResultRowDelegate::font(bool isSelected) const {
    return theme::font(isSelected ? m_form.selectedFontSize : m_form.fontSize, m_form.isBold);
}

// What of the row's bar lies in the cell.
void ResultRowDelegate::paintGround(QPainter &painter, const QRect &area,
                                    const QStyleOptionViewItem &option,
                                    const QModelIndex &index) const {
    // Sharp edges: at 150% soft ones would leave seams between the cells.
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (option.state.testFlag(QStyle::State_Selected))
        painter.fillRect(area, theme::selection());
    else if (option.state.testFlag(QStyle::State_MouseOver))
        painter.fillRect(area, theme::hover());
    painter.setRenderHint(QPainter::Antialiasing);
    const auto *const view = qobject_cast<const QTreeView *>(option.widget);
    if (!view)
        return;
    const QRect name = view->visualRect(index.siblingAtColumn(m_form.nameColumn));
    const bool fromRight = view->isRightToLeft();
    const int room = fromRight ? name.right() + 1 : view->viewport()->width() - name.left();
    const double length = room * index.data(m_form.shareRole).toDouble();
    const double begin = fromRight ? name.right() + 1 - length : name.left();
    const QRectF bar(begin, area.bottom() + 1 - barHeight, length, barHeight);
    painter.fillRect(bar & QRectF(area), theme::shareLine());
}

void ResultRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const {
    const bool isLeaf = m_form.groupRole < 0 || !index.data(m_form.groupRole).toBool();
    if (isLeaf && index.column() == m_form.spannedColumn)
        return paintSpanned(*painter, option, index);
    painter->save();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QRect area =
        isLeaf && index.column() == m_form.nameColumn ? spanned(option) : option.rect;
    paintGround(*painter, area, option, index);
    if (index.column() == m_form.checkColumn) {
        const auto state = index.data(Qt::CheckStateRole).value<Qt::CheckState>();
        paintImage(*painter, QLatin1String(checkImage(state)),
                   mirrored(option.rect, middle(option.rect, markSide)));
    } else if (index.column() == m_form.nameColumn) {
        paintName(*painter, area, isSelected, index);
    } else if (index.column() == m_form.openColumn) {
        paintImage(*painter, index.data(m_form.imageRole).toString(),
                   mirrored(option.rect, middle(option.rect, markSide)));
    } else {
        const bool isGroup = !isLeaf;
        painter->setPen(isGroup || isSelected ? theme::text() : theme::secondary());
        painter->setFont(font(isSelected));
        painter->drawText(mirrored(option.rect, option.rect.adjusted(cellLeft, 0, -cellRight, 0)),
                          Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) |
                              Qt::AlignVCenter,
                          index.data().toString());
    }
    painter->restore();
}

QRect ResultRowDelegate::spanned(const QStyleOptionViewItem &option) const {
    const auto *const view = qobject_cast<const QTreeView *>(option.widget);
    if (!view || m_form.spannedColumn < 0)
        return option.rect;
    const int more = view->header()->sectionSize(m_form.spannedColumn);
    return QGuiApplication::isLeftToRight() ? option.rect.adjusted(0, 0, more, 0)
                                            : option.rect.adjusted(-more, 0, 0, 0);
}

// A row that stands out has been painted over here, so the rest of its name comes again.
void ResultRowDelegate::paintSpanned(QPainter &painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const {
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto *const view = qobject_cast<const QTreeView *>(option.widget);
    if (!view || (!isSelected && !option.state.testFlag(QStyle::State_MouseOver)))
        return;
    const QModelIndex name = index.siblingAtColumn(m_form.nameColumn);
    const QRect area = view->visualRect(name).united(option.rect);
    painter.save();
    painter.setClipRect(option.rect, Qt::IntersectClip);
    paintGround(painter, option.rect, option, name);
    paintName(painter, area, isSelected, name);
    painter.restore();
}

void ResultRowDelegate::paintGroup(QPainter &painter, const QRect &area, bool isSelected,
                                   const QModelIndex &index) const {
    const QRect place = middle(area, isSelected ? selectedIconSide : iconSide);
    const auto shown = paths::fromVariant(index.data(m_form.iconRole));
    QIcon icon;
    if (m_form.categoryRole < 0) {
        icon = m_icons.icon(shown, index.data(m_form.directoryRole).toBool());
    } else {
        const auto category =
            std::min<std::size_t>(index.data(m_form.categoryRole).toUInt(), groupImages.size() - 1);
        icon = m_icons.named(QString::fromStdString(shown.string()), groupImages[category]);
    }
    icon.paint(&painter, mirrored(area, place));
    const QString note = m_form.noteRole < 0 ? QString() : index.data(m_form.noteRole).toString();
    const QFont small = theme::font(noteSize);
    const int noteWidth =
        note.isEmpty() ? 0 : QFontMetrics(small).horizontalAdvance(note) + 2 * theme::grid;
    Line line(painter, area, area.adjusted(nameLeft(), 0, -2 * theme::grid, 0));
    line.add(index.data().toString(), font(isSelected), theme::text(), Qt::ElideMiddle,
             std::min(noteWidth, area.width() * 2 / 5));
    line.add(note, small, isSelected ? theme::text() : theme::accent(), Qt::ElideRight);
}

void ResultRowDelegate::paintName(QPainter &painter, const QRect &area, bool isSelected,
                                  const QModelIndex &index) const {
    if (m_form.groupRole >= 0 && index.data(m_form.groupRole).toBool()) {
        paintGroup(painter, area, isSelected, index);
        return;
    }
    const auto path = paths::fromVariant(index.data(m_form.pathRole));
    const QRect icon = middle(area, isSelected ? selectedIconSide : iconSide);
    m_icons.icon(path, index.data(m_form.directoryRole).toBool())
        .paint(&painter, mirrored(area, icon));
    const QFont small = theme::font(noteSize);
    const bool hasFailed = !index.data(m_form.failureRole).toString().isEmpty();
    const QString holder = index.data(m_form.holderRole).toString();
    const QString note = hasFailed ? localizedText(index.data(m_form.reasonRole).toString())
                         : !holder.isEmpty()    ? localizedText("IN_USE_BY").arg(holder)
                         : m_form.noteRole >= 0 ? index.data(m_form.noteRole).toString()
                                                : QString();
    const QRect room = area.adjusted(nameLeft(), 0, -2 * theme::grid, 0);
    const int noteWidth =
        note.isEmpty() ? 0
                       : std::min(QFontMetrics(small).horizontalAdvance(note) + 2 * theme::grid,
                                  room.width() * (100 - nameShare) / 100);
    const QString folder = paths::displayFromHome(paths::parent(path));
    const bool needsFolder = m_form.noteRole >= 0;
    const int folderWidth =
        needsFolder
            ? std::min(QFontMetrics(small).horizontalAdvance(folder) + 2 * theme::grid,
                       room.width() * (note.isEmpty() ? folderShare : folderShare / 2) / 100)
            : 0;
    Line line(painter, area, room);
    line.add(paths::display(paths::lastComponent(path)), font(isSelected),
             isSelected ? theme::text() : theme::secondary(), Qt::ElideMiddle,
             noteWidth + folderWidth);
    line.add(note, small,
             isSelected  ? theme::text()
             : hasFailed ? theme::dangerText()
                         : theme::accent(),
             Qt::ElideRight, folderWidth);
    if (needsFolder || (note.isEmpty() && line.room() >= theme::height(leastFolderWidth)))
        line.add(folder, small, theme::secondary(), needsFolder ? Qt::ElideMiddle : Qt::ElideLeft);
}

bool ResultRowDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                    const QStyleOptionViewItem &option, const QModelIndex &index) {
    const bool isClick = event->type() == QEvent::MouseButtonRelease &&
                         static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
    if (isClick && index.column() == m_form.checkColumn) {
        const bool isTicked = index.data(Qt::CheckStateRole).toInt() != Qt::Unchecked;
        return model->setData(index, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    if (isClick && index.column() == m_form.openColumn) {
        Q_EMIT openClicked(index);
        return true;
    }
    // The keyboard is the view's own.
    return event->type() == QEvent::KeyPress ||
           (event->type() != QEvent::MouseButtonDblClick &&
            QStyledItemDelegate::editorEvent(event, model, option, index));
}

} // namespace brightsweep
