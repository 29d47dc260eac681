#pragma once

#include "ui/LeftList.h"

namespace brightsweep {

class NewMainViewController;

/// The left list of the clean page: the overview and the six categories, each with its tick and
/// with what was found. The controller outlives it. Main thread.
class LeftListView : public LeftList {
    Q_OBJECT

public:
    explicit LeftListView(NewMainViewController &controller, QWidget *parent = nullptr);

    /// What was found in a row, in words; of the overview the sum.
    QString foundText(int row) const;
    /// Empty where the row has no check box.
    QString checkImage(int row) const;

protected:
    void chosen(int row) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void followPage();
    bool tick(int row);

    NewMainViewController &m_controller;
};

} // namespace brightsweep
