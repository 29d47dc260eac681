#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace brightsweep {

class Animation;
class NewMainViewController;

/// The progress panel of the clean page: the sum found so far, six rows that grow, and the stop.
/// The controller outlives it. Main thread.
class CleanProgressPanel : public QWidget {
    Q_OBJECT

public:
    explicit CleanProgressPanel(NewMainViewController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

private:
    void follow();
    void showTotal();

    NewMainViewController &m_controller;
    QLabel *m_total;
    QLabel *m_state;
    Animation *scanProgressAnim;
    QPushButton *stopScanBtn;
    QLabel *stopScanText;
};

} // namespace brightsweep
