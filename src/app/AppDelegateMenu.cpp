// The status item, its menu and their refresh.

#include "app/AppDelegate.h"
#include "app/LicenceGate.h"
#include "core/SettingKeys.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/MemorySource.h"
#include "platform/Platform.h"
#include "volumes/VolumeNotifications.h"
#include "volumes/VolumesManager.h"

namespace brightsweep {

namespace {

const QString memoryTitle = QString::number(memoryStorage);

constexpr char memorySectionKey[] = QT_TRID_NOOP("FREE_MEMORY");

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
    return m_volumes.getBootVolume();
}

QString AppDelegate::getStatusImage() {
    return VolumeRows::imageNameOf(getBootVolume());
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
    return m_volumes.getWarningValue();
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

void AppDelegate::addMenu() {
    setStatusIamge();
    m_volumes.addMenu();
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
    m_menu.addSeparator();
    m_menu.addAction(MenuAction::EjectAll, QStringLiteral(QT_TRID_NOOP("Eject All")),
                     QStringLiteral("e"), m_volumes.canEjectAll());
    m_menu.addSeparator();
    m_menu.addAction(MenuAction::MainWindow, QStringLiteral(QT_TRID_NOOP("Main Window")), {}, true);
    m_menu.addAction(MenuAction::LaunchAtLogin, QStringLiteral(QT_TRID_NOOP("Launch at login")), {},
                     true, LaunchAtLogin::isOn());
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
    if (m_volumes.hasMenusCount())
        showImage(VolumeRows::imageNameOf(boot));
    else
        refMenuItemWhenDeleteAndAdd();
    m_volumes.updateRows();
    // Nobody sees it otherwise; it is read when the menu opens. A release is collected by reading.
    if (m_menu.isMenuVisible() || (_clearMemory && _clearMemory->isUncollected()))
        updateMemoryRow();
    m_volumes.tellAlarms();
    NotificationCenter::defaultCenter().post(updateNewDiskSizeViewNotification, this);
}

void AppDelegate::updateMemoryRow() {
    const MenuItem *place = m_menu.memoryItem();
    if (!place)
        return;
    MenuItem row = memoryRow();
    row.clicked = place->clicked;
    m_menu.setRow(*place, std::move(row));
}

// -- What happens to volumes

void AppDelegate::handleMount(const Notification &notification) {
    m_volumes.DSCommVolumeNottification(notification, QStringLiteral("mounted"));
}

void AppDelegate::handleUnmount(const Notification &notification) {
    m_volumes.DSCommVolumeNottification(notification, QStringLiteral("unmounted"));
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

void AppDelegate::rejestAllDisk() {
    m_volumes.ejectAll();
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
