#include "removal/NvAuthorization.h"

#include "linux/RemovalError.h"
#include "platform/StandardDirectories.h"
#include "removal/FakeRights.h"
#include "removal/PadlockController.h"
#include "removal/RemovalRun.h"
#include "support/ChildProcess.h"
#include "support/FaultPlatform.h"
#include "support/LockHolder.h"
#include "support/NeedsRoot.h"
#include "support/Removals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QEventLoop>

namespace brightsweep {
namespace {

using test::AsOrdinaryUser;
using test::FakeRights;
using test::LogCapture;
using test::TestTree;
using testing::HasSubstr;
using testing::Not;

// A fresh set of rights for each test, given up at its end.
class Authorization : public testing::Test {
protected:
    ~Authorization() override { shared.freeAuthorization(); }

    unsigned modeOf(const std::filesystem::path &path) const {
        struct stat status {};
        ::lstat(path.c_str(), &status);
        return status.st_mode & 07777;
    }
    /// A folder of the user's, or one that only root may change.
    void folder(std::string_view name, bool usersOwn) {
        tree.directory(name);
        own(name, usersOwn ? test::ordinaryUser : 0);
    }
    void own(std::string_view name, uid_t user = test::ordinaryUser) {
        test::needRoot();
        ASSERT_EQ(::lchown(tree.path(name).c_str(), user, user), 0);
    }

    TestTree tree;
    FakeRights &rights = FakeRights::install();
    NvAuthorization &shared = NvAuthorization::shareNvAuthorization();
};

TEST_F(Authorization, AsksOnceAndKeepsWhatItGot) {
    EXPECT_FALSE(shared.getAuthorizationRet());
    EXPECT_EQ(rights.requests, 0);
    EXPECT_TRUE(shared.allocAuthorization());
    EXPECT_TRUE(shared.allocAuthorization());
    EXPECT_EQ(rights.requests, 1);
    rights.result.outcome = RightsOutcome::Dismissed;
    EXPECT_FALSE(shared.allocAuthorization(RightsPurpose::FilesAndPackages));
    EXPECT_TRUE(shared.allocAuthorization()); // those for files stay
    rights.result.outcome = RightsOutcome::Granted;
    EXPECT_TRUE(shared.allocAuthorization(RightsPurpose::FilesAndPackages));
    EXPECT_TRUE(shared.allocAuthorization());
    EXPECT_EQ(rights.requests, 3);
    ASSERT_TRUE(shared.getAuthorizationRet());
    EXPECT_EQ(shared.getAuthorizationRet()->token, rights.token());
    EXPECT_TRUE(shared.freeAuthorization());
    EXPECT_TRUE(shared.freeAuthorization());
    EXPECT_EQ(rights.releases, 1);
    EXPECT_FALSE(shared.getAuthorizationRet());
}

TEST_F(Authorization, AReferenceProvesOnlyThatRightsWereGot) {
    test::needRoot();
    const LogCapture log;
    tree.file("folder/item");
    ASSERT_TRUE(shared.allocAuthorization());
    rights.isAlive = false;
    EXPECT_TRUE(shared.getAuthorizationRet());
    EXPECT_THAT(log.text(), HasSubstr("Copy Rights Unsuccessful: 1\n"));
    EXPECT_FALSE(NvAuthorization::removeItemAtPath(tree.path("folder/item")));
    EXPECT_TRUE(tree.exists("folder/item"));
    // Whoever asks again gets them again.
    EXPECT_TRUE(shared.allocAuthorization());
    EXPECT_EQ(rights.requests, 2);
    EXPECT_TRUE(NvAuthorization::removeItemAtPath(tree.path("folder/item")));
}

TEST_F(Authorization, PrivilegedSuccessIsSilenceOfTheToolAndAMissingName) {
    tree.file("folder/item");
    const auto path = tree.path("folder/item");
    EXPECT_FALSE(NvAuthorization::removeItemAtPath(path));
    ASSERT_TRUE(shared.allocAuthorization());
    const struct {
        PrivilegedReply reply;
        bool success;
    } cases[] = {
        {{true, true, ""}, true},           {{true, true, "x"}, false}, {{true, false, ""}, false},
        {{false, false, "refused"}, false}, {{false, true, ""}, false},
    };
    for (const auto &row : cases) {
        rights.reply = [&](const auto &) { return row.reply; };
        EXPECT_EQ(NvAuthorization::removeItemAtPath(path), row.success) << row.reply.output;
    }
}

TEST_F(Authorization, WhatTheUserMayDeleteNeedsNoRights) {
    folder("folder", true);
    tree.file("folder/item");
    own("folder/item");
    tree.file("folder/read only");
    own("folder/read only");
    tree.mode("folder/read only", 0400);
    tree.file("folder/kept");
    ASSERT_TRUE(shared.allocAuthorization());
    const LogCapture log;
    const AsOrdinaryUser user;
    ASSERT_TRUE(user);
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path("folder/item")));
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path("folder/read only")));
    EXPECT_EQ(tree.snapshot("folder").size(), 1u);
    EXPECT_TRUE(rights.removals.empty());
    EXPECT_EQ(log.text(), "");
}

