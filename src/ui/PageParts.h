#pragma once

#include <QString>

class QFrame;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace brightsweep {

/// What the pages with results have in common. All belong to their parent.

QPushButton *makeBackButton(QWidget *parent);
/// A line of one pixel between two parts of a page.
QFrame *makeHairline(QWidget *parent);
/// Shows text as it is, and no markup.
QLabel *makePlainLabel(const char *name, QWidget *parent);
/// The empty row of buttons below a page.
QHBoxLayout *makeBottomRow(QWidget *bottom);
/// How much is ticked, in large letters, above the words on it. A hidden sum keeps its room.
QVBoxLayout *makeSumColumn(QLabel *sum, QLabel *words);
/// The button of a page that removes: only a click or Space presses it, never Enter.
QPushButton *makeRemovingButton(const char *name, const QString &text, QWidget *parent);

} // namespace brightsweep
