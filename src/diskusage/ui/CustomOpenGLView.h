#pragma once

#include "diskusage/PlaneCanvas.h"
#include "diskusage/RingChart.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

#include <tuple>

class QTimer;
class QVariantAnimation;

namespace brightsweep {

class V4DiskUsageViewController;

/// Shows the ring chart: it grows while the scan runs, follows the mouse and the keyboard, and says
/// beside the pointer what is below it. The controller outlives it. Main thread.
///
/// The chart is painted once for a directory and a size, and kept; what the mouse has found is
/// painted over it.
class CustomOpenGLView : public QWidget {
    Q_OBJECT

public:
    explicit CustomOpenGLView(V4DiskUsageViewController &page, QWidget *parent = nullptr);

    /// While it grows: the chart is painted anew, frame by frame, and takes no input.
    void setGrowing(bool growing);
    /// "12% of the volume"; empty where that is not known.
    QString shareText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Delete was pressed.
    void removalRequested();
    /// The menu of what is found, or of the current directory where nothing is.
    void menuRequested(const QPoint &place);
    /// The directory that is found, with a trailing "/"; empty where none is.
    void foundChanged(const std::string &path);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    // What a kept picture is of.
    using Key = std::tuple<std::string, std::uint64_t, int, int, double, QRgb, ChartMeasure,
                           ChartColouring>;

    void redraw();
    void zoomFrom(const QImage &before);
    void paintBubble(QPainter &painter);
    QPointF placeOf(QPointF point) const;
    void sayFound();
    void lookForGap();

    V4DiskUsageViewController &m_page;
    RingChart &m_chart;
    QImage m_picture;
    std::vector<PlaneCanvas::Sector> m_sectors; ///< of the picture
    Key m_key;
    QImage m_before; ///< what a zoom comes from
    QVariantAnimation *m_zoom;
    QTimer *m_frames;
    QPointF m_mouse;
    std::string m_found;
    RingChart::Facts m_gap; ///< that the mouse is in
    bool m_byKeyboard = false;
};

} // namespace brightsweep
