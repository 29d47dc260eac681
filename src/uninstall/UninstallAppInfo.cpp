#include "uninstall/UninstallAppInfo.h"

#include "core/UtilityFunction.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "uninstall/UninstallAppDelegate.h"

#include <unordered_set>
#include <utility>

namespace brightsweep {

namespace {

AppItems::Pointer itemOf(InstalledApplication application) {
    auto item = std::make_shared<AppItems>();
    item->image = QString::fromStdString(application.icon);
    item->name = paths::display(application.name);
    item->path = application.path;
    item->bundleID = QString::fromStdString(application.desktopId());
    item->bundleVersion = QString::fromStdString(application.version);
    item->date = application.installed == 0 ? QDateTime()
                                            : QDateTime::fromSecsSinceEpoch(application.installed);
    item->isSystemApp = application.partOfSystem;
    item->isSystemAppStr = item->isSystemApp ? QStringLiteral("YES") : QStringLiteral("NO");
    if (application.bytes) {
        item->fileSizeNum = *application.bytes;
        item->fileSize = UtilityFunction::getMyFunction().convertVolSpace(*application.bytes);
    }
    item->application = std::make_shared<const InstalledApplication>(std::move(application));
    return item;
}

} // namespace

UninstallAppInfo::UninstallAppInfo() {
    m_allAppsInfo.reserve(100);
    UninstallAppDelegate().getAppInfo(&m_allAppsInfo);
    for (const auto &source : Platform::current().applications)
        addApplicationsOf(*source);
}

void UninstallAppInfo::addApplicationsOf(ApplicationSource &source) {
    if (!source.unavailableReason().empty())
        return;
    auto applications = source.applications();
    if (!applications) {
        NSLog("Applications cannot be listed: %@", applications.error());
        m_failures.push_back({source.kind(), applications.error().message()});
        return;
    }
    const auto running = source.runningOf(*applications);
    const std::unordered_set<std::string> runningKeys(running.begin(), running.end());
    for (InstalledApplication &application : *applications) {
        const bool isRunning = runningKeys.contains(application.key);
        m_allAppsInfo.push_back(itemOf(std::move(application)));
        m_allAppsInfo.back()->isRunning = isRunning;
    }
}

} // namespace brightsweep
