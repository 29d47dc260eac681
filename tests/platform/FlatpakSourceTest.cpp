#include "platform/linux/FlatpakSource.h"

#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

using namespace test;

// A runtime and an application in two branches, from a repository of the test's own: one branch in
// both installations, the other in the user's.
constexpr const char *script = R"(
set -e
cd "$1"
mkdir -p runtime/files runtime/usr app/files/bin app/files/share/metainfo app/export/share/applications
printf '[Runtime]\nname=org.test.Platform\nruntime=org.test.Platform/x86_64/1\n' > runtime/metadata
flatpak build-export -r --arch=x86_64 repo runtime 1
printf '#!/bin/sh\n' > app/files/bin/demo
printf '[Application]\nname=org.test.Demo\nruntime=org.test.Platform/x86_64/1\ncommand=demo\n' > app/metadata
printf '[Desktop Entry]\nType=Application\nName=Demo\nExec=demo\nIcon=org.test.Demo\n' \
    > app/export/share/applications/org.test.Demo.desktop
printf '<component><id>org.test.Demo</id><releases><release version="1.2.3"/></releases></component>' \
    > app/files/share/metainfo/org.test.Demo.metainfo.xml
for branch in stable beta; do flatpak build-export --arch=x86_64 repo app $branch; done
for where in --user --system; do
    flatpak remote-add $where --no-gpg-verify test "file://$PWD/repo"
    flatpak install $where -y --noninteractive test org.test.Demo//stable
done
flatpak install --user -y --noninteractive test org.test.Demo//beta
)";

TEST(FlatpakSource, RemovesOneRefOfOneInstallationAndNoData) {
    test::needRoot();
    TestTree home(TestEnvironment::current().home());
    TestTree system(TestEnvironment::current().system());
    TestTree work;
    system.link("usr/bin/flatpak", "/usr/bin/flatpak");
    const auto made = runProgram(
        {"dbus-run-session", "--", "sh", "-c",
         "export DBUS_SYSTEM_BUS_ADDRESS=$DBUS_SESSION_BUS_ADDRESS; exec sh -c \"$0\" sh \"$1\"",
         script, work.top().native()},
        {{"FLATPAK_SYSTEM_DIR", system.path("var/lib/flatpak").native()}});
    ASSERT_EQ(made.status, 0) << made.output << made.errors;
    home.file(".var/app/org.test.Demo/data/letter");
    home.file(".local/share/flatpak/app/org.broken.App/x86_64/stable/nothing active");

    FlatpakSource source;
    EXPECT_EQ(source.unavailableReason(), "");
    const auto listed = [&] { return *source.applications(); };
    const auto before = listed();
    ASSERT_EQ(before.size(), 3u);
    const InstalledApplication beta = before[0], user = before[1], everyones = before[2];
    EXPECT_EQ(beta.key, "app/org.test.Demo/x86_64/beta");
    EXPECT_EQ(user.name + " " + user.version + " " + user.desktopId(), "Demo 1.2.3 org.test.Demo");
    EXPECT_TRUE(user.userOwned && !everyones.userOwned && user.key == everyones.key);
    EXPECT_GT(source.sizeOf(user), 0u);
    EXPECT_TRUE(source.runningOf(before).empty());
    EXPECT_TRUE(source.plan(user).running.empty());

    const RemovalPlan plan = source.plan(user);
    EXPECT_EQ(source.remove(plan, nullptr).outcome, UninstallOutcome::Removed);
    EXPECT_EQ(listed().size(), 2u);
    EXPECT_EQ(source.plan(user).blocker, Blocker::Gone);
    EXPECT_EQ(source.remove(plan, nullptr).outcome, UninstallOutcome::Removed) << "gone before";
    RemovalPlan older = source.plan(beta);
    older.application.path = "/elsewhere";
    EXPECT_EQ(source.remove(older, nullptr).outcome, UninstallOutcome::Changed);
    EXPECT_EQ(source.remove(source.plan(everyones), nullptr).outcome, UninstallOutcome::Removed);
    EXPECT_EQ(source.remove(source.plan(beta), nullptr).outcome, UninstallOutcome::Removed);
    EXPECT_TRUE(listed().empty());
    EXPECT_TRUE(home.exists(".var/app/org.test.Demo/data/letter"));
}

} // namespace
} // namespace brightsweep
