#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QWidget>

namespace brightsweep {

/// A small borderless window that stands beside a point and holds one view: a rounded, translucent
/// panel with a white border. It never takes the focus and stays above other windows. Main thread;
/// it owns the view. Only X11 lets it choose its place.
class MAAttachedWindow : public QWidget {
    Q_OBJECT

public:
    /// Where the window stands as seen from the point.
    enum Side : int { Left = 0, Below = 1, Right = 2, Above = 3, Automatic = 12 };

    /// The point is in the coordinates of `window`, or of the screen without one. The view has its
    /// size already.
    explicit MAAttachedWindow(QWidget *view, const QPointF &attachedToPoint,
                              QWidget *inWindow = nullptr, int onSide = Automatic,
                              double atDistance = 0);

    QPointF point() const { return _point; }
    void setPoint(const QPointF &point);
    int side() const { return _side; }
    bool hasArrow() const { return m_hasArrow; }
    void setHasArrow(bool hasArrow);
    /// The side of the point on which the window fits: below, above, right, left; below where it
    /// fits nowhere.
    static int bestSideForAutomaticPosition(const QPointF &point, const QSizeF &size,
                                            const QRectF &visibleFrame);

protected:
    void paintEvent(QPaintEvent *) override;
    void resizeEvent(QResizeEvent *) override;

private:
    void updateGeometryFromPoint();
    QPainterPath backgroundPath() const;
    void appendArrow(QPainterPath &path, const QRectF &panel) const;
    double arrowInset() const { return m_hasArrow ? arrowHeight : 0; }

    static constexpr double borderWidth = 2.0;
    static constexpr double viewMargin = 2.0;
    static constexpr double arrowBaseWidth = 20.0;
    static constexpr double arrowHeight = 16.0;
    static constexpr double cornerRadius = 8.0;

    QWidget *_view;
    QWidget *_window;
    QPointF _point;
    int _side;
    double _distance;
    bool m_hasArrow = true;
};

} // namespace brightsweep
