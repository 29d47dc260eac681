#include "diskusage/ChartLabels.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "foundation/Paths.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brightsweep {

namespace {

constexpr int fewestLetters = 3; // of a name that is elided
constexpr double halfCircle = std::numbers::pi;

// A label of that size around the middle of the ring, relative to the chart's centre, lies in the
// sector with all of it.
bool fits(const PlaneCanvas::Sector &sector, double width, double height) {
    const double middle = (sector.inner + sector.outer) / 2;
    const double start = sector.start * std::numbers::pi / 180;
    const double sweep = sector.sweep * std::numbers::pi / 180;
    const bool isDisc = sector.inner <= 0;
    const double at = start + sweep / 2;
    const QPointF centre =
        isDisc ? QPointF() : QPointF(middle * std::sin(at), -middle * std::cos(at));
    const QRectF box(centre.x() - width / 2, centre.y() - height / 2, width, height);
    const QPointF nearest(std::clamp(0.0, box.left(), box.right()),
                          std::clamp(0.0, box.top(), box.bottom()));
    if (std::hypot(nearest.x(), nearest.y()) < sector.inner)
        return false;
    for (const QPointF corner :
         {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()}) {
        if (std::hypot(corner.x(), corner.y()) > sector.outer)
            return false;
        if (isDisc)
            continue;
        double off = std::atan2(corner.x(), -corner.y()) - at;
        off -= 2 * halfCircle * std::round(off / (2 * halfCircle));
        if (std::abs(off) > sweep / 2)
            return false;
    }
    return true;
}

// The longest beginning of the name that fits; empty where that is too short to tell anything.
QString elided(const QString &name, const std::function<bool(const QString &)> &hasRoom) {
    if (hasRoom(name))
        return name;
    qsizetype room = 0;
    qsizetype tooLong = name.size();
    while (room + 1 < tooLong) {
        const qsizetype length = (room + tooLong) / 2;
        (hasRoom(name.left(length) + u'…') ? room : tooLong) = length;
    }
    if (room > 0 && name.at(room - 1).isHighSurrogate())
        --room;
    return room < fewestLetters ? QString() : name.left(room) + u'…';
}

} // namespace

std::vector<ChartLabel> layOutLabels(const std::vector<PlaneCanvas::Sector> &sectors,
                                     const LabelMeasure &measure) {
    std::vector<ChartLabel> labels;
    for (const PlaneCanvas::Sector &sector : sectors) {
        const QString size = sizeWords(sector.bytes);
        const double sizeWidth = measure.width(size);
        const auto hasRoom = [&](int lines) {
            return [&, lines](const QString &name) {
                const double width = std::max(measure.width(name), lines > 1 ? sizeWidth : 0);
                return fits(sector, width + 2 * measure.margin,
                            lines * measure.lineHeight + 2 * measure.margin);
            };
        };
        const QString whole = paths::display(sector.name);
        ChartLabel label;
        label.name = elided(whole, hasRoom(2));
        if (!label.name.isEmpty())
            label.size = size;
        else
            label.name = elided(whole, hasRoom(1));
        if (label.name.isEmpty())
            continue;
        const double at = (sector.start + sector.sweep / 2) * std::numbers::pi / 180;
        const double radius = sector.inner <= 0 ? 0 : (sector.inner + sector.outer) / 2;
        label.centre = sector.centre + QPointF(radius * std::sin(at), -radius * std::cos(at));
        // By the brightness that the eye has of the three colours.
        label.isDark =
            0.299 * sector.fill[0] + 0.587 * sector.fill[1] + 0.114 * sector.fill[2] > 128;
        labels.push_back(std::move(label));
    }
    return labels;
}

} // namespace brightsweep
