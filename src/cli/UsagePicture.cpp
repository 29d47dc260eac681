#include "cli/UsagePicture.h"

#include "diskusage/RingChart.h"
#include "diskusage/SvgCanvas.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"

namespace brightsweep::cli {

namespace {

constexpr int pictureSide = 900;
constexpr PlaneCanvas::Colour background{39, 41, 51};

} // namespace

bool writePicture(AllDir &root, const std::filesystem::path &file, Output &output) {
    SvgCanvas canvas(QSizeF(pictureSide, pictureSide), background);
    {
        const ChartCanvas::Use use(canvas);
        RingChart::setProjection(pictureSide, pictureSide);
        root.Paint(360.0, 0.0, 1, 0, false);
    }
    const auto error = writeSmallFile(file, canvas.document(), NewFile::ByUmask);
    if (error) {
        output.warning(paths::display(file).toStdString() + ": " + wordsForFile(error));
    }
    return !error;
}

} // namespace brightsweep::cli
