#include "volumes/ui/MenuActionView.h"

#include "core/Texts.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/Theme.h"
#include "volumes/StatusMenu.h"
#include "volumes/ui/PopupMetrics.h"

#include <QKeySequence>
#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int actionHeight = 32;
constexpr int textLeft = 48;
constexpr int tickLeft = 18;
constexpr int tickSide = 16;
constexpr int textRight = 16;
constexpr float disabledOpacity = 0.35F;

} // namespace

MenuActionView::MenuActionView(StatusMenu &menu, std::size_t entry, QWidget *parent)
    : PopupButton(parent), m_menu(menu), m_entry(entry) {
    const MenuEntry &source = m_menu.entries()[m_entry];
    setObjectName(QStringLiteral("action.") + source.text);
    setCheckable(source.action == MenuAction::LaunchAtLogin);
    setAccessibleName(localizedText(source.text));
    if (!source.key.isEmpty()) {
        const QKeySequence keys(QStringLiteral("Ctrl+") + source.key.toUpper());
        setShortcut(keys);
        m_shortcut = keys.toString(QKeySequence::NativeText);
    }
    // Screen readers use the toggle action of a checkable button, not click.
    const auto act = [this] {
        if (m_settingState)
            return;
        updateFromEntry();
        Q_EMIT activated();
    };
    if (isCheckable())
        connect(this, &QAbstractButton::toggled, this, act);
    else
        connect(this, &QAbstractButton::clicked, this, act);
    updateFromEntry();
}

void MenuActionView::updateFromEntry() {
    const MenuEntry &entry = m_menu.entries()[m_entry];
    setEnabled(entry.enabled);
    m_settingState = true;
    setChecked(entry.checked);
    m_settingState = false;
    update();
}

QString MenuActionView::text() const {
    return localizedText(m_menu.entries()[m_entry].text);
}

QSize MenuActionView::sizeHint() const {
    const int wanted = popup::scaled(textLeft) + theme::textWidth({text()}, 12) +
                       theme::textWidth({m_shortcut}, 11) + 2 * popup::scaled(textRight);
    return {std::max(popup::width(), wanted), theme::height(actionHeight)};
}

void MenuActionView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(4, 1, -4, -1);
    const bool lit = isEnabled() && (underMouse() || isDown());
    if (lit) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme::selection());
        painter.drawRoundedRect(box, popup::rowRadius, popup::rowRadius);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.drawRoundedRect(box, popup::rowRadius, popup::rowRadius);
    }
    if (isChecked()) {
        const double side = popup::scaled(tickSide);
        paintImage(painter, QStringLiteral("tick.png"),
                   mirrored(QRectF(rect()),
                            QRectF(popup::scaled(tickLeft), (height() - side) / 2, side, side)));
    }
    const QRect words =
        mirrored(rect(), rect().adjusted(popup::scaled(textLeft), 0, -popup::scaled(textRight), 0));
    painter.setFont(theme::font(12));
    QColor color = theme::text();
    if (!isEnabled())
        color.setAlphaF(disabledOpacity);
    painter.setPen(color);
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter, text());
    painter.setFont(theme::font(11));
    painter.setPen(lit ? theme::text() : theme::secondary());
    if (isEnabled())
        painter.drawText(words, Qt::AlignRight | Qt::AlignVCenter, m_shortcut);
}

} // namespace brightsweep
