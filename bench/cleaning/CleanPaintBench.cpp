// How the clean page's window behaves with many rows in one category: bench_clean_paint [ROWS
// [SCALE]]. It is 900 by 600 on a screen in memory; everything lies below a temporary folder.

#include "ManyRows.h"
#include "app/RegisterDefaults.h"
#include "cleaning/CleanOutlineController.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/ResultView.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QEventLoop>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

using namespace brightsweep;
using bench::millisecondsSince;
using bench::SteadyClock;

namespace {

double ownMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

void say(const char *what, double value, double limit) {
    std::printf("%-34s %8.1f ms, limit %.0f ms\n", what, value, limit);
}

template <typename Act>
void measure(const char *what, double limit, Act act) {
    const auto start = SteadyClock::now();
    act();
    QApplication::processEvents();
    say(what, millisecondsSince(start), limit);
}

// A line at a time, a page at a time, and from end to end: every repaint with what led to it.
std::vector<double> scroll(QScrollBar &bar, int rows) {
    constexpr int steps = 1'000;
    std::vector<double> times;
    for (int step = 0; step < steps; ++step) {
        const int place = step % 10 == 0  ? int(std::int64_t(step) * 7'919 % bar.maximum())
                          : step % 3 == 0 ? bar.value() + bar.pageStep()
                                          : bar.value() + rows;
        // Its own time: what else the machine does is not the page's.
        const double start = ownMilliseconds();
        bar.setValue(place % bar.maximum());
        QApplication::processEvents();
        times.push_back(ownMilliseconds() - start);
    }
    std::sort(times.begin(), times.end());
    return times;
}

} // namespace

int main(int argc, char **argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    ::setenv("QT_SCALE_FACTOR", argc > 2 ? argv[2] : "1", 1);
    const bench::ManyRows home(argc > 1 ? unsigned(std::atoi(argv[1])) : 100'000,
                               {".png", ".txt", ".mp4", "", ".tar.gz", ".pdf"});

    QApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    registerAllDefaults();
    theme::apply(application);
    {
        NewMainViewController page;
        CleanResultsPanel panel(page);
        panel.resize(900, 600);
        QEventLoop loop;
        SteadyClock::time_point last;
        QObject::connect(&page, &NewMainViewController::prograssShowDependChangeSize, &page,
                         [&] { last = SteadyClock::now(); });
        QObject::connect(&page, &NewMainViewController::displayPanel, &panel,
                         [&](const QString &identifier) {
                             panel.setVisible(identifier == QLatin1String("DATA_FastClean"));
                             if (!panel.isVisible())
                                 return;
                             panel.repaint();
                             say("end of the scan to a first frame", millisecondsSince(last), 300);
                             loop.quit();
                         });
        page.clickScanBtn();
        loop.exec();
        auto &outline = *panel.findChild<OutlineView *>();
        measure("ticking none", 100, [&] { page.outline().setAllSelectOrNoSelect(false); });
        measure("ticking all", 100, [&] { page.outline().setAllSelectOrNoSelect(true); });
        measure("sort by size", 300,
                [&] { outline.sortByColumn(CleanOutlineModel::FileSize, Qt::DescendingOrder); });
        measure("filter", 300, [&] { page.outline().model().setFilter(QStringLiteral("99")); });
        measure("no filter", 300, [&] { page.outline().model().setFilter(QString()); });
        const std::vector<double> times = scroll(*outline.verticalScrollBar(), 3 * 36);
        say("a paint while scrolling, median", times[times.size() / 2], 16);
        say("a paint while scrolling, 99%", times[times.size() * 99 / 100], 16);
        say("a paint while scrolling, worst", times.back(), 16);

        page.shouldSelectRowWithArray(2);
        QApplication::processEvents();
        auto &list = *panel.findChild<CategoryView *>();
        measure("select all rows of a list", 100, [&] { list.selectAll(); });
        measure("down a row of a list", 100,
                [&] { list.setCurrentIndex(list.indexBelow(list.currentIndex())); });
        const std::vector<double> listTimes = scroll(*list.verticalScrollBar(), 3 * 36);
        say("a paint of the list, 99%", listTimes[listTimes.size() * 99 / 100], 16);
    }
    return 0;
}
