#pragma once

#include <QLabel>

namespace brightsweep {

/// A line of plain text that takes what room there is and asks for none; where it is too long, an
/// ellipsis stands for what is left out, and in a room of a few letters it is not drawn at all.
/// text() is the whole one. Main thread.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Qt::TextElideMode m_mode;
};

} // namespace brightsweep
