// How long the clean page keeps its thread with many rows in one category: bench_clean_page [ROWS].
// Everything lies below a temporary folder; its files are empty.

#include "ManyRows.h"
#include "app/RegisterDefaults.h"
#include "cleaning/CleanOutlineController.h"
#include "cleaning/NewMainViewController.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPersistentModelIndex>

#include <cstdio>
#include <cstdlib>

using namespace brightsweep;
using bench::millisecondsSince;
using bench::SteadyClock;

namespace {

template <typename Act>
void measure(const char *what, double limit, Act act) {
    double worst = 0;
    constexpr int rounds = 5;
    for (int round = 0; round < rounds; ++round) {
        const auto start = SteadyClock::now();
        act();
        worst = std::max(worst, millisecondsSince(start));
    }
    std::printf("%-34s %8.1f ms at worst of %d, limit %.0f ms\n", what, worst, rounds, limit);
}

} // namespace

int main(int argc, char **argv) {
    const unsigned rows = argc > 1 ? unsigned(std::atoi(argv[1])) : 100'000;
    const bench::ManyRows home(rows);

    QCoreApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    registerAllDefaults();
    {
        NewMainViewController page;
        CleanOutlineController &outline = page.outline();
        QEventLoop loop;
        // The last scanner's end, and what the page makes of it until it has a result to show.
        SteadyClock::time_point last;
        QObject::connect(&page, &NewMainViewController::prograssShowDependChangeSize, &page,
                         [&] { last = SteadyClock::now(); });
        QObject::connect(&page, &NewMainViewController::displayPanel, &loop,
                         [&](const QString &panel) {
                             if (panel != QLatin1String("DATA_FastClean"))
                                 return;
                             std::printf("%-34s %8.1f ms, limit 300 ms\n",
                                         "end of the scan to results", millisecondsSince(last));
                             loop.quit();
                         });
        page.clickScanBtn();
        loop.exec();
        measure("all ticks off and on", 200, [&] {
            outline.setAllSelectOrNoSelect(false);
            outline.setAllSelectOrNoSelect(true);
        });
        CleanOutlineModel &model = outline.model();
        const QPersistentModelIndex leaf = model.index(int(rows) / 2, 0, model.index(0, 0));
        measure("one tick", 100, [&] { outline.toggle(leaf); });
        measure("sort by size", 300, [&] { model.sort(CleanOutlineModel::FileSize); });
        measure("sort by name", 300,
                [&] { model.sort(CleanOutlineModel::NameColumn, Qt::DescendingOrder); });
        measure("filter", 100, [&] {
            model.setFilter(model.filter().isEmpty() ? QStringLiteral("99") : QString());
        });
        measure("a screen of rows", 16, [&] {
            const QModelIndex group = model.index(0, 0);
            for (int row = 0; row < std::min(model.rowCount(group), 60); ++row) {
                for (int column = 0; column < CleanOutlineModel::columns; ++column)
                    for (const int role : {int(Qt::DisplayRole), int(Qt::CheckStateRole),
                                           int(CleanOutlineModel::FailureRole)})
                        model.index(row, column, group).data(role);
            }
        });
    }
    return 0;
}
