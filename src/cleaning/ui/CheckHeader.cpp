#include "cleaning/ui/CheckHeader.h"

#include "core/CheckImage.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QMouseEvent>
#include <QPainter>

namespace brightsweep {

namespace {

constexpr int checkSection = 0;
constexpr int markSide = 18;

} // namespace

CheckHeader::CheckHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setSectionsMovable(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

int CheckHeader::contentWidth(int logicalIndex) const {
    return sectionSizeFromContents(logicalIndex).width();
}

void CheckHeader::setCheckState(Qt::CheckState state) {
    if (m_state == state)
        return;
    m_state = state;
    viewport()->update();
}

void CheckHeader::paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const {
    painter->save();
    QHeaderView::paintSection(painter, rect, logicalIndex);
    painter->restore();
    if (logicalIndex != checkSection)
        return;
    const int side = theme::height(markSide);
    painter->setRenderHint(QPainter::Antialiasing);
    paintImage(*painter, QLatin1String(checkImage(m_state)),
               mirrored(rect, QRect(rect.left() + 2 * theme::grid, rect.center().y() - side / 2 + 1,
                                    side, side)));
}

void CheckHeader::mousePressEvent(QMouseEvent *event) {
    m_pressed = event->button() == Qt::LeftButton &&
                logicalIndexAt(event->position().toPoint()) == checkSection;
    if (!m_pressed)
        QHeaderView::mousePressEvent(event);
}

void CheckHeader::mouseReleaseEvent(QMouseEvent *event) {
    if (!m_pressed) {
        QHeaderView::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    if (logicalIndexAt(event->position().toPoint()) == checkSection)
        Q_EMIT checkBoxClicked(m_state == Qt::Unchecked);
}

} // namespace brightsweep
