#include "cli/CategoryRun.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/FolderUtilities.h"
#include "cli/Interruption.h"
#include "cli/WorkRun.h"
#include "core/UtilityFunction.h"
#include "platform/Platform.h"
#include "platform/VolumeSource.h"

#include <QEventLoop>

#include <algorithm>
#include <exception>
#include <functional>

namespace brightsweep::cli {

namespace {

constexpr int settleMilliseconds = 500;

using Start = std::function<void(CategoryRun &)>;
using Signal = void (ScanViewController::*)(bool);
using Stop = void (ScanViewController::*)();
using Amount = std::uint64_t (ScanViewController::*)() const;

// Starts all, waits for the finish signal of each, and hands Ctrl-C on to the engine's own stop.
RunEnd runAll(std::vector<CategoryRun> &runs, Output &output, const char *verb, const Start &start,
              Signal finished, Stop stop, Amount amount) {
    QEventLoop loop;
    std::size_t running = runs.size();
    for (CategoryRun &run : runs) {
        QObject::connect(run.controller.get(), finished, &loop, [&] {
            if (--running == 0)
                loop.quit();
        });
        start(run);
    }
    const auto stopAll = [&] {
        for (const CategoryRun &run : runs)
            (run.controller.get()->*stop)();
    };
    const auto progress = [&] {
        std::uint64_t bytes = 0;
        for (const CategoryRun &run : runs)
            bytes += (run.controller.get()->*amount)();
        return verb + UtilityFunction::convertVolSpace(bytes).toStdString();
    };
    const bool ended = running == 0 || waitInterruptibly(loop, output, stopAll, progress);
    for (CategoryRun &run : runs) {
        run.controller->disconnect(&loop);
        if (const auto failure = run.controller->failure())
            std::rethrow_exception(failure);
    }
    return !ended                        ? RunEnd::LeftBehind
           : Interruption::signal() != 0 ? RunEnd::Stopped
                                         : RunEnd::Whole;
}

} // namespace

void addCategoryOption(QCommandLineParser &parser) {
    parser.addOption({QStringLiteral("category"),
                      QStringLiteral("A category, 0 to 5; may be given several times."),
                      QStringLiteral("N")});
}

std::optional<std::vector<unsigned>> categoriesOf(const QCommandLineParser &parser,
                                                  Output &output) {
    std::vector<unsigned> indices;
    for (const QString &value : parser.values(QStringLiteral("category"))) {
        bool isNumber = false;
        const unsigned index = value.toUInt(&isNumber);
        if (!isNumber || index >= categoryCount) {
            output.usage("Write `--category N` with N from 0 to 5, not \"" + argumentBytes(value) +
                         "\".");
            return {};
        }
        indices.push_back(index);
    }
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    return indices;
}

RunEnd scanCategories(std::vector<CategoryRun> &runs, const std::vector<unsigned> &indices,
                      Output &output) {
    VolumeSource &volumes = *Platform::current().volumes;
    // Which further volumes carry a trash depends on what they are.
    if (std::find(indices.begin(), indices.end(), trashCategory) != indices.end() &&
        volumes.volumes().size() > 1)
        volumes.settle(settleMilliseconds);
    for (const unsigned index : indices) {
        CategoryRun &run = runs.emplace_back();
        run.index = index;
        run.folders = FolderUtilities::getFolderPath(index, &run.leftOut);
        run.controller = std::make_unique<ScanViewController>();
        for (const LeftOutFolder &folder : run.leftOut)
            output.warning(FolderUtilities::wordsOf({folder}).toStdString());
    }
    return runAll(
        runs, output,
        "Scanning: ", [](CategoryRun &run) { run.controller->beginScanTask(run.folders); },
        &ScanViewController::scanFinishedChanged, &ScanViewController::stopScan,
        &ScanViewController::totalSize);
}

RunEnd removeCategories(std::vector<CategoryRun> &runs, const std::shared_ptr<RemovalRun> &removal,
                        Output &output) {
    return runAll(
        runs, output, "Cleaning: ",
        [&removal](CategoryRun &run) {
            run.controller->selectAll(true);
            run.controller->beginCleanTask(removal);
        },
        &ScanViewController::cleanFinishedChanged, &ScanViewController::cancelFastClean,
        &ScanViewController::cleanSize);
}

} // namespace brightsweep::cli
