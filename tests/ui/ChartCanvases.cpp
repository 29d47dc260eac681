// Draws charts of many trees on both canvases, the painter's and OpenGL's, and compares the
// pictures pixel by pixel: chart_canvases. Needs a display with some OpenGL, software or not.

#include "diskusage/RingChart.h"
#include "diskusage/ui/OffscreenGl.h"
#include "diskusage/ui/PainterCanvas.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

using namespace brightsweep;

constexpr int trees = 20;
constexpr int nearColour = 8;
constexpr double nearPixels = 0.99;

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

// Next to a pixel of another colour, within the one picture or the other.
bool isAtEdge(const QImage &image, int x, int y) {
    for (int j = std::max(0, y - 1); j <= std::min(image.height() - 1, y + 1); ++j) {
        for (int i = std::max(0, x - 1); i <= std::min(image.width() - 1, x + 1); ++i) {
            if (difference(image.pixel(i, j), image.pixel(x, y)) > nearColour)
                return true;
        }
    }
    return false;
}

bool areAlike(const QImage &painted, const QImage &drawn, int tree) {
    if (painted.size() != drawn.size())
        return false;
    int far = 0;
    int strange = 0;
    int shown = 0;
    for (int y = 0; y < painted.height(); ++y) {
        for (int x = 0; x < painted.width(); ++x) {
            shown += qAlpha(painted.pixel(x, y)) > 0 ? 1 : 0;
            if (difference(painted.pixel(x, y), drawn.pixel(x, y)) <= nearColour)
                continue;
            ++far;
            strange += isAtEdge(painted, x, y) || isAtEdge(drawn, x, y) ? 0 : 1;
        }
    }
    const double near = 1 - double(far) / (painted.width() * painted.height());
    std::printf("tree %d: %.3f%% near, %d strange, %d drawn\n", tree, 100 * near, strange, shown);
    return near >= nearPixels && strange == 0 && shown > 1000;
}

void fill(const std::filesystem::path &folder, int depth, std::mt19937 &random) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "file") << std::string(random() % 4000, 'x');
    for (unsigned i = 0; depth > 0 && i < 1 + random() % 5; ++i)
        fill(folder / std::to_string(i), depth - 1, random);
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    const auto gl = OffscreenGl::make();
    if (!gl) {
        std::puts("no OpenGL here");
        return 1;
    }
    std::printf("%s\n", qPrintable(gl->renderer()));
    std::mt19937 random(7);
    bool isSame = true;
    for (int tree = 0; tree < trees; ++tree) {
        const QTemporaryDir folder;
        fill(folder.path().toStdString(), tree % 6, random);
        RingChart chart;
        chart.contructPieTree(folder.path().toStdString());
        const QSize size(tree % 2 ? 1200 : 1400, 1200);
        const auto draw = [&](QSize on) { chart.drawRect(on.width(), on.height()); };
        QImage painted(size, QImage::Format_ARGB32_Premultiplied);
        {
            QPainter painter(&painted);
            PainterCanvas canvas(painter, size, 1);
            const ChartCanvas::Use use(canvas);
            draw(size);
            chart.mouseMoved({0.4, -0.9}, {});
            draw(size); // with something found
        }
        const QImage drawn = gl->paint(size, 1, draw);
        isSame = areAlike(painted, drawn, tree) && isSame;
    }
    return isSame ? 0 : 1;
}
