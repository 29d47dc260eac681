#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"
#include "support/LogCapture.h"
#include "volumes/FakeVolumeSource.h"
#include "volumes/VolumesInfo.h"
#include "volumes/VolumesManager.h"
#include "volumes/WatchMountUnmount.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

constexpr std::uint32_t ejectable = volumeIsEjectableBit;
constexpr std::uint32_t removable = volumeIsRemovableBit;
constexpr std::uint32_t external = volumeIsOnExternalBusBit;
constexpr std::uint32_t everyBit = ejectable | removable | external;

TEST(VolumesInfo, ClassifiesInOrderOfDecision) {
    const struct {
        const char *what;
        std::uint32_t server;
        OpticalMedia optical;
        std::uint16_t version;
        std::uint32_t attributes;
        std::int32_t type;
        bool canEject;
    } rows[] = {
        {"plain", 0, OpticalMedia::No, 3, 0, LocalStorage, false},
        {"a server outweighs everything", 1, OpticalMedia::Yes, 3, everyBit, NetworkStorage, true},
        {"a server needs no attribute", 0x80000000, OpticalMedia::No, 0, 0, NetworkStorage, true},
        {"optical before external", 0, OpticalMedia::Yes, 3, everyBit, SuperDriver, true},
        {"optical with old attributes", 0, OpticalMedia::Yes, 2, everyBit, SuperDriver, true},
        {"external before removable", 0, OpticalMedia::No, 3, external | removable, ExternalStorage,
         true},
        {"image by elimination", 0, OpticalMedia::No, 3, removable, DiskImage, false},
        {"ejectable image", 0, OpticalMedia::No, 3, removable | ejectable, DiskImage, true},
        {"ejectable alone", 0, OpticalMedia::No, 3, ejectable, LocalStorage, true},
        {"old attributes do not count", 0, OpticalMedia::No, 2, everyBit, LocalStorage, false},
        {"other bits say nothing", 0, OpticalMedia::No, 3, ~everyBit, LocalStorage, false},
        {"a failed search says no", 0, OpticalMedia::Unknown, 3, external, ExternalStorage, true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        FakeVolumeSource source;
        VolumeFacts &facts = source.add("/media/x");
        facts.serverAddress = row.server;
        facts.optical = row.optical;
        facts.version = row.version;
        facts.extendedAttributes = row.attributes;
        VolumesInfo info(source);
        const auto &records = info.getAllVolsInfo();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].volType, row.type);
        EXPECT_EQ(records[0].bCanEject, row.canEject);
        EXPECT_EQ(records[0].volIcon, DSVolumeInfo::iconName(row.type));
    }
}

TEST(VolumesInfo, RecordsWhatIsThereInItsOrder) {
    FakeVolumeSource source;
    source.add("/mnt/last").name = "caf\xe9\n";
    source.add("/mnt/empty").totalBytes = 0;
    source.add("/").name.clear();
    source.add("/mnt/odd").parametersKnown = false;
    source.mounted.back().parametersError = -50;
    source.add("/x");
    VolumesInfo info(source);
    source.mounted[0].freeBytes = 1'500'000;
    const auto &records = info.getAllVolsInfo();
    std::vector<std::string> roots;
    for (const DSVolumeInfo &record : records)
        roots.push_back(record.volRootDir);
    EXPECT_EQ(roots, (std::vector<std::string>{"/mnt/last", "/", "/x"}));
    EXPECT_EQ(records[0].volumeName, QString(QStringLiteral("caf") + QChar(0xfffd) + QChar(u'\n')));
    EXPECT_EQ(records[0].nFreeSize, 1'500'000u);
    EXPECT_EQ(records[0].freeSpace, QStringLiteral("1.50 MB"));
    EXPECT_EQ(records[0].totalSpace, QStringLiteral("2.00 GB"));
    EXPECT_EQ(records[0].volRefNumber, 1);
    EXPECT_FALSE(records[0].bIsDefaultVol);
    EXPECT_TRUE(records[1].bIsDefaultVol);
    EXPECT_EQ(records[1].volumeName,
              paths::text(*Platform::current().facts->kernelValue("kern.hostname")));
    EXPECT_EQ(&records, &info.getAllVolsInfo()) << "one array, filled anew";
    EXPECT_EQ(records.size(), 3u);
    info.enumVolumesInfo();
    EXPECT_EQ(records.size(), 6u) << "appends";
}

