#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "core/UtilityFunction.h"
#include "memory/ClearMemory.h"

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
    Figure{"faults", "Page faults", &MemoryInfo::vMem},
};

void configure(QCommandLineParser &parser) {
    parser.addOption({QStringLiteral("release"), QStringLiteral("Releases inactive memory.")});
}

std::string asJson(const MemoryInfo &info, std::optional<std::uint64_t> freed) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("memory");
    json.key("memory").beginObject();
    for (const Figure &figure : figures)
        json.key(figure.key).value(info.*figure.value);
    json.endObject();
    if (freed)
        json.key("freed").value(*freed);
    json.endObject();
    return json.take();
}

std::string asTable(const MemoryInfo &info, std::optional<std::uint64_t> freed, Output &output) {
    const auto words = [&](std::uint64_t bytes) {
        return UtilityFunction::covertCleanMemory(bytes).toStdString();
    };
    Table table({false, true});
    for (const Figure &figure : figures)
        table.row({figure.text, words(info.*figure.value)});
    std::string text = table.text();
    if (freed)
        text += output.emphasised(words(*freed)) + " freed\n";
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
    MemoryInfo info;
    memory.getMemoryInfo(&info);
    int status = Done;
    std::optional<std::uint64_t> freed;
    if (parser.isSet(QStringLiteral("release"))) {
        const std::uint64_t before = info.freeMem;
        status = release(memory, info, output);
        freed = info.freeMem > before ? info.freeMem - before : 0;
    }
    const std::string text = output.json ? asJson(info, freed) : asTable(info, freed, output);
    return output.data(text) ? status : Failed;
}

} // namespace

const Command memoryCommand = {"memory", "The memory's figures, and releasing it", configure, run};

} // namespace brightsweep::cli
