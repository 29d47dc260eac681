#include "core/TaskStopper.h"

namespace brightsweep {

TaskStopper &TaskStopper::sharedTaskStopper() {
    // Never destroyed: walks may read it until the process ends.
    static auto *stopper = new TaskStopper;
    return *stopper;
}

} // namespace brightsweep
