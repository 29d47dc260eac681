#include "platform/linux/SnapSource.h"

#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/RunningPrograms.h"
#include "platform/linux/SnapdSocket.h"

#include <QDateTime>
#include <QJsonArray>

#include <algorithm>
#include <array>
#include <deque>
#include <thread>

namespace brightsweep {

namespace {

using std::chrono::milliseconds;
using std::filesystem::path;

constexpr milliseconds patience = std::chrono::seconds(10);
// The user may think about the password.
constexpr milliseconds questionPatience = std::chrono::minutes(15);

constexpr std::array<std::string_view, 3> goneKinds = {"snap-not-found", "snap-not-installed",
                                                       "snap-not-available"};
constexpr std::array<std::string_view, 3> refusedKinds = {"auth-cancelled", "login-required",
                                                          "access-denied"};

path socketPath() {
    return systemPath("/run/snapd.socket");
}

SnapdSocket snapd() {
    return SnapdSocket(socketPath());
}

template <std::size_t Size>
bool holds(const std::array<std::string_view, Size> &table, std::string_view word) {
    return std::find(table.begin(), table.end(), word) != table.end();
}

// Lower case letters, digits and dashes, and a key of an instance behind an underscore.
bool isSnapName(std::string_view name) {
    return !name.empty() &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_") == name.npos;
}

std::string textOf(const QJsonObject &object, const char *key) {
    return object.value(QLatin1String(key)).toString().toStdString();
}

std::string pathOf(const std::string &name) {
    return "/v2/snaps/" + name;
}

// Nothing where it is no application of the desktop.
std::optional<InstalledApplication> describe(const QJsonObject &snap) {
    const std::string name = textOf(snap, "name");
    if (!isSnapName(name) || textOf(snap, "type") != "app")
        return {};
    InstalledApplication application;
    application.kind = ApplicationKind::Snap;
    application.key = name;
    const std::string title = textOf(snap, "title");
    application.name = title.empty() ? name : title;
    application.version = textOf(snap, "version");
    application.path = systemPath("/snap/" + name + "/current");
    application.installed =
        QDateTime::fromString(snap.value(QLatin1String("install-date")).toString(), Qt::ISODate)
            .toSecsSinceEpoch();
    if (const auto bytes = snap.value(QLatin1String("installed-size")).toInteger(-1); bytes >= 0)
        application.bytes = std::uint64_t(bytes);
    std::deque<DesktopEntry> entries;
    std::vector<NamedEntry> named;
    bool hasEntry = false;
    for (const auto &value : snap.value(QLatin1String("apps")).toArray()) {
        const QJsonObject app = value.toObject();
        const std::string file = textOf(app, "desktop-file");
        if (file.empty())
            continue;
        hasEntry = true;
        const auto text = readSmallFile(systemPath(file));
        if (!text || !DesktopEntry(*text).isValid())
            continue;
        const std::string command = textOf(app, "name");
        entries.emplace_back(*text);
        named.push_back({path(file).stem().native(), &entries.back(),
                         "/snap/bin/" + (command == name ? name : name + "." + command)});
    }
    if (!hasEntry)
        return {};
    describeByEntries(application, named, name);
    if (application.ids.empty())
        application.ids = {name + "_" + name};
    return application;
}

bool isRunning(const std::vector<RunningProgram> &programs, const std::string &name) {
    return std::any_of(programs.begin(), programs.end(), [&](const RunningProgram &program) {
        return program.group.find("/snap." + name + ".") != std::string::npos;
    });
}

RemovalResult failed(const SnapdReply &reply) {
    const std::string kind = reply.errorKind();
    const auto outcome = kind == "snap-change-conflict" ? UninstallOutcome::Busy
                         : reply.status == 401 || reply.status == 403 || holds(refusedKinds, kind)
                             ? UninstallOutcome::Dismissed
                             : UninstallOutcome::Failed;
    const std::string words = reply.errorMessage();
    return {outcome, words.empty() ? "snapd answered " + std::to_string(reply.status) : words, {}};
}

// What the user ticked of its data decides over the copy that snapd would keep for a month.
bool takesData(const RemovalPlan &plan) {
    return plan.purge ||
           std::any_of(plan.leftovers.begin(), plan.leftovers.end(), [&](const Leftover &leftover) {
               return leftover.ticked && leftover.kind == LeftoverKind::Data &&
                      leftover.target.relative == path("snap") / plan.application.key;
           });
}

} // namespace

std::string SnapSource::unavailableReason() const {
    std::error_code error;
    return std::filesystem::is_socket(socketPath(), error) ? std::string()
                                                           : "snapd is not installed";
}

Result<std::vector<InstalledApplication>> SnapSource::applications() {
    const auto reply = snapd().get("/v2/snaps", patience);
    if (!reply)
        return reply.error();
    if (reply->status != 200)
        return std::errc::protocol_error;
    std::vector<InstalledApplication> found;
    m_claims.clear();
    for (const auto &value : reply->object.value(QLatin1String("result")).toArray()) {
        const std::string name = textOf(value.toObject(), "name");
        m_claims.push_back({name, name});
        if (auto application = describe(value.toObject()))
            found.push_back(*std::move(application));
    }
    return found;
}

std::vector<ClaimedName> SnapSource::claims() {
    return m_claims;
}

std::vector<std::string>
SnapSource::runningOf(const std::vector<InstalledApplication> &applications) {
    std::vector<std::string> keys;
    if (applications.empty())
        return keys;
    const auto programs = runningPrograms();
    for (const InstalledApplication &application : applications) {
        if (isRunning(programs, application.key))
            keys.push_back(application.key);
    }
    return keys;
}

std::vector<path> SnapSource::watched() const {
    return {systemPath("/var/lib/snapd/desktop/applications"), systemPath("/snap")};
}

RemovalPlan SnapSource::plan(const InstalledApplication &application) {
    RemovalPlan plan;
    plan.application = application;
    const auto block = [&](Blocker blocker, std::string reason) {
        plan.blocker = blocker;
        plan.reason = std::move(reason);
        return plan;
    };
    if (!isSnapName(application.key))
        return block(Blocker::Gone, application.key + " is no name of a snap");
    const auto reply = snapd().get(pathOf(application.key), patience);
    if (!reply)
        return block(Blocker::Busy, "snapd does not answer: " + reply.error().message());
    if (reply->status != 200)
        return block(holds(goneKinds, reply->errorKind()) ? Blocker::Gone : Blocker::Unsupported,
                     reply->errorMessage());
    if (isRunning(runningPrograms(), application.key))
        plan.running = {application.name};
    return plan;
}

RemovalResult SnapSource::remove(const RemovalPlan &plan, const RightsToken *) {
    const std::string &name = plan.application.key;
    if (!isSnapName(name))
        return {UninstallOutcome::Failed, name + " is no name of a snap", {}};
    QJsonObject body{{QStringLiteral("action"), QStringLiteral("remove")}};
    if (takesData(plan))
        body.insert(QStringLiteral("purge"), true);
    const auto reply = snapd().post(pathOf(name), body, questionPatience);
    if (!reply)
        return {UninstallOutcome::Failed, reply.error().message(), {}};
    if (holds(goneKinds, reply->errorKind()))
        return {UninstallOutcome::Removed, {}, {name}};
    const std::string change = textOf(reply->object, "change");
    if (reply->status != 202 || change.empty())
        return failed(*reply);
    return follow(change, name);
}

// snapd undoes by itself what it cannot finish.
RemovalResult SnapSource::follow(const std::string &change, const std::string &name) const {
    auto lastHeard = std::chrono::steady_clock::now();
    for (;; std::this_thread::sleep_for(m_interval)) {
        const auto reply = snapd().get("/v2/changes/" + change, patience);
        if (!reply) {
            if (std::chrono::steady_clock::now() - lastHeard > m_absence)
                return {UninstallOutcome::Failed, "snapd has gone: " + reply.error().message(), {}};
            continue;
        }
        lastHeard = std::chrono::steady_clock::now();
        if (reply->status != 200)
            return failed(*reply);
        const QJsonObject result = reply->object.value(QLatin1String("result")).toObject();
        if (!result.value(QLatin1String("ready")).toBool())
            continue;
        if (textOf(result, "status") == "Done")
            return {UninstallOutcome::Removed, {}, {name}};
        const std::string words = textOf(result, "err");
        return {UninstallOutcome::Failed, words.empty() ? textOf(result, "status") : words, {}};
    }
}

std::uint64_t SnapSource::sizeOf(const InstalledApplication &application) {
    return application.bytes.value_or(0);
}

} // namespace brightsweep
