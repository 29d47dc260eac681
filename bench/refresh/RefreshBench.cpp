// Measures one refresh of the resident program: `bench_refresh [REFRESHES]`. First over 20 volumes
// made up here, then over those of this machine; each with the processor time of one refresh and
// with what the desktop was told and the rows that were drawn again. Limit: 0.4 ms with 20 volumes.

#include "app/AppDelegate.h"
#include "app/RegisterDefaults.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "support/FakeDesktop.h"
#include "volumes/FakeVolumeSource.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace {

using namespace brightsweep;
using namespace brightsweep::test;

constexpr int volumeCount = 20;
constexpr int usualRefreshes = 2000;
constexpr double limitMilliseconds = 0.4;

double processorMilliseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double measure(const char *what, int refreshes) {
    auto *item = new FakeStatusItem;
    auto *notifier = new FakeNotifier;
    Platform::current().statusItem.reset(item);
    Platform::current().notifier.reset(notifier);
    AppDelegateParts parts;
    parts.refreshInterval = std::chrono::hours(1);
    AppDelegate delegate(std::move(parts));
    delegate.applicationDidFinishLaunching();
    delegate.updateDataForMenuItem();
    int repainted = 0;
    QObject::connect(&delegate.menu(), &StatusMenu::rowChanged, [&](int row) {
        if (!delegate.menu().rows()[std::size_t(row)].isMemory())
            ++repainted;
    });
    item->changes = 0;
    const double start = processorMilliseconds();
    for (int i = 0; i < refreshes; ++i)
        delegate.updateDataForMenuItem();
    const double each = (processorMilliseconds() - start) / refreshes;
    std::printf("%-22s %3zu rows  %.4f ms a refresh  %d calls to the desktop  %d rows drawn\n",
                what, delegate.menu().rows().size(), each, item->changes, repainted);
    return each;
}

} // namespace

int main(int argc, char **argv) {
    const auto home = std::filesystem::temp_directory_path() / "brightsweep-bench-refresh";
    std::filesystem::create_directories(home);
    ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    QCoreApplication application(argc, argv);
    const int refreshes = argc > 1 ? std::atoi(argv[1]) : usualRefreshes;
    Platform::setCurrent(makeLinuxPlatform());
    registerAllDefaults();
    measure("this machine's volumes", refreshes);
    auto *volumes = new FakeVolumeSource;
    for (int i = 0; i < volumeCount; ++i)
        volumes->add(i == 0 ? "/" : "/media/volume" + std::to_string(i)).extendedAttributes =
            i == 0 ? 0 : volumeIsOnExternalBusBit;
    Platform::current().volumes.reset(volumes);
    const double each = measure("made up", refreshes);
    std::filesystem::remove_all(home);
    std::fflush(stdout);
    std::_Exit(each < limitMilliseconds ? 0 : 1);
}
