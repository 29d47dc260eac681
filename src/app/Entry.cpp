#include "app/Entry.h"

#include "core/UtilityFunction.h"
#include "foundation/Identity.h"

namespace brightsweep {

int runEntry(int argc, char **argv, EntryLog openLog, EntryCommand freeMemory,
             const std::function<int()> &applicationMain) {
    if (UtilityFunction::isBelowSystemVer(10, 6, 0))
        return 0;
    openLog(logFileName);
    const int status = freeMemory(argc, argv);
    return status != -1 ? status : applicationMain();
}

} // namespace brightsweep
