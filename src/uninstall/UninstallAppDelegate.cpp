#include "uninstall/UninstallAppDelegate.h"

#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/ApplicationSource.h"
#include "platform/FileOperations.h"
#include "platform/MountsBelow.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/Workspace.h"
#include "uninstall/PropertyList.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace brightsweep {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view bundleExtension = "app";
constexpr QLatin1String systemPrefix("com.apple.");

using Identity = std::pair<std::uint64_t, std::uint64_t>; // device and inode

// The folders that hold this one: a link to one of them would have all of the disk walked.
std::set<Identity> foldersAbove(FileOperations &files, const fs::path &folder) {
    std::set<Identity> above;
    const auto real = files.canonicalPath(folder);
    if (!real)
        return above;
    for (fs::path place = *real; place != "/";) {
        place = paths::parent(place);
        if (const auto attributes = files.attributes(place))
            above.insert({attributes->device, attributes->inode});
    }
    return above;
}

// The entries that may be directories, in system order; none that something is mounted on.
std::vector<std::pair<std::string, EntryType>> foldersIn(FileOperations &files,
                                                         const OpenDirectory &directory) {
    const MountsBelow mounts = MountsBelow::of(files, directory);
    DirectoryBlock block;
    block.setMountPoints(&mounts.direct());
    std::vector<std::pair<std::string, EntryType>> folders;
    while (!block.atEnd() && !files.readBlock(directory, block, WantedAttributes::None)) {
        for (const DirectoryEntry &entry : block.entries()) {
            const bool mayBeFolder =
                entry.type == EntryType::Directory || entry.type == EntryType::Link;
            const std::string name(entry.nameView());
            const auto &direct = mounts.direct();
            if (mayBeFolder && std::find(direct.begin(), direct.end(), name) == direct.end())
                folders.emplace_back(name, entry.type);
        }
    }
    return folders;
}

QDateTime dateOf(FileTime time) {
    using std::chrono::floor;
    using std::chrono::milliseconds;
    const auto since = floor<milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(since.count());
}

// The same as the sources tell of what they list.
InstalledApplication applicationOf(const AppItems &item) {
    InstalledApplication application;
    application.kind = ApplicationKind::Bundle;
    application.key = item.path.native();
    if (!item.bundleID.isEmpty())
        application.ids = {item.bundleID.toStdString()};
    application.name = item.name.toStdString();
    application.version = item.bundleVersion.toStdString();
    application.path = item.path;
    application.installed = item.date.isValid() ? item.date.toSecsSinceEpoch() : 0;
    application.partOfSystem = item.isSystemApp;
    return application;
}

} // namespace

void UninstallAppDelegate::getAppInfo(std::vector<AppItems::Pointer> *apps) {
    if (!apps)
        return;
    std::vector<fs::path> bundles;
    bundles.reserve(100);
    for (const auto &folder :
         Platform::current().directories->paths(StandardDirectory::Applications))
        applicationsInDirectory(folder, bundles);
    for (const auto &bundle : bundles)
        apps->push_back(constructAppItem(bundle));
}

void UninstallAppDelegate::applicationsInDirectory(const fs::path &directory,
                                                   std::vector<fs::path> &withArray) {
    FileOperations &files = *Platform::current().files;
    std::set<Identity> passed = foldersAbove(files, directory);
    std::vector<fs::path> waiting = {directory}; // the next one last
    while (!waiting.empty()) {
        const fs::path path = std::move(waiting.back());
        waiting.pop_back();
        if (path != directory && paths::extension(path) == bundleExtension) {
            withArray.push_back(path);
            continue;
        }
        const auto folder = files.openDirectory(path);
        if (!folder || !passed.insert({folder->device, folder->inode}).second)
            continue;
        const auto found = foldersIn(files, *folder);
        for (auto entry = found.rbegin(); entry != found.rend(); ++entry) {
            fs::path child = paths::join(path, entry->first);
            if (entry->second == EntryType::Link) {
                const auto target = files.attributesFollowing(child);
                if (!target || target->type != EntryType::Directory)
                    continue;
            }
            waiting.push_back(std::move(child));
        }
    }
}

AppItems::Pointer UninstallAppDelegate::constructAppItem(const fs::path &path) {
    auto item = std::make_shared<AppItems>();
    const auto text = readSmallFile(paths::join(path, "Contents/Info.plist"));
    const auto texts = readPropertyList(text ? std::string_view(*text) : std::string_view());
    const auto textOf = [&](const char *key) {
        const auto found = texts.find(key);
        return found == texts.end() ? QString() : found->second;
    };
    Workspace &workspace = *Platform::current().workspace;
    item->path = path;
    item->name = workspace.displayName(path);
    item->bundleID = textOf("CFBundleIdentifier");
    item->isSystemApp = item->bundleID.startsWith(systemPrefix);
    item->isSystemAppStr = item->isSystemApp ? QStringLiteral("YES") : QStringLiteral("NO");
    item->bundleVersion = textOf("CFBundleShortVersionString");
    const auto bundle = Platform::current().files->canonicalPath(path);
    const auto created = workspace.created(bundle ? *bundle : path);
    item->date = created ? dateOf(*created) : QDateTime();
    item->application = std::make_shared<const InstalledApplication>(applicationOf(*item));
    return item;
}

} // namespace brightsweep
