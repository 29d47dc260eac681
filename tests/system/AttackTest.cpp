// An attack on removals, in a machine that may burn: another user exchanges folders for links while
// items are removed, a volume's trash is redirected, and the helper is asked by every way around
// its refusals. Nothing that was not asked for may ever go.

#include "cleaning/DeleteFolderOperation.h"
#include "cleaning/FolderUtilities.h"
#include "foundation/FileDescriptor.h"
#include "helper/HelperProcess.h"
#include "platform/Platform.h"
#include "removal/RemovalRun.h"
#include "support/ChildProcess.h"
#include "support/Removals.h"
#include "support/TestEnvironment.h"
#include "support/TestTree.h"
#include "system/PrivateMachine.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>

namespace brightsweep {
namespace {

using test::TestTree;

constexpr uid_t victim = 61'234;
constexpr uid_t mallory = 61'235;

// How many times as long as usual; the whole attack has twenty.
unsigned scale() {
    const char *wanted = std::getenv("BRIGHTSWEEP_ATTACK");
    return wanted ? unsigned(std::max(1, std::atoi(wanted))) : 1;
}

bool becomeUser(uid_t user) {
    return ::setresgid(user, user, user) == 0 && ::setresuid(user, user, user) == 0;
}

void give(const std::filesystem::path &path, uid_t user) {
    ASSERT_EQ(::lchown(path.c_str(), user, user), 0);
}

class Attack : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::getenv("BRIGHTSWEEP_BURNABLE")) << "run by tests/system/machine";
        ::unsetenv("BRIGHTSWEEP_SYSTEM_ROOT");
        if (!std::filesystem::exists("/home/victim")) {
            std::ofstream("/etc/passwd", std::ios::app)
                << "victim:x:61234:61234::/home/victim:/bin/sh\n"
                << "mallory:x:61235:61235::/home/mallory:/bin/sh\n"
                << "other:x:61236:61236::/home/other:/bin/sh\n";
            for (const char *home : {"/home/victim", "/home/mallory", "/home/other"})
                std::filesystem::create_directories(home);
            give("/home/victim", victim);
        }
    }
};

