#pragma once

#include "diskusage/DiskUsageAppController.h"

#include <QAbstractButton>

namespace brightsweep {

/// One place of the start panel to scan: its icon, its name, what is free on it, and a bar of its
/// fill. Main thread.
class PlaceRow : public QAbstractButton {
    Q_OBJECT

public:
    explicit PlaceRow(DiskUsageLeftCell cell, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;
    void enterEvent(QEnterEvent *) override;
    void leaveEvent(QEvent *) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString words() const;

    DiskUsageLeftCell m_cell;
};

} // namespace brightsweep
