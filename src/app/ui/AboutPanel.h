#pragma once

#include <QDialog>

namespace brightsweep {

/// What the program is and which version. Main thread.
class AboutPanel : public QDialog {
    Q_OBJECT

public:
    explicit AboutPanel(QWidget *parent = nullptr);
};

} // namespace brightsweep