// Exchanges two names until told to stop, and counts.
class Swapper {
public:
    Swapper(const std::filesystem::path &one, const std::filesystem::path &other, uid_t user)
        : m_shared(new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                               MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared) {
        m_process = ::fork();
        if (m_process == 0) {
            if (!becomeUser(user))
                ::_exit(1);
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

struct Exchange {
    RemovalTarget target;
    const FileDescriptor &items; ///< the directory of the items, whatever it is called
};

// Removes "victim" again and again while a directory above it is exchanged for a link to another
// place that holds a "victim" too.
template <typename Remove>
void exchangeDuring(Swapped swapped, uid_t owner, Remove remove) {
    constexpr unsigned enoughSwaps = 3'000;
    constexpr unsigned enoughRemovals = 100;
    constexpr unsigned mostRemovals = 200'000;
    TestTree tree(test::TestEnvironment::current().work() / std::to_string(int(swapped)));
    tree.directory("folder/parent/below");
    tree.file("outside/below/victim", "precious");
    tree.file("outside/victim", "precious");
    const std::string holder = swapped == Swapped::Above ? "parent/below" : "parent";
    tree.link("folder/link", tree.path("outside"));
    for (const char *place : {"folder", "outside"})
        tree.own(place, owner);
    tree.mode("folder", 0777);
    const auto before = tree.snapshot("outside");
    const FileDescriptor items(
        ::open(tree.path("folder/" + holder).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    RemovalTarget target;
    auto &files = *Platform::current().files;
    target.root =
        *files.rememberRoot(tree.path(swapped == Swapped::Root ? "folder/parent" : "folder"));
    target.relative = swapped == Swapped::Root ? "victim" : holder + "/victim";

    Swapper swapper(tree.path("folder/parent"), tree.path("folder/link"), mallory);
    unsigned removed = 0;
    unsigned tried = 0;
    // Until both have happened, whoever has the processor.
    while (tried < enoughRemovals * scale() || swapper.swaps() < enoughSwaps * scale() ||
           ((removed == 0 || removed == tried) && tried < mostRemovals)) {
        // Half of them directories, half files, made where the swaps cannot lead astray.
        struct stat status {};
        if (::fstatat(items.get(), "victim", &status, AT_SYMLINK_NOFOLLOW) != 0) {
            if (tried % 2 == 0) {
                ::mkdirat(items.get(), "victim", 0755);
                ::mkdirat(items.get(), "victim/inner", 0755);
            } else {
                ::close(::openat(items.get(), "victim", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            }
            for (const char *made : {"victim/inner", "victim"}) {
                if (::fchownat(items.get(), made, owner, owner, AT_SYMLINK_NOFOLLOW) != 0)
                    continue; // a file has nothing in it
            }
        }
        removed += remove(Exchange{target, items}) ? 1 : 0;
        ++tried;
    }
    EXPECT_TRUE(swapper.stop());
    // The link stands where the last exchange left it; what it leads to is as it was.
    EXPECT_EQ(tree.snapshot("outside"), before);
    EXPECT_GT(removed, 0u);
    EXPECT_LT(removed, tried);
    test::removeTree(tree.top());
}

constexpr Swapped everyPlace[] = {Swapped::Parent, Swapped::Above, Swapped::Root};

TEST_F(Attack, ExchangesWhileTheHelperRemoves) {
    for (const Swapped swapped : everyPlace) {
        test::HelperProcess process;
        exchangeDuring(swapped, 0, [&](const Exchange &exchange) {
            const std::string &relative = exchange.target.relative.native();
            const auto slash = relative.rfind('/');
            const auto here = "/proc/self/fd/" + std::to_string(exchange.items.get());
            const RemovalRoot &root = exchange.target.root;
            const auto reply = process
                                   .remove({root.path.native(), root.device, root.inode,
                                            slash == relative.npos ? "" : relative.substr(0, slash),
                                            test::removalBelow(here, "victim").items})
                                   .front();
            return reply.performed && reply.gone;
        });
    }
}

TEST_F(Attack, ExchangesWhileRootRemoves) {
    for (const Swapped swapped : everyPlace) {
        exchangeDuring(swapped, 0,
                       [](const Exchange &exchange) { return !test::removeItem(exchange.target); });
    }
}

TEST_F(Attack, ExchangesWhileAUserRemoves) {
    for (const Swapped swapped : everyPlace) {
        exchangeDuring(swapped, victim, [](const Exchange &exchange) {
            if (::setegid(victim) != 0 || ::seteuid(victim) != 0)
                return false;
            const bool gone = !test::removeItem(exchange.target);
            return ::seteuid(0) == 0 && ::setegid(0) == 0 && gone;
        });
    }
}

// The quick clean empties the whole folder, from a list that it makes itself.
TEST_F(Attack, ExchangesWhileTheQuickCleanRemoves) {
    for (const Swapped swapped : everyPlace) {
        exchangeDuring(swapped, 0, [&](const Exchange &exchange) {
            struct stat status {};
            ::fstat(exchange.items.get(), &status);
            RemovalRoot folder = exchange.target.root;
            if (swapped != Swapped::Root)
                folder = {exchange.target.path().parent_path(), status.st_dev, status.st_ino};
            auto run = RemovalRun::begin("attack").run;
            DeleteFolderOperation({folder}, run).main();
            return ::fstatat(exchange.items.get(), "victim", &status, AT_SYMLINK_NOFOLLOW) != 0;
        });
    }
}

class RedirectedTrash : public Attack, public testing::WithParamInterface<uid_t> {};

// The owner of the volume's ".Trash" exchanges the user's folder in it for a link to what else the
// user has.
TEST_P(RedirectedTrash, TakesNothingElse) {
    const uid_t user = GetParam();
    test::PrivateMachine &machine = test::PrivateMachine::current();
    machine.mountDisk(machine.makeMemoryDisk(), "/media/disk");
    TestTree volume("/media/disk");
    TestTree home(user == 0 ? "/root/attacked" : "/home/victim/attacked");
    const std::string trash = ".Trash/" + std::to_string(user);
    home.file("Documents/files/precious", "kept");
    home.file("Documents/info/precious.trashinfo", "kept");
    home.mode("Documents", 0700);
    volume.directory(trash + "/files");
    volume.directory(trash + "/info");
    volume.mode(trash, 0700);
    volume.link(".Trash/link", home.path("Documents"));
    home.own("", user);
    volume.own(trash, user);
    give(volume.path(".Trash"), mallory);
    volume.mode(".Trash", 01777);
    const auto before = home.snapshot();
    FileDescriptor files(
        ::open(volume.path(trash + "/files").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));

    const std::string runtime = home.directory("runtime");
    give(runtime, user);
    const std::string base = user == 0 ? "/root" : "/home/victim";
    Swapper swapper(volume.path(trash), volume.path(".Trash/link"), mallory);
    int emptied = 0;
    // Which of the two a run meets is chance; the trash itself has to be met, too.
    constexpr unsigned mostRuns = 2'000;
    for (unsigned run = 0; run < 25 * scale() || (emptied == 0 && run < mostRuns); ++run) {
        ::close(::openat(files.get(), "thrown", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        EXPECT_EQ(::fchownat(files.get(), "thrown", user, user, 0), 0);
        const int status = test::runInChild([&] {
            for (const auto &[variable, value] :
                 std::map<const char *, std::string>{{"HOME", base},
                                                     {"XDG_RUNTIME_DIR", runtime},
                                                     {"XDG_CONFIG_HOME", base + "/.config"},
                                                     {"XDG_CACHE_HOME", base + "/.cache"},
                                                     {"XDG_STATE_HOME", base + "/.state"},
                                                     {"XDG_DATA_HOME", base + "/.data"}})
                ::setenv(variable, value.c_str(), 1);
            if (!becomeUser(user))
                return 1;
            if (run % 2 == 0) {
                ::execl(BRIGHTSWEEP_CLI, BRIGHTSWEEP_CLI, "--quiet", "clean", "--category", "4",
                        "--apply", nullptr);
                return 1;
            }
            auto folders = FolderUtilities::getFolderPath(4);
            DeleteFolderOperation(folders, RemovalRun::begin("attack").run).main();
            return 0;
        });
        EXPECT_TRUE(status == 0 || status == 3) << status;
        struct stat thrown {};
        emptied += ::fstatat(files.get(), "thrown", &thrown, AT_SYMLINK_NOFOLLOW) != 0 ? 1 : 0;
        auto now = home.snapshot();
        std::erase_if(now, [](const auto &entry) { return entry.first.starts_with("runtime"); });
        ASSERT_EQ(now, before) << "run " << run;
    }
    EXPECT_TRUE(swapper.stop());
    EXPECT_GT(emptied, 0) << "the trash itself was never reached";
    files.reset(); // the disk goes now
    machine.clear();
}

INSTANTIATE_TEST_SUITE_P(Users, RedirectedTrash, testing::Values(victim, uid_t(0)),
                         [](const auto &user) { return user.param == 0 ? "Root" : "User"; });

// What the system needs stays, whoever asks, by whatever path.
TEST_F(Attack, WalksAroundRefusals) {
    const std::filesystem::path home = "/home/victim/around";
    std::filesystem::create_directories(home / "bound root");
    std::filesystem::create_directories(home / "bound etc");
    std::filesystem::create_directories(home / "over");
    std::filesystem::create_directories("/home/other/Documents");
    std::ofstream("/home/other/Documents/file") << "x";
    ASSERT_EQ(::mount("/", (home / "bound root").c_str(), nullptr, MS_BIND | MS_REC, nullptr), 0);
    ASSERT_EQ(::mount("/etc", (home / "bound etc").c_str(), nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(::mount("overlay", (home / "over").c_str(), "overlay", 0, "lowerdir=/etc:/usr"), 0);
    // Two short links to a path of more than 4,096 bytes that ends in a place of the system.
    TestTree deep(home);
    deep.deepChain("deep", 3'000);
    std::string half = "d";
    for (int level = 1; level < 1'500; ++level)
        half += "/d";
    deep.link("half", "deep/" + half);
    const FileDescriptor middle(::open((home / "half").c_str(), O_PATH | O_DIRECTORY));
    ASSERT_EQ(::symlinkat(half.substr(0, half.size() - 4).c_str(), middle.get(), "rest"), 0);
    const FileDescriptor lowest(::openat(middle.get(), "rest", O_PATH | O_DIRECTORY));
    ASSERT_EQ(::mkdirat(lowest.get(), "etc", 0755), 0);
    ASSERT_EQ(0, test::runInChild([&] {
                  return ::fchdir(lowest.get()) == 0 &&
                                 ::mount("/etc", "etc", nullptr, MS_BIND, nullptr) == 0
                             ? 0
                             : 1;
              }));
    // A process with mounts of its own, whose root is another way to this system.
    const pid_t elsewhere = ::fork();
    if (elsewhere == 0) {
        ::unshare(CLONE_NEWNS);
        ::pause();
        ::_exit(0);
    }
    const std::string view = "/proc/" + std::to_string(elsewhere) + "/root";
    const struct {
        std::string root;
        std::string relative;
    } places[] = {
        {"/", "etc"},
        {"/etc", "hostname"},
        {"/usr/bin", "env"},
        {"/usr", "share/doc"},
        {"/var/lib", "dpkg"},
        {"/var/lib/dpkg", "status"},
        {"/var/log", "apt"},
        {"/home", "other"},
        {"/home/other", "Documents/file"},
        {"/root", "."},
        {home / "bound root", "etc/hostname"},
        {home / "bound root/etc", "hostname"},
        {home, "bound root/usr/bin/env"},
        {home / "bound root/home/other", "Documents"},
        {home / "bound etc", "hostname"},
        {home / "bound etc/ssl", "certs"},
        {home / "over", "hostname"},
        {home / "half/rest/etc", "hostname"},
        {home / "half/rest", "etc/hostname"},
        {view + "/etc", "hostname"},
        {view + "/home/victim", "around"},
        {"/proc/self/root/etc", "hostname"},
        {"/proc/self/cwd/../../../../../../../../../../../../etc", "hostname"},
    };
    test::HelperProcess gained({"PKEXEC_UID=61234"});
    test::HelperProcess direct;
    for (const auto &place : places) {
        struct stat before {};
        const auto path = place.root + "/" + place.relative;
        ::lstat(path.c_str(), &before);
        const auto removal = test::removalBelow(place.root, place.relative);
        EXPECT_FALSE(gained.remove(removal).front().performed) << path;
        // Root's own program may clean users' homes, but not by an alias, and not the system.
        const RemovalTarget target{{place.root, removal.device, removal.inode}, place.relative};
        if (path != "/home/other/Documents/file") {
            EXPECT_FALSE(direct.remove(removal).front().performed) << path;
            EXPECT_TRUE(test::removeItem(target)) << path;
        }
        struct stat after {};
        EXPECT_EQ(::lstat(path.c_str(), &after), 0) << path;
        EXPECT_EQ(after.st_ino, before.st_ino) << path;
    }
    ::kill(elsewhere, SIGKILL);
    ::waitpid(elsewhere, nullptr, 0);
    // A second disk of the user's is open, and what the user owns at home is.
    TestTree own("/home/victim/own");
    own.file("item");
    EXPECT_TRUE(gained.remove("/home/victim/own", "item").gone);
}

} // namespace
} // namespace brightsweep
