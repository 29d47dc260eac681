// A second process swaps a directory for a link to another place while items below it are removed:
// nothing in that other place may ever go.

#include "foundation/FileDescriptor.h"
#include "helper/HelperProcess.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <atomic>
#include <new>

namespace brightsweep {
namespace {

using test::TestTree;

constexpr unsigned enoughSwaps = 10'000;
constexpr unsigned enoughRemovals = 300;

// Exchanges two names until told to stop, and counts.
class Swapper {
public:
    Swapper(const std::filesystem::path &one, const std::filesystem::path &other)
        : m_shared(new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                               MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared) {
        m_process = ::fork();
        if (m_process == 0) {
            while (!m_shared->stop.load()) {
                if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) !=
                    0)
                    ::_exit(1);
                ++m_shared->swaps;
            }
            ::_exit(0);
        }
    }
    unsigned swaps() const { return m_shared->swaps.load(); }
    bool stop() {
        m_shared->stop = true;
        int status = 1;
        ::waitpid(m_process, &status, 0);
        ::munmap(m_shared, sizeof(Shared));
        return status == 0;
    }

private:
    struct Shared {
        std::atomic<bool> stop{false};
        std::atomic<unsigned> swaps{0};
    };
    Shared *m_shared;
    pid_t m_process = 0;
};

enum class Swapped { Parent, Above, Root };

template <typename Remove>
void swapDuring(Swapped swapped, Remove remove) {
    TestTree tree(test::TestEnvironment::current().work() / std::to_string(int(swapped)));
    tree.directory("folder/parent/below");
    tree.file("outside/below/victim", "precious");
    tree.file("outside/victim", "precious");
    const std::string holder = swapped == Swapped::Above ? "parent/below" : "parent";
    tree.link("folder/link", tree.path("outside"));
    const auto before = tree.snapshot("outside");
    const FileDescriptor items(
        ::open(tree.path("folder/" + holder).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    RemovalTarget target;
    auto &files = *Platform::current().files;
    target.root =
        *files.rememberRoot(tree.path(swapped == Swapped::Root ? "folder/parent" : "folder"));
    target.relative = swapped == Swapped::Root ? "victim" : holder + "/victim";

    Swapper swapper(tree.path("folder/parent"), tree.path("folder/link"));
    unsigned removed = 0;
    unsigned tried = 0;
    while (tried < enoughRemovals || swapper.swaps() < enoughSwaps) {
        // Half of them directories, half files, made where the swaps cannot lead astray.
        struct stat status {};
        if (::fstatat(items.get(), "victim", &status, AT_SYMLINK_NOFOLLOW) != 0) {
            if (tried % 2 == 0) {
                ::mkdirat(items.get(), "victim", 0755);
                ::mkdirat(items.get(), "victim/inner", 0755);
            } else {
                ::close(::openat(items.get(), "victim", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            }
        }
        removed += remove(target, items) ? 1 : 0;
        ++tried;
    }
    EXPECT_TRUE(swapper.stop());
    // The link stands where the last exchange left it; what it leads to is as it was.
    EXPECT_EQ(tree.snapshot("outside"), before);
    EXPECT_GT(removed, 0u);
    EXPECT_LT(removed, tried);
}

TEST(Swap, TheHelperRemovesNothingOutside) {
    for (const Swapped swapped : {Swapped::Parent, Swapped::Above, Swapped::Root}) {
        test::HelperProcess process;
        swapDuring(swapped, [&](const RemovalTarget &target, const FileDescriptor &items) {
            const std::string &relative = target.relative.native();
            const auto slash = relative.rfind('/');
            const auto here = "/proc/self/fd/" + std::to_string(items.get());
            const auto reply =
                process
                    .remove({target.root.path.native(), target.root.device, target.root.inode,
                             slash == relative.npos ? "" : relative.substr(0, slash),
                             test::removalBelow(here, "victim").items})
                    .front();
            return reply.performed && reply.gone;
        });
    }
}

TEST(Swap, TheProgramRemovesNothingOutside) {
    for (const Swapped swapped : {Swapped::Parent, Swapped::Above, Swapped::Root}) {
        swapDuring(swapped, [](const RemovalTarget &target, const FileDescriptor &) {
            return !test::removeItem(target);
        });
    }
}

} // namespace
} // namespace brightsweep
