#pragma once

#include "cleaning/CleanStyledText.h"
#include "ui/Paragraph.h"

namespace brightsweep {

/// A line of a page whose parts stand out in the accent colour. It follows the look. Main thread.
class StyledLabel : public Paragraph {
    Q_OBJECT

public:
    explicit StyledLabel(QWidget *parent = nullptr);

    void setStyledText(const CleanStyledText &text);
    const CleanStyledText &styledText() const { return m_text; }

private:
    void render();

    CleanStyledText m_text;
};

} // namespace brightsweep
