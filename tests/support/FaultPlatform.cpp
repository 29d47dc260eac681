#include "support/FaultPlatform.h"

#include <mutex>

namespace brightsweep::test {

struct FaultPlatform::State {
    std::mutex mutex;
    PlatformHook fault;
};

FaultPlatform::FaultPlatform() : m_state(std::make_shared<State>()) {
    Platform::setCurrent(wrapPlatform(
        std::move(Platform::current()),
        [state = m_state](std::string_view call, const std::filesystem::path &argument) {
            const std::lock_guard lock(state->mutex);
            return state->fault ? state->fault(call, argument) : std::error_code();
        }));
}

void FaultPlatform::setFault(PlatformHook fault) {
    const std::lock_guard lock(m_state->mutex);
    m_state->fault = std::move(fault);
}

} // namespace brightsweep::test
