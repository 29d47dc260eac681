#pragma once

#include "platform/VolumeSource.h"
#include "volumes/BubbleController.h"
#include "volumes/SpaceAlarm.h"
#include "volumes/StatusMenu.h"
#include "volumes/VolumeEjector.h"
#include "volumes/VolumesInfo.h"

#include <QObject>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brightsweep {

struct Notification;

/// The volumes in the status item's menu: their rows, the ejecting of them, and the word when one
/// runs low. It knows the latest records; whoever shows the boot volume is told of it. Main thread.
class VolumeRows : public QObject {
    Q_OBJECT

public:
    /// `scan` is what the low-space notification offers, with its activation token.
    VolumeRows(StatusMenu &menu, BubbleController &bubbles,
               std::function<void(const std::string &)> scan, QObject *parent = nullptr);

    /// Begins anew with the volumes of a source.
    void begin(VolumeSource &source);
    /// Enumerates anew; null without a boot volume.
    const DSVolumeInfo *getBootVolume();
    /// The image of the status item for a boot volume; empty without one.
    static QString imageNameOf(const DSVolumeInfo *boot);
    /// The same at another alarm level than the one in the settings, in percent.
    static QString imageNameOf(const DSVolumeInfo *boot, float alarmPercent);
    /// Whether there are as many volumes as the menu was built with. One in another's place does
    /// not count.
    bool hasMenusCount() const { return volsInfo && volsInfo->size() == previousCount; }
    /// The boot volume was at its alarm level or below it when the rows were last refreshed.
    bool getWarningValue() const;

    // -- The menu's content

    /// Puts the volumes into the menu, a header above each kind.
    void addMenu();
    /// Whether "Eject All" is to be had.
    bool canEjectAll() const;
    void updateRows();
    /// Tells once of each volume that has come down to its alarm.
    void tellAlarms();

    // -- What happens to volumes

    void eject(std::int16_t volRefNumber);
    void ejectAll();
    void DSCommVolumeNottification(const Notification &notification, const QString &word);

Q_SIGNALS:
    void bootVolumeSeen(const brightsweep::DSVolumeInfo &volume);
    void warningChanged(bool warning);

private:
    MenuItem rowOf(const DSVolumeInfo &volume, int index, int alarmPercent) const;
    void markEjecting();
    void ejected(const std::vector<VolumeEjectAttempt> &attempts);
    void allEjected(int result, const std::vector<VolumeEjectAttempt> &attempts);

    StatusMenu &m_menu;
    BubbleController &m_bubbles;
    const std::function<void(const std::string &)> m_scan;
    std::unique_ptr<VolumesInfo> voluInfo;
    std::unique_ptr<VolumeEjector> m_ejector;
    std::map<std::int16_t, QString> m_ejectingNames; // of volumes that may have gone by the answer
    SpaceAlarm m_alarm;
    /// The latest records; they belong to voluInfo.
    const std::vector<DSVolumeInfo> *volsInfo = nullptr;
    std::uint64_t previousCount = 0;
    std::uint64_t homeDiskFreeSpace = 0;
    std::uint64_t homeDiskTotoleSpace = 0;
    std::int32_t homeDiskWarningSize = 0;
};

/// The alarm of a setting, in percent of the whole.
float alarmOf(const QString &key);
/// The same as a row's errorValue holds it.
QString alarmText(const QString &key);

} // namespace brightsweep
