#include "volumes/VolumeRows.h"

#include "core/MacLog.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "core/UtilityFunctionOfData.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/DesktopNotifier.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"
#include "volumes/FillLevel.h"
#include "volumes/VolumeNotifications.h"
#include "volumes/WatchMountUnmount.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace brightsweep {

namespace {

// The sections of the menu, in order.
constexpr std::array menuSections = {LocalStorage, ExternalStorage, SuperDriver, NetworkStorage,
                                     DiskImage};
// "Eject All" is there for these.
constexpr std::array ejectableSections = {SuperDriver, NetworkStorage, DiskImage, ExternalStorage};
// In the support folder: the volumes whose low space has been told in this boot.
constexpr char toldLowSpaceFile[] = "told-low-space";

SpaceAlarm alarmOfThisBoot() {
    const auto boot = Platform::current().facts->kernelValue("kern.bootsessionuuid");
    return boot ? SpaceAlarm(paths::join(MacLog::supportFolder(), toldLowSpaceFile), *boot)
                : SpaceAlarm();
}

} // namespace

float alarmOf(const QString &key) {
    return UserDefaults::standardUserDefaults().floatForKey(key) * 100;
}

QString alarmText(const QString &key) {
    return QString::number(double(alarmOf(key)), 'f', 6);
}

VolumeRows::VolumeRows(StatusMenu &menu, BubbleController &bubbles,
                       std::function<void(const std::string &)> scan, QObject *parent)
    : QObject(parent),
      m_menu(menu),
      m_bubbles(bubbles),
      m_scan(std::move(scan)),
      m_alarm(alarmOfThisBoot()) {
    connect(&m_menu, &StatusMenu::ejectRequested, this,
            [this](int reference) { eject(std::int16_t(reference)); });
}

void VolumeRows::begin(VolumeSource &source) {
    previousCount = 0;
    voluInfo = std::make_unique<VolumesInfo>(source);
    m_ejector = std::make_unique<VolumeEjector>(source);
    connect(m_ejector.get(), &VolumeEjector::singleEjected, this,
            [this](bool, const std::vector<VolumeEjectAttempt> &attempts) { ejected(attempts); });
    connect(m_ejector.get(), &VolumeEjector::allEjected, this, &VolumeRows::allEjected);
}

const DSVolumeInfo *VolumeRows::getBootVolume() {
    volsInfo = &voluInfo->getAllVolsInfo();
    const auto boot = std::find_if(volsInfo->begin(), volsInfo->end(),
                                   [](const DSVolumeInfo &volume) { return volume.bIsDefaultVol; });
    return boot == volsInfo->end() ? nullptr : &*boot;
}

QString VolumeRows::imageNameOf(const DSVolumeInfo *boot) {
    return imageNameOf(boot, alarmOf(DSSpaceAlarmKey));
}

QString VolumeRows::imageNameOf(const DSVolumeInfo *boot, float alarmPercent) {
    if (!boot)
        return {};
    const int used = FillLevel::usedPercent(boot->nTotalSize, boot->nFreeSize);
    if (used < 0)
        return {};
    const auto free = FillLevel::freePercent(boot->nTotalSize, boot->nFreeSize);
    return QString::number(used) +
           (alarmPercent >= float(free) ? QLatin1String("%-1.png") : QLatin1String("%.png"));
}

bool VolumeRows::getWarningValue() const {
    return FillLevel::isLow(homeDiskTotoleSpace, homeDiskFreeSpace, homeDiskWarningSize);
}

// -- The menu's content

MenuItem VolumeRows::rowOf(const DSVolumeInfo &volume, int index, int alarmPercent) const {
    MenuItem row;
    row.myStorage = volume.volType;
    row.ViewTag = index;
    row.title = QString::number(volume.volRefNumber);
    row.volumeSize = volume.volumeName;
    row.icon = volume.volIcon;
    row.u64TotalSpace = volume.totalSpace;
    row.u64FreeSpace = volume.freeSpace;
    row.nTotalSize = volume.nTotalSize;
    row.nFreeSize = volume.nFreeSize;
    row.volRefNumber = volume.volRefNumber;
    row.volType = volume.volType;
    row.volRootDir = volume.volRootDir;
    row.bCanEject = volume.bCanEject;
    row.bIsDefaultVol = volume.bIsDefaultVol;
    row.errorValue = QString::number(alarmPercent);
    row.isEjecting = m_ejector->isEjecting(volume.volRefNumber);
    row.toolTip = paths::display(volume.volRootDir);
    row.setPrograssImage();
    return row;
}

void VolumeRows::addMenu() {
    volsInfo = &voluInfo->getAllVolsInfo();
    previousCount = volsInfo->size();
    const SettingItems settings = UtilityFunctionOfData::getMyData().readerTxtForSettingValue();
    const int alarmPercent = int(floatFromText(settings.errorValue) * 100);
    int index = 0;
    std::vector<MenuItem> rows;
    for (const DSVolumeInfo &volume : *volsInfo) {
        rows.push_back(rowOf(volume, index++, alarmPercent));
        if (volume.bIsDefaultVol)
            Q_EMIT bootVolumeSeen(volume);
    }
    for (const VolumeType section : menuSections) {
        bool headerStands = false;
        for (MenuItem &row : rows) {
            if (row.volType != section)
                continue;
            if (!std::exchange(headerStands, true))
                m_menu.addHeader(DSVolumeInfo::sectionKey(section));
            m_menu.addRow(std::move(row));
        }
    }
}

bool VolumeRows::canEjectAll() const {
    return !m_ejector->isEjectingAll() &&
           std::any_of(m_menu.rows().begin(), m_menu.rows().end(), [](const MenuItem &row) {
               return std::find(ejectableSections.begin(), ejectableSections.end(), row.volType) !=
                      ejectableSections.end();
           });
}

