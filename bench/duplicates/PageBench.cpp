// How the duplicates page's window behaves with many groups: bench_duplicates_page [GROUPS]. Each
// is a pair of small files; everything lies below a temporary folder, on a screen in memory.
// All but whole runs is the main thread's own time: what else the machine does is not the page's.
// A frame is what a heartbeat on that thread had to wait for.

#include "../cleaning/ManyRows.h"
#include "app/RegisterDefaults.h"
#include "core/SettingKeys.h"
#include "duplicates/ui/DuplicatesResultsPanel.h"
#include "duplicates/ui/DuplicatesView.h"
#include "foundation/UserDefaults.h"
#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QEventLoop>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

using namespace brightsweep;
using bench::millisecondsSince;
using bench::SteadyClock;
using Page = SameFileDeleteViewController;

namespace {

double ownMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

class Heartbeat {
public:
    Heartbeat() {
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
        m_timer.start();
    }
    void begin() {
        m_last = ownMilliseconds();
        m_longest = 0;
    }
    double longest() {
        beat();
        return m_longest;
    }

private:
    void beat() {
        m_longest = std::max(m_longest, ownMilliseconds() - m_last);
        m_last = ownMilliseconds();
    }

    QTimer m_timer;
    double m_last = ownMilliseconds();
    double m_longest = 0;
};

void say(const char *what, double value, double limit) {
    std::printf("%-40s %9.1f ms, limit %.0f ms\n", what, value, limit);
}

void measure(const char *what, double limit, const std::function<void()> &act) {
    const double start = ownMilliseconds();
    act();
    QApplication::processEvents();
    say(what, ownMilliseconds() - start, limit);
}

void waitForResults(Page &page) {
    QEventLoop loop;
    QObject::connect(&page, &Page::stateChanged, &loop, [&] {
        if (page.state() == Page::State::Results)
            QTimer::singleShot(0, &loop, &QEventLoop::quit);
    });
    loop.exec();
}

// Of the pairs that are left; 0 where there are not as many.
double byTools(const std::filesystem::path &tree, std::size_t pairs) {
    const std::string count = std::to_string(pairs);
    const std::string command = "cd '" + tree.native() +
                                "/one' && find . -type f | while read -r f; do " +
                                "[ -e \"../two/$f\" ] && echo \"$f\"; done | head -n " + count +
                                " > ../pairs && [ $(wc -l < ../pairs) = " + count + " ]";
    if (std::system(command.c_str()) != 0)
        return 0;
    const auto start = SteadyClock::now();
    const std::string removal = "cd '" + tree.native() +
                                "/one' && while read -r f; do cmp -s \"$f\" \"../two/$f\" && "
                                "rm \"$f\"; done < ../pairs";
    return std::system(removal.c_str()) == 0 ? millisecondsSince(start) : 0;
}

} // namespace

int main(int argc, char **argv) {
    const unsigned groups = argc > 1 ? unsigned(std::atoi(argv[1])) : 100'000;
    const bench::ManyRows home(0);
    const auto tree = std::filesystem::path(std::getenv("HOME")) / "tree";
    constexpr unsigned ofAFolder = 500;
    constexpr const char *endings[] = {".jpg", ".txt", ".mp3", ".dat", ""};
    for (unsigned group = 0; group < groups; ++group) {
        for (const char *side : {"one", "two"}) {
            const auto folder = tree / side / std::to_string(group / ofAFolder);
            if (group % ofAFolder == 0)
                std::filesystem::create_directories(folder);
            std::ofstream(folder / ("a file " + std::to_string(group) + endings[group % 5]))
                << "the content of the pair " << group;
        }
    }
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    Platform::setCurrent(makeLinuxPlatform());
    registerAllDefaults();
    UserDefaults::standardUserDefaults().setObject(DSDuplicationLimit, 0);
    theme::apply(application);
    Heartbeat heart;
    {
        Page page;
        DuplicatesResultsPanel panel(page);
        panel.resize(1'080, 600);
        panel.show();
        page.viewDragAction(tree);
        const auto start = SteadyClock::now();
        heart.begin();
        waitForResults(page);
        QApplication::processEvents();
        std::printf("%u groups searched in %.0f ms\n", groups, millisecondsSince(start));
        say("end of the search to rows on show", heart.longest(), 500);

        auto *const outline = panel.findChild<DuplicatesView *>();
        auto &model = static_cast<DuplicateOutlineModel &>(*outline->model());
        if (model.rowCount() != int(groups))
            std::printf("%d groups were found\n", model.rowCount());
        measure("tick all", 100, [&] { page.setAllSelectOrNoSelect(true); });
        measure("untick all", 100, [&] { page.setAllSelectOrNoSelect(false); });
        measure("keep the newest", 200, [&] { page.tickAllBut(KeepRule::Newest); });
        measure("undo", 200, [&] { page.undoTicks(); });
        measure("one tick", 100, [&] { page.setSelectState(model.nodeOf(model.index(7, 0))); });
        measure("sort by name", 300, [&] { model.didClickTableColumn(1); });
        measure("another list", 300, [&] { model.refViewBgColor(1); });
        measure("all again", 300, [&] { model.refViewBgColor(0); });
        measure("filter", 300, [&] { page.setFilter(QStringLiteral("one/7/")); });
        measure("no filter", 300, [&] { page.setFilter({}); });
        QScrollBar &bar = *outline->verticalScrollBar();
        heart.begin();
        for (int step = 0; step < 1'000; ++step) {
            bar.setValue(int(std::int64_t(step) * 7'919 * 36 % std::max(1, bar.maximum())));
            QApplication::processEvents();
        }
        say("longest frame of scrolling", heart.longest(), 100);

        page.setFilter(QStringLiteral("two/1"));
        page.setAllSelectOrNoSelect(false);
        page.setFilter({});
        page.setAllSelectOrNoSelect(false);
        TreeNode::List going;
        const auto limit = std::min<std::int32_t>(10'000, std::int32_t(groups));
        for (std::int32_t i = 0; i < limit; ++i)
            going.push_back(page.treeData()->childAtIndex(i));
        page.setSelectState(going);
        page.removalAnswered(Page::Act::Remove);
        const auto removal = SteadyClock::now();
        heart.begin();
        waitForResults(page);
        QApplication::processEvents();
        say("longest frame of the removal", heart.longest(), 100);
        const double own = millisecondsSince(removal);
        std::printf("%zu files removed in %.0f ms, %zu stayed\n", page.report().done, own,
                    page.report().failed);
        const double tools = byTools(tree, page.report().done);
        if (tools > 0)
            std::printf("cmp and rm on as many pairs %.0f ms: %.2f times, limit 1.3\n", tools,
                        own / tools);
    }
    return 0;
}
