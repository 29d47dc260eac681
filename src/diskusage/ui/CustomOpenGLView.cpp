#include "diskusage/ui/CustomOpenGLView.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "diskusage/V4DiskUsageViewController.h"
#include "diskusage/ui/ChartCanvasChoice.h"
#include "diskusage/ui/ChartPicture.h"
#include "foundation/Paths.h"
#include "ui/ElidedText.h"
#include "ui/Theme.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVariantAnimation>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int leastSide = 300;
constexpr int usualSide = 420;
constexpr int frameInterval = 40;   // milliseconds
constexpr int zoomTime = 150;       // milliseconds
constexpr double leastShare = 0.05; // percent: less shows as none
constexpr int bubbleWidth = 320;
constexpr int bubbleDistance = 18; // from the pointer

} // namespace

CustomOpenGLView::CustomOpenGLView(V4DiskUsageViewController &page, QWidget *parent)
    : QWidget(parent),
      m_page(page),
      m_chart(page.openGLView()),
      m_zoom(new QVariantAnimation(this)),
      m_frames(new QTimer(this)) {
    setObjectName(QStringLiteral("openGLView"));
    setAccessibleName(localizedText("USAGE_CHART"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    QSizePolicy grows(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(grows);
    m_zoom->setStartValue(0.0);
    m_zoom->setEndValue(1.0);
    m_zoom->setDuration(zoomTime);
    connect(m_zoom, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(m_zoom, &QVariantAnimation::finished, this, [this] { m_before = {}; });
    m_frames->setInterval(frameInterval);
    connect(m_frames, &QTimer::timeout, this, &CustomOpenGLView::redraw);
    connect(&m_chart, &RingChart::redrawNeeded, this, &CustomOpenGLView::redraw);
    connect(&m_page, &V4DiskUsageViewController::bubbleChanged, this, [this] { update(); });
    connect(&m_page, &V4DiskUsageViewController::marksChanged, this, [this] { update(); });
    const auto paintAnew = [this] {
        m_key = {};
        update();
    };
    connect(&theme::look(), &theme::Look::changed, this, paintAnew);
    connect(&ChartCanvasChoice::shared(), &ChartCanvasChoice::changed, this, paintAnew);
}

QSize CustomOpenGLView::sizeHint() const {
    return {theme::height(usualSide), theme::height(usualSide)};
}

QSize CustomOpenGLView::minimumSizeHint() const {
    return {leastSide, leastSide};
}

void CustomOpenGLView::setGrowing(bool growing) {
    if (growing)
        m_frames->start();
    else
        m_frames->stop();
    m_key = {};
    setFocusPolicy(growing ? Qt::NoFocus : Qt::StrongFocus);
    update();
}

// A found sector is painted over the kept chart; another directory or other sizes are another
// chart.
void CustomOpenGLView::redraw() {
    m_gap = {};
    sayFound();
    update();
}

void CustomOpenGLView::sayFound() {
    const std::string found = m_chart.foundFacts().path;
    if (found == m_found)
        return;
    m_found = found;
    if (m_byKeyboard && !found.empty()) {
        const RingChart::Facts facts = m_chart.foundFacts();
        setAccessibleDescription(QStringLiteral("%1, %2").arg(
            paths::display(paths::lastComponent(facts.path)), sizeWords(facts.bytes)));
        QAccessibleEvent event(this, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&event);
    }
    Q_EMIT foundChanged(found);
}

QString CustomOpenGLView::shareText() const {
    const std::uint64_t all = m_page.volumeBytes();
    const std::uint64_t bytes = m_chart.currentFacts().size;
    if (all == 0 || bytes > all)
        return {};
    const double percent = 100.0 * double(bytes) / double(all);
    if (percent < leastShare)
        return {};
    return localizedText("USAGE_OF_VOLUME")
        .arg(reader().toString(percent, 'f', percent < 10 ? 1 : 0));
}

// -- Painting

void CustomOpenGLView::paintEvent(QPaintEvent *) {
    const RingChart::Facts facts = m_chart.currentFacts();
    const double ratio = devicePixelRatioF();
    ChartPicture picture(size(), ratio);
    const bool isGrowing = m_frames->isActive();
    const ChartView &view = m_chart.view();
    const Key key{facts.path, facts.bytes,         width(),      height(),
                  ratio,      theme::text().rgb(), view.measure, view.colouring};
    if (isGrowing || key != m_key || m_picture.isNull()) {
        const bool isOther = !isGrowing && !m_picture.isNull() &&
                             std::get<0>(key) != std::get<0>(m_key) && !std::get<0>(m_key).empty();
        if (isOther)
            zoomFrom(m_picture);
        m_picture = picture.paintChart(m_chart);
        m_sectors = picture.sectors();
        m_key = key;
    }
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!m_before.isNull() && m_zoom->state() == QAbstractAnimation::Running) {
        const double at = m_zoom->currentValue().toDouble();
        const auto scaled = [&](const QImage &image, double scale, double opacity) {
            const QSizeF shown = QSizeF(size()) * scale;
            painter.setOpacity(opacity);
            painter.drawImage(
                QRectF(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2),
                       shown),
                image);
        };
        scaled(m_before, 1 + at / 2, 1 - at);
        scaled(m_picture, 0.6 + 0.4 * at, at);
        painter.setOpacity(1);
    } else {
        painter.drawImage(QPoint(), m_picture);
        if (!isGrowing) {
            picture.paintFound(m_chart, painter);
            picture.paintTicks(painter, m_sectors, [this](const std::string &path) {
                return m_page.selection().contains(path.substr(0, path.size() - 1));
            });
        }
    }
    ChartPicture::paintCentre(painter, ChartPicture::centreDisc(size()),
                              paths::display(paths::lastComponent(facts.path)),
                              sizeWords(facts.bytes), isGrowing ? QString() : shareText());
    if (hasFocus() && m_byKeyboard) {
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), theme::radius,
                                theme::radius);
    }
    if (!isGrowing)
        paintBubble(painter);
}

