#include "support/RecordingPlatform.h"

#include "support/WrappedPlatform.h"

#include <mutex>

namespace brightsweep::test {

struct RecordingPlatform::State {
    std::mutex mutex;
    std::vector<Call> calls;
};

RecordingPlatform::RecordingPlatform() : m_state(std::make_shared<State>()) {
    Platform::setCurrent(wrapPlatform(
        std::move(Platform::current()),
        [state = m_state](std::string_view call, const std::filesystem::path &argument) {
            const std::lock_guard lock(state->mutex);
            state->calls.push_back({std::string(call), argument});
            return std::error_code();
        }));
}

RecordingPlatform::~RecordingPlatform() = default;

std::vector<RecordingPlatform::Call> RecordingPlatform::calls() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->calls;
}

std::vector<std::filesystem::path> RecordingPlatform::argumentsOf(std::string_view name) const {
    std::vector<std::filesystem::path> arguments;
    for (Call &call : calls()) {
        if (call.name == name)
            arguments.push_back(std::move(call.argument));
    }
    return arguments;
}

void RecordingPlatform::clear() {
    const std::lock_guard lock(m_state->mutex);
    m_state->calls.clear();
}

} // namespace brightsweep::test
