#include "ui/effects/AnimationHoverImageView.h"

namespace brightsweep {

void AnimationHoverImageView::setNormalImage(const QString &name) {
    m_normalImage = name;
    setImageName(name);
}

void AnimationHoverImageView::enterEvent(QEnterEvent *event) {
    if (isEnabled())
        setImageName(m_hoverImage);
    ImageView::enterEvent(event);
}

void AnimationHoverImageView::leaveEvent(QEvent *event) {
    if (isEnabled())
        setImageName(m_normalImage);
    ImageView::leaveEvent(event);
}

} // namespace brightsweep
