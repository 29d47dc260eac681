#pragma once

#include "cleaning/CleanStyledText.h"

#include <QLabel>

namespace brightsweep {

/// A line of a page whose parts stand out in the accent colour. It follows the look. Main thread.
class StyledLabel : public QLabel {
    Q_OBJECT

public:
    explicit StyledLabel(QWidget *parent = nullptr);

    void setStyledText(const CleanStyledText &text);
    const CleanStyledText &styledText() const { return m_text; }
    /// Wraps its words at that width and is as high as they need; a layout that centres it does not
    /// ask for the height that goes with a width.
    void setParagraphWidth(int width);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void render();

    CleanStyledText m_text;
    int m_paragraphWidth = 0;
};

} // namespace brightsweep
