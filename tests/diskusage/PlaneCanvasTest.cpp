#include "diskusage/ChartLabels.h"
#include "diskusage/RingChart.h"
#include "diskusage/SvgCanvas.h"
#include "diskusage/Trees.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <QXmlStreamReader>

namespace brightsweep {
namespace {

using test::TestTree;

// What the canvas was asked to fill, by its points.
class PointsCanvas final : public PlaneCanvas {
public:
    explicit PointsCanvas(QSizeF size) : PlaneCanvas(size) { keepSectors(0); }
    struct Filled {
        std::vector<QPointF> outer;
        std::vector<QPointF> hole;
        Colour colour;
    };
    std::vector<Filled> filled;

protected:
    void drawOutline(const Area &, Colour) override {}
    void fillArea(const Area &area, Colour colour) override {
        filled.push_back(
            {{area.outer.begin(), area.outer.end()}, {area.hole.begin(), area.hole.end()}, colour});
    }
    void clearDevice(Colour, std::uint8_t) override {}
};

bool near(QPointF point, double x, double y) {
    return std::hypot(point.x() - x, point.y() - y) < 1e-9;
}

TEST(PlaneCanvas, TurnsDisksIntoThePolygonsOfGlu) {
    PointsCanvas canvas(QSizeF(200, 100));
    const ChartCanvas::Use use(canvas);
    RingChart::setProjection(200, 100);
    ChartCanvas::Quadric *const quadric = canvas.newQuadric();
    const auto draw = [&](double inner, double outer, int slices, double start, double sweep) {
        canvas.filled.clear();
        canvas.partialDisk(quadric, inner, outer, slices, 1, start, sweep);
    };
    // Three units are half of the short side; angles go clockwise from the top.
    draw(0, 3, 2, 0, 90);
    ASSERT_EQ(canvas.filled.size(), 1u);
    const auto &quarter = canvas.filled[0].outer;
    ASSERT_EQ(quarter.size(), 4u);
    EXPECT_TRUE(near(quarter[0], 100, 0));
    EXPECT_TRUE(near(quarter[2], 150, 50));
    EXPECT_TRUE(near(quarter[3], 100, 50));
    draw(1.5, 3, 4, 0, 360);
    EXPECT_EQ(canvas.filled[0].outer.size(), 4u);
    EXPECT_EQ(canvas.filled[0].hole.size(), 4u);
    draw(1.5, 3, 2, 90, -90); // as from 0, the other way round
    EXPECT_TRUE(near(canvas.filled[0].outer[0], 100, 0));
    EXPECT_EQ(canvas.filled[0].outer.size(), 6u);
    for (const auto &[inner, outer, slices] :
         {std::tuple{2.0, 1.0, 4}, {0.0, 0.0, 4}, {-1.0, 1.0, 4}, {0.0, 1.0, 1}}) {
        draw(inner, outer, slices, 0, 90);
        EXPECT_TRUE(canvas.filled.empty());
    }
    // Matrices multiply from the right, and a pop gives the one before back.
    canvas.pushMatrix();
    canvas.translated(1, 1, 0);
    draw(0, 3, 2, 0, 90);
    EXPECT_TRUE(near(canvas.filled[0].outer[3], 100 + 50 / 3.0, 50 - 50 / 3.0));
    canvas.translated(0, 0, -3); // behind the eye's reach
    draw(0, 3, 2, 0, 90);
    EXPECT_TRUE(canvas.filled.empty());
    canvas.popMatrix();
    canvas.popMatrix(); // one too many changes nothing
    draw(0, 3, 2, 0, 90);
    EXPECT_TRUE(near(canvas.filled[0].outer[3], 100, 50));
}

// Points of a label's box, where a label that left its sector would show.
std::vector<QPointF> boxOf(const ChartLabel &label, const LabelMeasure &measure) {
    const double width = std::max(measure.width(label.name), measure.width(label.size)) / 2;
    const double height = measure.lineHeight * (label.size.isEmpty() ? 1 : 2) / 2;
    std::vector<QPointF> points;
    for (int i = 0; i <= 20; ++i) {
        for (const double y : {-height, height})
            points.push_back(label.centre + QPointF((i - 10) * width / 10, y));
    }
    return points;
}

TEST(ChartLabels, StayWithinTheirSectors) {
    TestTree tree;
    for (int i = 0; i < 14; ++i) {
        const std::string name = std::string(std::size_t(1 + i * 3), 'n') + std::to_string(i);
        tree.sparseFile(name + "/deeper/file", std::uint64_t(1000 * (i + 1)));
        tree.sparseFile(name + "/𝄞𝄞𝄞𝄞𝄞𝄞𝄞𝄞/file", std::uint64_t(700 * (i + 1)));
    }
    const auto root = test::scan(tree.top());
    const LabelMeasure measure{[](const QString &text) { return 7.0 * double(text.size()); }, 14,
                               2};
    std::size_t elided = 0;
    for (const int side : {500, 900}) {
        PointsCanvas canvas(QSizeF(side, side));
        const ChartCanvas::Use use(canvas);
        RingChart::setProjection(side, side);
        root->Paint(360, 0, 1, 0, false);
        const auto labels = layOutLabels(canvas.sectors(), measure);
        EXPECT_GT(int(labels.size()), side / 300) << side;
        for (const ChartLabel &label : labels) {
            elided += label.name.contains(u'…') ? 1 : 0;
            EXPECT_TRUE(label.name.isValidUtf16());
            std::size_t inside = 0;
            for (const PlaneCanvas::Sector &sector : canvas.sectors()) {
                std::size_t held = 0;
                const auto points = boxOf(label, measure);
                for (const QPointF &point : points) {
                    const QPointF off = point - sector.centre;
                    const double radius = std::hypot(off.x(), off.y());
                    double angle = std::atan2(off.x(), -off.y()) * 180 / std::numbers::pi;
                    angle += angle < 0 ? 360 : 0;
                    held += radius >= sector.inner && radius <= sector.outer &&
                            angle >= sector.start && angle <= sector.start + sector.sweep;
                }
                EXPECT_TRUE(held == 0 || held == points.size()) << label.name.toStdString();
                inside += held == points.size() ? 1 : 0;
            }
            EXPECT_EQ(inside, 1u) << label.name.toStdString();
        }
    }
    EXPECT_GT(elided, 0u);
}

TEST(SvgCanvas, WritesADocumentWhateverTheNames) {
    TestTree tree;
    tree.sparseFile("a<b>&\"'\n\x01\xff\xef\xbf\xbf/file", 600);
    tree.sparseFile("d/file", 300);
    const auto root = test::scan(tree.top());
    SvgCanvas canvas(QSizeF(400, 400), {39, 41, 51});
    const ChartCanvas::Use use(canvas);
    RingChart::setProjection(400, 400);
    root->Paint(360, 0, 1, 0, false);
    QXmlStreamReader reader(QByteArray::fromStdString(canvas.document()));
    int groups = 0;
    QStringList paths;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        groups += reader.name() == QLatin1String("title") ? 1 : 0;
        if (reader.name() == QLatin1String("path"))
            paths.append(reader.attributes().value(QLatin1String("d")).toString());
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_EQ(groups, 3);
    ASSERT_EQ(paths.size(), 6); // an outline and an area each
    EXPECT_EQ(paths[0], paths[1]);
}

} // namespace
} // namespace brightsweep
