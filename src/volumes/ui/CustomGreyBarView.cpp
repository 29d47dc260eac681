#include "volumes/ui/CustomGreyBarView.h"

#include "core/Texts.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"
#include "volumes/ui/PopupMetrics.h"

#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int barHeight = 16;
constexpr int textLeft = 14;

} // namespace

CustomGreyBarView::CustomGreyBarView(const char *sectionKey, QWidget *parent)
    : QWidget(parent), m_text(*sectionKey ? localizedText(sectionKey) : QString()) {
    setAccessibleName(m_text);
}

QSize CustomGreyBarView::sizeHint() const {
    const int wanted = theme::textWidth({m_text}, 9.5, true) + 2 * popup::scaled(textLeft);
    return {std::max(popup::width(), wanted), theme::height(barHeight)};
}

void CustomGreyBarView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), theme::raised());
    painter.setPen(theme::secondary());
    painter.setFont(theme::font(9.5, true));
    painter.drawText(mirrored(rect(), rect().adjusted(popup::scaled(textLeft), 0, 0, 0)),
                     Qt::AlignLeft | Qt::AlignVCenter, m_text);
}

} // namespace brightsweep
