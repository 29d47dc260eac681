#include "cleaning/ui/ResultRowDelegate.h"

#include "cleaning/CleanCategories.h"
#include "core/CheckImage.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
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
constexpr int iconSide = 24;
constexpr double fontSize = 12;
constexpr int cellLeft = 2 * theme::grid;
constexpr int cellRight = 4 * theme::grid;
constexpr int leastFolderWidth = 120; // less says nothing

// In index order.
constexpr std::array groupImages = {
    "system_caches_m.png", "user_caches_m.png", "system_logs_m.png",
    "user_logs_m.png",     "user_trash_m.png",  "download_folder_m.png",
};

QRect middle(const QRect &area, int stated) {
    const int side = theme::height(stated);
    return {area.left() + 2 * theme::grid, area.center().y() - side / 2 + 1, side, side};
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
        QString cut = metrics.elidedText(text, mode, m_rest.width() - reserve);
        // A path keeps its slash in front, whatever the row's direction.
        if (!QGuiApplication::isLeftToRight())
            cut = QChar(0x2068) + cut + QChar(0x2069);
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
    return theme::textWidth({text}, fontSize, true) + cellLeft + cellRight;
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
    // Sharp edges: at 150% soft ones would leave seams between the cells.
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (isSelected)
        painter->fillRect(area, theme::selection());
    else if (option.state.testFlag(QStyle::State_MouseOver))
        painter->fillRect(area, theme::hover());
    painter->setRenderHint(QPainter::Antialiasing);
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
        painter->setFont(theme::font(fontSize, isGroup));
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
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(option.rect, isSelected ? theme::selection() : theme::hover());
    painter.setRenderHint(QPainter::Antialiasing);
    paintName(painter, area, isSelected, name);
    painter.restore();
}

void ResultRowDelegate::paintGroup(QPainter &painter, const QRect &area,
                                   const QModelIndex &index) const {
    const auto category =
        std::min<std::size_t>(index.data(m_form.categoryRole).toUInt(), groupImages.size() - 1);
    const QRect icon = middle(area, iconSide);
    paintImage(painter, QLatin1String(groupImages[category]), mirrored(area, icon));
    Line line(painter, area, area.adjusted(icon.right() - area.left() + 3 * theme::grid, 0, 0, 0));
    line.add(index.data().toString(), theme::font(13, true), theme::text());
}

void ResultRowDelegate::paintName(QPainter &painter, const QRect &area, bool isSelected,
                                  const QModelIndex &index) const {
    if (m_form.groupRole >= 0 && index.data(m_form.groupRole).toBool()) {
        paintGroup(painter, area, index);
        return;
    }
    const auto path = paths::fromVariant(index.data(m_form.pathRole));
    const QRect icon = middle(area, iconSide);
    m_icons.icon(path, index.data(m_form.directoryRole).toBool())
        .paint(&painter, mirrored(area, icon));
    const QFont small = theme::font(11);
    const QString failure = index.data(m_form.failureRole).toString();
    const QString holder =
        m_form.holderRole >= 0 ? index.data(m_form.holderRole).toString() : QString();
    const QString note = !failure.isEmpty() ? failure
                         : holder.isEmpty() ? QString()
                                            : localizedText("IN_USE_BY").arg(holder);
    const int noteWidth =
        note.isEmpty() ? 0
                       : std::min(QFontMetrics(small).horizontalAdvance(note) + 4 * theme::grid,
                                  area.width() / 2);
    Line line(painter, area,
              area.adjusted(icon.right() - area.left() + 3 * theme::grid, 0, -2 * theme::grid, 0));
    // The selected row stands out by a heavier name.
    line.add(paths::display(paths::lastComponent(path)), theme::font(12, isSelected), theme::text(),
             Qt::ElideMiddle, noteWidth);
    line.add(note, small, failure.isEmpty() ? theme::accent() : theme::danger(), Qt::ElideRight);
    if (note.isEmpty() && line.room() >= theme::height(leastFolderWidth))
        line.add(paths::display(paths::parent(path)), small, theme::secondary(), Qt::ElideLeft);
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