TEST_F(Authorization, WhatTheUserMayNotDeleteGoesWithRightsInOneGo) {
    folder("folder", false);
    std::vector<std::filesystem::path> items;
    for (int i = 0; i < 300; ++i)
        items.push_back(tree.file("folder/" + std::to_string(i)));
    folder("own", true);
    tree.file("own/item");
    tree.file("folder/kept");
    ASSERT_TRUE(shared.allocAuthorization());
    const LogCapture log;
    std::vector<std::string> told;
    {
        const AsOrdinaryUser user;
        ItemRemoval removal;
        const ItemRemoval::Told tell = [&](std::size_t index, const RemovalOutcome &outcome) {
            EXPECT_TRUE(outcome.removed);
            EXPECT_EQ(outcome.neededRights, index < items.size());
            told.push_back(std::to_string(index));
        };
        for (std::size_t i = 0; i < items.size(); ++i) {
            const auto target = test::targetIn(tree.path("folder"), std::to_string(i));
            removal.removeInTurn(i, target, removal.reach(target), tell);
        }
        const auto own = test::targetIn(tree.path("own"), "item");
        removal.removeInTurn(items.size(), own, removal.reach(own), tell);
        EXPECT_EQ(rights.batches, 1) << "the first 256";
        EXPECT_TRUE(removal.isWaiting());
        removal.finish(tell);
    }
    EXPECT_EQ(rights.batches, 2);
    EXPECT_EQ(rights.removals, items);
    EXPECT_EQ(told.size(), items.size() + 1);
    EXPECT_EQ(tree.snapshot("folder").size(), 1u);
    EXPECT_THAT(log.text(), HasSubstr("Clean deletable file failed: " + items[0].native() +
                                      "-Permission denied\n"));
}

// What the helper is told is what the item is after the first attempt, and nothing else's place.
TEST_F(Authorization, AnItemThatWasExchangedMeanwhileDoesNotGo) {
    folder("folder", false);
    tree.file("folder/item");
    tree.file("folder/other");
    ASSERT_TRUE(shared.allocAuthorization());
    test::FaultPlatform faults;
    faults.setFault([&](std::string_view call, const std::filesystem::path &) {
        if (call == "removeItem" && ::seteuid(0) == 0) {
            std::filesystem::rename(tree.path("folder/other"), tree.path("folder/item"));
            EXPECT_EQ(::seteuid(test::ordinaryUser), 0);
        }
        return std::error_code();
    });
    const AsOrdinaryUser user;
    EXPECT_EQ(test::removeWithOutcome(tree.path("folder/item")).error, RemovalError::Changed);
    EXPECT_TRUE(rights.removals.empty());
    EXPECT_TRUE(tree.exists("folder/item"));
}

TEST_F(Authorization, OneRunAtATime) {
    tree.file("folder/item");
    RemovalRun::Begun first = RemovalRun::begin("Clean");
    ASSERT_TRUE(first.run);
    EXPECT_EQ(RemovalRun::current(), first.run);
    EXPECT_EQ(0, test::runInChild([&] {
                  const RemovalRun::Begun other = RemovalRun::begin("other");
                  return other.run || other.heldBy != "Clean" || other.process != ::getppid() ||
                         !RemovalRun::refusal(other).contains(QStringLiteral("Clean"));
              }));
    EXPECT_FALSE(RemovalRun::begin("other").run);
    EXPECT_TRUE(NvAuthorization::synFastRemovePath(tree.path("folder/item"))) << "part of the run";
    first.run.reset();
    EXPECT_TRUE(RemovalRun::begin("other").run);
}

