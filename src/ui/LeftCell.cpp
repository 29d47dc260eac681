#include "ui/LeftCell.h"

#include "core/CheckImage.h"
#include "ui/ElidedText.h"
#include "ui/FocusFrame.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int rowHeight = 48;
constexpr int iconSide = 28;
constexpr int markSide = 18;
constexpr int frameOfRow = 4; // that of the list, and its scroll bar's

} // namespace

QRect LeftCell::checkBoxOf(const QRect &row) {
    const int side = theme::height(markSide);
    return {row.right() - 3 * theme::grid - side, row.center().y() - side / 2 + 1, side, side};
}

int LeftCell::widthOf(const QStringList &titles, bool hasCheckBoxes) {
    const int words =
        std::max(theme::textWidth(titles, 12, true), theme::textWidth({theme::widestSize()}, 11));
    const int mark = hasCheckBoxes ? theme::height(markSide) + 3 * theme::grid : 0;
    return words + theme::height(iconSide) + mark + 8 * theme::grid + 2 * frameOfRow;
}

QSize LeftCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const {
    return {0, theme::height(rowHeight)};
}

void LeftCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                     const QModelIndex &index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    const QRect row = option.rect.adjusted(0, 2, 0, -2);
    painter->setPen(FocusFrame::isShown(m_list) && isCurrent
                        ? QPen(theme::accent(), theme::focusWidth)
                        : QPen(Qt::NoPen));
    painter->setBrush(isCurrent                                        ? theme::selection()
                      : option.state.testFlag(QStyle::State_MouseOver) ? theme::hover()
                                                                       : QColor(Qt::transparent));
    painter->drawRoundedRect(row.adjusted(1, 1, -1, -1), theme::radius, theme::radius);
    const int side = theme::height(iconSide);
    const QRect icon(row.left() + 3 * theme::grid, row.center().y() - side / 2 + 1, side, side);
    paintImage(*painter, index.data(Qt::DecorationRole).toString(), mirrored(row, icon));
    int end = row.right() - theme::grid;
    const QVariant tick = index.data(Qt::CheckStateRole);
    if (tick.isValid()) {
        const QRect box = checkBoxOf(row);
        paintImage(*painter, QLatin1String(checkImage(tick.value<Qt::CheckState>())),
                   mirrored(row, box));
        end = box.left() - 2 * theme::grid;
    }
    const int begin = icon.right() + 3 * theme::grid;
    const QRect words(begin, row.top() + theme::grid, end - begin, row.height() - 2 * theme::grid);
    const QRect upper(words.left(), words.top(), words.width(), words.height() * 13 / 25);
    const QRect lower(words.left(), upper.bottom() + 1, words.width(),
                      words.height() - upper.height());
    painter->setPen(theme::text());
    painter->setFont(theme::font(12, isCurrent));
    painter->drawText(
        mirrored(row, upper), Qt::AlignLeft | Qt::AlignVCenter,
        elidedText(painter->fontMetrics(), index.data().toString(), Qt::ElideRight, upper.width()));
    painter->setPen(isCurrent ? theme::text() : theme::secondary());
    painter->setFont(theme::font(11));
    painter->drawText(mirrored(row, lower), Qt::AlignLeft | Qt::AlignVCenter,
                      index.data(SizeRole).toString());
    painter->restore();
}

} // namespace brightsweep
