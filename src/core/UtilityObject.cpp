#include "core/UtilityObject.h"

namespace brightsweep {

UtilityObject &UtilityObject::getMyObject() {
    // Never destroyed: workers may read it until the process ends.
    static auto *object = new UtilityObject;
    return *object;
}

} // namespace brightsweep
