#pragma once

#include <QWidget>

class QDialog;

namespace brightsweep {

/// Darkens a window while a sheet of it is up, so that the sheet stands out where the desktop
/// draws no frame and no shadow. It takes no input and goes with the sheet. Main thread.
class SheetShade : public QWidget {
    Q_OBJECT

public:
    explicit SheetShade(QDialog &sheet);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *) override;
};

/// For a sheet of a window, before it is opened; nothing for one without.
void shade(QDialog &sheet);

} // namespace brightsweep