TEST_F(Authorization, WhatSurvivesIsAsItWas) {
    folder("folder", false);
    folder("folder/directory", true);
    tree.mode("folder/directory", 0550);
    tree.file("folder/file");
    own("folder/file");
    tree.mode("folder/file", 0400);
    tree.file("elsewhere/target");
    own("elsewhere/target");
    tree.mode("elsewhere/target", 0400);
    tree.link("folder/link", tree.path("elsewhere/target"));
    tree.hardLink("folder/second name", tree.path("elsewhere/target"));
    const auto before = tree.snapshot();
    const AsOrdinaryUser user;
    ASSERT_TRUE(user);
    for (const char *name : {"directory", "file", "link", "second name", "missing"})
        EXPECT_FALSE(NvAuthorization::synFastRemovePath(tree.path("folder") / name)) << name;
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_F(Authorization, WhatIsBusyStaysBusy) {
    tree.file("folder/item");
    ASSERT_TRUE(shared.allocAuthorization());
    test::FaultPlatform faults;
    faults.setFault([](std::string_view call, const std::filesystem::path &) {
        return call == "removeItem" ? std::make_error_code(std::errc::device_or_resource_busy)
                                    : std::error_code();
    });
    const LogCapture log;
    const RemovalOutcome outcome = test::removeWithOutcome(tree.path("folder/item"));
    EXPECT_FALSE(outcome.removed);
    EXPECT_FALSE(outcome.neededRights);
    EXPECT_EQ(outcome.error, std::errc::device_or_resource_busy);
    EXPECT_TRUE(rights.removals.empty());
    EXPECT_TRUE(tree.exists("folder/item"));
    EXPECT_THAT(log.text(), HasSubstr("item-Device or resource busy\n"));
}

TEST_F(Authorization, SaysWhyAnItemStayed) {
    folder("folder", false);
    tree.file("folder/item");
    ASSERT_TRUE(shared.allocAuthorization());
    rights.reply = [](const auto &) { return PrivilegedReply{true, false, "rm: cannot remove"}; };
    const AsOrdinaryUser user;
    const RemovalOutcome outcome = test::removeWithOutcome(tree.path("folder/item"));
    EXPECT_FALSE(outcome.removed);
    EXPECT_TRUE(outcome.neededRights);
    EXPECT_EQ(outcome.words, "rm: cannot remove");
    EXPECT_EQ(test::removeWithOutcome(tree.path("none/item")).error,
              std::errc::no_such_file_or_directory);
}

TEST_F(Authorization, OnePadlockForAllPages) {
    PadlockController one;
    PadlockController other;
    std::vector<bool> heard;
    bool wasAsking = false;
    QObject::connect(&other, &PadlockController::lockStateChanged,
                     [&](bool open) { heard.push_back(open); });
    QObject::connect(&other, &PadlockController::askingChanged,
                     [&](bool asking) { wasAsking = wasAsking || asking; });
    const auto ask = [&] {
        QEventLoop loop;
        QObject::connect(&one, &PadlockController::lockStateChanged, &loop, &QEventLoop::quit);
        one.unlockRigths(true);
        // Neither the thread nor the other padlock waits, and none asks a second time.
        EXPECT_TRUE(other.isAsking());
        other.unlockRigths(true);
        loop.exec();
        return one.isOpen();
    };
    EXPECT_FALSE(one.isOpen());
    rights.result = {RightsOutcome::Dismissed, 126, {}};
    EXPECT_FALSE(ask());
    EXPECT_TRUE(wasAsking);
    EXPECT_FALSE(other.isAsking());
    EXPECT_STREQ(other.imageName(), "Lock.png");
    rights.result = {RightsOutcome::Granted, 0, {}};
    EXPECT_TRUE(ask());
    EXPECT_EQ(rights.requests, 2);
    EXPECT_TRUE(other.isOpen());
    EXPECT_STREQ(other.imageName(), "Unlock.png");
    other.unlockRigths(false);
    EXPECT_FALSE(one.isOpen());
    EXPECT_FALSE(shared.getAuthorizationRet());
    EXPECT_THAT(heard, testing::ElementsAre(false, true, false));
}

} // namespace
} // namespace brightsweep
