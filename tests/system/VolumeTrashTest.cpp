#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "removal/MoveToTrash.h"
#include "removal/NvAuthorization.h"
#include "support/CleanableMachine.h"
#include "support/CommandLine.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "system/PrivateMachine.h"
#include "system/SilentServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <unistd.h>

namespace brightsweep::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A volume below the system root, unmounted at the end.
class Volume {
public:
    Volume(const std::string &device, std::filesystem::path place) : m_place(std::move(place)) {
        PrivateMachine::current().mountDisk(device, m_place);
    }
    ~Volume() { ::umount2(m_place.c_str(), UMOUNT_NOFOLLOW); }
    Volume(const Volume &) = delete;
    Volume &operator=(const Volume &) = delete;

private:
    std::filesystem::path m_place;
};

ChildResult cleanTrash(const std::vector<std::string> &more = {}) {
    std::vector<std::string> arguments = {BRIGHTSWEEP_CLI, "--json", "clean", "--category", "4"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    // A home of root's has no place for the user's lock; a session does.
    const auto runtime = TestEnvironment::current().root() / "session";
    std::filesystem::create_directories(runtime);
    EXPECT_EQ(::chown(runtime.c_str(), unprivilegedUser, unprivilegedUser), 0);
    return runProgram(arguments, {{"XDG_RUNTIME_DIR", runtime}}, RunAs::Unprivileged);
}

TEST(VolumeTrash, OnlySoundTrashesOfFurtherVolumesAreEmptied) {
    auto &machine = PrivateMachine::current();
    const std::string disk = machine.makeMemoryDisk();
    ASSERT_FALSE(disk.empty()) << "the kernel makes no block device of memory";
    TestTree home(TestEnvironment::current().home());
    const std::string own = home.file(".local/share/Trash/files/own");
    home.own(".local/share/Trash/files", unprivilegedUser);
    {
        const auto place = TestEnvironment::current().system() / "media/disk";
        const Volume mounted(disk, place);
        TestTree volume(place);
        const std::string user = std::to_string(unprivilegedUser);
        const std::string shared = ".Trash/" + user;
        const std::string single = ".Trash-" + user;
        const auto inShared = volume.file(shared + "/files/a", "aa").native();
        volume.file(shared + "/info/a.trashinfo");
        const auto inSingle = volume.file(single + "/files/b", "b").native();
        volume.file(".Trash-1/files/of another");
        volume.file("kept");
        for (const std::string &trash : {shared, single}) {
            volume.own(trash, unprivilegedUser);
            volume.mode(trash, 0700);
        }
        volume.mode(".Trash", 01777);
        const auto before = volume.snapshot();
        const auto listed = [] {
            return pathsIn(documentOf(cleanTrash().output, "clean"), "removed");
        };

        EXPECT_THAT(listed(), ElementsAre(own, inShared, inSingle));
        volume.mode(".Trash", 0777);
        EXPECT_THAT(listed(), ElementsAre(own, inSingle)) << "not sticky";
        volume.mode(".Trash", 01777);
        volume.mode(single, 0755);
        EXPECT_THAT(listed(), ElementsAre(own, inShared)) << "open to others";
        ASSERT_EQ(::rename(volume.path(single).c_str(), volume.path("elsewhere").c_str()), 0);
        volume.mode("elsewhere", 0700);
        volume.link(single, "elsewhere");
        EXPECT_THAT(listed(), ElementsAre(own, inShared)) << "a link";
        ASSERT_EQ(::unlink(volume.path(single).c_str()), 0);
        ASSERT_EQ(::rename(volume.path("elsewhere").c_str(), volume.path(single).c_str()), 0);
        EXPECT_THAT(changes(before, volume.snapshot()), IsEmpty());

        EXPECT_EQ(cleanTrash({"--apply"}).status, 0);
        EXPECT_THAT(changes(before, volume.snapshot()),
                    UnorderedElementsAre("- " + shared + "/files/a",
                                         "- " + shared + "/info/a.trashinfo",
                                         "- " + single + "/files/b"));
    }
    machine.clear();
}

// An item goes to the trash of its own volume, where a clean finds it, and is told of from the top.
TEST(VolumeTrash, TakesWhatIsThrownAwayOnIt) {
    auto &machine = PrivateMachine::current();
    const std::string disk = machine.makeMemoryDisk();
    ASSERT_FALSE(disk.empty()) << "the kernel makes no block device of memory";
    {
        const auto place = TestEnvironment::current().system() / "media/disk";
        const Volume mounted(disk, place);
        TestTree volume(place);
        const std::string shared = ".Trash/" + std::to_string(::geteuid());
        const std::string single = ".Trash-" + std::to_string(::geteuid());
        MoveToTrash trash;
        const auto throwAway = [&](const char *name) {
            const auto file = volume.file(name);
            const auto item = Platform::current().files->openItem(*NvAuthorization::targetOf(file));
            EXPECT_FALSE(trash.check(*item));
            return trash.move(*item);
        };
        EXPECT_FALSE(throwAway("folder/a b"));
        EXPECT_TRUE(volume.exists(single + "/files/a b"));
        const std::string text = textOf(volume.path(single + "/info/a b.trashinfo"));
        EXPECT_NE(text.find("\nPath=folder/a%20b\n"), std::string::npos) << text;
        volume.directory(".Trash");
        volume.mode(".Trash", 01777);
        EXPECT_FALSE(throwAway("at the top"));
        EXPECT_TRUE(volume.exists(shared + "/files/at the top"));
        const auto found = Platform::current().directories->trashesOfVolume(place);
        EXPECT_EQ(found.folders.size(), 2u);
        // One that others can write to is no trash, and the user's own is not made where it fails.
        volume.mode(".Trash", 0777);
        volume.mode(single, 0755);
        const auto file = volume.file("stays");
        const auto item = Platform::current().files->openItem(*NvAuthorization::targetOf(file));
        EXPECT_EQ(trash.move(*item), RemovalError::NoTrash);
        EXPECT_TRUE(volume.exists("stays"));
    }
    machine.clear();
}

// What is mounted is never asked: its server may be dead, and then whoever asks waits for ever. The
// rest counts and goes, and what holds the mount says so.
TEST(SilentMount, BelowACategoryFolderHangsNothing) {
    needRoot();
    PrivateMachine::current();
    TestTree home(TestEnvironment::current().home());
    home.file(".cache/direct/x");
    home.directory(".cache/itself");
    home.file(".cache/holder/sibling", "12345");
    home.directory(".cache/holder/mnt");
    home.directory("Downloads");
    home.directory(".config/program");
    for (const auto manner : {SilentServer::Manner::NeverReads, SilentServer::Manner::Swallows}) {
        const SilentServer itself(home.path(".cache/itself"), manner);
        const SilentServer below(home.path(".cache/holder/mnt"), manner);
        const SilentServer downloads(home.path("Downloads"), manner);
        const SilentServer program(home.path(".config/program"), manner);
        home.file(".cache/goes");
        const auto scan = runProgram({BRIGHTSWEEP_CLI, "--json", "scan"});
        EXPECT_EQ(scan.status, 0);
        EXPECT_NE(scan.errors.find("Downloads is not cleaned, since it is the top of a volume."),
                  std::string::npos);
        const auto clean = runProgram(
            {BRIGHTSWEEP_CLI, "--json", "clean", "--category", "1", "--category", "3", "--apply"});
        EXPECT_EQ(clean.status, 3);
        const auto document = documentOf(clean.output, "clean");
        EXPECT_THAT(pathsIn(document, "failed"),
                    UnorderedElementsAre(home.path(".cache/itself"), home.path(".cache/holder")));
        EXPECT_FALSE(home.exists(".cache/goes"));
        EXPECT_TRUE(home.exists(".cache/holder/sibling"));
        EXPECT_EQ(clean.output.find("holds another volume") == std::string::npos, false);
    }
}

} // namespace
} // namespace brightsweep::test
