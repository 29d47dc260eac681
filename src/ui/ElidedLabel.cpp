#include "ui/ElidedLabel.h"

#include "ui/ElidedText.h"

#include <QPainter>
#include <QStyle>

namespace brightsweep {

namespace {

constexpr int fewLetters = 6;

} // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent) : QLabel(parent), m_mode(mode) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *) {
    const QRect room = contentsRect();
    const QFontMetrics metrics = fontMetrics();
    const bool isCut = metrics.horizontalAdvance(text()) > room.width();
    if (isCut && room.width() < fewLetters * metrics.averageCharWidth())
        return;
    QPainter painter(this);
    style()->drawItemText(
        &painter, room, int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
        isEnabled(), elidedText(metrics, text(), m_mode, room.width()), foregroundRole());
}

} // namespace brightsweep
