#include "platform/linux/FlatpakSource.h"

#include "foundation/DesktopEntryGrammar.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/ToolWords.h"
#include "platform/linux/ApplicationEntries.h"
#include "platform/linux/ChildProcess.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/OwnPlaces.h"

#include <QXmlStreamReader>

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <set>

namespace brightsweep {

namespace {

using std::filesystem::path;

using desktopEntry::fileEnding;
constexpr std::array<const char *, 3> metainfoPlaces = {"export/share/metainfo/%.metainfo.xml",
                                                        "files/share/metainfo/%.metainfo.xml",
                                                        "files/share/appdata/%.appdata.xml"};
// A permission store that does not answer is no reason to wait.
constexpr std::chrono::milliseconds resetPatience(5000);

struct Ref {
    std::string id;
    std::string architecture;
    std::string branch;

    std::string text() const { return "app/" + id + "/" + architecture + "/" + branch; }
    static std::optional<Ref> of(std::string_view text) {
        Ref ref;
        std::string *const parts[] = {nullptr, &ref.id, &ref.architecture, &ref.branch};
        for (std::string *part : parts) {
            const auto end = std::min(text.find('/'), text.size());
            const std::string_view word = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            if (part)
                *part = word;
            else if (word != "app")
                return {};
            if (word.empty() || word == "." || word == "..")
                return {};
        }
        return text.empty() ? std::optional(ref) : std::nullopt;
    }
};

path installationOf(bool isUsers) {
    return isUsers ? paths::join(folderOfRole(FolderRole::Data), "flatpak")
                   : systemPath("/var/lib/flatpak");
}

// The tool on the same installations as this source, also below a prefix.
std::vector<std::string> toolFor(std::vector<std::string> arguments) {
    std::vector<std::string> command = {"env"};
    if (!systemRoot().empty())
        command.push_back("FLATPAK_SYSTEM_DIR=" + installationOf(false).native());
    command.emplace_back("flatpak");
    command.insert(command.end(), std::make_move_iterator(arguments.begin()),
                   std::make_move_iterator(arguments.end()));
    return command;
}

const char *optionFor(bool isUsers) {
    return isUsers ? "--user" : "--system";
}

// Real folders in a folder, sorted; neither links nor hidden ones.
std::vector<std::string> foldersIn(const path &folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
         i.increment(error)) {
        std::error_code unknown;
        if (i->symlink_status(unknown).type() == std::filesystem::file_type::directory &&
            !i->path().filename().native().starts_with('.'))
            names.push_back(i->path().filename().native());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The folder that is in use now; empty where nothing is installed there.
path deployFolder(bool isUsers, const Ref &ref) {
    std::error_code error;
    const path folder = std::filesystem::canonical(
        installationOf(isUsers) / "app" / ref.id / ref.architecture / ref.branch / "active", error);
    return error ? path() : folder;
}

std::string versionIn(const path &deploy, const std::string &id) {
    for (std::string place : metainfoPlaces) {
        place.replace(place.find('%'), 1, id);
        const auto text = readSmallFile(paths::join(deploy, place));
        if (!text)
            continue;
        QXmlStreamReader xml(QByteArray::fromStdString(*text));
        while (!xml.atEnd() && !xml.hasError()) {
            if (xml.readNext() == QXmlStreamReader::StartElement &&
                xml.name() == QLatin1String("release"))
                return xml.attributes().value(QLatin1String("version")).toString().toStdString();
        }
    }
    return {};
}

std::int64_t changedAt(const path &folder) {
    struct stat status;
    return ::stat(folder.c_str(), &status) == 0 ? std::int64_t(status.st_mtim.tv_sec) : 0;
}

InstalledApplication describe(bool isUsers, const Ref &ref, const path &deploy) {
    InstalledApplication application;
    application.kind = ApplicationKind::Flatpak;
    application.key = ref.text();
    application.userOwned = isUsers;
    application.name = ref.id;
    application.version = versionIn(deploy, ref.id);
    application.path = deploy;
    application.installed = changedAt(deploy);
    const path folder = deploy / "export/share/applications";
    std::vector<std::string> ids;
    std::vector<DesktopEntry> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator i(folder, error), end; !error && i != end;
         i.increment(error)) {
        const std::string name = i->path().filename().native();
        auto text = name.ends_with(fileEnding) ? readSmallFile(i->path()) : std::errc::io_error;
        if (!text)
            continue;
        DesktopEntry entry(*std::move(text));
        if (!entry.isValid() || entry.boolean("NoDisplay") || entry.boolean("Hidden"))
            continue;
        ids.push_back(name.substr(0, name.size() - fileEnding.size()));
        entries.push_back(std::move(entry));
    }
    std::vector<NamedEntry> named;
    for (std::size_t i = 0; i < entries.size(); ++i)
        named.push_back({ids[i], &entries[i], {}});
    std::sort(named.begin(), named.end(),
              [](const auto &one, const auto &other) { return one.id < other.id; });
    describeByEntries(application, named, ref.id);
    if (application.ids.empty())
        application.ids = {ref.id};
    return application;
}

template <typename Each>
void forEachRef(Each each) {
    for (const bool isUsers : {true, false}) {
        const path apps = installationOf(isUsers) / "app";
        for (const std::string &id : foldersIn(apps)) {
            for (const std::string &architecture : foldersIn(apps / id)) {
                for (const std::string &branch : foldersIn(apps / id / architecture)) {
                    const Ref ref{id, architecture, branch};
                    const path deploy = deployFolder(isUsers, ref);
                    if (!deploy.empty())
                        each(isUsers, ref, deploy);
                }
            }
        }
    }
}

// Ids of what runs now, by the folders that Flatpak keeps for each instance while it does.
std::set<std::string> runningIds() {
    std::set<std::string> ids;
    const char *runtime = std::getenv("XDG_RUNTIME_DIR");
    const path folder = paths::join(runtime && *runtime ? runtime : "/nowhere", ".flatpak");
    for (const std::string &instance : foldersIn(folder)) {
        const auto pid = readSmallFile(folder / instance / "pid", 32);
        const auto info = readSmallFile(folder / instance / "info");
        int process = 0;
        if (!pid || !info ||
            std::from_chars(pid->data(), pid->data() + pid->size(), process).ec != std::errc() ||
            process <= 0 || (::kill(process, 0) != 0 && errno != EPERM))
            continue;
        constexpr std::string_view key = "\nname=";
        const auto start = info->find(key);
        if (start != info->npos) {
            const auto begin = start + key.size();
            ids.insert(info->substr(begin, info->find('\n', begin) - begin));
        }
    }
    return ids;
}

// What was allowed to the program is forgotten; a store that cannot be asked has nothing to tell.
void resetPermissions(const std::string &id) {
    auto child =
        ChildProcess::start(toolFor({"permission-reset", id}), ChildProcess::Purpose::Question);
    const auto end = std::chrono::steady_clock::now() + resetPatience;
    std::string words;
    while (child && child->read(words) && std::chrono::steady_clock::now() < end) {
        pollfd waiting = {child->output(), POLLIN, 0};
        ::poll(&waiting, 1, 100);
    }
}

} // namespace

std::string FlatpakSource::unavailableReason() const {
    return findProgram("flatpak").empty() ? "Flatpak is not installed" : std::string();
}

Result<std::vector<InstalledApplication>> FlatpakSource::applications() {
    std::vector<InstalledApplication> found;
    forEachRef([&](bool isUsers, const Ref &ref, const path &deploy) {
        found.push_back(describe(isUsers, ref, deploy));
    });
    return found;
}

std::vector<ClaimedName> FlatpakSource::claims() {
    constexpr std::string_view key = "Path=";
    std::vector<ClaimedName> claimed;
    std::error_code error;
    for (std::filesystem::directory_iterator i(systemPath("/etc/flatpak/installations.d"), error),
         end;
         !error && i != end; i.increment(error)) {
        const std::string text = readSmallFile(i->path()).value_or(std::string());
        for (std::size_t at = text.find(key); at != text.npos; at = text.find(key, at + 1)) {
            const auto begin = at + key.size();
            const path folder = systemPath(text.substr(begin, text.find('\n', begin) - begin));
            for (const std::string &id : foldersIn(folder / "app"))
                claimed.push_back({id, {}});
        }
    }
    return claimed;
}

std::vector<std::string>
FlatpakSource::runningOf(const std::vector<InstalledApplication> &applications) {
    const auto running = runningIds();
    std::vector<std::string> keys;
    for (const InstalledApplication &application : applications) {
        const auto ref = Ref::of(application.key);
        if (ref && running.contains(ref->id))
            keys.push_back(application.key);
    }
    return keys;
}

// Flatpak touches this file after every change.
std::vector<path> FlatpakSource::watched() const {
    return {installationOf(true) / ".changed", installationOf(false) / ".changed",
            installationOf(true) / "app", installationOf(false) / "app"};
}

RemovalPlan FlatpakSource::plan(const InstalledApplication &application) {
    RemovalPlan plan;
    plan.application = application;
    const auto ref = Ref::of(application.key);
    if (!ref || deployFolder(application.userOwned, *ref).empty()) {
        plan.blocker = Blocker::Gone;
        plan.reason = application.key + " is not installed";
    } else if (runningIds().contains(ref->id)) {
        plan.running = {application.name};
    }
    return plan;
}

RemovalResult FlatpakSource::remove(const RemovalPlan &plan, const RightsToken *) {
    const InstalledApplication &application = plan.application;
    const bool isUsers = application.userOwned;
    const auto ref = Ref::of(application.key);
    if (!ref)
        return {UninstallOutcome::Failed, application.key + " is no ref of Flatpak", {}};
    const path deploy = deployFolder(isUsers, *ref);
    if (deploy.empty())
        return {UninstallOutcome::Removed, {}, {application.key}};
    if (deploy != application.path)
        return {UninstallOutcome::Changed, application.key + " has been updated meanwhile", {}};
    const auto tool =
        runTool(toolFor({"uninstall", optionFor(isUsers), "-y", "--noninteractive", ref->text()}));
    if (!tool)
        return {UninstallOutcome::Failed, tool.error().message(), {}};
    if (!deployFolder(isUsers, *ref).empty()) {
        const bool isRefused = tool->output.find("not allowed for user") != std::string::npos;
        return {isRefused ? UninstallOutcome::Dismissed : UninstallOutcome::Failed,
                decisiveLine(tool->output),
                {}};
    }
    bool remains = false;
    forEachRef([&](bool, const Ref &other, const path &) { remains |= other.id == ref->id; });
    if (!remains)
        resetPermissions(ref->id);
    return {UninstallOutcome::Removed, {}, {application.key}};
}

std::uint64_t FlatpakSource::sizeOf(const InstalledApplication &application) {
    const auto ref = Ref::of(application.key);
    const auto tool = ref ? runTool(toolFor({"info", optionFor(application.userOwned),
                                             "--show-size", ref->text()}))
                          : std::errc::invalid_argument;
    std::uint64_t bytes = 0;
    if (tool && tool->status == 0)
        std::from_chars(tool->output.data(), tool->output.data() + tool->output.size(), bytes);
    return bytes;
}

} // namespace brightsweep
