#pragma once

#include <QHeaderView>

namespace brightsweep {

/// A header whose first section is a check box for all rows; the others sort. Main thread.
class CheckHeader : public QHeaderView {
    Q_OBJECT

public:
    /// What the title of a column takes, sorted or not.
    int contentWidth(int logicalIndex) const;
    explicit CheckHeader(QWidget *parent = nullptr);

    void setCheckState(Qt::CheckState state);
    Qt::CheckState checkState() const { return m_state; }

Q_SIGNALS:
    void checkBoxClicked(bool ticked);

protected:
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    Qt::CheckState m_state = Qt::Unchecked;
    bool m_pressed = false;
};

} // namespace brightsweep
