#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace brightsweep {

class CustomOpenGLView;
class DiskUsageAppController;

/// The scanning panel of the disk usage page: the chart as it grows, how far the scan has come, and
/// the stop. The controller outlives it. Main thread.
class DiskUsageProgressPanel : public QWidget {
    Q_OBJECT

public:
    explicit DiskUsageProgressPanel(DiskUsageAppController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *) override;
    void hideEvent(QHideEvent *) override;

private:
    void follow();
    void followProgress();

    DiskUsageAppController &m_controller;
    CustomOpenGLView *m_chart;
    QWidget *m_picture;
    QLabel *m_folder;
    QProgressBar *m_progress;
    QPushButton *stopScanBtn;
    QLabel *stopScanText;
};

} // namespace brightsweep
