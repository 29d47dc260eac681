#pragma once

#include <QDialog>

namespace brightsweep {

/// The facts of the machine, as a sheet of the window it belongs to; it deletes itself when closed.
/// Main thread.
class ComputerSheet : public QDialog {
    Q_OBJECT

public:
    explicit ComputerSheet(QWidget *window);
};

} // namespace brightsweep
