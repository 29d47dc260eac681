#include "uninstall/ui/ImageTextCell.h"

#include "ui/ElidedText.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"
#include "uninstall/UninstallListModel.h"

#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int rowHeight = 52;
constexpr int iconSide = 36;
constexpr double nameSize = 13;
constexpr double noteSize = 11;
constexpr int leastNameWidth = 96; // before badges go

int nameLeft() {
    return theme::height(iconSide) + 5 * theme::grid;
}

} // namespace

ImageTextCell::ImageTextCell(const ResultRowForm &form, const UninstallListModel &dataDelegate,
                             QObject *parent)
    : ResultRowDelegate(form, parent), m_dataDelegate(dataDelegate) {}

QSize ImageTextCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const {
    return {0, theme::height(rowHeight)};
}

QPixmap ImageTextCell::icon(const QModelIndex &index, qreal devicePixelRatio) const {
    return m_appIcons.pixmap(m_dataDelegate.iconForCell(index),
                             m_dataDelegate.primaryTextForCell(index), theme::height(iconSide),
                             devicePixelRatio);
}

void ImageTextCell::paintName(QPainter &painter, const QRect &area, bool isSelected,
                              const QModelIndex &index) const {
    const int side = theme::height(iconSide);
    const QRect place(area.left() + 2 * theme::grid, area.center().y() - side / 2 + 1, side, side);
    painter.drawPixmap(mirrored(area, place), icon(index, painter.device()->devicePixelRatioF()));
    const QString failure = index.data(UninstallListModel::FailureRole).toString();
    const QString second = failure.isEmpty() ? m_dataDelegate.secondaryTextForCell(index) : failure;
    QRect upper = area.adjusted(nameLeft(), 0, -2 * theme::grid, 0);
    QRect lower = upper;
    if (!second.isEmpty()) {
        upper.setBottom(area.center().y() + theme::grid / 2);
        upper.setTop(area.top() + theme::grid);
        lower.setTop(upper.bottom());
        lower.setBottom(area.bottom() - theme::grid);
    }
    paintBadges(painter, area, upper, isSelected, index);
    painter.setFont(theme::font(noteSize));
    painter.setPen(!failure.isEmpty() && !isSelected ? theme::dangerText()
                   : isSelected                      ? theme::text()
                                                     : theme::secondary());
    painter.drawText(mirrored(area, lower), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     elidedText(painter.fontMetrics(), second, Qt::ElideRight, lower.width()));
}

// The name, and what is said of it in frames behind it as far as there is room.
void ImageTextCell::paintBadges(QPainter &painter, const QRect &area, QRect room, bool isSelected,
                                const QModelIndex &index) const {
    const QFont bold = theme::font(nameSize, true);
    const QFont small = theme::font(noteSize);
    const QFontMetrics metrics(small);
    const QStringList badges = m_dataDelegate.badgesForCell(index);
    std::vector<int> widths;
    int sum = 0;
    for (const QString &badge : badges) {
        const int width = metrics.horizontalAdvance(badge) + 4 * theme::grid;
        if (room.width() - sum - width < theme::height(leastNameWidth))
            break;
        widths.push_back(width);
        sum += width;
    }
    const QString name = elidedText(QFontMetrics(bold), m_dataDelegate.primaryTextForCell(index),
                                    Qt::ElideRight, room.width() - sum);
    painter.setFont(bold);
    painter.setPen(theme::text());
    painter.drawText(mirrored(area, room), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     name);
    room.setLeft(room.left() + QFontMetrics(bold).horizontalAdvance(name) + 2 * theme::grid);
    painter.setFont(small);
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const int height = std::min(metrics.height() + 2, room.height());
        const QRect frame(room.left(), room.center().y() - height / 2, widths[i] - 2 * theme::grid,
                          height);
        painter.setPen(QPen(isSelected ? theme::text() : theme::hairline(), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(mirrored(area, frame)).adjusted(0.5, 0.5, -0.5, -0.5),
                                theme::grid, theme::grid);
        painter.setPen(isSelected ? theme::text() : theme::secondary());
        painter.drawText(mirrored(area, frame), Qt::AlignCenter, badges[qsizetype(i)]);
        room.setLeft(room.left() + widths[i]);
    }
}

} // namespace brightsweep
