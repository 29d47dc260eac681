#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

namespace brightsweep::test {

/// Puts itself in front of Platform::current() for the rest of the test and keeps a list of the
/// calls with their main argument, as PlatformHook tells them. Safe from every thread.
class RecordingPlatform {
public:
    RecordingPlatform();

    /// The arguments of every call of one function, in order.
    std::vector<std::filesystem::path> argumentsOf(std::string_view name) const;
    std::size_t count(std::string_view name) const { return argumentsOf(name).size(); }

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace brightsweep::test
