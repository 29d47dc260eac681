#include "volumes/ui/StatusPopup.h"

#include "core/Texts.h"
#include "ui/RoundedWindow.h"
#include "ui/Theme.h"
#include "ui/WindowSystem.h"
#include "volumes/StatusMenu.h"
#include "volumes/ui/CustomGreyBarView.h"
#include "volumes/ui/MenuActionView.h"
#include "volumes/ui/MenuItemView.h"
#include "volumes/ui/PopupMetrics.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int heightShare = 80; // percent of the available height
constexpr int edge = 1;
constexpr int screenMargin = 4;
constexpr int verticalPadding = 4;
// A press on the item takes the activation away first, and then means "close", not "open again".
constexpr qint64 pressLasts = 250;

class SeparatorLine : public QWidget {
public:
    explicit SeparatorLine(QWidget *parent) : QWidget(parent) { setFixedHeight(9); }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.fillRect(QRect(0, height() / 2, width(), 1), theme::hairline());
    }
};

QPainterPath shapeOf(const QRectF &rectangle) {
    QPainterPath path;
    path.addRoundedRect(rectangle.adjusted(0.5, 0.5, -0.5, -0.5), theme::radius, theme::radius);
    return path;
}

} // namespace

StatusPopup::StatusPopup(StatusMenu &menu, QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_menu(menu),
      m_area(new QScrollArea(this)) {
    setObjectName(QStringLiteral("popup"));
    setWindowTitle(QStringLiteral("Brightsweep"));
    setAccessibleName(localizedText("VOLUMES_AND_MEMORY"));
    setAttribute(Qt::WA_TranslucentBackground);
    // No other window of the program is needed for it to live, and none ends with it.
    setAttribute(Qt::WA_QuitOnClose, false);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->viewport()->setAutoFillBackground(false);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge + verticalPadding, edge, edge + verticalPadding);
    layout->addWidget(m_area);

    connect(&theme::look(), &theme::Look::changed, this, [this] {
        if (isVisible())
            rebuilt();
    });
    connect(&m_menu, &StatusMenu::rebuilt, this, &StatusPopup::rebuilt);
    connect(&m_menu, &StatusMenu::closeRequested, this, &StatusPopup::closeRequested);
    connect(&m_menu, &StatusMenu::rowChanged, this, [this](int row) {
        if (std::size_t(row) < m_rows.size())
            m_rows[std::size_t(row)]->updateFromRow();
    });
    connect(&m_menu, &StatusMenu::entryChanged, this, [this](int entry) {
        for (const auto &[index, view] : m_actions) {
            if (index == std::size_t(entry))
                view->updateFromEntry();
        }
    });
}

StatusPopup::~StatusPopup() = default;

void StatusPopup::toggle(const StatusActivation &activation) {
    if (isVisible()) {
        hide();
        return;
    }
    if (m_sinceDeactivation.isValid() && m_sinceDeactivation.elapsed() < pressLasts)
        return;
    m_activation = activation;
    open();
}

void StatusPopup::open() {
    clear();
    build();
    const QScreen *screen = m_activation.hasPosition
                                ? QGuiApplication::screenAt({m_activation.x, m_activation.y})
                                : nullptr;
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    const QPoint point =
        m_activation.hasPosition ? QPoint(m_activation.x, m_activation.y) : available.topRight();
    QSize wanted(m_content->sizeHint().width() + 2 * edge,
                 m_content->sizeHint().height() + 2 * (edge + verticalPadding));
    QRect frame = place(wanted, point, available);
    const bool scrolls = frame.height() < wanted.height();
    if (scrolls) {
        wanted.rwidth() += m_area->verticalScrollBar()->sizeHint().width();
        frame = place(wanted, point, available);
    }
    m_area->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    resize(frame.size());
    if (windowsPlaceThemselves())
        move(frame.topLeft());
    showInFront(*this, std::exchange(m_activation.token, {}));
    setFocus(Qt::PopupFocusReason);
    m_menu.menuWillOpen();
    Q_EMIT opened();
}

