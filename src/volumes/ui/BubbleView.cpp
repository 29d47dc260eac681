#include "volumes/ui/BubbleView.h"

#include "ui/Theme.h"
#include "volumes/BubbleController.h"
#include "volumes/ui/BubbleWindow.h"
#include "volumes/ui/MAAttachedWindow.h"
#include "volumes/ui/StatusPopup.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int distance = 5;
constexpr int sideMargin = 12;
constexpr int besidePopup = 10;

// A word is broken only where it is longer than a line.
QTextOption wrapping() {
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

double heightOf(QString text, const QFont &font, double width) {
    QTextLayout layout(text.replace(u'\n', QChar::LineSeparator), font);
    layout.setTextOption(wrapping());
    layout.beginLayout();
    double height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height += line.height();
    }
    layout.endLayout();
    return height;
}

void moveTo(MAAttachedWindow &bubble, const QPoint &corner) {
    bubble.setPoint(QPointF(corner) + QPointF(bubble.width() / 2.0, -distance));
}

} // namespace

BubbleText::BubbleText(const Bubble &content, QWidget *parent)
    : QWidget(parent), m_text(content.text()) {
    setObjectName(QStringLiteral("bubble.text"));
    setAccessibleName(m_text);
    theme::keep(this, [this, stated = content.width()] {
        // No line is cut that fits with the usual text.
        const int lines = theme::textWidth(m_text.split(u'\n'), 12, true) + 1 + 2 * sideMargin;
        const int most = int(stated * theme::appearance().textScale);
        setFixedSize(std::max(theme::height(stated), std::min(lines, most)),
                     theme::height(Bubble::height));
    });
}

QString BubbleText::fitted(const QString &text, const QRect &area, const QFont &font) {
    const auto fits = [&](const QString &candidate) {
        return heightOf(candidate, font, area.width()) <= area.height();
    };
    if (fits(text))
        return text;
    const auto cut = [&](qsizetype kept) {
        return text.left(kept - kept / 2) + u'…' + text.right(kept / 2);
    };
    qsizetype least = 0;
    qsizetype most = text.size();
    while (most - least > 1) {
        const qsizetype middle = (least + most) / 2;
        (fits(cut(middle)) ? least : most) = middle;
    }
    return cut(least);
}

void BubbleText::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QFont font = theme::font(12, true);
    const QRect area = rect().adjusted(sideMargin, 0, -sideMargin, 0);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(area, fitted(m_text, area, font), wrapping());
}

BubbleView::BubbleView(BubbleController &controller, QObject *parent) : QObject(parent) {
    connect(&controller, &BubbleController::bubbleShown, this, &BubbleView::show);
    connect(&controller, &BubbleController::bubbleGone, this,
            [this](int bubble) { m_windows.erase(bubble); });
}

BubbleView::~BubbleView() = default;

void BubbleView::show(int bubble, const Bubble &content, int place) {
    m_windows[bubble] = showBubbleWindow(content, place);
}

std::unique_ptr<MAAttachedWindow> showBubbleWindow(const Bubble &content, int place) {
    const QScreen *const screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect();
    auto window = std::make_unique<MAAttachedWindow>(new BubbleText(content), QPointF(), nullptr,
                                                     MAAttachedWindow::Below, distance);
    window->setHasArrow(false);
    window->setAccessibleName(content.text());
    window->setObjectName(QStringLiteral("bubble"));
    const QPoint corner = BubbleController::topLeft(available, window->size(), place);
    moveTo(*window, corner);
    for (const QWidget *const other : QApplication::topLevelWidgets()) {
        const auto *const popup = qobject_cast<const StatusPopup *>(other);
        if (!popup)
            continue;
        const auto leaveFree = [bubble = window.get(), popup, left = available.left()] {
            const QRect taken = bubble->geometry();
            if (popup->geometry().intersects(taken))
                moveTo(*bubble,
                       {std::max(left, popup->x() - besidePopup - taken.width()), taken.y()});
        };
        if (popup->isVisible())
            leaveFree();
        QObject::connect(popup, &StatusPopup::opened, window.get(), leaveFree);
    }
    window->show();
    return window;
}

} // namespace brightsweep
