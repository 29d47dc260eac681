#include "cli/Catalogue.h"
#include "cli/Commands.h"
#include "cli/JsonWriter.h"
#include "cli/WorkRun.h"
#include "core/UtilityFunction.h"
#include "foundation/Paths.h"

#include <QDateTime>

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>

namespace brightsweep::cli {

namespace {

// Shared with the work, which an interruption may leave behind.
struct Job {
    std::mutex mutex; // guards the rest
    std::optional<Catalogue> catalogue;
};

void configure(QCommandLineParser &) {}

std::string asJson(const Catalogue &catalogue) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("apps");
    json.key("apps").beginArray();
    for (const auto &[application, isRunning, key] : catalogue.applications) {
        json.beginObject();
        json.key("key").value(key);
        json.key("kind").value(kindWord(application.kind));
        json.key("name").value(paths::text(application.name));
        json.key("version").value(paths::text(application.version));
        json.key("bytes");
        if (application.bytes)
            json.value(*application.bytes);
        else
            json.nullValue();
        json.key("date");
        if (application.installed != 0)
            json.value(QDateTime::fromSecsSinceEpoch(application.installed, Qt::UTC)
                           .toString(Qt::ISODate));
        else
            json.nullValue();
        json.key("system").value(application.partOfSystem);
        json.key("running").value(isRunning);
        json.path("path", application.path);
        json.key("desktopId").value(paths::text(application.desktopId()));
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string asTable(const Catalogue &catalogue) {
    Table table({false, false, true, false, false});
    table.row({"Name", "Version", "Size", "", "Key"});
    for (const auto &[application, isRunning, key] : catalogue.applications) {
        std::string marks = application.partOfSystem ? "system" : "";
        if (isRunning)
            marks += marks.empty() ? "running" : ", running";
        table.row({application.name, application.version,
                   application.bytes
                       ? UtilityFunction::convertVolSpace(*application.bytes).toStdString()
                       : "",
                   marks, key});
    }
    return table.text();
}

int run(const QCommandLineParser &parser, Output &output) {
    if (!parser.positionalArguments().isEmpty())
        return output.usage("Write `apps` alone; `uninstall KEY` takes one of its keys.");
    // Stays until the process ends: work that is left behind uses it.
    Job &job = *std::make_unique<Job>().release();
    return runWork(
        {[&job] {
             Catalogue catalogue = Catalogue::list();
             std::stable_sort(catalogue.applications.begin(), catalogue.applications.end(),
                              [](const auto &one, const auto &other) {
                                  return paths::text(one.application.name)
                                             .compare(paths::text(other.application.name),
                                                      Qt::CaseInsensitive) < 0;
                              });
             const std::lock_guard lock(job.mutex);
             job.catalogue = std::move(catalogue);
         },
         [] {}, [] { return std::string("Looking for applications"); },
         [&](bool) {
             const std::lock_guard lock(job.mutex);
             if (!job.catalogue)
                 return int(Failed);
             job.catalogue->warn(output);
             return int(output.data(output.json ? asJson(*job.catalogue) : asTable(*job.catalogue))
                            ? Done
                            : Failed);
         }},
        output);
}

} // namespace

const Command appsCommand = {"apps", "What can be uninstalled, whatever the way it came", configure,
                             run};

} // namespace brightsweep::cli
