#pragma once

#include "platform/DesktopHints.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QSize>
#include <QStringList>

#include <functional>

class QApplication;
class QWidget;

namespace brightsweep::theme {

/// How everything looks: dark graphite, flat, or black and white where the desktop asks for high
/// contrast. Main thread. A colour is asked for when something is painted, never kept: the
/// desktop's hints may change it at any time.
enum class Role {
    Window,
    Raised,
    Hover,
    Hairline,
    Text,
    Secondary,
    Accent,
    Selection,
    Danger,
    Ok,
};
inline constexpr int roleCount = 10;

QColor color(Role role);

inline QColor window() {
    return color(Role::Window);
}
inline QColor raised() {
    return color(Role::Raised);
}
inline QColor hover() {
    return color(Role::Hover);
}
inline QColor hairline() {
    return color(Role::Hairline);
}
inline QColor text() {
    return color(Role::Text);
}
inline QColor secondary() {
    return color(Role::Secondary);
}
inline QColor accent() {
    return color(Role::Accent);
}
inline QColor selection() {
    return color(Role::Selection);
}
inline QColor danger() {
    return color(Role::Danger);
}
inline QColor ok() {
    return color(Role::Ok);
}

/// Danger as words, readable on every surface but the selection.
QColor dangerText();
/// Behind the words of a row.
QColor shareBar();
/// The same where it is a thin line along the lower edge.
QColor shareLine();

/// Of every raised surface, and the unit of every distance.
inline constexpr int radius = 8;
inline constexpr int grid = 4;
inline constexpr int focusWidth = 2;
/// The height of a row in every list, before height().
inline constexpr int rowHeight = 36;

/// What the desktop asked for, as the look has it now.
const Hints &appearance();

/// `size`/12 of the desktop's font: 12 is plain text.
QFont font(double size, bool bold = false);
/// A stated height, or more where the desktop's text would not fit: stated heights are minima.
int height(int stated);

/// The least size of a panel that states none.
QSize leastPanel();
/// The room that the widest of the texts takes in font(size, bold).
int textWidth(const QStringList &texts, double size, bool bold = false);
/// Texts at least as wide as any size and any date of a list.
QString widestSize();
QString widestDate();

/// Tells of a change of the look, once palette, font and style sheet are the new ones.
class Look : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void changed();
};
Look &look();

/// Runs `set` now and after each change of the look, as long as `user` lives. Whatever a widget
/// keeps of fonts and measures is set in it.
void keep(QObject *user, const std::function<void()> &set);
/// Of images and of what else keeps a width and a height; 0 leaves that one free.
void keepSize(QWidget *widget, int width, int height);
/// Gives the widget font(size, bold), and again after each change of the look.
void keepFont(QWidget *widget, double size, bool bold = false);

/// Gives the program its palette, font and style sheet. May be called again: every widget then gets
/// its changes of palette, font and style as events. A text scale is held between 0.5 and 3.
void apply(QApplication &application, const Hints &hints = {});

/// Applies the desktop's hints now and whenever they change.
void follow(QApplication &application);

} // namespace brightsweep::theme
