#include "diskusage/ui/PlaceRow.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"
#include "volumes/FillLevel.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr int rowHeight = 60;
constexpr int rowWidth = 320;
constexpr int iconSide = 32;
constexpr int barHeight = 4;
constexpr int nearlyFull = 90; // percent

} // namespace

PlaceRow::PlaceRow(DiskUsageLeftCell cell, QWidget *parent)
    : QAbstractButton(parent), m_cell(std::move(cell)) {
    setObjectName(QStringLiteral("usage.place"));
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("%1, %2").arg(m_cell.name, words()));
    setToolTip(plainToolTip({paths::displayFromHome(m_cell.path)}));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QString PlaceRow::words() const {
    if (m_cell.totalBytes == 0)
        return paths::display(m_cell.path);
    return localizedText("USAGE_FREE_OF")
        .arg(sizeWords(m_cell.freeBytes), sizeWords(m_cell.totalBytes));
}

QSize PlaceRow::sizeHint() const {
    return {theme::height(rowWidth), theme::height(rowHeight)};
}

void PlaceRow::enterEvent(QEnterEvent *) {
    setAttribute(Qt::WA_UnderMouse);
    update();
}

void PlaceRow::leaveEvent(QEvent *) {
    update();
}

void PlaceRow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else if (event->key() == Qt::Key_Down)
        focusNextChild();
    else if (event->key() == Qt::Key_Up)
        focusPreviousChild();
    else
        QAbstractButton::keyPressEvent(event);
}

void PlaceRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect frame = rect().adjusted(1, 1, -1, -1);
    painter.setPen(hasFocus() ? QPen(theme::accent(), theme::focusWidth) : QPen(Qt::NoPen));
    painter.setBrush(underMouse() ? theme::hover() : theme::raised());
    painter.drawRoundedRect(frame, theme::radius, theme::radius);
    const int side = theme::height(iconSide);
    const QRect icon(frame.left() + 3 * theme::grid, frame.center().y() - side / 2, side, side);
    paintImage(painter, m_cell.image, mirrored(frame, icon));
    const int left = icon.right() + 3 * theme::grid;
    const QRect text(left, frame.top() + 2 * theme::grid, frame.right() - 4 * theme::grid - left,
                     frame.height() - 4 * theme::grid);
    const bool hasFill = m_cell.totalBytes > 0;
    const int room = text.height() - (hasFill ? barHeight + theme::grid : 0);
    const auto line = [&](int index, const QFont &font, const QColor &colour,
                          const QString &words) {
        painter.setFont(font);
        painter.setPen(colour);
        const QRect place(text.left(), text.top() + index * room / 2, text.width(), room / 2);
        painter.drawText(mirrored(frame, place),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         elidedText(painter.fontMetrics(), words, Qt::ElideMiddle, place.width()));
    };
    line(0, theme::font(12, true), theme::text(), m_cell.name);
    line(1, theme::font(11), theme::secondary(), words());
    if (!hasFill)
        return;
    const int used = std::max(0, FillLevel::usedPercent(m_cell.totalBytes, m_cell.freeBytes));
    const QRect track(text.left(), text.bottom() - barHeight + 1, text.width(), barHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::hairline());
    painter.drawRoundedRect(mirrored(frame, track), barHeight / 2.0, barHeight / 2.0);
    QRect fill = track;
    fill.setWidth(track.width() * used / 100);
    painter.setBrush(used >= nearlyFull ? theme::danger() : theme::accent());
    painter.drawRoundedRect(mirrored(frame, fill), barHeight / 2.0, barHeight / 2.0);
}

} // namespace brightsweep
