#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "core/UtilityFunction.h"
#include "memory/ClearMemory.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"

#include <array>
#include <chrono>
#include <optional>
#include <thread>

namespace brightsweep::cli {

namespace {

constexpr std::chrono::milliseconds pollInterval{20};

struct Figure {
    const char *key;
    const char *text;
    std::uint64_t MemoryInfo::*value;
};

constexpr std::array figures = {
    Figure{"free", "Free", &MemoryInfo::freeMem},
    Figure{"inactive", "Inactive", &MemoryInfo::inactiveMem},
    Figure{"active", "Active", &MemoryInfo::activeMem},
    Figure{"wired", "Wired", &MemoryInfo::wiredMem},
    Figure{"used", "Used", &MemoryInfo::usedMem},
    Figure{"total", "Total", &MemoryInfo::totalMem},
    Figure{"pageIn", "Read from disk", &MemoryInfo::pageIn},
    Figure{"pageOut", "Written to disk", &MemoryInfo::pageOut},
    Figure{"faults", "Page faults, as bytes", &MemoryInfo::vMem},
};

struct DetailFigure {
    const char *key;
    const char *text;
    std::uint64_t MemoryDetails::*value;
};

constexpr std::array detailFigures = {
    DetailFigure{"available", "Available to programs", &MemoryDetails::available},
    DetailFigure{"fileCache", "File cache", &MemoryDetails::fileCache},
    DetailFigure{"swapUsed", "Swap used", &MemoryDetails::swapUsed},
    DetailFigure{"swapTotal", "Swap", &MemoryDetails::swapTotal},
    DetailFigure{"compressed", "Compressed pages", &MemoryDetails::compressed},
};

// What the command tells; the details are missing where the system does not tell them.
struct Report {
    MemoryInfo info;
    std::optional<MemoryDetails> details;
    std::optional<std::uint64_t> freed;
};

void configure(QCommandLineParser &parser) {
    parser.addOption({QStringLiteral("release"), QStringLiteral("Releases inactive memory.")});
}

std::string asJson(const Report &report) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("memory");
    json.key("memory").beginObject();
    for (const Figure &figure : figures)
        json.key(figure.key).value(report.info.*figure.value);
    for (const DetailFigure &figure : detailFigures) {
        json.key(figure.key);
        if (report.details)
            json.value((*report.details).*figure.value);
        else
            json.nullValue();
    }
    json.endObject();
    json.key("pressure");
    if (report.details && report.details->pressure)
        json.value(*report.details->pressure);
    else
        json.nullValue();
    if (report.freed)
        json.key("freed").value(*report.freed);
    json.endObject();
    return json.take();
}

std::string asTable(const Report &report, Output &output) {
    const auto words = [&](std::uint64_t bytes) {
        return UtilityFunction::covertCleanMemory(bytes).toStdString();
    };
    Table table({false, true});
    for (const Figure &figure : figures)
        table.row({figure.text, words(report.info.*figure.value)});
    if (report.details) {
        for (const DetailFigure &figure : detailFigures)
            table.row({figure.text, words((*report.details).*figure.value)});
        if (const auto pressure = report.details->pressure)
            table.row(
                {"Pressure, last 10 s", QString::number(*pressure, 'f', 2).toStdString() + " %"});
    }
    std::string text = table.text();
    if (report.freed)
        text += output.emphasised(words(*report.freed)) + " freed\n";
    return text;
}

// The figures afterwards are told in any case: they say what has come of it.
int release(ClearMemory &memory, MemoryInfo &info, Output &output) {
    if (memory.clearMemory() != 0) {
        output.warning("The release tool could not be started.");
        return Failed;
    }
    while (memory.isRuning()) {
        if (Interruption::signal() != 0)
            memory.stop();
        std::this_thread::sleep_for(pollInterval);
    }
    memory.getMemoryInfo(&info);
    if (Interruption::signal() != 0 || !memory.couldDoNothing())
        return Done;
    output.warning("The release tool released nothing.");
    return Failed;
}

int run(const QCommandLineParser &parser, Output &output) {
    if (!parser.positionalArguments().isEmpty())
        return output.usage("Write `brightsweep-cli memory`, with --release to release memory.");
    ClearMemory memory;
    Report report;
    MemoryInfo &info = report.info;
    memory.getMemoryInfo(&info);
    int status = Done;
    if (parser.isSet(QStringLiteral("release"))) {
        const std::uint64_t before = info.freeMem;
        status = release(memory, info, output);
        report.freed = info.freeMem > before ? info.freeMem - before : 0;
    }
    if (const auto details = Platform::current().memory->details())
        report.details = *details;
    const std::string text = output.json ? asJson(report) : asTable(report, output);
    return output.data(text) ? status : Failed;
}

} // namespace

const Command memoryCommand = {"memory", "The memory's figures, and releasing it", configure, run};

} // namespace brightsweep::cli