TEST(VolumesInfo, AVolumeThatIsNoLongerThereEndsTheEnumeration) {
    FakeVolumeSource source;
    source.add("/");
    source.add("/media/gone").parametersKnown = false;
    source.mounted.back().parametersError = nsvErr;
    source.add("/media/behind");
    const LogCapture log;
    VolumesInfo info(source);
    EXPECT_EQ(info.getAllVolsInfo().size(), 1u);
    EXPECT_TRUE(log.has("FSGetVolumeParms failed returned -35"));
}

TEST(VolumesInfo, AMissingDeviceIsToldOnceForAMount) {
    FakeVolumeSource source;
    source.add("/").optical = OpticalMedia::Unknown;
    const auto linesLogged = [&] {
        const LogCapture log;
        VolumesInfo(source).getAllVolsInfo();
        return log.has("IOServiceGetMatchingService returned IO_OBJECT_NULL.");
    };
    EXPECT_TRUE(linesLogged());
    EXPECT_FALSE(linesLogged());
    source.mounted[0].refNumber = 2;
    EXPECT_TRUE(linesLogged()) << "another mount";
}

TEST(VolumesManager, EjectsAllThatCanBeWhateverFails) {
    FakeVolumeSource source;
    VolumesManager manager(source);
    source.add("/");
    EXPECT_EQ(manager.ejectAllVolumes(), -1);
    EXPECT_TRUE(source.ejected.empty());

    for (const char *root : {"/media/a", "/media/b", "/media/c"})
        source.add(root).extendedAttributes = external;
    source.refusals[2] = {16, "target is busy", {"editor", "shell"}};
    const LogCapture log;
    EXPECT_EQ(manager.ejectAllVolumes(), 1);
    EXPECT_EQ(source.ejected, (std::vector<std::int16_t>{2, 3, 4}));
    EXPECT_TRUE(log.has("Eject the volume 2 failed result: 16"));
    EXPECT_TRUE(log.has("editor, shell"));
    ASSERT_EQ(manager.lastEjects().size(), 3u);
    EXPECT_EQ(manager.lastEjects()[0].result.holders, (source.refusals[2].holders));
    EXPECT_EQ(manager.lastEjects()[2].result.status, 0);

    EXPECT_FALSE(manager.ejectSingleVolume(2));
    EXPECT_EQ(manager.lastEjects().size(), 1u) << "of the last call only";
    source.refusals.clear();
    EXPECT_EQ(manager.ejectAllVolumes(), 0);
    EXPECT_EQ(source.mounted.size(), 1u);
}

TEST(WatchMountUnmount, PassesTheUserInfoOn) {
    FakeVolumeSource source;
    QObject context;
    std::vector<Notification> seen;
    auto &center = NotificationCenter::defaultCenter();
    for (const QString &name : {DSVolumeMountNotification, DSVolumeUnmountNotification})
        center.addObserver(&context, name, [&](const Notification &n) { seen.push_back(n); });
    {
        const WatchMountUnmount watch(source);
        source.mountHandler({true, "Stick", "/media/St\xffick"});
        source.mountHandler({false, "Stick", "/media/St\xffick"});
        ASSERT_EQ(seen.size(), 2u);
        EXPECT_EQ(seen[0].name, QStringLiteral("DSVolumeMount"));
        EXPECT_EQ(seen[1].name, QStringLiteral("DSVolumeUnmount"));
        for (const Notification &notification : seen) {
            EXPECT_EQ(notification.object, &watch);
            EXPECT_EQ(notification.userInfo[QStringLiteral("NSWorkspaceVolumeLocalizedNameKey")],
                      QStringLiteral("Stick"));
            EXPECT_EQ(paths::fromVariant(notification.userInfo[NSDevicePath]), "/media/St\xffick");
        }
    }
    EXPECT_FALSE(source.mountHandler) << "a watcher that has gone hears nothing";
}

} // namespace
} // namespace brightsweep::test
