#include "linux/MountTableReader.h"
#include "platform/Platform.h"
#include "platform/VolumeSource.h"
#include "support/TestEnvironment.h"
#include "system/PrivateMachine.h"
#include "system/SilentServer.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>

namespace brightsweep::test {
namespace {

namespace fs = std::filesystem;

CommandResult cli(const std::string &arguments) {
    return shell(quoted(BRIGHTSWEEP_CLI) + " " + arguments + " 2>&1");
}

QJsonArray listing() {
    const auto result = shell(quoted(BRIGHTSWEEP_CLI) + " --json volumes 2>/dev/null");
    return QJsonDocument::fromJson(
               QByteArray::fromStdString(result.output))[QStringLiteral("volumes")]
        .toArray();
}

std::optional<QJsonObject> listed(const std::string &root) {
    for (const auto &volume : listing()) {
        if (volume[QStringLiteral("root")].toString().toStdString() == root)
            return volume.toObject();
    }
    return std::nullopt;
}

int referenceOf(const std::string &root) {
    const auto volume = listed(root);
    return volume ? (*volume)[QStringLiteral("refNumber")].toInt() : 0;
}

VolumeSource &source() {
    return *Platform::current().volumes;
}

std::optional<VolumeFacts> factsOf(const std::string &root) {
    for (const VolumeFacts &facts : source().volumes()) {
        if (facts.root == root)
            return facts;
    }
    return std::nullopt;
}

// A program with a file of the volume open, until it is told to go.
class Holder {
public:
    explicit Holder(const std::string &file) {
        m_pipe = ::popen(
            ("cp /proc/self/comm " + quoted(file) + "; exec tail -f " + quoted(file)).c_str(),
            "re");
        // What it prints shows that it has opened the file.
        m_opened = std::fgetc(m_pipe) != EOF;
    }
    ~Holder() {
        shell("for p in /proc/[0-9]*; do [ \"$(cat $p/comm 2>/dev/null)\" = tail ] && "
              "[ \"$(awk '/^PPid/{print $2}' $p/status)\" = " +
              std::to_string(::getpid()) + " ] && kill ${p#/proc/}; done");
        ::pclose(m_pipe);
    }
    bool opened() const { return m_opened; }

private:
    std::FILE *m_pipe;
    bool m_opened = false;
};

class VolumesSystemTest : public testing::Test {
protected:
    void SetUp() override {
        m_machine = &PrivateMachine::current();
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
    }
    void TearDown() override {
        if (m_machine)
            m_machine->clear();
    }
    PrivateMachine &machine() { return *m_machine; }

private:
    PrivateMachine *m_machine = nullptr;
};

TEST_F(VolumesSystemTest, ListsWhatAUserWouldCallAVolume) {
    const std::string disk = machine().makeDisk("Holiday");
    machine().mountDisk(disk, "/media/disk");
    machine().mountDisk(machine().makeDisk("boot"), "/boot/inner");
    for (const char *place : {"/media/bind", "/media/memory", "/media/both", "/media/twice"})
        fs::create_directories(place);
    ASSERT_EQ(::mount("/media/disk", "/media/bind", nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(::mount(disk.c_str(), "/media/twice", "ext4", 0, nullptr), 0);
    ASSERT_EQ(::mount("memory", "/media/memory", "tmpfs", 0, nullptr), 0);
    fs::create_directories("/media/memory/up");
    fs::create_directories("/media/memory/work");
    ASSERT_EQ(::mount("both", "/media/both", "overlay", 0,
                      "lowerdir=/media/disk,upperdir=/media/memory/up,workdir=/media/memory/work"),
              0);

    std::vector<std::string> roots;
    for (const auto &volume : listing())
        roots.push_back(volume[QStringLiteral("root")].toString().toStdString());
    EXPECT_EQ(roots, (std::vector<std::string>{"/", "/media/disk"}));

    const auto volume = listed("/media/disk").value_or(QJsonObject());
    struct statvfs status;
    ASSERT_EQ(::statvfs("/media/disk", &status), 0);
    EXPECT_EQ(volume[QStringLiteral("totalBytes")].toInteger(),
              qint64(status.f_blocks * status.f_frsize));
    EXPECT_EQ(volume[QStringLiteral("freeBytes")].toInteger(),
              qint64(status.f_bavail * status.f_frsize));
    EXPECT_EQ(volume[QStringLiteral("type")].toInt(), 4);
    EXPECT_TRUE(volume[QStringLiteral("canEject")].toBool());
    EXPECT_FALSE(volume[QStringLiteral("default")].toBool());
    EXPECT_TRUE(listed("/").value_or(QJsonObject())[QStringLiteral("default")].toBool());

    ::setenv("BRIGHTSWEEP_SYSTEM_ROOT", "/boot", 1);
    EXPECT_EQ(referenceOf("/media/disk"), 0);
    EXPECT_NE(referenceOf("/boot/inner"), 0);
}

TEST_F(VolumesSystemTest, EjectsThroughTheService) {
    machine().startDisks();
    const std::string disk = machine().makeDisk("Holiday Pictures");
    machine().mountDisk(disk, "/media/disk");
    fs::create_directories("/media/bind");
    ASSERT_EQ(::mount("/media/disk", "/media/bind", nullptr, MS_BIND, nullptr), 0);
    const auto volume = listed("/media/disk").value_or(QJsonObject());
    EXPECT_EQ(volume[QStringLiteral("name")].toString().toStdString(), "Holiday Pictures");
    EXPECT_EQ(volume[QStringLiteral("type")].toInt(), 4);

    const auto result = cli("volumes eject " + std::to_string(referenceOf("/media/disk")));
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_FALSE(listed("/media/disk"));
    EXPECT_FALSE(listed("/media/bind")) << "every mount of the drive goes";
    EXPECT_FALSE(machine().isAttached(disk));
    EXPECT_NE(machine().wordsOfDisks().find("Unmounted " + disk), std::string::npos)
        << machine().wordsOfDisks();
    EXPECT_NE(cli("volumes eject " + std::to_string(referenceOf("/"))).status, 0);
    EXPECT_TRUE(listed("/"));
}

TEST_F(VolumesSystemTest, ARefusalNamesTheProgram) {
    for (const bool withService : {true, false}) {
        SCOPED_TRACE(withService);
        if (withService)
            machine().startDisks();
        else
            machine().stopBus();
        const std::string disk = machine().makeDisk("busy");
        machine().mountDisk(disk, "/media/disk");
        std::ofstream("/media/disk/kept") << "kept";
        const std::string eject = "volumes eject " + std::to_string(referenceOf("/media/disk"));
        {
            const Holder holder("/media/disk/held");
            ASSERT_TRUE(holder.opened());
            const auto result = cli(eject);
            EXPECT_EQ(result.status, 1);
            EXPECT_NE(result.output.find("held by tail"), std::string::npos) << result.output;
            EXPECT_TRUE(listed("/media/disk")) << "neither lazy nor forced";
            EXPECT_TRUE(fs::exists("/media/disk/kept"));
        }
        EXPECT_EQ(cli("volumes eject --all").status, 0);
        EXPECT_FALSE(listed("/media/disk"));
        EXPECT_FALSE(machine().isAttached(disk));
        machine().clear();
    }
    machine().stopDisks();
}

TEST_F(VolumesSystemTest, FindsTheServiceWhenItComesBack) {
    machine().stopDisks();
    machine().stopBus();
    const std::string disk = machine().makeDisk("late");
    machine().mountDisk(disk, "/media/disk");
    ASSERT_TRUE(factsOf("/media/disk"));
    source().settle(30'000);
    machine().startDisks();
    fs::remove_all("/dev/disk"); // so that only the service knows the label
    for (int restart = 0; restart < 2; ++restart) {
        ASSERT_TRUE(eventually([] {
            source().volumes();
            source().settle(30'000);
            return factsOf("/media/disk")->name == "late";
        }));
        machine().stopDisks();
        machine().stopBus();
        EXPECT_EQ(factsOf("/media/disk")->name, "late") << "what was said last stands";
        machine().startDisks();
        fs::remove_all("/dev/disk");
    }
}

TEST_F(VolumesSystemTest, TheServiceSaysWhatADriveIs) {
    machine().stopDisks();
    machine().stopBus();
    const std::string disk = machine().makeMemoryDisk();
    ASSERT_FALSE(disk.empty()) << "the kernel makes no block device of memory";
    machine().mountDisk(disk, "/media/stick");
    struct stat status;
    ASSERT_EQ(::stat(disk.c_str(), &status), 0);
    const std::string number = std::to_string(status.st_rdev);
    const std::string log = TestEnvironment::current().work() / "calls";

    int changes = 0;
    source().setFactsHandler([&] { ++changes; });
    EXPECT_EQ(factsOf("/media/stick")->extendedAttributes, 0u);
    source().settle(30'000);
    EXPECT_EQ(source().eject(factsOf("/media/stick")->refNumber).status, EPERM);
    machine().startDisks({BRIGHTSWEEP_FAKE_DISKS, number.c_str(), log.c_str()});
    EXPECT_TRUE(eventually([&] {
        source().volumes();
        QCoreApplication::processEvents();
        return changes > 0;
    }));
    source().volumes();
    source().settle(30'000);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 1);
    const auto volume = listed("/media/stick").value_or(QJsonObject());
    EXPECT_EQ(volume[QStringLiteral("type")].toInt(), 1);
    EXPECT_EQ(volume[QStringLiteral("name")].toString(), QStringLiteral("Stick"));
    EXPECT_TRUE(volume[QStringLiteral("canEject")].toBool());

    // The removable bit alone changes neither the class nor the eject flag.
    machine().stopDisks();
    std::ofstream(log + ".fixed") << "now";
    machine().startDisks({BRIGHTSWEEP_FAKE_DISKS, number.c_str(), log.c_str()});
    EXPECT_TRUE(eventually([&] {
        source().settle(30'000);
        QCoreApplication::processEvents();
        return (factsOf("/media/stick")->extendedAttributes & volumeIsRemovableBit) == 0;
    }));
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 1);

    const auto calls = [&] {
        return shell("cat " + quoted(log) + "; rm -f " + quoted(log)).output;
    };
    std::ofstream(log + ".refuse") << "now";
    EXPECT_EQ(source().eject(factsOf("/media/stick")->refNumber).status, EBUSY);
    EXPECT_EQ(calls(), "Filesystem.Unmount\n") << "nothing is let go of what stays";
    fs::remove(log + ".refuse");
    const auto result = source().eject(factsOf("/media/stick")->refNumber);
    EXPECT_EQ(result.status, 0) << result.message;
    EXPECT_EQ(calls(), "Filesystem.Unmount\nEncrypted.Lock\nDrive.Eject\nDrive.PowerOff\n");
    EXPECT_FALSE(result.driveStays);
    EXPECT_FALSE(factsOf("/media/stick"));

    const struct {
        const char *kept;
        int status;
        std::string calls;
    } refusals[] = {
        {"Lock", EPERM, "Filesystem.Unmount\nEncrypted.Lock\n"},
        {"Eject", EPERM, "Filesystem.Unmount\nEncrypted.Lock\nDrive.Eject\n"},
        {"PowerOff", 0, "Filesystem.Unmount\nEncrypted.Lock\nDrive.Eject\nDrive.PowerOff\n"},
    };
    for (const auto &row : refusals) {
        SCOPED_TRACE(row.kept);
        machine().mountDisk(disk, "/media/stick");
        const std::string kept = log + ".keep-" + row.kept;
        std::ofstream(kept) << "now";
        const auto refused = source().eject(factsOf("/media/stick")->refNumber);
        EXPECT_EQ(refused.status, row.status);
        EXPECT_TRUE(refused.driveStays);
        EXPECT_NE(refused.message.find("kept"), std::string::npos) << refused.message;
        EXPECT_EQ(calls(), row.calls);
        EXPECT_FALSE(factsOf("/media/stick"));
        fs::remove(kept);
    }
    source().setFactsHandler(nullptr);
    machine().stopDisks();
}

TEST_F(VolumesSystemTest, ASilentServerDelaysNobody) {
    for (const auto manner : {SilentServer::Manner::NeverReads, SilentServer::Manner::Swallows}) {
        SCOPED_TRACE(int(manner));
        const SilentServer server("/media/silent", manner);
        machine().mountDisk(machine().makeDisk("alive"), "/media/alive");
        // Each of these would hang; the limit of the test's time is what fails then.
        ASSERT_TRUE(factsOf("/media/silent"));
        EXPECT_EQ(factsOf("/media/silent")->totalBytes, 0u);
        source().settle(50);
        EXPECT_GT(factsOf("/media/alive")->totalBytes, 0u);
        EXPECT_TRUE(listed("/media/alive")) << "the process has listed and ended";
        const auto result = cli("volumes eject " + std::to_string(referenceOf("/media/alive")));
        EXPECT_EQ(result.status, 0) << result.output;
        // A question that the server has taken holds its volume; all others are taken back.
        const bool held = manner == SilentServer::Manner::Swallows;
        const int number = factsOf("/media/silent")->refNumber;
        // Those of a process that has just ended go a moment after it.
        EXPECT_TRUE(
            eventually([&] { return source().eject(number).status == (held ? EBUSY : 0); }));
        EXPECT_EQ(factsOf("/media/silent").has_value(), held);
        machine().clear();
    }
}

TEST_F(VolumesSystemTest, ReferenceNumbersStayWithTheMount) {
    const std::string disk = machine().makeDisk("numbers");
    machine().mountDisk(disk, "/media/disk");
    const int first = factsOf("/media/disk")->refNumber;
    EXPECT_GT(first, 0);
    EXPECT_EQ(referenceOf("/media/disk"), first) << "another process";
    machine().mountDisk(machine().makeDisk("other"), "/media/other");
    EXPECT_EQ(referenceOf("/media/disk"), first) << "another mount";
    ASSERT_EQ(::umount("/media/disk"), 0);
    machine().mountDisk(disk, "/media/disk");
    EXPECT_NE(referenceOf("/media/disk"), first);
    const auto stale = cli("volumes eject " + std::to_string(first));
    EXPECT_EQ(stale.status, 1);
    EXPECT_TRUE(listed("/media/disk"));
}

TEST_F(VolumesSystemTest, MountsAreAnnounced) {
    std::vector<std::string> events;
    source().setMountHandler([&](const MountEvent &event) {
        events.push_back((event.mounted ? "+" : "-") + event.root.native());
    });
    const auto until = [&](std::vector<std::string> wanted) {
        eventually([&] {
            QCoreApplication::processEvents();
            return events == wanted;
        });
        EXPECT_EQ(events, wanted);
    };
    const std::string disk = machine().makeDisk("events");
    machine().mountDisk(disk, "/media/disk");
    until({"+/media/disk"});
    fs::create_directories("/media/bind");
    ASSERT_EQ(::mount("/media/disk", "/media/bind", nullptr, MS_BIND, nullptr), 0);
    machine().mountDisk(machine().makeDisk("more"), "/media/more");
    until({"+/media/disk", "+/media/more"});
    ASSERT_EQ(::umount("/media/more"), 0);
    until({"+/media/disk", "+/media/more", "-/media/more"});
    source().setMountHandler(nullptr);
    machine().mountDisk(machine().makeDisk("unseen"), "/media/unseen");
    QCoreApplication::processEvents();
    EXPECT_EQ(events.size(), 3u);
}

// The process ends while its threads may still talk to the services.
TEST_F(VolumesSystemTest, TheCommandEndsWellAtAnyMomentOfItsThreads) {
    machine().mountDisk(machine().makeDisk("disk"), "/media/disk");
    for (int round = 0; round < 30; ++round)
        EXPECT_EQ(cli("--quiet scan --category 4").status, 0);
}

TEST_F(VolumesSystemTest, HostileNamesAreShownAndEjected) {
    const fs::path place = "/media/line\nend \\040 \xff\xfe $(touch x) '\"";
    const std::string disk = machine().makeDisk("a\nb");
    machine().mountDisk(disk, place);
    const auto facts = factsOf(place.native());
    ASSERT_TRUE(facts);
    const auto result = cli("--json volumes");
    EXPECT_NE(result.output.find("rootBase64"), std::string::npos);
    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1) << result.output;
    EXPECT_EQ(cli("volumes eject " + std::to_string(facts->refNumber)).status, 0);
    EXPECT_FALSE(factsOf(place.native()));
}

} // namespace
} // namespace brightsweep::test
