#pragma once

#include "memory/ProgramNames.h"

#include <QWidget>

#include <array>
#include <vector>

class QGridLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace brightsweep {

class CleanMemoryController;
class Paragraph;
class PieChartView;
class ProgramRow;

/// The memory page: six figures, the chart of four of them, what programs can still get, the button
/// that releases with what comes of it, and the programs that hold most. Nothing is written or
/// drawn while it is hidden. The controller outlives it. Main thread.
class MemoryPanel : public QWidget {
    Q_OBJECT

public:
    explicit MemoryPanel(CleanMemoryController &controller, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    struct Detail {
        QLabel *title = nullptr;
        QLabel *value = nullptr;
    };

    QWidget *makeFigures();
    QWidget *makeDetails();
    QWidget *makeRelease();
    QWidget *makePrograms();
    Detail addDetail(QGridLayout &grid, const char *titleKey, const char *name);
    void followFigures();
    void followDetails();
    void followRelease();
    void followPrograms();

    CleanMemoryController &m_controller;
    ProgramNames m_names;
    std::array<QLabel *, 6> m_figures{}; ///< free, inactive, active, wired, used, total
    PieChartView *chartView;
    QLabel *m_available = nullptr;
    Detail m_fileCache;
    Detail m_swap;
    Detail m_compressed;
    Detail m_pressure;
    QToolButton *clearMemBtn = nullptr;
    bool m_releasedByKeyboard = false;
    QLabel *LastCleanText = nullptr;
    QLabel *noteTipText = nullptr;
    QLabel *noteCleaning = nullptr;
    QLabel *m_exactness = nullptr;
    QPushButton *m_exactShares = nullptr;
    std::vector<ProgramRow *> m_programs;
};

} // namespace brightsweep
