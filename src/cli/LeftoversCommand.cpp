#include "cli/ActedItem.h"
#include "cli/Catalogue.h"
#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "cli/RightsRefusal.h"
#include "cli/WorkRun.h"
#include "core/UtilityFunction.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"
#include "uninstall/LeftBehind.h"
#include "uninstall/LeftoverLook.h"

#include <algorithm>
#include <memory>
#include <mutex>

namespace brightsweep::cli {

namespace {

// Shared with the work, which an interruption may leave behind.
struct Job : RemovalJob {
    std::vector<std::filesystem::path> wanted;
    bool applies = false;
    bool admin = false;
    std::vector<Leftover> found;
    std::vector<ActedItem> acted;
    std::vector<std::string> warnings;
};

void configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(QStringLiteral("PATH"),
                                 QStringLiteral("Only these; they may be in base64: form."),
                                 QStringLiteral("[PATH…]"));
    parser.addOptions({
        {QStringLiteral("apply"),
         QStringLiteral("Remove what is named; without it, it is only shown.")},
        {QStringLiteral("admin"),
         QStringLiteral("Ask for administrator rights once, before removing.")},
    });
}

// Links on the way are followed, as in any path that is typed; one in the last place is the item.
std::filesystem::path placeOf(const std::filesystem::path &given) {
    std::error_code error;
    const auto full = std::filesystem::absolute(given, error);
    const auto folder = Platform::current().files->canonicalPath(paths::parent(full));
    return folder ? paths::join(*folder, paths::lastComponent(full)) : full;
}

void work(Job &job) {
    const Catalogue catalogue = Catalogue::list();
    const LeftBehind behind(catalogue.installed(), catalogue.unknownKinds());
    std::vector<Leftover> found = behind.find(&job.stop);
    std::vector<ActedItem> missing;
    if (!job.wanted.empty()) {
        std::vector<std::filesystem::path> places;
        for (const auto &given : job.wanted) {
            places.push_back(placeOf(given));
            const auto isIt = [&](const Leftover &one) { return one.path == places.back(); };
            if (std::none_of(found.begin(), found.end(), isIt))
                missing.push_back({given.native(), 0, "nothing that is gone has left it"});
        }
        std::erase_if(found, [&](const Leftover &one) {
            return std::find(places.begin(), places.end(), one.path) == places.end();
        });
    }
    for (Leftover &leftover : found)
        leftover.ticked = job.applies;
    {
        const std::lock_guard lock(job.mutex);
        for (const auto &[kind, reason] : catalogue.failures)
            job.warnings.push_back(std::string("Not listed: ") + kindWord(kind) + ": " + reason);
        job.found = found;
        job.acted = std::move(missing);
    }
    if (!job.applies || job.stop)
        return;
    if (!found.empty() && job.admin && !takeRights(job, RightsPurpose::Files)) {
        const std::lock_guard lock(job.mutex);
        for (const Leftover &leftover : found)
            job.acted.push_back({leftover.path.native(), 0, rightsRefusal()});
        return;
    }
    const auto items = LeftBehind::remove(*job.run, found, [&](const Leftover &leftover) {
        const std::lock_guard lock(job.mutex);
        job.current = leftover.path.native();
    });
    const std::lock_guard lock(job.mutex);
    for (const auto &item : items)
        job.acted.push_back({item.path.native(), item.bytes, item.error});
}

std::string asJson(const Job &job) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("leftovers");
    json.key("applied").value(job.applies && !job.isRefused);
    json.key("leftovers").beginArray();
    for (const Leftover &leftover : job.found) {
        json.beginObject();
        writeLeftover(json, leftover);
        json.endObject();
    }
    json.endArray();
    writeActed(json, "removed", job.acted, false);
    writeActed(json, "failed", job.acted, true);
    json.endObject();
    return json.take();
}

std::string asText(const Job &job) {
    if (job.applies) {
        return actedText(job.acted, "removed", bytesOf(job.acted), true);
    }
    Table table({false, true, false, false});
    for (const Leftover &leftover : job.found) {
        const std::string obstacle = obstacleOf(leftover, job.admin || holdsRights());
        table.row({kindWord(leftover.kind),
                   UtilityFunction::convertVolSpace(leftover.bytes).toStdString(),
                   leftover.path.native(),
                   leftover.reason + (obstacle.empty() ? "" : "; stays: " + obstacle)});
    }
    std::string text = table.text();
    for (const ActedItem &item : job.acted)
        text += item.path + ": " + item.error + "\n";
    return text.empty() ? "Nothing was left behind.\n" : text;
}

int run(const QCommandLineParser &parser, Output &output) {
    // Stays until the process ends: work that is left behind uses it.
    Job &job = *std::make_unique<Job>().release();
    job.applies = parser.isSet(QStringLiteral("apply"));
    job.admin = parser.isSet(QStringLiteral("admin"));
    for (const QString &argument : parser.positionalArguments()) {
        auto path = pathOf(argument, output);
        if (!path)
            return WrongUsage;
        job.wanted.push_back(*std::move(path));
    }
    if (job.applies && job.wanted.empty())
        return output.usage("Name what to remove: `leftovers PATH… --apply`.");
    job.current = "Looking for applications";
    if (job.applies && !job.begin("leftovers", output))
        return Failed;
    return runRemoval(
        job, [&job] { work(job); },
        [&] {
            for (const std::string &warning : job.warnings)
                output.warning(warning);
            if (job.isRefused)
                return rightsRefused(output, [&] { return asJson(job); });
            if (!output.data(output.json ? asJson(job) : asText(job)))
                return int(Failed);
            return int(anyStays(job.acted) ? PartlyFailed : Done);
        },
        output);
}

} // namespace

const Command leftoversCommand = {"leftovers", "What applications that are gone have left behind",
                                  configure, run};

} // namespace brightsweep::cli
