#include "core/ClearMemory.h"

#include "foundation/Log.h"

#include <string_view>

namespace brightsweep {

int ClearMemory::freeMemory(int argc, const char *const *argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == std::string_view("fr")) {
            NSLog("freeMemoy size=%s", argv[i + 1]);
            return 0;
        }
    }
    return -1;
}

} // namespace brightsweep
