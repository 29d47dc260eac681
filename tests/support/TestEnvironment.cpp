#include "support/TestEnvironment.h"

#include "foundation/UserDefaults.h"

#include <spawn.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <stdexcept>
#include <string>

extern char **environ;

namespace brightsweep::test {

namespace {

TestEnvironment *currentEnvironment = nullptr;

// What the environment named before any test changed it.
const std::filesystem::path realTemporary = std::filesystem::canonical("/tmp");

} // namespace

std::filesystem::path makeTemporaryFolder() {
    std::string folder = realTemporary / "brightsweep-test-XXXXXX";
    if (!::mkdtemp(folder.data()))
        throw std::runtime_error("mkdtemp");
    ::chmod(folder.c_str(), 0755);
    return folder;
}

void removeTree(const std::filesystem::path &path) {
    // The tool copes with depths that a recursion in this process would not.
    const std::string name = path.native();
    std::string arguments[] = {"rm", "-rf", "--one-file-system", "--", name};
    char *vector[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                      arguments[3].data(), arguments[4].data(), nullptr};
    pid_t child = 0;
    if (::posix_spawnp(&child, "rm", nullptr, nullptr, vector, environ) == 0)
        ::waitpid(child, nullptr, 0);
}

TestEnvironment::TestEnvironment() : m_root(makeTemporaryFolder()) {
    const struct {
        const char *variable;
        const char *folder;
    } folders[] = {
        {"HOME", "home"},
        {"XDG_CONFIG_HOME", "home/.config"},
        {"XDG_DATA_HOME", "home/.local/share"},
        {"XDG_STATE_HOME", "home/.local/state"},
        {"XDG_CACHE_HOME", "home/.cache"},
        {"XDG_RUNTIME_DIR", "runtime"},
        {"TMPDIR", "tmp"},
        {"BRIGHTSWEEP_SYSTEM_ROOT", "system"},
    };
    for (const auto &folder : folders) {
        std::filesystem::create_directories(m_root / folder.folder);
        ::setenv(folder.variable, (m_root / folder.folder).c_str(), 1);
    }
    // A test that wants a bus starts one of its own.
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    std::filesystem::create_directories(work());
    ::chmod((m_root / "runtime").c_str(), 0700);
    UserDefaults::resetStandardUserDefaults();
    currentEnvironment = this;
}

TestEnvironment::~TestEnvironment() {
    currentEnvironment = nullptr;
    UserDefaults::resetStandardUserDefaults();
    removeTree(m_root);
}

TestEnvironment &TestEnvironment::current() {
    return *currentEnvironment;
}

} // namespace brightsweep::test
