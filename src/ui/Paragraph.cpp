#include "ui/Paragraph.h"

namespace brightsweep {

void Paragraph::setParagraphWidth(int width) {
    m_width = width;
    setWordWrap(true);
    setFixedWidth(width);
}

QSize Paragraph::sizeHint() const {
    return m_width > 0 ? QSize(m_width, heightForWidth(m_width)) : QLabel::sizeHint();
}

QSize Paragraph::minimumSizeHint() const {
    return m_width > 0 ? sizeHint() : QLabel::minimumSizeHint();
}

bool Paragraph::hasHeightForWidth() const {
    return m_width == 0 && QLabel::hasHeightForWidth();
}

} // namespace brightsweep
