#include "uninstall/Uninstallation.h"
#include "linux/RemovalError.h"
#include "platform/Platform.h"
#include "removal/FakeRights.h"
#include "removal/NvAuthorization.h"
#include "support/ChildProcess.h"
#include "support/FakeApplicationSource.h"
#include "support/FakeDesktop.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "uninstall/KeptFolders.h"
#include "uninstall/LeftBehind.h"
#include "uninstall/RemovalPlanner.h"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace brightsweep {
namespace {

using namespace test;

// Beyond what counts in nanoseconds reach.
void dateFarAway(const std::filesystem::path &file) {
    const timespec time{10'000'000'000, 0};
    const timespec times[] = {time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
}

class UninstallationTest : public testing::Test {
protected:
    UninstallationTest() {
        auto &applications = Platform::current().applications;
        applications.clear();
        for (const auto kind : {ApplicationKind::Package, ApplicationKind::Folder}) {
            auto source = std::make_unique<FakeApplicationSource>(kind);
            (kind == ApplicationKind::Package ? packages : folders) = source.get();
            applications.push_back(std::move(source));
        }
        FakeRights::install();
    }
    ~UninstallationTest() override { NvAuthorization::shareNvAuthorization().freeAuthorization(); }

    InstalledApplication package(const std::string &name) {
        home.file(".config/" + name + "/settings");
        home.file(".local/share/" + name + "/data");
        InstalledApplication application;
        application.key = application.name = name;
        packages->installed.push_back(application);
        return application;
    }
    std::vector<RemovalPlan> plans() {
        const RemovalPlanner planner(packages->installed);
        std::vector<RemovalPlan> all;
        for (const auto &application : packages->installed)
            all.push_back(planner.planOf(application));
        return all;
    }
    static bool run(Uninstallation &removal) { return removal.run(*RemovalRun::begin("test").run); }

    TestTree home{TestEnvironment::current().home()};
    FakeApplicationSource *packages = nullptr;
    FakeApplicationSource *folders = nullptr;
};

TEST_F(UninstallationTest, SettingsGoAfterTheApplicationAndOnlyIfItWent) {
    for (const char *name : {"goes", "locked", "script", "dismissed", "essential"})
        package(name);
    packages->adjust = [](RemovalPlan &plan) {
        if (plan.application.key == "essential")
            plan.blocker = Blocker::Essential;
    };
    packages->answer = [&](const RemovalPlan &plan) -> RemovalResult {
        const std::string &key = plan.application.key;
        EXPECT_TRUE(home.exists(".config/" + key + "/settings")) << "before it was gone";
        if (key == "script" || key == "dismissed")
            return {
                key == "script" ? UninstallOutcome::Failed : UninstallOutcome::Dismissed, key, {}};
        if (key == "locked" && packages->tokens.back() == RightsToken{})
            return {UninstallOutcome::NeedsRights, key, {}};
        return {UninstallOutcome::Removed, {}, {key}};
    };
    const auto shown = plans();
    EXPECT_TRUE(takesRights(shown[0]));
    Uninstallation removal(shown);
    EXPECT_FALSE(run(removal));
    EXPECT_EQ(packages->removals.size(), 4u);
    EXPECT_TRUE(removal.isOpen());
    EXPECT_FALSE(home.exists(".config/goes"));
    EXPECT_TRUE(home.exists(".local/share/goes/data")) << "unticked";
    for (const char *name : {"locked", "script", "dismissed", "essential"})
        EXPECT_TRUE(home.exists(std::string(".config/") + name + "/settings")) << name;

    ASSERT_TRUE(NvAuthorization::shareNvAuthorization().allocAuthorization());
    EXPECT_FALSE(run(removal));
    EXPECT_EQ(packages->removals.size(), 5u) << "nothing but what lacked rights is tried again";
    EXPECT_FALSE(home.exists(".config/locked"));
    EXPECT_FALSE(removal.isOpen());
    EXPECT_EQ(removal.records()[2].message, "script");
}

TEST_F(UninstallationTest, SetsThatOverlapGoAsOne) {
    for (const char *name : {"one", "two", "three", "apart"})
        package(name);
    packages->adjust = [](RemovalPlan &plan) {
        plan.also = {plan.application.key == "apart" ? "library" : "with-" + plan.application.key};
        if (plan.application.key == "two")
            plan.also = {"one", "with-three"};
    };
    auto shown = plans();
    shown[1].purge = shown[2].purge = true;
    Uninstallation removal(shown);
    EXPECT_TRUE(run(removal));
    ASSERT_EQ(packages->removals.size(), 2u);
    EXPECT_FALSE(packages->removals[0].purge);
    EXPECT_EQ(packages->removals[0].alsoPurged, (std::vector<std::string>{"two", "three"}));
    EXPECT_EQ(packages->removals[0].also.size(), 4u);
    EXPECT_EQ(packages->removals[1].also, std::vector<std::string>{"library"});
    for (const char *name : {"one", "two", "three", "apart"})
        EXPECT_FALSE(home.exists(std::string(".config/") + name)) << name;
}

TEST_F(UninstallationTest, LeftoversGoOnlyAsTheyWereShown) {
    package("painter");
    home.file(".cache/painter/a");
    home.link(".config/painter.conf", home.file("dotfiles/painter.conf"));
    auto shown = plans();
    for (Leftover &leftover : shown.front().leftovers)
        leftover.ticked = true;
    home.file(".config/painter/letter.odt");
    std::filesystem::remove_all(home.path(".cache/painter"));
    std::filesystem::rename(home.path(".local/share/painter"), home.path("elsewhere"));
    home.file(".local/share/painter/another's");
    Uninstallation removal(shown);
    EXPECT_FALSE(run(removal));
    EXPECT_TRUE(home.exists(".config/painter/settings")) << "it has gained a document since";
    EXPECT_FALSE(home.exists(".config/painter.conf"));
    EXPECT_TRUE(home.exists("dotfiles/painter.conf"));
    EXPECT_TRUE(home.exists(".local/share/painter/another's"));
    EXPECT_EQ(removal.records().front().outcome, UninstallOutcome::Removed);
    EXPECT_FALSE(removal.isOpen());
}

TEST_F(UninstallationTest, AFolderKeepsWhatItsProgramWroteUnlessThatIsTicked) {
    const auto now = std::filesystem::file_time_type::clock::now();
    const auto put = [&](const char *file, std::chrono::hours age) {
        std::filesystem::last_write_time(home.file(file), now - age);
    };
    InstalledApplication game;
    game.kind = ApplicationKind::Folder;
    game.path = game.key = home.directory("Applications/Game");
    game.installed = std::time(nullptr);
    for (const char *file : {"Applications/Game/bin/game", "Applications/Game/assets/big"})
        put(file, std::chrono::hours(9));
    // The program itself goes however new it is.
    game.programs = {home.path("Applications/Game/bin/game").native()};
    put("Applications/Game/bin/game", -std::chrono::hours(1));
    home.file("older/letter");
    put("Applications/Game/saves/1", -std::chrono::hours(1));
    RemovalPlan plan = RemovalPlanner({game}).planOf(game);
    EXPECT_EQ(sizeOf(plan), 2u);
    Uninstallation changed({plan});
    put("Applications/Game/saves/2", -std::chrono::hours(1));
    EXPECT_FALSE(run(changed));
    EXPECT_TRUE(home.exists("Applications/Game/bin/game")) << "it has written meanwhile";
    EXPECT_TRUE(LeftBehind({}, {}).find().empty());
    put("Applications/Game/bin/later", -std::chrono::hours(1));
    Uninstallation halved({RemovalPlanner({game}).planOf(game)});
    EXPECT_FALSE(run(halved)) << "its program would stay";
    EXPECT_TRUE(home.exists("Applications/Game/assets/big"));
    std::filesystem::remove(home.path("Applications/Game/bin/later"));
    // What came later than the rest, however old it is.
    put("Applications/Game/mods/m", std::chrono::hours(9));
    game.installed -= 3600;
    EXPECT_EQ(RemovalPlanner({game}).planOf(game).leftovers.size(), 3u) << "the others came later";
    game.installed += 3600;
    std::filesystem::remove_all(home.path("Applications/Game/mods"));
    plan = RemovalPlanner({game}).planOf(game);
    Uninstallation first({plan});
    EXPECT_TRUE(run(first));
    EXPECT_FALSE(home.exists("Applications/Game/bin") || home.exists("Applications/Game/assets"));
    EXPECT_TRUE(home.exists("Applications/Game/saves/1"));
    EXPECT_TRUE(LeftBehind({game}, {}).find().empty()) << "it was installed again";
    ASSERT_EQ(LeftBehind({}, {}).find().size(), 1u);
    EXPECT_EQ(LeftBehind({}, {}).find().front().path, game.path);
    // What somebody puts there afterwards is no longer the application's.
    ASSERT_TRUE(eventually([&] {
        std::filesystem::rename(home.path("older"), home.path("Applications/Game/mine"));
        const auto behind = LeftBehind({}, {}).find();
        if (behind.size() == 1 && behind.front().path == game.path / "saves")
            return true;
        std::filesystem::rename(home.path("Applications/Game/mine"), home.path("older"));
        return false;
    }));
    std::filesystem::remove_all(home.path("Applications/Game/mine"));
    ASSERT_TRUE(eventually([&] {
        home.file("Applications/Game/saves/later");
        return LeftBehind({}, {}).find().empty();
    }));

    plan = RemovalPlanner({game}).planOf(game);
    EXPECT_TRUE(Uninstallation::partsGoing(plan)->empty());
    Uninstallation none({plan});
    EXPECT_FALSE(run(none)) << "nothing is there but what is kept";
    for (Leftover &leftover : plan.leftovers)
        leftover.ticked = true;
    Uninstallation second({plan});
    EXPECT_TRUE(run(second));
    EXPECT_FALSE(home.exists("Applications/Game"));
    EXPECT_TRUE(LeftBehind({}, {}).find().empty());
    home.directory("Applications/Game");
    EXPECT_TRUE(LeftBehind({}, {}).find().empty()) << "another folder of that name";
}

TEST_F(UninstallationTest, AFolderThatWasGivenToAnotherOwnerIsJudgedByWhenItsFilesWereMade) {
    auto workspace = std::make_unique<FakeWorkspace>();
    const auto now =
        std::chrono::time_point_cast<std::chrono::seconds>(std::chrono::system_clock::now());
    InstalledApplication game;
    game.kind = ApplicationKind::Folder;
    game.path = game.key = home.directory("Game");
    game.installed = (now - std::chrono::hours(9)).time_since_epoch().count();
    for (const auto &[name, age] : {std::pair("asset", 9), {"brought", 5}, {"moved", 90}}) {
        std::filesystem::last_write_time(home.file(std::string("Game/") + name + "/" + name),
                                         std::filesystem::file_time_type::clock::now() -
                                             std::chrono::hours(99));
        workspace->births[name] = now - std::chrono::hours(age);
    }
    Platform::current().workspace = std::move(workspace);
    std::vector<std::string> kept;
    for (const auto &path : keptIn(RemovalPlanner({game}).planOf(game)))
        kept.push_back(path.filename().native());
    EXPECT_EQ(kept, (std::vector<std::string>{"brought", "moved"}));
}

TEST_F(UninstallationTest, AKeptFolderIsForgottenOnlyWhereItHasCertainlyGone) {
    test::needRoot();
    TestTree system(TestEnvironment::current().system());
    system.file("etc/fstab", "UUID=1 /srv/data ext4 noauto 0 0\n");
    home.own(".", ordinaryUser);
    const auto gone = home.directory("gone"), away = system.directory("srv/data/away"),
               replaced = system.directory("srv/data/replaced"),
               locked = home.directory("a/locked");
    home.directory("next");
    for (const auto &folder : {gone, away, replaced, locked})
        noteKeptFolder({folder, 1});
    for (const auto &folder : {gone, away, replaced})
        std::filesystem::rename(folder, folder.native() + " elsewhere");
    std::filesystem::create_directory(replaced);
    home.mode("a", 0);
    {
        const AsOrdinaryUser user;
        ASSERT_TRUE(user);
        EXPECT_TRUE(keptFolders().empty());
        noteKeptFolder({home.path("next"), 1});
        noteKeptFolder({home.path("next"), 2});
    }
    home.mode("a", 0755);
    std::filesystem::remove(replaced);
    for (const auto &folder : {gone, away, replaced})
        std::filesystem::rename(folder.native() + " elsewhere", folder);
    EXPECT_EQ(keptFolders(), (std::vector<KeptFolder>{
                                 {away, 1}, {replaced, 1}, {locked, 1}, {home.path("next"), 2}}));
}

TEST_F(UninstallationTest, WhatHoldsAnothersPartsGoesWholeOrNotAtAll) {
    test::needRoot();
    const struct {
        const char *part;
        mode_t mode;
        bool needsRights;
    } rows[] = {{"theirs/file", 0755, true},
                {"theirs/file", 0700, true},
                {"theirs/file", 01777, true},
                {"", 0755, false}};
    for (const auto &[kind, keeps] :
         {std::pair(ApplicationKind::Folder, false), std::pair(ApplicationKind::Folder, true),
          std::pair(ApplicationKind::Bundle, false)}) {
        for (const auto &row : rows) {
            InstalledApplication game;
            game.kind = kind;
            game.ids = {"com.example.game"};
            home.file("Applications/Game/bin/game");
            home.file("Applications/Game/locked/file");
            home.file(".cache/com.example.game/x");
            game.installed = std::time(nullptr);
            if (keeps)
                dateFarAway(home.file("Applications/Game/saves/1"));
            home.directory("Applications/Game/theirs");
            home.own(".", ordinaryUser);
            home.mode("Applications/Game/locked", 0500);
            game.path = game.key = home.path("Applications/Game");
            if (*row.part)
                home.file(std::string("Applications/Game/") + row.part);
            home.mode("Applications/Game/theirs", row.mode);
            ASSERT_EQ(::chown(home.path("Applications/Game/theirs").c_str(), 0, 0), 0);
            const AsOrdinaryUser user;
            ASSERT_TRUE(user);
            const RemovalPlan plan = RemovalPlanner({game}).planOf(game);
            EXPECT_EQ(needsRights(plan), row.needsRights);
            Uninstallation removal({plan});
            EXPECT_EQ(run(removal), !row.needsRights) << row.part << row.mode;
            EXPECT_EQ(removal.isOpen(), row.needsRights);
            for (const char *part : {"Applications/Game/bin/game", "Applications/Game/locked/file",
                                     ".cache/com.example.game/x"})
                EXPECT_EQ(home.exists(part), row.needsRights) << part;
            ASSERT_TRUE(NvAuthorization::shareNvAuthorization().allocAuthorization());
            EXPECT_TRUE(run(removal));
            EXPECT_EQ(home.exists("Applications/Game"), keeps);
            EXPECT_FALSE(home.exists("Applications/Game/bin"));
            std::filesystem::remove_all(home.path("Applications/Game"));
            NvAuthorization::shareNvAuthorization().freeAuthorization();
        }
    }
}

TEST_F(UninstallationTest, WhatWouldKeepALeftoverIsToldBeforehand) {
    test::needRoot();
    InstalledApplication tool;
    tool.kind = ApplicationKind::Bundle;
    tool.ids = {"com.example.tool"};
    home.file("Applications/Tool.app/run");
    home.file(".cache/com.example.tool/theirs/file");
    home.file(".config/com.example.tool/mounted/file");
    home.own(".", ordinaryUser);
    ASSERT_EQ(::chown(home.path(".cache/com.example.tool/theirs").c_str(), 0, 0), 0);
    tool.path = tool.key = home.path("Applications/Tool.app");
    EXPECT_EQ(runInChild([&] {
                  const auto mounted = home.path(".config/com.example.tool/mounted");
                  const auto theirs = home.path(".cache/com.example.tool/theirs");
                  const bool isMounted = enterPrivateMounts() && bindMount(mounted, mounted) &&
                                         bindMount(theirs, theirs);
                  const AsOrdinaryUser user;
                  const RemovalPlan plan = RemovalPlanner({tool}).planOf(tool);
                  const Leftover &settings = plan.leftovers.at(0);
                  return isMounted && user && !settings.ticked && plan.leftovers.size() == 2 &&
                         settings.refusal == RemovalError::HoldsVolume;
              }),
              1);
    // Nothing beside it goes either, whoever asks for it.
    const auto kept = home.directory(".config/com.example.tool/mounted/empty").native();
    home.file(".config/com.example.tool/beside");
    ASSERT_EQ(runProgram({"/usr/bin/chattr", "+i", kept}).status, 0);
    auto shown = RemovalPlanner({tool}).planOf(tool).leftovers.at(0);
    EXPECT_TRUE(shown.refusal == RemovalError::Immutable && !shown.ticked);
    const std::atomic<bool> stop{false};
    EXPECT_EQ(Uninstallation::removeItem(shown, stop).error, shown.refusal.message());
    EXPECT_TRUE(home.exists(".config/com.example.tool/beside"));
    ASSERT_EQ(runProgram({"/usr/bin/chattr", "-i", kept}).status, 0);
    const AsOrdinaryUser user;
    ASSERT_TRUE(user);
    RemovalPlan plan = RemovalPlanner({tool}).planOf(tool);
    ASSERT_EQ(plan.leftovers.size(), 2u);
    Leftover &cache = plan.leftovers[1];
    EXPECT_TRUE(cache.needsRights && cache.ticked && !cache.refusal && needsRights(plan));
    cache.ticked = false;
    EXPECT_FALSE(needsRights(plan));
    Uninstallation part({plan});
    EXPECT_TRUE(run(part));
    EXPECT_TRUE(home.exists(".cache/com.example.tool/theirs/file"));
    EXPECT_FALSE(home.exists("Applications/Tool.app") || home.exists(".config/com.example.tool"));
}

TEST_F(UninstallationTest, WhatRightsDoNotReachStaysWhole) {
    test::needRoot();
    TestTree system(TestEnvironment::current().system());
    system.directory("usr/share");
    system.own(".", ordinaryUser);
    system.file("usr/share/Tool/file");
    InstalledApplication tool;
    tool.kind = ApplicationKind::Bundle;
    tool.path = tool.key = system.path("usr/share/Tool");
    const AsOrdinaryUser user;
    ASSERT_TRUE(user);
    RemovalPlan plan = RemovalPlanner({tool}).planOf(tool);
    EXPECT_TRUE(plan.itself.needsRights) << plan.itself.path;
    EXPECT_EQ(plan.blocker, Blocker::Unsupported) << "it is told beforehand";
    plan.blocker = Blocker::None;
    ASSERT_TRUE(NvAuthorization::shareNvAuthorization().allocAuthorization());
    Uninstallation removal({plan});
    EXPECT_FALSE(run(removal));
    EXPECT_TRUE(system.exists("usr/share/Tool/file"));
}

} // namespace
} // namespace brightsweep
