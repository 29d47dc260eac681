#pragma once

#include <QObject>

#include <memory>

class QProcess;

namespace brightsweep {

class OffscreenGl;

/// Which canvas the ring chart is drawn on: OpenGL where a graphics card has a driver for it, else
/// a painter. A driver is loaded only once it is known to be a card's: a child process looks,
/// during the first scan, and what it finds is kept as long as the session. Main thread.
class ChartCanvasChoice : public QObject {
    Q_OBJECT

public:
    static ChartCanvasChoice &shared();
    ~ChartCanvasChoice() override;

    /// Looks, unless it is known; at once where there is no card at all.
    void begin();
    /// Null while the painter is to be used.
    OffscreenGl *gl() const { return m_gl.get(); }
    /// For the log and the user: "QPainter", or OpenGL with the name of the driver.
    QString name() const;

    /// What the child process does: looks, and writes a word on standard output.
    static int probe();

Q_SIGNALS:
    void changed();

private:
    ChartCanvasChoice();
    void answered();
    void choose(bool gl);

    std::unique_ptr<QProcess> m_child;
    std::unique_ptr<OffscreenGl> m_gl;
    bool m_isKnown = false;
};

/// The argument with which this program is its own child for that.
inline constexpr char probeChartCanvasArgument[] = "--probe-chart-canvas";

} // namespace brightsweep
