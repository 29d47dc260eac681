#pragma once

#include <QListView>

namespace brightsweep {

class NewMainViewController;

/// The left list of the clean page: the overview and the six categories, each with its tick and
/// with what was found. The controller outlives it. Main thread.
class LeftListView : public QListView {
    Q_OBJECT

public:
    explicit LeftListView(NewMainViewController &controller, QWidget *parent = nullptr);

    /// What was found in a row, in words; of the overview the sum.
    QString foundText(int row) const;
    /// Empty where the row has no check box.
    QString checkImage(int row) const;

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showRow();
    bool tick(int row);

    NewMainViewController &m_controller;
    bool m_following = false;
};

} // namespace brightsweep
