#pragma once

#include <QWidget>

#include <functional>

class QPainter;
class QTimer;

namespace brightsweep {

class V3MainListView;

/// One row of the overview: the category's image and name, what was found there and what was
/// cleaned, and a bar as long as its share. Main thread; the row's data outlives it.
class OverviewRow : public QWidget {
    Q_OBJECT

public:
    /// What the category has of all that was found, from 0 to 1.
    using Share = std::function<double()>;
    OverviewRow(V3MainListView &row, Share share, QWidget *parent = nullptr);
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
    const Share m_share;
    QTimer *m_turn;
    int m_angle = 0;
};

} // namespace brightsweep
