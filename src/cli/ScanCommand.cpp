#include "cleaning/CleanCategories.h"
#include "cli/CategoryRun.h"
#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "core/UtilityFunction.h"
#include "foundation/Paths.h"

#include <numeric>

namespace brightsweep::cli {

namespace {

void configure(QCommandLineParser &parser) {
    addCategoryOption(parser);
}

void writeItem(JsonWriter &json, const CleanFileInfo &item, bool selected) {
    json.beginObject();
    json.bytes("name", item.name);
    json.path("path", item.path);
    json.key("size").value(item.size);
    json.key("bytes").value(item.fileSizeNum);
    json.key("selected").value(selected);
    json.endObject();
}

std::string jsonDocument(const std::vector<CategoryRun> &runs) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("scan");
    json.key("categories").beginArray();
    for (const CategoryRun &run : runs) {
        const auto selection = storedSelection(run.index);
        json.beginObject();
        json.key("index").value(run.index);
        json.key("name").value(brightsweep::cleanCategories[run.index].name);
        json.key("selection").value(selection);
        json.key("folders").beginArray();
        for (const auto &folder : run.folders)
            json.pathValue(folder.path);
        json.endArray();
        const QString words = run.controller->filesSize();
        json.key("filesSize").value(words.isEmpty() ? UtilityFunction::convertVolSpace(0) : words);
        json.key("bytes").value(run.controller->totalSize());
        json.key("items").beginArray();
        for (const CleanFileInfo &item : run.controller->foundRows())
            writeItem(json, item, selection != 0);
        json.endArray();
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string table(const std::vector<CategoryRun> &runs, bool withItems) {
    Table table({false, true, true, false});
    std::uint64_t total = 0;
    for (const CategoryRun &run : runs) {
        const auto items = run.controller->foundRows();
        const std::uint64_t bytes = run.controller->totalSize();
        total += bytes;
        table.row({brightsweep::cleanCategories[run.index].name,
                   UtilityFunction::convertVolSpace(bytes).toStdString(),
                   std::to_string(items.size()) + (items.size() == 1 ? " item" : " items"),
                   storedSelection(run.index) != 0 ? "selected" : ""});
        if (!withItems)
            continue;
        for (const CleanFileInfo &item : items)
            table.row({"  " + item.name, item.size.toStdString(), "", ""});
    }
    table.row({"Total", UtilityFunction::convertVolSpace(total).toStdString(), "", ""});
    return table.text();
}

int run(const QCommandLineParser &parser, Output &output) {
    if (!parser.positionalArguments().isEmpty())
        return output.usage("Write `scan --category N`; it takes nothing else behind it.");
    auto indices = categoriesOf(parser, output);
    if (!indices)
        return WrongUsage;
    const bool withItems = !indices->empty();
    if (indices->empty()) {
        indices->resize(categoryCount);
        std::iota(indices->begin(), indices->end(), 0u);
    }
    settingsAreReadable(output, " No category is shown as selected.");
    std::vector<CategoryRun> runs;
    const RunEnd end = scanCategories(runs, *indices, output);
    const bool written = output.data(output.json ? jsonDocument(runs) : table(runs, withItems));
    const int status = written ? Done : Failed;
    if (end == RunEnd::LeftBehind)
        Interruption::end(status);
    return status;
}

} // namespace

const Command scanCommand = {"scan", "Sizes what the clean categories hold", configure, run};

} // namespace brightsweep::cli
