#include "app/ui/PanelToolBar.h"

#include "ui/ElidedText.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int imageSide = 28;
constexpr int itemHeight = 60;
constexpr int sidePadding = 12;
constexpr int leastWidth = 72;
constexpr int bareWidth = 44; // of an item without a label
constexpr double labelSize = 11;

int scaled(int stated) {
    return theme::height(stated);
}

} // namespace

PanelToolBarItem::PanelToolBarItem(const QString &imageName, const QString &label,
                                   const QString &accessibleName, QWidget *parent)
    : QAbstractButton(parent), m_imageName(imageName) {
    setText(label);
    setAccessibleName(accessibleName);
    setToolTip(accessibleName);
    theme::keepFont(this, labelSize);
    theme::keep(this, [this] { updateGeometry(); });
    // The mouse presses without taking the keyboard's place.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize PanelToolBarItem::sizeHint() const {
    const int width = text().isEmpty()
                          ? scaled(bareWidth)
                          : std::max(scaled(leastWidth),
                                     fontMetrics().horizontalAdvance(text()) + 2 * sidePadding);
    return {width, theme::height(itemHeight)};
}

// On a narrow screen the items move together, and their labels are cut before any goes.
QSize PanelToolBarItem::minimumSizeHint() const {
    return {scaled(imageSide) + 4 * theme::grid, theme::height(itemHeight)};
}

void PanelToolBarItem::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    QAbstractButton::changeEvent(event);
}

void PanelToolBarItem::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void PanelToolBarItem::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool lit = isDown() || isChecked();
    const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (lit || underMouse()) {
        // Black on black would not show which item is checked.
        const bool outlined = lit && theme::appearance().highContrast;
        painter.setPen(outlined ? QPen(theme::text(), 1) : QPen(Qt::NoPen));
        painter.setBrush(lit && !underMouse() ? theme::raised() : theme::hover());
        painter.drawRoundedRect(box, theme::radius, theme::radius);
    }
    const int textHeight = text().isEmpty() ? 0 : fontMetrics().height();
    const int gap = text().isEmpty() ? 0 : theme::grid;
    const int side = scaled(imageSide);
    const double top = (height() - side - gap - textHeight) / 2.0;
    if (!isEnabled())
        painter.setOpacity(0.4);
    else if (!lit && !underMouse())
        painter.setOpacity(theme::appearance().highContrast ? 1 : 0.75);
    paintImage(painter, m_imageName, QRectF((width() - side) / 2.0, top, side, side));
    if (textHeight > 0) {
        painter.setOpacity(isEnabled() ? 1 : 0.4);
        painter.setPen(lit || underMouse() ? theme::text() : theme::secondary());
        painter.setFont(font());
        painter.drawText(QRectF(0, top + side + gap, width(), textHeight),
                         Qt::AlignHCenter | Qt::AlignTop,
                         elidedText(fontMetrics(), text(), Qt::ElideRight, width()));
    }
    if (hasFocus()) {
        painter.setOpacity(1);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme::accent(), theme::focusWidth));
        painter.drawRoundedRect(box, theme::radius, theme::radius);
    }
}

PanelToolBar::PanelToolBar(QWidget *parent) : QWidget(parent), m_layout(new QHBoxLayout(this)) {
    m_layout->setContentsMargins(2 * theme::grid, theme::grid, 2 * theme::grid, theme::grid + 1);
    m_layout->setSpacing(theme::grid);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

PanelToolBarItem *PanelToolBar::addItem(const QString &identifier, const QString &label,
                                        const QString &imageName, const QString &accessibleName,
                                        bool checkable) {
    auto *const item = new PanelToolBarItem(imageName, label, accessibleName, this);
    item->setObjectName(QStringLiteral("toolbar.") + identifier);
    item->setCheckable(checkable);
    // Screen readers use the toggle action of a checkable button, not click.
    const auto act = [this, identifier] {
        if (m_settingState)
            return;
        // Which panel is on show decides which item is checked, not the press.
        setSelectedItemIdentifier(m_selected);
        Q_EMIT pressed(identifier);
    };
    if (checkable)
        connect(item, &QAbstractButton::toggled, this, act);
    else
        connect(item, &QAbstractButton::clicked, this, act);
    m_layout->addWidget(item);
    m_items.emplace_back(identifier, item);
    return item;
}

void PanelToolBar::addFlexibleSpace() {
    m_layout->addStretch(1);
}

void PanelToolBar::addSpace() {
    m_layout->addSpacing(4 * theme::grid);
}

void PanelToolBar::setSelectedItemIdentifier(const QString &identifier) {
    const PanelToolBarItem *const selected = item(identifier);
    if (!selected || !selected->isCheckable())
        return;
    m_selected = identifier;
    m_settingState = true;
    for (const auto &[name, other] : m_items)
        other->setChecked(other == selected);
    m_settingState = false;
}

PanelToolBarItem *PanelToolBar::item(const QString &identifier) const {
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const auto &entry) { return entry.first == identifier; });
    return found == m_items.end() ? nullptr : found->second;
}

void PanelToolBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme::hairline());
}

} // namespace brightsweep
