#include "foundation/FileDescriptor.h"
#include "platform/linux/LinuxLoginItemSource.h"
#include "support/ChildProcess.h"
#include "support/NeedsRoot.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>

namespace brightsweep::test {
namespace {

// Of the user's autostart folder, for the list of login items.
class DirectoryWatch : public testing::Test {
protected:
    TestTree work{TestEnvironment::current().home() / "elsewhere"};
    TestTree user{TestEnvironment::current().home() / ".config/autostart"};
    LinuxLoginItemSource source;
};

TEST_F(DirectoryWatch, HearsOfEveryChangeAlsoAfterTheFolderCameBack) {
    std::atomic<int> told = 0;
    std::filesystem::remove_all(user.top().parent_path());
    work.directory("two");
    auto watch = source.watch([&] { ++told; });
    const std::filesystem::path config = user.top().parent_path();
    const std::filesystem::path moved = config.native() + ".moved";
    FileDescriptor held;
    const std::pair<const char *, std::function<void()>> changes[] = {
        {"the folder comes", [&] { user.directory(""); }},
        {"made", [&] { user.file("a", "1"); }},
        {"written in place", [&] { user.file("a", "2"); }},
        {"renamed over", [&] { std::filesystem::rename(work.file("b"), user.path("a")); }},
        {"another mode", [&] { user.mode("a", 0600); }},
        {"renamed", [&] { std::filesystem::rename(user.path("a"), user.path("c")); }},
        {"removed", [&] { std::filesystem::remove(user.path("c")); }},
        {"the folder goes while a program holds it open",
         [&] {
             held = FileDescriptor(::open(user.top().c_str(), O_RDONLY | O_CLOEXEC));
             std::filesystem::remove(user.top());
         }},
        {"it comes again", [&] { user.directory(""); }},
        {"a link to a file", [&] { user.link("l", work.path("target/file")); }},
        {"the file comes", [&] { work.file("target/file"); }},
        {"written in place", [&] { work.file("target/file", "1"); }},
        {"renamed over",
         [&] { std::filesystem::rename(work.file("b"), work.path("target/file")); }},
        {"written in the new one", [&] { work.file("target/file", "2"); }},
        {"its folder goes", [&] { std::filesystem::remove_all(work.path("target")); }},
        {"moved away", [&] { std::filesystem::rename(user.top(), user.top().native() + ".old"); }},
        {"another one comes", [&] { user.file("d"); }},
        {"written in that", [&] { user.file("d", "3"); }},
        {"what it lies in is moved", [&] { std::filesystem::rename(config, moved); }},
        {"it comes anew", [&] { user.directory(""); }},
        {"written in the new one", [&] { user.file("d", "4"); }},
        {"all of it is removed", [&] { std::filesystem::remove_all(config); }},
        {"it comes once more", [&] { user.directory(""); }},
        {"the old one comes back",
         [&] {
             std::filesystem::remove_all(config);
             std::filesystem::rename(moved, config);
         }},
        {"written in the old one", [&] { user.file("d", "5"); }},
        {"a link comes in its place",
         [&] {
             std::filesystem::remove_all(user.top());
             std::filesystem::create_directory_symlink("../elsewhere/one", user.top());
         }},
        {"it leads to something", [&] { work.directory("one"); }},
        {"written there", [&] { work.file("one/a"); }},
        {"another folder there",
         [&] {
             std::filesystem::remove_all(work.path("one"));
             std::filesystem::rename(work.path("two"), work.path("one"));
         }},
        {"written in that one", [&] { work.file("one/b"); }},
        {"a link above comes",
         [&] {
             std::filesystem::rename(config, moved);
             std::filesystem::create_directory_symlink(work.top(), config);
         }},
        {"written behind it", [&] { work.file("autostart/c"); }},
    };
    for (const auto &[what, change] : changes) {
        const int before = told;
        change();
        EXPECT_TRUE(eventually([&] { return told > before; })) << what;
    }
    // Another folder than the one right above.
    ::setenv("XDG_CONFIG_HOME", work.path("a/b").c_str(), 1);
    TestTree deep{work.path("a/b/autostart")};
    watch = source.watch([&] { ++told; });
    for (const bool isBack : {false, true}) {
        const int before = told;
        std::filesystem::rename(work.path(isBack ? "gone" : "a"), work.path(isBack ? "a" : "gone"));
        EXPECT_TRUE(eventually([&] { return told > before; })) << isBack;
    }
    ::unsetenv("XDG_CONFIG_HOME");
    std::filesystem::remove(config);
    watch = source.watch([&] { ++told; });
    const int before = told;
    for (int i = 0; i < 500; ++i)
        user.file(std::to_string(i));
    waitUntil([&] { return told > before; });
    EXPECT_LT(told - before, 100);
    watch.reset();
}

TEST_F(DirectoryWatch, TellsThatAFolderIsClosedAndHearsOfItsBeingOpened) {
    needRoot();
    user.file("a.desktop");
    const auto asUser = [](const auto &does) {
        ::setfsuid(unprivilegedUser); // of this thread and those that it starts
        auto answer = does();
        ::setfsuid(0);
        return answer;
    };
    std::atomic<int> told = 0;
    for (const auto &closed : {user.top(), user.top().parent_path()}) {
        for (const bool wasOpen : {false, true}) {
            const auto open = [&](bool isOpen) { ::chmod(closed.c_str(), isOpen ? 0755 : 0700); };
            open(wasOpen);
            const auto watch = asUser([&] { return source.watch([&] { ++told; }); });
            for (const bool isOpen : {!wasOpen, wasOpen, !wasOpen, true}) {
                const int before = told;
                open(isOpen);
                EXPECT_TRUE(eventually([&] { return told > before; })) << closed << isOpen;
                const auto items = asUser([&] { return source.items(); });
                EXPECT_EQ(items.error(), isOpen
                                             ? std::error_code()
                                             : std::make_error_code(std::errc::permission_denied));
            }
        }
    }
}

} // namespace
} // namespace brightsweep::test
