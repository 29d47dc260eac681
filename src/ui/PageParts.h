#pragma once

#include <QString>

class QFrame;
class QLabel;
class QPushButton;
class QWidget;

namespace brightsweep {

/// What the pages with results have in common. All belong to their parent.

QPushButton *makeBackButton(QWidget *parent);
/// A line of one pixel between two parts of a page.
QFrame *makeHairline(QWidget *parent);
/// Shows text as it is, and no markup.
QLabel *makePlainLabel(const char *name, QWidget *parent);
/// The button of a page that removes: only a click or Space presses it, never Enter.
QPushButton *makeRemovingButton(const char *name, const QString &text, QWidget *parent);

} // namespace brightsweep
