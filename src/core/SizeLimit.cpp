#include "core/SizeLimit.h"

#include "foundation/UserDefaults.h"

namespace brightsweep {

std::uint64_t storedLimitInBytes(const QString &limitKey, const QString &unitKey) {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    return limitInBytes(defaults.unsignedForKey(limitKey), defaults.integerForKey(unitKey));
}

} // namespace brightsweep
