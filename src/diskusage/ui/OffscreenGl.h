#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <memory>

class QOffscreenSurface;
class QOpenGLContext;

namespace brightsweep {

class GlCanvas;

/// A place to draw the chart by OpenGL that is no window: a compatibility context of its own with a
/// multisampled buffer, so that the program's windows stay what they are. Making one loads the
/// driver. Main thread.
class OffscreenGl {
public:
    /// Null where no such context, buffer or library is to be had.
    static std::unique_ptr<OffscreenGl> make();
    ~OffscreenGl();

    /// What the driver calls itself.
    const QString &renderer() const { return m_renderer; }
    /// True where the processor draws in place of a graphics card.
    bool isSoftware() const;

    /// Draws on the canvas in use meanwhile, which has the size that is handed over; a null image
    /// where the system has no room for it.
    QImage paint(QSize pixels, double lineWidth, const std::function<void(QSize)> &draw);

private:
    OffscreenGl();

    std::unique_ptr<QOffscreenSurface> m_surface;
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<GlCanvas> m_canvas;
    QString m_renderer;
};

} // namespace brightsweep
