#include "platform/FileHolders.h"

#include "platform/Platform.h"
#include "platform/linux/LinuxFileHolders.h"
#include "support/ChildProcess.h"
#include "support/TestTree.h"

#include <gmock/gmock.h>

namespace brightsweep {
namespace {

TEST(FileHolders, FindsWhatAnotherProgramHasOpen) {
    test::TestTree tree;
    const auto file = tree.file("open file");
    const auto free = tree.file("free");
    const test::RunningProgram holder({"/bin/sh", "-c",
                                       "cd \"$1\" && exec 5<\"$2\" && exec sleep 60", "sh",
                                       tree.directory("folder").native(), file.native()});
    std::vector<std::string> found;
    EXPECT_TRUE(test::eventually([&] {
        found.clear();
        for (const HeldFile &held : Platform::current().holders->heldFiles()) {
            if (held.program == "sleep" && held.path.starts_with(tree.top().native()))
                found.push_back(held.path);
        }
        return found.size() == 2;
    }));
    EXPECT_THAT(found, testing::UnorderedElementsAre(file.native(), tree.path("folder").native()));
}

TEST(FileHolders, ReadsThePathOfAMapping) {
    EXPECT_EQ(mappedPath("7f00-7f01 r--p 00000000 fe:01 1234                       /a/b c\\012d"),
              "/a/b c\nd");
    EXPECT_EQ(mappedPath("7f00-7f01 r--p 00000000 00:00 0                          [heap]"), "");
}

} // namespace
} // namespace brightsweep
