#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::test {

/// Puts itself in front of Platform::current() for the rest of the test and keeps a list of every
/// call with its main argument, as PlatformHook tells them. Safe from every thread. The removal of
/// AdministratorRights is listed as "rights.removeItems", with the folder of its items.
class RecordingPlatform {
public:
    struct Call {
        std::string name;
        std::filesystem::path argument;
        bool operator==(const Call &) const = default;
    };

    RecordingPlatform();
    ~RecordingPlatform();
    RecordingPlatform(const RecordingPlatform &) = delete;
    RecordingPlatform &operator=(const RecordingPlatform &) = delete;

    std::vector<Call> calls() const;
    /// The arguments of every call of one function, in order.
    std::vector<std::filesystem::path> argumentsOf(std::string_view name) const;
    std::size_t count(std::string_view name) const { return argumentsOf(name).size(); }
    void clear();

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace brightsweep::test