QRect StatusPopup::place(const QSize &size, const QPoint &point, const QRect &wholeArea) {
    const QRect available =
        wholeArea.adjusted(screenMargin, screenMargin, -screenMargin, -screenMargin);
    const QSize fitting(std::min(size.width(), available.width()),
                        std::min(size.height(), wholeArea.height() * heightShare / 100));
    QRect frame(QPoint(), fitting);
    frame.moveLeft(point.x() - fitting.width() / 2);
    if (point.y() > available.center().y())
        frame.moveBottom(point.y() - 1);
    else
        frame.moveTop(point.y());
    frame.moveLeft(
        std::clamp(frame.left(), available.left(), available.right() + 1 - fitting.width()));
    frame.moveTop(
        std::clamp(frame.top(), available.top(), available.bottom() + 1 - fitting.height()));
    return frame;
}

void StatusPopup::clear() {
    m_rows.clear();
    m_actions.clear();
    // One of its buttons may be the caller.
    if (QWidget *const gone = m_area->takeWidget()) {
        gone->hide();
        gone->deleteLater();
    }
    m_content = nullptr;
}

void StatusPopup::build() {
    m_content = new QWidget;
    m_content->setObjectName(QStringLiteral("popup.content"));
    auto *const layout = new QVBoxLayout(m_content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (std::size_t i = 0; i < m_menu.entries().size(); ++i)
        addEntry(i);
    m_area->setWidget(m_content);
    m_content->setAutoFillBackground(false);
    layout->activate();
}

void StatusPopup::addEntry(std::size_t index) {
    const MenuEntry &entry = m_menu.entries()[index];
    QWidget *view = nullptr;
    switch (entry.kind) {
    case MenuEntry::Kind::Header:
        view = new CustomGreyBarView(entry.sectionKey, m_content);
        break;
    case MenuEntry::Kind::Row: {
        auto *const row = new MenuItemView(m_menu, entry.row, m_content);
        m_rows.push_back(row);
        view = row;
        break;
    }
    case MenuEntry::Kind::Separator:
        m_content->layout()->addWidget(new SeparatorLine(m_content));
        return;
    case MenuEntry::Kind::Action: {
        auto *const action = new MenuActionView(m_menu, index, m_content);
        const MenuAction what = entry.action;
        connect(action, &MenuActionView::activated, this, [this, what] {
            // A tick is set in the open popup; everything else closes it first.
            if (what != MenuAction::LaunchAtLogin)
                hide();
            m_menu.activate(what);
        });
        m_actions.emplace_back(index, action);
        view = action;
        break;
    }
    }
    view->setFixedHeight(view->sizeHint().height());
    m_content->layout()->addWidget(view);
}

void StatusPopup::closeRequested() {
    if (!isVisible())
        return;
    hide();
    // A rebuild follows in the same turn of the event loop, or not at all.
    m_reopens = true;
    QTimer::singleShot(0, this, [this] { m_reopens = false; });
}

void StatusPopup::rebuilt() {
    const bool wasOpen = isVisible();
    if (!wasOpen && !m_reopens)
        return;
    m_reopens = false;
    if (wasOpen)
        hide();
    open();
}

bool StatusPopup::event(QEvent *event) {
    if (event->type() == QEvent::WindowDeactivate && isVisible() && !m_isHiding) {
        m_sinceDeactivation.start();
        hide();
    }
    return QWidget::event(event);
}

void StatusPopup::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        hide();
        return;
    case Qt::Key_Down:
    case Qt::Key_Up:
        focusNextPrevChild(event->key() == Qt::Key_Down);
        if (QWidget *const reached = focusWidget(); reached && m_area->isAncestorOf(reached))
            m_area->ensureWidgetVisible(reached, 0, 0);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void StatusPopup::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool contrast = theme::appearance().highContrast;
    painter.setPen(QPen(contrast ? theme::text() : QColor(85, 88, 102), edge));
    painter.setBrush(theme::window());
    painter.drawPath(shapeOf(rect()));
}

void StatusPopup::resizeEvent(QResizeEvent *) {
    clipWindow(*this, shapeOf(rect()));
}

// A window that hides loses its activation on the way, by no press on the item.
void StatusPopup::setVisible(bool visible) {
    m_isHiding = !visible;
    QWidget::setVisible(visible);
    m_isHiding = false;
}

void StatusPopup::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_menu.mouseExited(row);
    clear();
    m_menu.menuDidClose();
}

} // namespace brightsweep
