#pragma once

#include "diskusage/PlaneCanvas.h"

#include <string>

namespace brightsweep {

/// Writes the chart as a Scalable Vector Graphics document: one group for each sector, with its
/// path and size as the title that viewers show under the pointer, and labels on top.
class SvgCanvas final : public PlaneCanvas {
public:
    /// The background is opaque.
    SvgCanvas(QSizeF size, Colour background);

    /// What was drawn since the last clear(), as a whole document.
    std::string document() const;

protected:
    void drawOutline(const Area &area, Colour colour) override;
    void fillArea(const Area &area, Colour colour) override;
    void clearDevice(Colour colour, std::uint8_t alpha) override;
    void beginDirectory(const AllDir &node) override;

private:
    void endDirectory();

    Colour m_background;
    std::string m_drawn;
    bool m_inGroup = false;
};

} // namespace brightsweep
