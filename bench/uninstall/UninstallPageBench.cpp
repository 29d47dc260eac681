// What the uninstall page costs with 130 applications of 2,000 packages: `bench_uninstall_page`.
// Everything lies below a temporary folder, on a screen in memory. Limits: the first screen within
// 50 ms of the list's arrival, and 10 MiB of memory for the page.

#include "../cleaning/ManyRows.h"
#include "app/RegisterDefaults.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "support/SyntheticPackages.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"
#include "uninstall/UninstallAppsController.h"
#include "uninstall/ui/UninstallPanel.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <QTreeWidget>

#include <unistd.h>

#include <cstdio>
#include <fstream>

using namespace brightsweep;

namespace {

constexpr double screenLimit = 50; // milliseconds
constexpr double memoryLimit = 10; // MiB

double residentMebibytes() {
    std::ifstream statm("/proc/self/statm");
    double all = 0;
    double resident = 0;
    statm >> all >> resident;
    return resident * double(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

} // namespace

int main(int argc, char **argv) {
    const bench::ManyRows home(0);
    // Beside the home: what lies in that belongs to no package.
    const std::filesystem::path root = std::string(std::getenv("HOME")) + "-system";
    const test::SyntheticPackages packages(root, 2'000, 130, 1);
    ::setenv("BRIGHTSWEEP_SYSTEM_ROOT", root.c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    registerAllDefaults();
    theme::apply(application);
    // A window of another kind has been shown before, as in the program.
    QTreeWidget other;
    other.setHeaderLabel(QStringLiteral("Name"));
    auto *const row = new QTreeWidgetItem({QStringLiteral("a row")});
    row->setIcon(0, imageNamed(QStringLiteral("start_done.png")));
    other.addTopLevelItem(row);
    other.resize(900, 600);
    other.show();
    QApplication::processEvents();
    other.grab();
    const double before = residentMebibytes();

    UninstallAppsController page({});
    UninstallPanel panel(page);
    panel.resize(900, 600);
    panel.show();
    QApplication::processEvents();
    const auto start = bench::SteadyClock::now();
    bench::SteadyClock::time_point arrived;
    QEventLoop loop;
    QObject::connect(&page, &UninstallAppsController::stateChanged, &loop, [&] {
        if (!page.isIdle())
            return;
        arrived = bench::SteadyClock::now();
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
    });
    page.beginSearchApps();
    loop.exec();
    panel.repaint();
    const double screen = bench::millisecondsSince(arrived);
    const double listing = bench::millisecondsSince(start) - screen;
    const double memory = residentMebibytes() - before;
    std::printf("%zu applications listed in %.0f ms, first screen %.1f ms later (limit %.0f), "
                "%.1f MiB (limit %.0f)\n",
                page.searchAllAppArr().size(), listing, screen, screenLimit, memory, memoryLimit);
    std::filesystem::remove_all(root);
    return screen <= screenLimit && memory <= memoryLimit ? 0 : 1;
}
