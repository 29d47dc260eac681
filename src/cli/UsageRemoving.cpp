#include "cli/UsageRemoving.h"

#include "cli/ActedItem.h"
#include "cli/JsonWriter.h"
#include "cli/RightsRefusal.h"
#include "cli/WorkRun.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "removal/HeldPrograms.h"
#include "removal/NvAuthorization.h"
#include "removal/RemovalRun.h"
#include "removal/TrashRecord.h"

#include <algorithm>
#include <mutex>
#include <optional>

namespace brightsweep::cli {

namespace {

using Act = UsageRemoval::Act;

constexpr QLatin1String removeOption("remove");

bool isBelow(const std::filesystem::path &path, const std::filesystem::path &folder) {
    return path.native().starts_with(folder.native() + "/");
}

} // namespace

struct UsageRemoving::Job : RemovalJob {
    RemovalRoot root;
    std::vector<ActedItem> items;
    std::uint64_t bytesFreed = 0;
    std::vector<std::pair<std::filesystem::path, std::string>> programs; // that hold an item
};

void UsageRemoving::configure(QCommandLineParser &parser) {
    parser.addPositionalArgument(
        QStringLiteral("ITEM"),
        QStringLiteral("With --remove: what to remove; it lies below PATH."),
        QStringLiteral("[ITEM…]"));
    parser.addOption({removeOption, QStringLiteral("Remove the items named behind PATH.")});
    parser.addOption(
        {QStringLiteral("trash"), QStringLiteral("With --remove: move them to the trash.")});
    parser.addOption({QStringLiteral("apply"),
                      QStringLiteral("Really do it; without it only what would go is shown.")});
    parser.addOption({QStringLiteral("admin"),
                      QStringLiteral("Ask for administrator rights once, before removing.")});
}

int UsageRemoving::read(const QCommandLineParser &parser, Output &output, UsageRemoving &removing,
                        bool &removes) {
    const auto isSet = [&](const char *name) { return parser.isSet(QLatin1String(name)); };
    removes = parser.isSet(removeOption);
    if (!removes && (isSet("trash") || isSet("apply") || isSet("admin")))
        return output.usage("Write --trash, --apply and --admin with --remove.");
    if (isSet("trash") && isSet("admin"))
        return output.usage("The trash is the user's own; leave --admin out.");
    if (removes && parser.positionalArguments().size() < 2)
        return output.usage("Name what to remove: `usage PATH --remove ITEM…`.");
    for (const char *other : {"list", "rings", "depth", "svg", "compare", "limit", "unit"}) {
        if (removes && isSet(other))
            return output.usage(std::string("--remove does not go with --") + other + ".");
    }
    removing.m_options.act = isSet("trash") ? Act::Trash : Act::Remove;
    removing.m_options.applies = isSet("apply");
    removing.m_admin = isSet("admin");
    removing.m_options.withRights = removing.m_admin;
    if (!removes)
        return Done;
    for (const QString &item : parser.positionalArguments().mid(1)) {
        auto path = pathOf(item, output);
        if (!path)
            return WrongUsage;
        removing.m_given.push_back(*std::move(path));
    }
    return Done;
}

// Links on the way are followed, as in any path that is typed; one in the last place is the item.
Result<UsageItem> UsageRemoving::find(const RemovalRoot &root, const std::filesystem::path &given,
                                      const std::atomic<bool> &stop) {
    std::error_code error;
    const auto path = std::filesystem::absolute(given, error);
    if (error)
        return error;
    const auto folder = Platform::current().files->canonicalPath(paths::parent(path));
    if (!folder)
        return folder.error();
    const auto target =
        UsageRemoval::targetOf(root, paths::join(*folder, paths::lastComponent(path)));
    if (!target)
        return target.error();
    const auto item = Platform::current().files->openItem(*target);
    return item ? lookAtItem(*target, *item, {0, &stop, nullptr}) : item.error();
}

void UsageRemoving::work(Job &job) {
    std::optional<RemovalRun::Busy> busy;
    if (job.run)
        busy.emplace(*job.run);
    const TrashBatch batch;
    std::vector<UsageItem> found;
    for (const std::filesystem::path &given : m_given) {
        auto item = find(job.root, given, job.stop);
        if (job.stop)
            return;
        if (item) {
            found.push_back(*std::move(item));
            continue;
        }
        const std::lock_guard lock(job.mutex);
        job.items.push_back({given.native(), 0,
                             item.error() == std::errc::invalid_argument
                                 ? "not below " + job.root.path.native()
                                 : item.error().message()});
    }
    std::sort(found.begin(), found.end(), [](const UsageItem &first, const UsageItem &second) {
        return first.target.relative < second.target.relative;
    });
    UsageRemoval::Options options = m_options;
    options.stop = &job.stop;
    UsageRemoval removal(options);
    const HeldPrograms programs;
    std::filesystem::path gone; // the last folder that went, or would
    for (const UsageItem &item : found) {
        const auto path = item.target.path();
        if (path == gone || (!gone.empty() && isBelow(path, gone)))
            continue;
        {
            const std::lock_guard lock(job.mutex);
            job.current = path.native();
        }
        const std::string program = programs.of(path);
        const auto outcome = removal.act(item);
        if (job.stop && !outcome.done)
            return;
        if (outcome.done)
            gone = path;
        const std::lock_guard lock(job.mutex);
        job.bytesFreed = removal.bytesFreed();
        std::string error;
        if (!outcome.done)
            error = outcome.words.empty() ? outcome.error.message() : outcome.words;
        if (outcome.done && !program.empty())
            job.programs.emplace_back(path, program);
        job.items.push_back({path.native(), item.below.bytes, std::move(error)});
    }
}

std::string UsageRemoving::document(const Job &job, const std::filesystem::path &folder) const {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(1);
    json.key("command").value("usage");
    json.path("path", paths::join(folder, "").native());
    json.key("action").value(m_options.act == Act::Trash ? "trash" : "remove");
    json.key("applied").value(m_options.applies && !job.isRefused);
    json.key("bytes").value(bytesOf(job.items));
    json.key("bytesFreed").value(job.bytesFreed);
    writeActed(json, "removed", job.items, false);
    writeActed(json, "failed", job.items, true);
    json.endObject();
    return json.take();
}

int UsageRemoving::tell(const Job &job, const std::filesystem::path &folder, Output &output) {
    for (const auto &[path, program] : job.programs)
        output.warning(paths::display(path).toStdString() + ": in use by " +
                       paths::display(program).toStdString());
    bool written = false;
    if (output.json) {
        written = output.data(document(job, folder));
    } else {
        const bool trash = m_options.act == Act::Trash;
        const std::string went = m_options.applies ? trash ? "moved to the trash" : "removed"
                                 : trash           ? "would be moved to the trash"
                                                   : "would be removed";
        written = output.data(actedText(job.items, went, job.bytesFreed, m_options.applies));
    }
    return !written ? Failed : anyStays(job.items) ? PartlyFailed : Done;
}

int UsageRemoving::run(const std::filesystem::path &folder, Output &output) {
    // Stays until the process ends: work that is left behind uses it.
    Job &job = *std::make_unique<Job>().release();
    auto root = Platform::current().files->rememberRoot(folder);
    if (!root) {
        output.warning(paths::display(folder).toStdString() + ": " + root.error().message());
        return Failed;
    }
    job.root = *std::move(root);
    if (m_options.applies) {
        if (!job.begin("usage", output))
            return Failed;
        if (m_admin && !takeRights(job, RightsPurpose::Files)) {
            for (const std::filesystem::path &given : m_given)
                job.items.push_back({given.native(), 0, rightsRefusal()});
            return rightsRefused(output, [&] { return document(job, folder); });
        }
    }
    return runRemoval(
        job, [this, &job] { work(job); }, [&] { return tell(job, folder, output); }, output);
}

} // namespace brightsweep::cli
