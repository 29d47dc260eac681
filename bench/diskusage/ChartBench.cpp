// Measures what the disk usage page paints: `bench_chart [DIR]`. A chart of some 400 sectors at 600
// by 600, as it is painted for each frame while a scan runs, and what the mouse adds to it. With a
// folder also a scan of it beside which the chart grows, against one alone, in turn and warm.

#include "diskusage/RingChart.h"
#include "diskusage/ui/ChartPicture.h"
#include "diskusage/ui/PainterCanvas.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace brightsweep;
using Clock = std::chrono::steady_clock;

constexpr int branches = 100; // of four rings each
constexpr int runs = 200;
constexpr QSize size(600, 600);
constexpr std::chrono::milliseconds frameInterval(45);
constexpr int scans = 5;

// The best of so many: other programs run beside.
double milliseconds(const std::function<void()> &act) {
    double best = 1e9;
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        act();
        best =
            std::min(best, std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return best;
}

double scan(RingChart &chart, const std::filesystem::path &folder, bool paints, int &frames) {
    std::atomic<bool> done{false};
    const auto start = Clock::now();
    double took = 0;
    std::thread scanner([&] {
        chart.contructPieTree(folder);
        took = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        done = true;
    });
    ChartPicture picture(size, 1);
    while (!done) {
        const auto next = Clock::now() + frameInterval;
        if (paints) {
            picture.paintChart(chart);
            ++frames;
        }
        std::this_thread::sleep_until(next);
    }
    scanner.join();
    return took;
}

void measureScan(const std::filesystem::path &folder) {
    RingChart chart;
    int frames = 0;
    scan(chart, folder, false, frames); // warms the caches
    std::vector<double> alone;
    std::vector<double> grown;
    double painted = 0;
    for (int i = 0; i < scans; ++i) {
        alone.push_back(scan(chart, folder, false, frames));
        grown.push_back(scan(chart, folder, true, frames));
        painted += grown.back();
    }
    std::sort(alone.begin(), alone.end());
    std::sort(grown.begin(), grown.end());
    std::printf("scan alone %.0f ms, with the chart growing %.0f ms, %.2f times, %.0f frames a "
                "second\n",
                alone[scans / 2], grown[scans / 2], grown[scans / 2] / alone[scans / 2],
                frames / painted * 1000);
    // What stands between the end of the scan and the chart with its list.
    const auto start = Clock::now();
    chart.updateLeftView(chart.getCurrentDirectory(), chart.rootFacts().bytes);
    ChartPicture picture(size, 1);
    picture.paintChart(chart);
    const double first = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    std::size_t entries = 0;
    constexpr auto options = std::filesystem::directory_options::skip_permission_denied;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder, options))
        entries += entry.path().empty() ? 0 : 1;
    std::printf("first chart %.1f ms after the scan, %zu entries at %.1f bytes each\n", first,
                entries, double(chart.root()->storage()) / double(entries));
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    const QTemporaryDir folder;
    const std::filesystem::path top = folder.path().toStdString();
    for (int i = 0; i < branches; ++i) {
        const auto deepest = top / std::to_string(i) / "second" / "third" / "fourth";
        std::filesystem::create_directories(deepest);
        std::ofstream(deepest / "file") << std::string(1000, 'x');
    }
    RingChart chart;
    chart.contructPieTree(top);
    for (const double ratio : {1.0, 2.0}) {
        QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        std::size_t sectors = 0;
        const double rings = milliseconds([&] {
            QPainter painter(&image);
            PainterCanvas canvas(painter, image.size(), ratio);
            canvas.keepSectors(0);
            const ChartCanvas::Use use(canvas);
            chart.drawRect(image.width(), image.height());
            sectors = canvas.sectors().size();
        });
        ChartPicture picture(size, ratio);
        QImage whole;
        const double labelled = milliseconds([&] { whole = picture.paintChart(chart); });
        chart.mouseMoved({0.3, -0.9}, {});
        const double hover = milliseconds([&] {
            QPainter painter(&image);
            painter.drawImage(QPoint(), whole);
            painter.scale(ratio, ratio);
            picture.paintFound(chart, painter);
        });
        std::printf("%zu sectors at %d by %d: rings %.2f ms, with labels %.2f ms, hover %.2f ms\n",
                    sectors, image.width(), image.height(), rings, labelled, hover);
    }
    if (argc > 1)
        measureScan(argv[1]);
    return 0;
}
