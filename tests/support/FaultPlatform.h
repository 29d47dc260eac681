#pragma once

#include "support/WrappedPlatform.h"

#include <memory>

namespace brightsweep::test {

/// Puts itself in front of Platform::current() for the rest of the test and lets calls fail that
/// the test's function names an error for. Until one is set, none fails. The function may be set
/// at any time and is called on every thread that makes calls, one call after the other.
class FaultPlatform {
public:
    FaultPlatform();

    void setFault(PlatformHook fault);

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace brightsweep::test
