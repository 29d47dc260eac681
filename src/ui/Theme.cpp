#include "ui/Theme.h"

#include "core/Texts.h"
#include "platform/Platform.h"
#include "ui/FocusFrame.h"
#include "ui/IconTheme.h"
#include "ui/StyleSheet.h"

#include <QApplication>
#include <QDateTime>
#include <QFontMetrics>
#include <QLocale>
#include <QPalette>
#include <QPixmapCache>
#include <QPointer>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace brightsweep::theme {
namespace {

// In the order of Role.
const QColor graphite[roleCount] = {
    QColor(39, 41, 51),      QColor(48, 51, 63),    QColor(58, 62, 77),
    QColor(85, 85, 85, 102), QColor(255, 255, 255), QColor(215, 215, 215, 179),
    QColor(255, 214, 10),    QColor(46, 87, 199),   QColor(255, 69, 58),
    QColor(48, 209, 88),
};
// The accent stays, so that the focus ring differs from every other edge.
const QColor contrast[roleCount] = {
    QColor(0, 0, 0),       QColor(0, 0, 0),       QColor(51, 51, 51),   QColor(255, 255, 255),
    QColor(255, 255, 255), QColor(255, 255, 255), QColor(255, 214, 10), QColor(0, 0, 160),
    QColor(255, 255, 255), QColor(255, 255, 255),
};

/// A line of the desktop's usual font is this high; stated heights are meant for it.
constexpr double usualLine = 19.0;

struct State {
    Hints appearance;
    QFont desktopFont;
    bool desktopFontKnown = false;
};

State &state() {
    static State state;
    return state;
}

QFont desktopFont() {
    State &now = state();
    if (!now.desktopFontKnown) {
        now.desktopFont = QApplication::font();
        now.desktopFontKnown = true;
    }
    return now.desktopFont;
}

QPalette palette() {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, const QColor &color) {
        palette.setColor(role, color);
    };
    set(QPalette::Window, window());
    set(QPalette::WindowText, text());
    set(QPalette::Base, window());
    set(QPalette::AlternateBase, raised());
    set(QPalette::Text, text());
    set(QPalette::Button, raised());
    set(QPalette::ButtonText, text());
    set(QPalette::BrightText, text());
    set(QPalette::Highlight, selection());
    set(QPalette::HighlightedText, text());
    set(QPalette::ToolTipBase, raised());
    set(QPalette::ToolTipText, text());
    set(QPalette::PlaceholderText, secondary());
    set(QPalette::Link, accent());
    set(QPalette::LinkVisited, accent());
    set(QPalette::Light, hover());
    set(QPalette::Midlight, hover());
    set(QPalette::Mid, hairline());
    set(QPalette::Dark, window());
    set(QPalette::Shadow, QColor(Qt::black));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QColor faint = text();
        faint.setAlphaF(state().appearance.highContrast ? 0.6F : 0.35F);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    return palette;
}

} // namespace

QColor color(Role role) {
    const auto index = static_cast<std::size_t>(role);
    return state().appearance.highContrast ? contrast[index] : graphite[index];
}

QColor dangerText() {
    return state().appearance.highContrast ? text() : QColor(255, 128, 118);
}

QColor shareBar() {
    QColor bar = accent();
    bar.setAlphaF(0.16F);
    return bar;
}

QColor shareLine() {
    QColor line = accent();
    line.setAlphaF(0.5F);
    return line;
}

const Hints &appearance() {
    return state().appearance;
}

QFont font(double size, bool bold) {
    QFont font = desktopFont();
    const double factor = size / 12.0 * state().appearance.textScale;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pixelSize() * factor))));
    font.setBold(bold);
    return font;
}

int height(int stated) {
    const double line = QFontMetrics(font(12)).height();
    return line <= usualLine ? stated : static_cast<int>(std::ceil(stated * line / usualLine));
}

QSize leastPanel() {
    return {height(880), height(500)};
}

int textWidth(const QStringList &texts, double size, bool bold) {
    const QFontMetrics metrics(font(size, bold));
    int widest = 0;
    for (const QString &text : texts)
        widest = std::max(widest, metrics.horizontalAdvance(text));
    return widest;
}

QString widestSize() {
    return readersSize(QStringLiteral("8888.88 MB"));
}

QString widestDate() {
    return reader().toString(QDateTime({2028, 12, 28}, {22, 58, 58}), QLocale::ShortFormat);
}

Look &look() {
    static Look look;
    return look;
}

void keep(QObject *user, const std::function<void()> &set) {
    set();
    QObject::connect(&look(), &Look::changed, user, set);
}

void keepSize(QWidget *widget, int width, int stated) {
    keep(widget, [=] {
        if (width > 0)
            widget->setFixedWidth(height(width));
        if (stated > 0)
            widget->setFixedHeight(height(stated));
    });
}

void keepFont(QWidget *widget, double size, bool bold) {
    keep(widget, [=] { widget->setFont(font(size, bold)); });
}

void apply(QApplication &application, const Hints &hints) {
    static QPointer<FocusFrame> focusFrame;
    if (!focusFrame) {
        focusFrame = new FocusFrame(&application);
        application.installEventFilter(focusFrame);
    }
    desktopFont();
    state().appearance = hints;
    state().appearance.textScale = std::clamp(hints.textScale, 0.5, 3.0);
    QPixmapCache::clear();
    useDarkIconTheme();
    if (QStyle *style = QStyleFactory::create(QStringLiteral("Fusion")))
        QApplication::setStyle(style);
    QApplication::setPalette(palette());
    QApplication::setFont(font(12));
    application.setStyleSheet(styleSheet());
    Q_EMIT look().changed();
}

void follow(QApplication &application) {
    DesktopHints &desktop = *Platform::current().hints;
    apply(application, desktop.hints());
    desktop.setChangedHandler([&application, &desktop] {
        if (desktop.hints() != appearance())
            apply(application, desktop.hints());
    });
}

} // namespace brightsweep::theme
