#include "cleaning/CleanCategories.h"
#include "cleaning/ItemSizes.h"
#include "cli/CategoryRun.h"
#include "cli/Commands.h"
#include "cli/Interruption.h"
#include "cli/JsonWriter.h"
#include "cli/RightsRefusal.h"
#include "core/ParseFileLog.h"
#include "core/UtilityFunction.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "platform/Platform.h"
#include "removal/ItemRemoval.h"
#include "removal/NvAuthorization.h"

#include <algorithm>
#include <array>

namespace brightsweep::cli {

namespace {

struct FailedItem {
    std::filesystem::path path;
    QString error;
};

/// What went, or would go, in one category.
struct CategoryResult {
    unsigned index = 0;
    std::uint64_t bytes = 0;
    std::vector<CleanFileInfo> removed;
    std::vector<FailedItem> failed;
};

void configure(QCommandLineParser &parser) {
    addCategoryOption(parser);
    parser.addOption({QStringLiteral("apply"),
                      QStringLiteral("Really remove; without it only what would go is shown.")});
    parser.addOption({QStringLiteral("admin"),
                      QStringLiteral("Ask for administrator rights once, before removing.")});
}

std::vector<unsigned> storedCategories() {
    std::vector<unsigned> indices;
    for (unsigned index = 0; index < categoryCount; ++index) {
        if (storedSelection(index) != 0)
            indices.push_back(index);
    }
    return indices;
}

// The checks that a removal makes first, without removing. With rights, want of permission is none.
CategoryResult wouldGo(const CategoryRun &run, bool withRights) {
    CategoryResult result{run.index, 0, {}, {}};
    ItemRemoval removal;
    for (const CleanFileInfo &item : run.controller->foundRows()) {
        if (Interruption::timeIsUp())
            break;
        const auto reached = removal.reach(item.target());
        const std::error_code error =
            reached ? Platform::current().files->checkRemoval(*reached) : reached.error();
        if (error && !(isForWantOfPermission(error) && withRights)) {
            result.failed.push_back({item.path, QString::fromStdString(error.message())});
            continue;
        }
        result.bytes = addSaturating(result.bytes, item.fileSizeNum);
        result.removed.push_back(item);
    }
    return result;
}

CategoryResult wentAway(const CategoryRun &run) {
    CategoryResult result{
        run.index, run.controller->cleanSize(), run.controller->removedFiles(), {}};
    for (const CleanFileInfo &item : run.controller->scanFiles()) {
        if (!item.failure.isEmpty())
            result.failed.push_back({item.path, item.failure});
    }
    return result;
}

CategoryResult stays(const CategoryRun &run, const std::string &error) {
    CategoryResult result{run.index, 0, {}, {}};
    for (const CleanFileInfo &item : run.controller->foundRows())
        result.failed.push_back({item.path, QString::fromStdString(error)});
    return result;
}

std::string jsonDocument(const std::vector<CategoryResult> &results, bool applied,
                         std::uint64_t bytes) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("clean");
    json.key("applied").value(applied);
    json.key("bytes").value(bytes);
    json.key("categories").beginArray();
    for (const CategoryResult &result : results) {
        json.beginObject();
        json.key("index").value(result.index);
        json.key("name").value(brightsweep::cleanCategories[result.index].name);
        json.key("bytes").value(result.bytes);
        json.key("removed").beginArray();
        for (const CleanFileInfo &item : result.removed) {
            json.beginObject();
            json.path("path", item.path);
            json.key("bytes").value(item.fileSizeNum);
            json.endObject();
        }
        json.endArray();
        json.key("failed").beginArray();
        for (const FailedItem &item : result.failed) {
            json.beginObject();
            json.path("path", item.path);
            json.key("error").value(item.error);
            json.endObject();
        }
        json.endArray();
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string text(const std::vector<CategoryResult> &results, bool applied, std::uint64_t bytes) {
    Table table({false, true, false});
    for (const CategoryResult &result : results) {
        table.row({brightsweep::cleanCategories[result.index].name,
                   UtilityFunction::convertVolSpace(result.bytes).toStdString(), ""});
        for (const CleanFileInfo &item : result.removed) {
            table.row({"  " + item.path.native(),
                       UtilityFunction::convertVolSpace(item.fileSizeNum).toStdString(), ""});
        }
        for (const FailedItem &item : result.failed)
            table.row({"  " + item.path.native(), "stays", item.error.toStdString()});
    }
    const std::string size = UtilityFunction::convertVolSpace(bytes).toStdString();
    return table.text() +
           (applied ? size + " is cleaned\n" : size + " would go; --apply removes it\n");
}

int run(const QCommandLineParser &parser, Output &output) {
    if (!parser.positionalArguments().isEmpty())
        return output.usage("Write `clean --category N --apply`; it takes nothing else behind it.");
    auto indices = categoriesOf(parser, output);
    if (!indices)
        return WrongUsage;
    if (indices->empty()) {
        if (!settingsAreReadable(output, " Name what to clean: `--category N`."))
            return Failed;
        indices = storedCategories();
    }
    const bool apply = parser.isSet(QStringLiteral("apply"));
    const bool admin = parser.isSet(QStringLiteral("admin"));

    std::vector<CategoryRun> runs;
    RunEnd end = scanCategories(runs, *indices, output);
    // What an interrupted scan found is told, but nothing of it is removed.
    bool removing = apply && end == RunEnd::Whole;
    const bool anything = std::any_of(runs.begin(), runs.end(), [](const CategoryRun &run) {
        return run.controller->rowCount() > 0;
    });
    RemovalRun::Begun begun;
    if (removing) {
        begun = RemovalRun::begin("brightsweep-cli clean");
        if (!begun.run) {
            output.warning(RemovalRun::refusal(begun).toStdString());
            return Failed;
        }
    }
    const bool isRefused = removing && admin && anything &&
                           !NvAuthorization::shareNvAuthorization().allocAuthorization();
    removing = removing && !isRefused;
    if (removing)
        end = removeCategories(runs, begun.run, output);

    std::vector<CategoryResult> results;
    std::uint64_t bytes = 0;
    bool failed = false;
    for (const CategoryRun &run : runs) {
        results.push_back(isRefused  ? stays(run, rightsRefusal())
                          : removing ? wentAway(run)
                                     : wouldGo(run, admin));
        bytes = addSaturating(bytes, results.back().bytes);
        failed = failed || !results.back().failed.empty();
    }
    if (removing)
        ParseFileLog().recordClean(bytes);
    // Rights that a removal still waits for go with the process.
    if (end != RunEnd::LeftBehind)
        NvAuthorization::shareNvAuthorization().freeAuthorization();
    if (isRefused)
        return rightsRefused(output, [&] { return jsonDocument(results, removing, bytes); });
    const bool written = output.data(output.json ? jsonDocument(results, removing, bytes)
                                                 : text(results, removing, bytes));
    const int status = !written ? Failed : failed ? PartlyFailed : Done;
    if (end == RunEnd::LeftBehind)
        Interruption::end(status);
    return status;
}

} // namespace

const Command cleanCommand = {"clean", "Removes what the clean categories hold", configure, run};

} // namespace brightsweep::cli
