#pragma once

#include <QWidget>

class QPainter;
class QTimer;

namespace brightsweep {

class V3MainListView;

/// One row of the overview: the category's image and name, what was found there and what was
/// cleaned, and a bar that grows with what was found. The bar's scale is logarithmic, from a
/// kilobyte to a terabyte, so that it never shrinks while others grow. Main thread; the row's data
/// outlives it.
class OverviewRow : public QWidget {
    Q_OBJECT

public:
    explicit OverviewRow(V3MainListView &row, QWidget *parent = nullptr);
    ~OverviewRow() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *) override;
    void hideEvent(QHideEvent *) override;

private:
    void follow();
    void paintWords(QPainter &painter, QRect room);
    void runWhileNeeded();
    QRect checkBox() const;

    V3MainListView &m_row;
    QTimer *m_turn;
    int m_angle = 0;
};

} // namespace brightsweep
