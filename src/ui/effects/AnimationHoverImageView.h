#pragma once

#include "ui/ImageView.h"

namespace brightsweep {

/// An image that changes under the mouse. Main thread. While it is disabled it keeps what it has.
class AnimationHoverImageView : public ImageView {
    Q_OBJECT

public:
    using ImageView::ImageView;

    /// Shown at once.
    void setNormalImage(const QString &name);
    void setHoverImage(const QString &name) { m_hoverImage = name; }

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QString m_normalImage;
    QString m_hoverImage;
};

} // namespace brightsweep
