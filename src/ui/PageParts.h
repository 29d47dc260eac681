#pragma once

#include <QString>

class QFrame;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;
class QWidget;

namespace brightsweep {

/// What the pages with results have in common. All belong to their parent.

QPushButton *makeBackButton(QWidget *parent);
/// A line of one pixel between two parts of a page.
QFrame *makeHairline(QWidget *parent);
/// Shows text as it is, and no markup.
QLabel *makePlainLabel(const char *name, QWidget *parent);
/// The empty row above a list, of what it holds in sum.
QHBoxLayout *makeHeadingRow(QWidget *heading);
/// A picture in the middle with that label below it, for a list that is empty; the layout takes
/// more lines behind them.
QVBoxLayout *makeEmptyPart(const QString &picture, QLabel *label, QWidget *part);
/// Scrolls the content where it does not fit, on the ground that lies below.
QScrollArea *makeScroll(QWidget *content, QWidget *parent);
/// The empty row of buttons below a page.
QHBoxLayout *makeBottomRow(QWidget *bottom);
/// How much is ticked, in large letters, above the words on it. A hidden sum keeps its room.
QVBoxLayout *makeSumColumn(QLabel *sum, QLabel *words);
/// The button of a page that removes: only a click or Space presses it, never Enter.
QPushButton *makeRemovingButton(const char *name, const QString &text, QWidget *parent);

/// The keyboard is in the part, also in a window that is not active.
bool holdsFocus(const QWidget &part);
/// Opens the widget's context menu as the menu key does, for keyboards without one.
void openMenuByKeyboard(QWidget &widget);

} // namespace brightsweep