void VolumeRows::updateRows() {
    const QString alarm = alarmText(DSSpaceAlarmKey);
    for (const DSVolumeInfo &volume : *volsInfo) {
        if (const MenuItem *place = m_menu.itemWithVolume(volume.volRefNumber)) {
            MenuItem row = *place;
            row.errorValue = alarm;
            row.u64FreeSpace = volume.freeSpace;
            row.u64TotalSpace = volume.totalSpace;
            row.nFreeSize = volume.nFreeSize;
            row.volumeSize = volume.volumeName;
            row.volRootDir = volume.volRootDir;
            row.isEjecting = m_ejector->isEjecting(volume.volRefNumber);
            row.setPrograssImage();
            m_menu.setRow(*place, std::move(row));
        }
        if (!volume.bIsDefaultVol)
            continue;
        Q_EMIT bootVolumeSeen(volume);
        homeDiskFreeSpace = volume.nFreeSize;
        homeDiskTotoleSpace = volume.nTotalSize;
        homeDiskWarningSize = std::int32_t(alarmOf(DSSpaceAlarmKey));
        Q_EMIT warningChanged(getWarningValue());
    }
}

void VolumeRows::tellAlarms() {
    for (const DSVolumeInfo &volume : m_alarm.crossed(*volsInfo, int(alarmOf(DSSpaceAlarmKey)))) {
        DesktopNotification notification;
        notification.summary = localizedText("LOW_SPACE");
        notification.body = localizedText("LOW_SPACE_OF")
                                .arg(nameInSentence(volume.volumeName),
                                     readersSize(volume.freeSpace), readersSize(volume.totalSpace));
        notification.actionLabel = localizedText("Scan");
        notification.action = [self = QPointer(this)](const std::string &token) {
            if (self)
                self->m_scan(token);
        };
        Platform::current().notifier->show(notification);
    }
}

// -- What happens to volumes

void VolumeRows::DSCommVolumeNottification(const Notification &notification, const QString &word) {
    QString name = notification.userInfo.value(NSWorkspaceVolumeLocalizedNameKey).toString();
    if (name.isEmpty())
        name = localizedText("You disk");
    const char *const sentence = word == QLatin1String("mounted")
                                     ? QT_TRID_NOOP("%@ is mounted successfully!")
                                     : QT_TRID_NOOP("%@ is unmounted successfully!");
    m_bubbles.initBubbleViewWith({localizedText(sentence).arg(nameInSentence(name)), {}});
    NotificationCenter::defaultCenter().post(refMenuItemWhenDeleteAndAddNotification, this);
    NotificationCenter::defaultCenter().post(updateSizeViewNotification, this);
}

// The rows say at once that an eject of theirs has begun.
void VolumeRows::markEjecting() {
    for (const DSVolumeInfo &volume : *volsInfo) {
        const bool isEjecting = m_ejector->isEjecting(volume.volRefNumber);
        if (isEjecting)
            m_ejectingNames[volume.volRefNumber] = volume.volumeName;
        if (const MenuItem *place = m_menu.itemWithVolume(volume.volRefNumber)) {
            MenuItem row = *place;
            row.isEjecting = isEjecting;
            m_menu.setRow(*place, std::move(row));
        }
    }
    if (m_ejector->isEjectingAll())
        m_menu.setEnabled(MenuAction::EjectAll, false);
}

void VolumeRows::eject(std::int16_t volRefNumber) {
    m_ejector->ejectSingleVolume(volRefNumber);
    markEjecting();
}

void VolumeRows::ejectAll() {
    // Rights may be asked for.
    m_menu.cancelTracking();
    std::set<std::int16_t> expected;
    for (const DSVolumeInfo &volume : *volsInfo) {
        if (volume.bCanEject)
            expected.insert(volume.volRefNumber);
    }
    m_ejector->ejectAllVolumes(std::move(expected));
    markEjecting();
}

void VolumeRows::ejected(const std::vector<VolumeEjectAttempt> &attempts) {
    // A volume that has gone by itself meanwhile is where it was wanted.
    getBootVolume();
    for (const VolumeEjectAttempt &attempt : attempts) {
        const auto known = m_ejectingNames.extract(attempt.refNumber);
        if (attempt.result.driveStays) {
            m_bubbles.initBubbleViewWith(
                {localizedText("VOLUME_UNMOUNTED")
                     .arg(nameInSentence(known ? known.mapped() : QString())),
                 localizedText("DRIVE_STAYS")});
            continue;
        }
        const auto volume = std::find_if(volsInfo->begin(), volsInfo->end(), [&](const auto &each) {
            return each.volRefNumber == attempt.refNumber;
        });
        if (attempt.result.status == 0 || volume == volsInfo->end())
            continue;
        QStringList holders;
        for (const std::string &holder : attempt.result.holders)
            holders += nameInSentence(paths::text(holder));
        Bubble bubble;
        bubble.firstLine = localizedText("CANNOT_EJECT").arg(nameInSentence(volume->volumeName));
        if (!holders.isEmpty())
            bubble.secondLine =
                localizedText("IN_USE_BY").arg(reader().createSeparatedList(holders));
        m_bubbles.initBubbleViewWith(bubble);
    }
    NotificationCenter::defaultCenter().post(refMenuItemWhenDeleteAndAddNotification, this);
}

void VolumeRows::allEjected(int result, const std::vector<VolumeEjectAttempt> &attempts) {
    if (result < 0) {
        m_bubbles.initBubbleViewWith({localizedText("NO_HAVE_REMOVABLE"), {}});
        m_menu.setEnabled(MenuAction::EjectAll, true);
        return;
    }
    ejected(attempts);
}

} // namespace brightsweep
