#pragma once

#include "ui/ImageView.h"

#include <QPainterPath>
#include <QPointer>
#include <QVariantAnimation>

namespace brightsweep {

/// An icon that flies in an arc from a control to a button: one second, slow at first. Only
/// decoration: nothing waits for it. Main thread. One object serves one flight at a time; the pages
/// make one for each and let it go when it has told its end. With reduced motion nothing is shown,
/// and the signal keeps its time.
///
/// Frames are those in the controls' own parents, and places are counted from the lower left corner
/// of the content view; the offsets are where those parents stand in it.
class PathAnimation : public QObject {
    Q_OBJECT

public:
    explicit PathAnimation(QObject *parent = nullptr);
    ~PathAnimation() override;

    /// From a control in a row.
    void animateButtonSEL(const QWidget *start, const QWidget *endButton, const QPixmap &image,
                          QWidget *contentView);
    /// From a button.
    void animateStartBtn(const QWidget *startButton, const QWidget *endButton, const QPixmap &image,
                         QWidget *contentView);
    /// From a row of a folder browser, whose columns are all as wide as `rect`, the row's frame
    /// within its column, counted from the top.
    void animateBrowserSEL(const QWidget *browser, int column, const QWidget *endButton,
                           const QPixmap &image, QWidget *contentView, const QRectF &rect);
    /// From a point of a table, counted from its top. The icon carries the tag.
    void animateTableView(const QWidget *table, const QWidget *endButton, QPointF startPoint,
                          const QPixmap &image, int tag, QWidget *contentView);
    /// Hides the icon; the flight itself goes on and tells its end.
    void stopAnimation();

    /// The arc. `start` counts from the top of the view that holds the control, whose lower edge is
    /// at `holderY`; `end` counts from below, as does `contentHeight`.
    QPainterPath flightPath(const QRectF &start, const QRectF &end, double holderY,
                            double contentHeight) const;

    /// Where the parents of the controls stand in the content view.
    QPointF startOffset{150.0, -20.0};
    QPointF endOffset{200.0, 15.0};

    const ImageView *animatedIconView() const { return m_animatedIconView; }
    bool isFly() const { return m_isFly; }
    /// What drives the flight.
    QVariantAnimation &flight() { return m_flight; }

Q_SIGNALS:
    /// At the end of the flight.
    void callBackDeleteItemWithIndex();

private:
    void fly(const QRectF &start, const QWidget *holder, const QWidget *endButton,
             const QPixmap &image, QWidget *contentView);
    void animationDidStart();
    void animationDidStop();
    void setFrameOrigin(QPointF origin);

    QVariantAnimation m_flight;
    QPainterPath m_path;
    QPointer<ImageView> m_animatedIconView;
    bool m_isFly = false;
};

} // namespace brightsweep