// Beside the pointer, never below it, and within the chart.
void CustomOpenGLView::paintBubble(QPainter &painter) {
    PieChartBubble bubble = m_page.pieBubble();
    if (m_gap.bytes > 0) {
        bubble.isShowBubble = true;
        bubble.titleTextStr =
            localizedText("USAGE_GAP").arg(paths::display(paths::lastComponent(m_gap.path)));
        bubble.sizeTextStr = UtilityFunction::convertVolSpace(m_gap.bytes);
    }
    if (!bubble.isShowBubble || m_byKeyboard)
        return;
    const QFont titleFont = theme::font(11, true);
    const QFont sizeFont = theme::font(11);
    const QFontMetrics title(titleFont);
    const QFontMetrics sizeMetrics(sizeFont);
    const int most = std::min(theme::height(bubbleWidth), width() - 8 * theme::grid);
    const QString name = elidedText(title, bubble.titleTextStr, Qt::ElideMiddle, most);
    const QString words = readersSize(bubble.sizeTextStr);
    const int inner = std::max(title.horizontalAdvance(name), sizeMetrics.horizontalAdvance(words));
    const QSizeF box(inner + 6 * theme::grid,
                     title.height() + sizeMetrics.height() + 4 * theme::grid);
    QPointF corner = m_mouse + QPointF(bubbleDistance, bubbleDistance);
    if (corner.x() + box.width() > width())
        corner.setX(m_mouse.x() - bubbleDistance - box.width());
    if (corner.y() + box.height() > height())
        corner.setY(m_mouse.y() - bubbleDistance - box.height());
    corner.setX(std::max(corner.x(), 0.0));
    corner.setY(std::max(corner.y(), 0.0));
    const QRectF frame(corner, box);
    painter.setPen(QPen(theme::hairline(), 1));
    painter.setBrush(theme::raised());
    painter.drawRoundedRect(frame, theme::radius, theme::radius);
    painter.setPen(theme::ok());
    painter.setFont(titleFont);
    const QRectF line = frame.adjusted(3 * theme::grid, 2 * theme::grid, -3 * theme::grid, 0);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, name);
    painter.setFont(sizeFont);
    painter.drawText(line.translated(0, title.height()),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, words);
}

void CustomOpenGLView::zoomFrom(const QImage &before) {
    if (theme::appearance().reducedMotion || !isVisible())
        return;
    m_before = before;
    m_zoom->stop();
    m_zoom->start();
}

void CustomOpenGLView::resizeEvent(QResizeEvent *) {
    m_zoom->stop();
    m_before = {};
}

void CustomOpenGLView::changeEvent(QEvent *event) {
    m_key = {};
    QWidget::changeEvent(event);
}

// -- The mouse

QPointF CustomOpenGLView::placeOf(QPointF point) const {
    return RingChart::chartPoint(point, width(), height());
}

void CustomOpenGLView::mouseMoveEvent(QMouseEvent *event) {
    if (m_frames->isActive())
        return;
    m_byKeyboard = false;
    m_mouse = event->position();
    m_chart.mouseMoved(placeOf(m_mouse), event->globalPosition());
    lookForGap();
    setCursor(m_found.empty() ? Qt::ArrowCursor : Qt::PointingHandCursor);
}

void CustomOpenGLView::mousePressEvent(QMouseEvent *event) {
    if (m_frames->isActive() || event->button() != Qt::LeftButton)
        return;
    m_byKeyboard = false;
    m_mouse = event->position();
    m_chart.mouseDown(placeOf(m_mouse), event->globalPosition(), 1);
}

// A sector that is too narrow to be drawn leaves a gap as well.
void CustomOpenGLView::lookForGap() {
    const W32AllDir *const found = m_chart.found();
    m_gap = found && !found->bHidden ? RingChart::Facts{} : m_chart.gapAt(placeOf(m_mouse));
}

void CustomOpenGLView::leaveEvent(QEvent *) {
    if (!m_frames->isActive() && !m_byKeyboard) // beside the chart there is nothing
        m_chart.mouseMoved({2 * double(width()), 2 * double(height())}, {});
}

void CustomOpenGLView::contextMenuEvent(QContextMenuEvent *event) {
    if (!m_frames->isActive())
        Q_EMIT menuRequested(event->globalPos());
}

// -- The keyboard

void CustomOpenGLView::keyPressEvent(QKeyEvent *event) {
    using Step = RingChart::Step;
    const bool forwards = isRightToLeft();
    const struct {
        int key;
        Step step;
    } steps[] = {{Qt::Key_Right, forwards ? Step::Previous : Step::Next},
                 {Qt::Key_Left, forwards ? Step::Next : Step::Previous},
                 {Qt::Key_Up, Step::Outwards},
                 {Qt::Key_Down, Step::Inwards}};
    m_byKeyboard = true;
    for (const auto &[key, step] : steps) {
        if (event->key() == key) {
            m_chart.step(step);
            return;
        }
    }
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_chart.enterFound();
        return;
    case Qt::Key_Backspace:
        m_chart.goUp();
        return;
    case Qt::Key_Space:
        m_page.toggleFound();
        return;
    case Qt::Key_Delete:
        Q_EMIT removalRequested();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void CustomOpenGLView::focusInEvent(QFocusEvent *event) {
    m_byKeyboard = event->reason() == Qt::TabFocusReason ||
                   event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason;
    update();
}

void CustomOpenGLView::focusOutEvent(QFocusEvent *) {
    update();
}

} // namespace brightsweep
