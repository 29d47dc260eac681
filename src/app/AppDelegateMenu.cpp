// The status item, its menu and their refresh.

#include "app/AppDelegate.h"
#include "app/LaunchAtLogin.h"
#include "app/LicenceGate.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "core/UtilityFunctionOfData.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/DesktopNotifier.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "volumes/FillLevel.h"
#include "volumes/VolumeNotifications.h"
#include "volumes/VolumesManager.h"

#include <QPointer>

#include <algorithm>
#include <array>

namespace brightsweep {

namespace {

const QString memoryTitle = QString::number(memoryStorage);

// The sections of the menu, in order.
constexpr std::array menuSections = {LocalStorage, ExternalStorage, SuperDriver, NetworkStorage,
                                     DiskImage};
// "Eject All" is there for these.
constexpr std::array ejectableSections = {SuperDriver, NetworkStorage, DiskImage, ExternalStorage};
constexpr char memorySectionKey[] = QT_TRID_NOOP("FREE_MEMORY");

// The alarm of a setting, in percent of the whole.
float alarmOf(const QString &key) {
    return UserDefaults::standardUserDefaults().floatForKey(key) * 100;
}

QString alarmText(const QString &key) {
    return QString::number(double(alarmOf(key)), 'f', 6);
}

QString imageNameOf(const DSVolumeInfo *boot) {
    if (!boot)
        return {};
    const int used = FillLevel::usedPercent(boot->nTotalSize, boot->nFreeSize);
    if (used < 0)
        return {};
    const auto free = FillLevel::freePercent(boot->nTotalSize, boot->nFreeSize);
    return QString::number(used) + (alarmOf(DSSpaceAlarmKey) >= float(free)
                                        ? QLatin1String("%-1.png")
                                        : QLatin1String("%.png"));
}

} // namespace

// -- The status item

void AppDelegate::showMenuBar() {
    if (m_statusItemMade)
        return;
    m_statusItemMade = true;
    _statusItem.setActivatedHandler(
        [this](const StatusActivation &activation) { Q_EMIT popupRequested(activation); });
    showToolTip(localizedText("TotalSize:") + readersSize(statusTotalSpace),
                localizedText("FreeSize:") + readersSize(statusFreeSpace));
    showImage(m_statusImage);
}

const DSVolumeInfo *AppDelegate::getBootVolume() {
    volsInfo = &voluInfo->getAllVolsInfo();
    const auto boot = std::find_if(volsInfo->begin(), volsInfo->end(),
                                   [](const DSVolumeInfo &volume) { return volume.bIsDefaultVol; });
    return boot == volsInfo->end() ? nullptr : &*boot;
}

QString AppDelegate::getStatusImage() {
    return imageNameOf(getBootVolume());
}

void AppDelegate::setStatusIamge() {
    showImage(getStatusImage());
}

void AppDelegate::showImage(const QString &name) {
    if (m_statusImage == name)
        return;
    m_statusImage = name;
    renderStatusImageAgain();
    Q_EMIT statusImageChanged(name);
}

void AppDelegate::renderStatusImageAgain() {
    if (!m_parts.renderStatusImage)
        return;
    _statusItem.setImages(m_statusImage.isEmpty() ? std::vector<StatusImage>()
                                                  : m_parts.renderStatusImage(m_statusImage));
}

void AppDelegate::showToolTip(const QString &title, const QString &text) {
    if (m_toolTipTitle == title && m_toolTipText == text)
        return;
    m_toolTipTitle = title;
    m_toolTipText = text;
    _statusItem.setToolTip(title, text);
}

bool AppDelegate::getWarningValue() const {
    return FillLevel::isLow(homeDiskTotoleSpace, homeDiskFreeSpace, homeDiskWarningSize);
}

void AppDelegate::setWarningStatusShowColor(bool warning) {
    if (m_warning == warning)
        return;
    m_warning = warning;
    Q_EMIT statusWarningChanged(warning);
}

void AppDelegate::setStatusBarHidden(bool hidden) {
    if (!hidden)
        showMenuBar();
    _statusItem.setShown(!hidden);
}

void AppDelegate::handleStatusBarHidden(const Notification &notification) {
    setStatusBarHidden(notification.userInfo.value(QStringLiteral("object")).toBool());
}

// The two lines beside the item's image, and its tool tip.
void AppDelegate::showBootVolume(const DSVolumeInfo &volume) {
    statusFreeSpace = volume.freeSpace;
    statusTotalSpace = volume.totalSpace;
    if (!m_statusItemMade)
        return;
    showToolTip(nameInSentence(volume.volumeName),
                localizedText("Total Size:") + readersSize(volume.totalSpace) + QLatin1Char('\n') +
                    localizedText("Free Space:") + readersSize(volume.freeSpace));
    const QString title =
        readersSize(volume.freeSpace) + QStringLiteral(" / ") + readersSize(volume.totalSpace);
    if (m_title == title)
        return;
    m_title = title;
    _statusItem.setTitle(title);
}

// -- Building the menu

MenuItem AppDelegate::rowOf(const DSVolumeInfo &volume, int index, int alarmPercent) const {
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

void AppDelegate::addMenu() {
    setStatusIamge();
    volsInfo = &voluInfo->getAllVolsInfo();
    previousCount = volsInfo->size();
    const SettingItems settings = UtilityFunctionOfData::getMyData().readerTxtForSettingValue();
    const int alarmPercent = int(floatFromText(settings.errorValue) * 100);
    int index = 0;
    std::vector<MenuItem> rows;
    for (const DSVolumeInfo &volume : *volsInfo) {
        rows.push_back(rowOf(volume, index++, alarmPercent));
        if (volume.bIsDefaultVol)
            showBootVolume(volume);
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
    freeMemoryListView();
}

void AppDelegate::freeMemoryListView() {
    m_menu.addHeader(memorySectionKey);
    m_menu.addRow(memoryRow());
}

MenuItem AppDelegate::memoryRow() {
    readMemory();
    MenuItem row;
    row.myStorage = memoryStorage;
    row.ViewTag = tagWithoutClicks;
    row.title = memoryTitle;
    row.volumeSize = QStringLiteral(QT_TRID_NOOP("Memory"));
    row.icon = QStringLiteral("freememory.png");
    // Free memory alone is small on every healthy system.
    const auto available = Platform::current().memory->availableBytes();
    row.u64TotalSpace = _cleanMemInfo.totalMem;
    row.u64FreeSpace =
        available ? UtilityFunction::covertCleanMemory(*available) : _cleanMemInfo.freeMem;
    // The reader is the decimal one and the words are binary, so both sizes are a little small.
    row.nTotalSize = UtilityFunction::getVolSpaceFromString(row.u64TotalSpace);
    row.nFreeSize = UtilityFunction::getVolSpaceFromString(row.u64FreeSpace);
    row.errorValue = alarmText(DSMemoryAlarmKey);
    row.toolTip =
        localizedText("MEMORY_PARTS")
            .arg(readersSize(_cleanMemInfo.freeMem), readersSize(_cleanMemInfo.inactiveMem));
    if (!m_releaseSeen && _clearMemory->couldDoNothing())
        row.note = localizedText("NOTHING_RELEASED");
    row.setPrograssImage();
    return row;
}

void AppDelegate::readMemory() {
    if (!_clearMemory)
        _clearMemory = std::make_unique<ClearMemory>();
    _clearMemory->getMemoryInfo(&_memoryInfo);
    _cleanMemInfo = cleanMemoryInfo(_memoryInfo);
}

void AppDelegate::addOtherItem() {
    const bool anyEjectable =
        std::any_of(m_menu.rows().begin(), m_menu.rows().end(), [](const MenuItem &row) {
            return std::find(ejectableSections.begin(), ejectableSections.end(), row.volType) !=
                   ejectableSections.end();
        });
    m_menu.addSeparator();
    m_menu.addAction(MenuAction::EjectAll, QStringLiteral(QT_TRID_NOOP("Eject All")),
                     QStringLiteral("e"), anyEjectable && !m_ejector->isEjectingAll());
    m_menu.addSeparator();
    m_menu.addAction(MenuAction::MainWindow, QStringLiteral(QT_TRID_NOOP("Main Window")), {}, true);
    m_menu.addAction(MenuAction::LaunchAtLogin, QStringLiteral(QT_TRID_NOOP("Launch at login")), {},
                     true, LaunchAtLogin::readeFileOfLaunchAppWhenLogin().toInt() != 0);
    m_menu.addSeparator();
    m_menu.addAction(MenuAction::Quit, QStringLiteral(QT_TRID_NOOP("Quit Brightsweep")),
                     QStringLiteral("q"), true);
    m_menu.finish();
    openMainWindow();
}

void AppDelegate::rebuildMenu() {
    m_menu.removeItems();
    showMenuBar();
    addMenu();
    addOtherItem();
}

void AppDelegate::refMenuItemWhenDeleteAndAdd() {
    m_menu.cancelTracking();
    rebuildMenu();
}

// -- Refreshing it

void AppDelegate::updateDataForMenuItem() {
    showMenuBar();
    const DSVolumeInfo *const boot = getBootVolume();
    // Only the count is compared: one volume in another's place does not rebuild.
    if (volsInfo->size() != previousCount)
        refMenuItemWhenDeleteAndAdd();
    else
        showImage(imageNameOf(boot));
    updateVolumeRows();
    // Nobody sees it otherwise; it is read when the menu opens. A release is collected by reading.
    if (m_menu.isMenuVisible() || (_clearMemory && _clearMemory->isUncollected()))
        updateMemoryRow();
    tellAlarms();
    NotificationCenter::defaultCenter().post(updateNewDiskSizeViewNotification, this);
}

void AppDelegate::updateVolumeRows() {
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
        showBootVolume(volume);
        homeDiskFreeSpace = volume.nFreeSize;
        homeDiskTotoleSpace = volume.nTotalSize;
        homeDiskWarningSize = std::int32_t(alarmOf(DSSpaceAlarmKey));
        setWarningStatusShowColor(getWarningValue());
    }
}

void AppDelegate::updateMemoryRow() {
    const MenuItem *place = m_menu.memoryItem();
    if (!place)
        return;
    MenuItem row = memoryRow();
    row.clicked = place->clicked;
    m_menu.setRow(*place, std::move(row));
}

void AppDelegate::tellAlarms() {
    for (const DSVolumeInfo &volume : m_alarm.crossed(*volsInfo, int(alarmOf(DSSpaceAlarmKey)))) {
        DesktopNotification notification;
        notification.summary = localizedText("LOW_SPACE");
        notification.body = localizedText("LOW_SPACE_OF")
                                .arg(nameInSentence(volume.volumeName),
                                     readersSize(volume.freeSpace), readersSize(volume.totalSpace));
        notification.actionLabel = localizedText("Scan");
        notification.action = [self = QPointer(this)](const std::string &token) {
            if (self)
                self->scanNow(token);
        };
        Platform::current().notifier->show(notification);
    }
}

// -- What happens to volumes

void AppDelegate::handleMount(const Notification &notification) {
    DSCommVolumeNottification(notification, QStringLiteral("mounted"));
}

void AppDelegate::handleUnmount(const Notification &notification) {
    DSCommVolumeNottification(notification, QStringLiteral("unmounted"));
}

void AppDelegate::DSCommVolumeNottification(const Notification &notification, const QString &word) {
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

void AppDelegate::handleOpenFinder(const Notification &notification) {
    openFinderWhenClickItems(
        paths::fromVariant(notification.userInfo.value(QStringLiteral("object"))));
}

void AppDelegate::openFinderWhenClickItems(const std::filesystem::path &path) {
    m_menu.cancelTracking();
    if (!VolumesManager().openVolRootDir(path))
        Q_EMIT alertRequested(localizedText("CANNOT_OPEN_FINDER"));
}

// The rows say at once that an eject of theirs has begun.
void AppDelegate::markEjecting() {
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

void AppDelegate::eject(std::int16_t volRefNumber) {
    m_ejector->ejectSingleVolume(volRefNumber);
    markEjecting();
}

void AppDelegate::rejestAllDisk() {
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

void AppDelegate::ejected(const std::vector<VolumeEjectAttempt> &attempts) {
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

void AppDelegate::allEjected(int result, const std::vector<VolumeEjectAttempt> &attempts) {
    if (result < 0) {
        m_bubbles.initBubbleViewWith({localizedText("NO_HAVE_REMOVABLE"), {}});
        m_menu.setEnabled(MenuAction::EjectAll, true);
        return;
    }
    ejected(attempts);
}

void AppDelegate::cleanMemoryClickAction(const Notification &) {
    if (!LicenceGate::isOpen())
        return;
    if (!_clearMemory)
        _clearMemory = std::make_unique<ClearMemory>();
    m_releaseSeen = false;
    if (_clearMemory->clearMemory() < 0)
        updateMemoryRow();
}

} // namespace brightsweep
