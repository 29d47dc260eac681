// Asks for administrator rights, then removes each path of its arguments. It prints "rights 1" or
// "rights 0", then a line "1 PATH" or "0 PATH" for each; the log goes to standard error.

#include "platform/LinuxPlatform.h"
#include "platform/Platform.h"
#include "removal/NvAuthorization.h"

#include <cstdio>

using namespace brightsweep;

int main(int argc, char **argv) {
    Platform::setCurrent(makeLinuxPlatform());
    auto &authorization = NvAuthorization::shareNvAuthorization();
    std::printf("rights %d\n", authorization.allocAuthorization());
    std::printf("again %d\n", authorization.allocAuthorization());
    for (int i = 1; i < argc; ++i)
        std::printf("%d %s\n", NvAuthorization::synFastRemovePath(std::filesystem::path(argv[i])),
                    argv[i]);
    authorization.freeAuthorization();
    return 0;
}
