// What the ring chart's page does with what is selected.
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/V4DiskUsageViewController.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"

#include <chrono>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds alertDelay{1000};

const QString refDiskusageViewNotification = QStringLiteral("refDiskusageView");

} // namespace

void V4DiskUsageViewController::removeButtonAction() {
    if (m_surroundings.licenceGate())
        m_ticks.ask();
}

void V4DiskUsageViewController::canelButtonAction() {
    Q_EMIT sheetEnded();
    postRefresh(m_currentPath);
    Q_EMIT selectionChanged();
}

void V4DiskUsageViewController::removeSelectFilesButtonAction(Act act) {
    m_ticks.remove(act);
}

void V4DiskUsageViewController::removeEnded() {
    if (m_ticks.report().failed > 0)
        m_alert = m_surroundings.clock->callAfter(alertDelay, [this] { delayTimer(); });
    Q_EMIT sheetEnded();
    postRefresh(m_openGLView.getCurrentDirectory());
    Q_EMIT removalEnded();
}

void V4DiskUsageViewController::delayTimer() {
    m_alert = 0;
    Q_EMIT canNotRemoveSome();
    Q_EMIT unlockAnimation(true);
}

void V4DiskUsageViewController::postRefresh(const std::filesystem::path &path) {
    NotificationCenter::defaultCenter().post(refDiskusageViewNotification, this,
                                             {{QStringLiteral("path"), paths::toVariant(path)}});
}

void V4DiskUsageViewController::backButtonAction() {
    m_isRootPath = false;
    m_isFirstIn = true;
    m_pathNumber = 0;
    m_firstInPath.clear();
    m_hasSelected = false;
    m_ticks.clear();
    m_diskUsageAppCon.clickBackBtn();
}

} // namespace brightsweep
