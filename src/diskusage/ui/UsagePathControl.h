#pragma once

#include "diskusage/V4DiskUsageViewController.h"

#include <QWidget>

class QHBoxLayout;

namespace brightsweep {

/// The path from the scanned folder to the current one, a button for each directory. Where there is
/// no room for all, those in the middle stand behind one with points. Main thread; the controller
/// outlives it.
class UsagePathControl : public QWidget {
    Q_OBJECT

public:
    explicit UsagePathControl(V4DiskUsageViewController &page, QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fill();
    void addCell(const PathCell &cell, bool isLast, int room);
    void addHidden(const std::vector<PathCell> &cells);

    V4DiskUsageViewController &m_page;
    QHBoxLayout *m_row;
};

} // namespace brightsweep
