#include "foundation/Identity.h"

#include "foundation/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace brightsweep {

std::filesystem::path homeFolder() {
    if (const char *home = std::getenv("HOME"); home && home[0] == '/')
        return home;
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd *found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir && found->pw_dir[0] == '/')
        return found->pw_dir;
    return "/";
}

std::filesystem::path environmentFolder(const char *variable, const char *belowHome) {
    if (const char *value = std::getenv(variable); value && value[0] == '/')
        return value;
    return paths::join(homeFolder(), belowHome);
}

} // namespace brightsweep
