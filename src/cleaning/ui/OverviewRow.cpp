#include "cleaning/ui/OverviewRow.h"

#include "cleaning/V3MainListView.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

constexpr int rowHeight = 52;
constexpr int imageSide = 32;
constexpr int markSide = 18;
constexpr int barHeight = 4;
constexpr int turnInterval = 33; // milliseconds
constexpr int turnStep = 12;     // degrees

} // namespace

OverviewRow::OverviewRow(V3MainListView &row, Share share, QWidget *parent)
    : QWidget(parent), m_row(row), m_share(std::move(share)), m_turn(new QTimer(this)) {
    setObjectName(QStringLiteral("overview.%1").arg(row.listViewTag()));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_turn->setInterval(turnInterval);
    connect(m_turn, &QTimer::timeout, this, [this] {
        m_angle = (m_angle + turnStep) % 360;
        update();
    });
    connect(&m_row, &V3MainListView::changed, this, &OverviewRow::follow);
    theme::keep(this, [this] { updateGeometry(); });
    follow();
}

OverviewRow::~OverviewRow() = default;

QSize OverviewRow::sizeHint() const {
    return {480, theme::height(rowHeight)};
}

void OverviewRow::follow() {
    setFocusPolicy(m_row.isCheckBoxHidden() ? Qt::NoFocus : Qt::TabFocus);
    setAccessibleName(localizedText(m_row.titleName()));
    setAccessibleDescription(
        QStringLiteral("%1, %2 %3")
            .arg(readersSize(m_row.sizeLabel()), localizedText(m_row.cleanStrLabel()),
                 readersSize(m_row.cleanSizeLabel())) +
        (m_row.note().isEmpty() ? QString() : QStringLiteral(", ") + m_row.note()));
    setToolTip(m_row.note().toHtmlEscaped());
    runWhileNeeded();
    update();
}

void OverviewRow::runWhileNeeded() {
    const bool isNeeded = isVisible() && m_row.progress() == V3MainListView::Progress::Running &&
                          !theme::appearance().reducedMotion;
    if (isNeeded && !m_turn->isActive())
        m_turn->start();
    else if (!isNeeded)
        m_turn->stop();
}

QRect OverviewRow::checkBox() const {
    const int side = theme::height(markSide);
    return mirrored(rect(), QRect(2 * theme::grid, (height() - side) / 2, side, side));
}

void OverviewRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int margin = 2 * theme::grid;
    if (hasFocus()) {
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), theme::radius, theme::radius);
    }
    int x = margin;
    if (!m_row.isCheckBoxHidden()) {
        paintImage(painter, m_row.checkBoxImage(), checkBox());
        x += checkBox().width() + 3 * theme::grid;
    }
    const int image = theme::height(imageSide);
    paintImage(painter, m_row.image(),
               mirrored(rect(), QRect(x, (height() - image) / 2, image, image)));
    x += image + 3 * theme::grid;

    // The mark at the right end: turning while something runs, ticked afterwards.
    const int side = theme::height(markSide);
    const QRect mark(width() - margin - side, (height() - side) / 2, side, side);
    if (m_row.progress() == V3MainListView::Progress::Running) {
        painter.setPen(QPen(theme::accent(), 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(mirrored(rect(), mark).adjusted(2, 2, -2, -2), -m_angle * 16, 270 * 16);
    } else if (m_row.progress() == V3MainListView::Progress::Full) {
        paintImage(painter, QStringLiteral("tick.png"), mirrored(rect(), mark));
    }
    const int right = mark.left() - 3 * theme::grid;
    const QRect words(x, theme::grid, right - x, height() - 4 * theme::grid - barHeight);

    paintWords(painter, words);

    QRectF bar(x, height() - 2 * theme::grid - barHeight, right - x, barHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::hover());
    painter.drawRoundedRect(mirrored(QRectF(rect()), bar), barHeight / 2.0, barHeight / 2.0);
    bar.setWidth(bar.width() * std::clamp(m_share(), 0.0, 1.0));
    painter.setBrush(theme::accent());
    if (bar.width() > 0)
        painter.drawRoundedRect(mirrored(QRectF(rect()), bar), barHeight / 2.0, barHeight / 2.0);
}

// The figures are whole; the title and the note have the room that they leave, and the note is
// whole as tool tip.
void OverviewRow::paintWords(QPainter &painter, QRect room) {
    constexpr auto right = Qt::AlignRight | Qt::AlignVCenter;
    constexpr int gap = 4 * theme::grid;
    const auto takeRight = [&](int width) { room.setRight(room.right() - width - gap); };
    const QString size = readersSize(m_row.sizeLabel());
    painter.setPen(theme::accent());
    painter.setFont(theme::font(14, true));
    painter.drawText(mirrored(rect(), room), right, size);
    // A column of its own, so that nothing moves while the figures grow.
    takeRight(std::max(theme::textWidth({theme::widestSize()}, 14, true),
                       painter.fontMetrics().horizontalAdvance(size)));
    if (UtilityFunction::getVolSpaceFromString(m_row.cleanSizeLabel()) > 0) {
        const QString cleaned = localizedText(m_row.cleanStrLabel()) + QLatin1Char(' ') +
                                readersSize(m_row.cleanSizeLabel());
        painter.setPen(theme::secondary());
        painter.setFont(theme::font(12));
        painter.drawText(mirrored(rect(), room), right, cleaned);
        takeRight(painter.fontMetrics().horizontalAdvance(cleaned));
    }
    const auto elided = [&](const QString &words, double fontSize, const QColor &color) {
        painter.setPen(color);
        painter.setFont(theme::font(fontSize));
        const QString shown =
            elidedText(painter.fontMetrics(), words, Qt::ElideRight, room.width());
        painter.drawText(mirrored(rect(), room), Qt::AlignLeft | Qt::AlignVCenter, shown);
        room.setLeft(room.left() + painter.fontMetrics().horizontalAdvance(shown) + gap);
    };
    elided(localizedText(m_row.titleName()), 13, theme::text());
    if (room.width() > gap)
        elided(m_row.note(), 11, theme::accent());
}

void OverviewRow::mouseReleaseEvent(QMouseEvent *event) {
    const QRect area = checkBox().adjusted(-theme::grid, -theme::grid, theme::grid, theme::grid);
    if (event->button() == Qt::LeftButton && !m_row.isCheckBoxHidden() &&
        area.contains(event->position().toPoint()))
        m_row.checkBoxAction();
}

void OverviewRow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space && !m_row.isCheckBoxHidden())
        m_row.checkBoxAction();
    else
        QWidget::keyPressEvent(event);
}

void OverviewRow::showEvent(QShowEvent *) {
    runWhileNeeded();
}

void OverviewRow::hideEvent(QHideEvent *) {
    m_turn->stop();
}

} // namespace brightsweep
