#include "cli/Catalogue.h"

#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/RightsRefusal.h"
#include "foundation/Paths.h"
#include "foundation/WordTable.h"
#include "uninstall/Leftovers.h"
#include "uninstall/UninstallAppInfo.h"

#include <algorithm>
#include <map>

namespace brightsweep::cli {

namespace {

constexpr std::array kindWords = {
    WordRow{ApplicationKind::Bundle, "bundle"},     WordRow{ApplicationKind::Package, "package"},
    WordRow{ApplicationKind::Flatpak, "flatpak"},   WordRow{ApplicationKind::Snap, "snap"},
    WordRow{ApplicationKind::AppImage, "appimage"}, WordRow{ApplicationKind::Folder, "folder"},
};

constexpr std::array leftoverWords = {
    WordRow{LeftoverKind::Config, "config"}, WordRow{LeftoverKind::Cache, "cache"},
    WordRow{LeftoverKind::State, "state"},   WordRow{LeftoverKind::Data, "data"},
    WordRow{LeftoverKind::Entry, "entry"},   WordRow{LeftoverKind::System, "system"},
};

// Of a Flatpak the id says enough, unless two branches of it are installed.
std::string keyOf(const InstalledApplication &application,
                  const std::map<std::string, int> &branches) {
    const std::string kind = std::string(kindWord(application.kind)) + ":";
    if (application.kind == ApplicationKind::Flatpak) {
        const std::string key =
            kind + (application.userOwned ? "user:" : "system:") + flatpakIdOf(application.key);
        const auto found = branches.find(key);
        if (found == branches.end() || found->second < 2)
            return key;
        return kind + (application.userOwned ? "user:" : "system:") + application.key;
    }
    if (paths::isValidUtf8(application.key))
        return kind + application.key;
    return kind + "base64:" + QByteArray::fromStdString(application.key).toBase64().toStdString();
}

std::map<std::string, int> branchesIn(const std::vector<AppItems::Pointer> &items) {
    std::map<std::string, int> branches;
    for (const auto &item : items) {
        if (item->application->kind == ApplicationKind::Flatpak)
            ++branches[keyOf(*item->application, {})];
    }
    return branches;
}

bool isCalled(const InstalledApplication &application, const std::string &name) {
    return application.key == name || application.name == name ||
           flatpakIdOf(application.key) == name || application.path == name ||
           (!application.path.empty() && application.kind != ApplicationKind::Package &&
            application.kind != ApplicationKind::Flatpak && application.path.filename() == name) ||
           std::find(application.ids.begin(), application.ids.end(), name) != application.ids.end();
}

} // namespace

const char *kindWord(ApplicationKind kind) {
    return wordsIn(kindWords, kind, "");
}

const char *kindWord(LeftoverKind kind) {
    return wordsIn(leftoverWords, kind, "");
}

std::string obstacleOf(const Leftover &leftover, bool asksForRights) {
    if (leftover.refusal)
        return leftover.refusal.message();
    return leftover.needsRights && !asksForRights ? rightsAreNeeded : std::string();
}

void writeLeftover(JsonWriter &json, const Leftover &leftover) {
    json.path("path", leftover.path);
    json.key("kind").value(kindWord(leftover.kind));
    json.key("bytes").value(leftover.bytes);
    json.key("reason").value(paths::text(leftover.reason));
    json.key("needsRights").value(leftover.needsRights);
    json.key("stays");
    if (leftover.refusal)
        json.value(leftover.refusal.message());
    else
        json.nullValue();
}

Catalogue Catalogue::list() {
    const UninstallAppInfo info;
    Catalogue catalogue;
    const auto branches = branchesIn(info.allAppsInfo());
    for (const auto &item : info.allAppsInfo())
        catalogue.applications.push_back(
            {*item->application, item->isRunning, keyOf(*item->application, branches)});
    for (const auto &failure : info.failures())
        catalogue.failures.emplace_back(failure.kind, failure.reason);
    return catalogue;
}

std::vector<InstalledApplication> Catalogue::installed() const {
    std::vector<InstalledApplication> all;
    for (const Application &application : applications)
        all.push_back(application.application);
    return all;
}

std::vector<ApplicationKind> Catalogue::unknownKinds() const {
    std::vector<ApplicationKind> kinds;
    for (const auto &[kind, reason] : failures)
        kinds.push_back(kind);
    return kinds;
}

void Catalogue::warn(Output &output) const {
    for (const auto &[kind, reason] : failures)
        output.warning(std::string("Not listed: ") + kindWord(kind) + ": " + reason);
}

std::vector<const Catalogue::Application *> Catalogue::find(const std::string &given) const {
    std::vector<const Application *> found;
    for (const Application &application : applications) {
        const std::string full = std::string("flatpak:") +
                                 (application.application.userOwned ? "user:" : "system:") +
                                 application.application.key;
        if (application.key == given || full == given)
            return {&application};
        if (isCalled(application.application, given))
            found.push_back(&application);
    }
    return found;
}

} // namespace brightsweep::cli
