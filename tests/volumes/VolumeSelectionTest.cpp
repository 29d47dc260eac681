#include "linux/VolumeSelection.h"
#include "platform/linux/ReferenceNumbers.h"
#include "platform/linux/RemoteFigures.h"
#include "platform/linux/VolumeHolders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace brightsweep::test {
namespace {

using Roots = std::vector<std::string>;

// Lines as of the mount table, without their first two numbers: device, root, place, type, source
// and options of the file system.
struct Row {
    const char *device;
    const char *root;
    const char *place;
    const char *type;
    const char *source;
    const char *options = "rw";
    int parent = 1;
};

std::vector<Mount> table(const std::vector<Row> &rows) {
    std::string text;
    int id = 0;
    for (const Row &row : rows)
        text += std::to_string(++id) + " " + std::to_string(row.parent) + " " + row.device + " " +
                row.root + " " + row.place + " rw - " + row.type + " " + row.source + " " +
                row.options + "\n";
    return parseMountTable(text);
}

Roots roots(const std::vector<Row> &rows, const std::string &prefix = {}) {
    Roots result;
    for (const SelectedVolume &volume : selectVolumes(table(rows), {prefix, "/home/u"}))
        result.push_back(volume.mount.mountPoint);
    return result;
}

constexpr Row root = {"8:1", "/", "/", "ext4", "/dev/sda1", "rw", 0};

TEST(VolumeSelection, WhatIsAVolume) {
    const struct {
        Row row;
        bool listed;
        VolumeKind kind = VolumeKind::BlockDevice;
    } rows[] = {
        {{"8:17", "/", "/media/stick", "vfat", "/dev/sdb1"}, true},
        {{"8:18", "/", "/media/win", "fuseblk", "/dev/sdb2", "rw,user_id=0"}, true},
        {{"0:40", "/", "/data", "btrfs", "/dev/sdc"}, true},
        {{"7:1", "/", "/media/image", "iso9660", "/dev/loop1"}, true},
        {{"0:50", "/", "/net/a", "nfs4", "server:/a", "rw,addr=10.0.0.1"},
         true,
         VolumeKind::Network},
        {{"0:51", "/", "/net/b", "cifs", "//server/b"}, true, VolumeKind::Network},
        {{"0:52", "/", "/home/u/far", "fuse.sshfs", "u@host:/", "rw,user_id=0"},
         true,
         VolumeKind::Network},
        {{"0:53", "/", "/home/u/web", "fuse", "https://host/dav", "rw,user_id=7"},
         true,
         VolumeKind::Network},
        {{"0:54", "/", "/home/u/secret", "fuse.gocryptfs", "/x", "rw,user_id=0"},
         true,
         VolumeKind::UserFileSystem},
        {{"0:55", "/", "/x/own", "fuse.archive", "a.zip", "rw,user_id=1000"},
         true,
         VolumeKind::UserFileSystem},
        {{"0:56", "/", "/srv/x", "fuse.x", "x", "rw,user_id=0"}, false},
        {{"0:57", "/", "/var/lib/lxcfs", "fuse.lxcfs", "lxcfs", "rw,user_id=0"}, false},
        {{"0:58", "/", "/run/user/1/doc", "fuse.portal", "portal", "rw,user_id=1000"}, false},
        {{"0:59", "/", "/run/user/1/gvfs", "fuse.gvfsd-fuse", "g", "rw,user_id=1000"}, false},
        {{"0:60", "/", "/tmp/.mount_ToolX", "fuse.Tool.AppImage", "T", "ro,user_id=1000"}, false},
        {{"0:61", "/", "/tmp/.mount_Other", "fuse", "T", "ro,user_id=1000"}, false},
        {{"7:2", "/", "/snap/core/1", "squashfs", "/dev/loop2"}, false},
        {{"8:3", "/", "/boot", "ext4", "/dev/sda3"}, false},
        {{"8:4", "/", "/boot/efi", "vfat", "/dev/sda4"}, false},
        {{"8:5", "/", "/efi", "vfat", "/dev/sda5"}, false},
        {{"8:6", "/", "/bootleg", "ext4", "/dev/sda6"}, true},
        {{"0:5", "/", "/proc", "proc", "proc"}, false},
        {{"0:7", "/", "/media/tmp", "tmpfs", "tmpfs"}, false},
        {{"0:8", "/", "/media/o", "overlay", "overlay"}, false},
        {{"0:9", "/", "/net/auto", "autofs", "systemd-1"}, false},
        {{"0:4", "/user:[1]", "/run/ns", "nsfs", "nsfs"}, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.row.place);
        const auto volumes = selectVolumes(table({root, row.row}), {"", "/home/u"});
        ASSERT_EQ(volumes.size(), row.listed ? 2u : 1u);
        EXPECT_EQ(volumes[0].mount.mountPoint, "/");
        EXPECT_EQ(volumes.back().kind, row.listed ? row.kind : VolumeKind::BlockDevice);
    }
}

TEST(VolumeSelection, OneMountStandsForADevice) {
    EXPECT_EQ(roots({root, {"8:1", "/srv", "/media/bind", "ext4", "/dev/sda1"}}), Roots{"/"});
    EXPECT_EQ(roots({{"0:30", "/@", "/", "btrfs", "/dev/sda1", "rw", 0},
                     {"0:30", "/@home", "/home", "btrfs", "/dev/sda1"}}),
              Roots{"/"});
    EXPECT_EQ(roots({root,
                     {"8:17", "/part", "/srv/part", "ext4", "/dev/sdb1"},
                     {"8:17", "/", "/media/whole", "ext4", "/dev/sdb1"},
                     {"8:17", "/", "/media/again", "ext4", "/dev/sdb1"}}),
              (Roots{"/", "/media/whole"}));
    EXPECT_EQ(roots({root, {"8:33", "/a", "/media/a", "ext4", "/dev/sdc1"}}),
              (Roots{"/", "/media/a"}));
    EXPECT_EQ(roots({root,
                     {"8:3", "/", "/boot", "ext4", "/dev/sda3"},
                     {"8:3", "/", "/media/b", "ext4", "/dev/sda3"}}),
              Roots{"/"});
    EXPECT_EQ(roots({root,
                     {"0:70", "/", "/tank", "zfs", "tank"},
                     {"0:71", "/", "/tank/home", "zfs", "tank/home"}}),
              (Roots{"/", "/tank"}));
    // Listed in mount order, the root first wherever it stands.
    EXPECT_EQ(roots({{"8:18", "/", "/z", "ext4", "/dev/sdb2", "rw", 3},
                     {"8:17", "/", "/a", "ext4", "/dev/sdb1", "rw", 3},
                     {"8:1", "/", "/", "ext4", "/dev/sda1", "rw", 0}}),
              (Roots{"/", "/z", "/a"}));
}

TEST(VolumeSelection, WhatIsMountedOverIsHidden) {
    EXPECT_EQ(roots({root,
                     {"8:17", "/", "/media/a", "ext4", "/dev/sdb1"},
                     {"8:18", "/", "/media/a", "ext4", "/dev/sdb2", "rw", 2}}),
              (Roots{"/", "/media/a"}));
    EXPECT_EQ(roots({root,
                     {"8:17", "/", "/media/a/in", "ext4", "/dev/sdb1"},
                     {"0:90", "/", "/media", "tmpfs", "tmpfs"}}),
              Roots{"/"});
    EXPECT_EQ(roots({root,
                     {"8:17", "/", "/media/a", "ext4", "/dev/sdb1"},
                     {"8:18", "/", "/media/a/in", "ext4", "/dev/sdb2", "rw", 2}}),
              (Roots{"/", "/media/a", "/media/a/in"}));
}

TEST(VolumeSelection, APrefixNarrowsTheSystem) {
    const std::vector<Row> rows = {root,
                                   {"8:17", "/", "/media/a", "ext4", "/dev/sdb1"},
                                   {"8:18", "/", "/rescue/media/b", "ext4", "/dev/sdb2"},
                                   {"8:19", "/", "/rescue/boot", "ext4", "/dev/sdb3"},
                                   {"8:20", "/", "/rescued", "ext4", "/dev/sdb4"}};
    EXPECT_EQ(roots(rows, "/rescue"), (Roots{"/", "/rescue/media/b"}));
}

TEST(ReferenceNumbers, ArePositiveDistinctAndTheSameForAll) {
    std::mt19937_64 random(7);
    std::set<MountIdentity> drawn = {0, 32766, 32767, 65534, 98301};
    while (drawn.size() < 3000)
        drawn.insert(random());
    std::vector<MountIdentity> identities(drawn.begin(), drawn.end());
    ReferenceNumbers numbers;
    const auto first = numbers.assign(identities);
    std::shuffle(identities.begin(), identities.end(), random);
    ReferenceNumbers other;
    const auto second = other.assign(identities);
    EXPECT_EQ(std::set<std::int16_t>(first.begin(), first.end()).size(), drawn.size());
    EXPECT_GT(*std::min_element(first.begin(), first.end()), 0);
    std::map<MountIdentity, std::int16_t> byIdentity;
    std::size_t i = 0;
    for (const MountIdentity identity : drawn)
        byIdentity[identity] = first[i++];
    for (i = 0; i < identities.size(); ++i)
        EXPECT_EQ(second[i], byIdentity[identities[i]]);
    // What remains keeps its number, also where it had to give way to one that has gone.
    EXPECT_EQ(numbers.assign({65534})[0], byIdentity[65534]);
}

TEST(RemoteFigures, ReadsWhatTheToolPrints) {
    EXPECT_EQ(parseFigures("4096 10 4\n"), (VolumeFigures{40960, 16384}));
    for (const char *text :
         {"", "4096", "4096 10", "x 1 2", "4096 -1 2", "4096 18446744073709551615 1"})
        EXPECT_FALSE(parseFigures(text)) << text;
}

TEST(VolumeHolders, TellsMappingsOfTheDevice) {
    const char *const line = "7f0-7f1 r-xp 00001000 07:1f 12345   /media/x/lib.so";
    EXPECT_TRUE(mapsDevice(line, 7, 31));
    EXPECT_FALSE(mapsDevice(line, 7, 1));
    EXPECT_FALSE(mapsDevice("7f0-7f1 r-xp 0", 0, 0));
    EXPECT_FALSE(mapsDevice("", 0, 0));
}

} // namespace
} // namespace brightsweep::test
