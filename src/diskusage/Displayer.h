#pragma once

namespace brightsweep {

/// What a node of the size tree tells a screen. Both operations do nothing here.
class Displayer {
public:
    /// The last step of a frame.
    virtual void StatusMessage(const char *path, const char *hint);
    /// Draws one sector of a ring. Angles in degrees, clockwise from the top; radii in chart units.
    virtual void DrawSector(double start, double sweep, double inner, double outer, bool selected);

protected:
    Displayer() = default;
    Displayer(const Displayer &) = delete;
    Displayer &operator=(const Displayer &) = delete;
    virtual ~Displayer() = default;
};

} // namespace brightsweep
