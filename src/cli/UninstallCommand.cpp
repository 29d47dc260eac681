#include "cli/ActedItem.h"
#include "cli/Catalogue.h"
#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "cli/RightsRefusal.h"
#include "cli/WorkRun.h"
#include "core/UtilityFunction.h"
#include "foundation/PathBytes.h"
#include "foundation/Paths.h"
#include "foundation/SaturatingSum.h"
#include "removal/RemovalRun.h"
#include "uninstall/LeftoverLook.h"
#include "uninstall/RemovalPlanner.h"
#include "uninstall/Uninstallation.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>

namespace brightsweep::cli {

namespace {

enum class Leave { Untold, Everything, Nothing };

struct Options {
    std::vector<std::string> keys;
    Leave leftovers = Leave::Untold;
    bool purge = false;
    bool applies = false;
    bool admin = false;
};

// One application with what is known of it so far.
struct Planned {
    std::string key;
    std::uint64_t bytes = 0; ///< of the application with all that goes along
    bool needsRights = false;
    /// Where its folder stays for what is kept in it, what else is there.
    std::optional<std::vector<std::filesystem::path>> parts;
    Uninstallation::Record record;
};

// Shared with the work, which an interruption may leave behind.
struct Job : RemovalJob {
    Options options;
    std::vector<Planned> planned;
    std::vector<std::string> warnings;
    std::string usage; ///< what to write instead
};

void configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(
        QStringLiteral("KEY"),
        QStringLiteral("What to uninstall: a key of `apps`, or a name that is one thing's only."),
        QStringLiteral("KEY…"));
    parser.addOptions({
        {QStringLiteral("keep-leftovers"),
         QStringLiteral("Keep everything that it would leave behind.")},
        {QStringLiteral("with-data"),
         QStringLiteral("Take its data along, too: documents, profiles, saved games.")},
        {QStringLiteral("purge"),
         QStringLiteral("Take along the settings that a package has for the whole system.")},
        {QStringLiteral("apply"), QStringLiteral("Really do it; without it the plan is shown.")},
        {QStringLiteral("admin"),
         QStringLiteral("Ask for administrator rights once, before removing.")},
    });
}

void tickAsTold(RemovalPlan &plan, const Options &options) {
    for (Leftover &leftover : plan.leftovers) {
        if (options.leftovers == Leave::Everything)
            leftover.ticked = false;
        else if (options.leftovers == Leave::Nothing && !leftover.isDoubtful && !leftover.refusal)
            leftover.ticked = true;
    }
    plan.purge = options.purge;
}

// False where a key means nothing, or more than one thing.
bool choose(Job &job, const Catalogue &catalogue,
            std::vector<const Catalogue::Application *> &chosen) {
    for (const std::string &key : job.options.keys) {
        const auto found = catalogue.find(key);
        if (found.size() == 1) {
            if (std::find(chosen.begin(), chosen.end(), found.front()) == chosen.end())
                chosen.push_back(found.front());
            continue;
        }
        std::string words;
        for (const auto *application : found)
            words += (words.empty() ? "" : ", ") + application->key;
        const std::lock_guard lock(job.mutex);
        job.usage = found.empty()
                        ? "Nothing that is installed is called \"" + key +
                              "\"; `brightsweep-cli apps` lists what is."
                        : "Several are called \"" + key + "\"; write one of: " + words + ".";
        return false;
    }
    return true;
}

bool isPlannedToGo(const Planned &planned) {
    return planned.record.plan.blocker == Blocker::None &&
           (!planned.parts || !planned.parts->empty());
}

void apply(Job &job) {
    std::vector<RemovalPlan> plans;
    {
        const std::lock_guard lock(job.mutex);
        for (const Planned &planned : job.planned)
            plans.push_back(planned.record.plan);
    }
    const bool any = std::any_of(plans.begin(), plans.end(), [](const RemovalPlan &plan) {
        return plan.blocker == Blocker::None;
    });
    const auto purpose = std::any_of(plans.begin(), plans.end(), takesRights)
                             ? RightsPurpose::FilesAndPackages
                             : RightsPurpose::Files;
    if (any && job.options.admin && !takeRights(job, purpose)) {
        const std::lock_guard lock(job.mutex);
        for (Planned &planned : job.planned) {
            if (isPlannedToGo(planned))
                planned.record.message = rightsRefusal();
        }
        return;
    }
    Uninstallation removal(std::move(plans));
    const auto note = [&] {
        for (std::size_t i = 0; i < job.planned.size(); ++i)
            job.planned[i].record = removal.records()[i];
    };
    removal.setProgress([&](const InstalledApplication &application) {
        const std::lock_guard lock(job.mutex);
        note();
        job.current = "Removing " + application.name;
    });
    removal.run(*job.run);
    const std::lock_guard lock(job.mutex);
    note();
}

void work(Job &job) {
    const Catalogue catalogue = Catalogue::list();
    for (const auto &[kind, reason] : catalogue.failures) {
        const std::lock_guard lock(job.mutex);
        job.warnings.push_back(std::string("Not listed: ") + kindWord(kind) + ": " + reason);
    }
    std::vector<const Catalogue::Application *> chosen;
    if (!choose(job, catalogue, chosen))
        return;
    const RemovalPlanner planner(catalogue.installed());
    for (const auto *application : chosen) {
        Planned planned;
        planned.key = application->key;
        RemovalPlan &plan = planned.record.plan;
        plan = planner.planOf(application->application, &job.stop);
        tickAsTold(plan, job.options);
        if (plan.blocker != Blocker::None)
            planned.record.message = plan.reason;
        planned.bytes = sizeOf(plan);
        planned.needsRights = needsRights(plan);
        planned.parts = Uninstallation::partsGoing(plan);
        if (!isPlannedToGo(planned) && plan.reason.empty())
            planned.record.message = plan.reason = Uninstallation::whyNothingGoes(plan);
        if (job.stop)
            return;
        const std::lock_guard lock(job.mutex);
        job.planned.push_back(std::move(planned));
    }
    if (job.options.applies)
        apply(job);
}

// True for the application itself and for what of it went: the application stands for that.
bool isPart(const RemovalPlan &plan, const Uninstallation::Item &item) {
    const auto isIt = [&](const Leftover &leftover) { return leftover.path == item.path; };
    return item.path == plan.application.path ||
           (item.removed &&
            paths::isSameOrBelow(item.path.native(), plan.application.path.native()) &&
            std::none_of(plan.leftovers.begin(), plan.leftovers.end(), isIt));
}

// What went or would, the application first; or what stays, with the reason.
std::vector<ActedItem> actedOf(const Planned &planned, const Options &options) {
    const bool isTried = options.applies;
    const Uninstallation::Record &record = planned.record;
    const RemovalPlan &plan = record.plan;
    std::vector<ActedItem> acted;
    const bool isGone =
        isTried ? record.outcome == UninstallOutcome::Removed : isPlannedToGo(planned);
    std::string error;
    if (!isGone)
        error = !record.message.empty()                           ? record.message
                : record.outcome == UninstallOutcome::NeedsRights ? rightsAreNeeded
                : isTried && !record.isTried ? "interrupted; a package manager at work goes on"
                                             : "it cannot be removed";
    if (!record.wayOut.empty())
        error += (error.ends_with('.') ? " " : ". ") + record.wayOut;
    acted.push_back({plan.application.key, planned.bytes, error});
    for (const std::string &name : plan.also)
        acted.push_back({name, 0, error});
    if (isTried) {
        for (const Uninstallation::Item &item : record.items) {
            if (!isPart(plan, item))
                acted.push_back(
                    {item.path.native(), item.bytes, item.removed ? std::string() : item.error});
        }
    } else if (isGone) {
        for (const Leftover &leftover : plan.leftovers) {
            if (leftover.ticked)
                acted.push_back(
                    {leftover.path.native(), leftover.bytes,
                     obstacleOf(leftover, options.admin || planned.needsRights || holdsRights())});
        }
    }
    return acted;
}

void writeStrings(JsonWriter &json, const char *key, const std::vector<std::string> &texts) {
    json.key(key).beginArray();
    for (const std::string &text : texts)
        json.value(paths::text(text));
    json.endArray();
}

void writePlan(JsonWriter &json, const Planned &planned, const std::vector<ActedItem> &acted) {
    const RemovalPlan &plan = planned.record.plan;
    json.beginObject();
    json.key("key").value(planned.key);
    json.key("kind").value(kindWord(plan.application.kind));
    std::vector<std::string> set = {plan.application.key};
    set.insert(set.end(), plan.also.begin(), plan.also.end());
    writeStrings(json, "set", set);
    json.key("bytes").value(planned.bytes);
    json.key("blocked");
    if (isPlannedToGo(planned))
        json.nullValue();
    else
        json.value(paths::text(plan.reason));
    json.key("needsRights").value(planned.needsRights);
    writeStrings(json, "running", plan.running);
    json.key("systemSettings").beginArray();
    for (const auto &file : plan.systemSettings)
        json.pathValue(file);
    json.endArray();
    json.key("leftovers").beginArray();
    for (const Leftover &leftover : plan.leftovers) {
        json.beginObject();
        writeLeftover(json, leftover);
        json.key("ticked").value(leftover.ticked);
        json.endObject();
    }
    json.endArray();
    std::vector<std::string> removed;
    for (const ActedItem &item : acted) {
        if (!item.error.empty())
            continue;
        if (item.path != plan.application.key || !planned.parts)
            removed.push_back(item.path);
        else
            removed.insert(removed.end(), planned.parts->begin(), planned.parts->end());
    }
    writeStrings(json, "removed", removed);
    std::vector<std::string> kept;
    if (planned.parts)
        kept.push_back(plan.application.path.native());
    for (const Leftover &leftover : plan.leftovers) {
        if (!leftover.ticked)
            kept.push_back(leftover.path.native());
    }
    writeStrings(json, "kept", kept);
    writeActed(json, "failed", acted, true);
    json.endObject();
}

std::string sizeText(std::uint64_t bytes) {
    return UtilityFunction::convertVolSpace(bytes).toStdString();
}

// What scripts of packages print is theirs: nothing of it may turn or overwrite a line. One that is
// printed again and again, while a lock is waited for, is told once.
void warnByLines(const std::string &words, Output &output) {
    std::istringstream lines(words);
    std::string before;
    for (std::string line; std::getline(lines, line); before = line) {
        if (line != before)
            output.warning(paths::display(line).toStdString());
    }
}

std::string planText(const Planned &planned, const std::vector<ActedItem> &acted, bool isTried,
                     std::uint64_t &bytes) {
    const RemovalPlan &plan = planned.record.plan;
    const auto shown = [](const std::string &text) { return paths::display(text).toStdString(); };
    std::string text = shown(plan.application.name);
    if (!plan.application.version.empty())
        text += " " + shown(plan.application.version);
    text += " (" + shown(planned.key) + ")\n";
    for (const std::string &name : plan.running)
        text += "  is running: " + shown(name) + "\n";
    if (planned.needsRights && !isTried)
        text += "  takes administrator rights: --admin\n";
    const auto &also = plan.also;
    const bool hasGone =
        isTried ? planned.record.outcome == UninstallOutcome::Removed : isPlannedToGo(planned);
    const std::string went = isTried ? "  removed" : "  would be removed";
    Table table({false, true, false});
    for (const ActedItem &item : acted) {
        const bool goesAlong = std::find(also.begin(), also.end(), item.path) != also.end();
        if (item.error.empty())
            bytes = addSaturating(bytes, item.bytes);
        const bool isKeptFolder = planned.parts && item.path == plan.application.key;
        table.row({item.error.empty() ? went : "  stays", goesAlong ? "" : sizeText(item.bytes),
                   !item.error.empty() ? item.path + ": " + item.error
                   : isKeptFolder      ? item.path + ", but for what is kept in it"
                                       : item.path});
    }
    for (const Leftover &leftover : plan.leftovers) {
        if (!leftover.ticked || !hasGone)
            table.row({"  kept", sizeText(leftover.bytes),
                       leftover.path.native() + " (" + kindWord(leftover.kind) +
                           (leftover.refusal ? ", " + leftover.refusal.message() : "") + ")"});
    }
    for (const auto &file : plan.systemSettings) {
        if (!plan.purge || !hasGone)
            table.row({"  kept", "", file.native() + " (settings of the system)"});
        else if (!isTried)
            table.row({went, "", file.native() + " (settings of the system)"});
    }
    const auto isTickedData = [](const Leftover &leftover) {
        return leftover.ticked && leftover.kind == LeftoverKind::Data;
    };
    if (plan.application.kind == ApplicationKind::Snap && isPlannedToGo(planned) && !plan.purge &&
        std::none_of(plan.leftovers.begin(), plan.leftovers.end(), isTickedData))
        table.row({"  kept", "", "a copy of its data, by snapd, for 31 days"});
    return text + table.text();
}

// Under the job's lock.
int tell(const Job &job, Output &output) {
    for (const std::string &warning : job.warnings)
        output.warning(warning);
    if (!job.usage.empty())
        return output.usage(job.usage);
    const bool isTried = job.options.applies;
    bool fails = false;
    std::uint64_t bytes = 0;
    std::string text;
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("uninstall");
    json.key("applied").value(isTried && !job.isRefused);
    json.key("plans").beginArray();
    for (const Planned &planned : job.planned) {
        const auto acted = actedOf(planned, job.options);
        writePlan(json, planned, acted);
        text += planText(planned, acted, isTried, bytes);
        if (planned.record.output.find('\n') != std::string::npos)
            warnByLines(planned.record.output, output);
        fails = fails || !isPlannedToGo(planned) ||
                (isTried ? !planned.record.isWhole() : anyStays(acted));
    }
    json.endArray();
    json.endObject();
    if (job.isRefused)
        return rightsRefused(output, [&] { return json.take(); });
    text += sizeText(bytes) + (isTried ? " freed\n" : " would be freed; --apply does it\n");
    if (!output.data(output.json ? json.take() : text))
        return Failed;
    return fails ? PartlyFailed : Done;
}

int run(const QCommandLineParser &parser, Output &output) {
    const auto isSet = [&](const char *name) { return parser.isSet(QLatin1String(name)); };
    if (parser.positionalArguments().isEmpty())
        return output.usage("Name what to uninstall: `uninstall KEY`; `brightsweep-cli apps` lists "
                            "the keys.");
    if (parser.positionalArguments().contains(QString()))
        return output.usage("A KEY is empty; `brightsweep-cli apps` lists the keys.");
    if (isSet("keep-leftovers") && isSet("with-data"))
        return output.usage("Write either --keep-leftovers or --with-data.");
    // Stays until the process ends: work that is left behind uses it.
    Job &job = *std::make_unique<Job>().release();
    for (const QString &key : parser.positionalArguments())
        job.options.keys.push_back(argumentBytes(key));
    job.options.leftovers = isSet("keep-leftovers") ? Leave::Everything
                            : isSet("with-data")    ? Leave::Nothing
                                                    : Leave::Untold;
    job.options.purge = isSet("purge");
    job.options.applies = isSet("apply");
    job.options.admin = isSet("admin");
    job.current = "Looking for applications";
    if (job.options.applies && !job.begin("uninstall", output))
        return Failed;
    return runRemoval(
        job, [&job] { work(job); }, [&] { return tell(job, output); }, output);
}

} // namespace

const Command uninstallCommand = {"uninstall", "Removes applications with what they leave behind",
                                  configure, run};

} // namespace brightsweep::cli
