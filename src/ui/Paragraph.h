#pragma once

#include <QLabel>

namespace brightsweep {

/// A text that wraps its words at a stated width and is as high as they need: a layout that centres
/// a label does not ask for the height that goes with a width. Without a width it is any label.
/// Main thread.
class Paragraph : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    void setParagraphWidth(int width);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;

private:
    int m_width = 0;
};

} // namespace brightsweep
