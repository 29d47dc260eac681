#include "support/RecordingPlatform.h"

#include "support/WrappedPlatform.h"

#include <map>
#include <mutex>

namespace brightsweep::test {

struct RecordingPlatform::State {
    std::mutex mutex;
    std::map<std::string, std::vector<std::filesystem::path>, std::less<>> calls;
};

RecordingPlatform::RecordingPlatform() : m_state(std::make_shared<State>()) {
    Platform::setCurrent(wrapPlatform(
        std::move(Platform::current()),
        [state = m_state](std::string_view call, const std::filesystem::path &argument) {
            const std::lock_guard lock(state->mutex);
            state->calls[std::string(call)].push_back(argument);
            return std::error_code();
        }));
}

std::vector<std::filesystem::path> RecordingPlatform::argumentsOf(std::string_view name) const {
    const std::lock_guard lock(m_state->mutex);
    const auto found = m_state->calls.find(name);
    return found == m_state->calls.end() ? std::vector<std::filesystem::path>() : found->second;
}

} // namespace brightsweep::test
