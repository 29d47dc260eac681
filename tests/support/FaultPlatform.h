#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

namespace brightsweep::test {

/// Puts itself in front of the files of Platform::current() for the rest of the test: keeps a list
/// of the calls that open, read and remove, and lets those fail that the test's function names an
/// error for. Made before the threads that make calls; safe from every thread after that.
class FaultPlatform {
public:
    /// Told of a call before it is made, by the name of the function and the path: of an open file
    /// or directory its own, of a child the joined one. An error keeps the call from being made and
    /// becomes its result: the code itself, or the value that the call fails with.
    using Fault = std::function<std::error_code(std::string_view call,
                                                const std::filesystem::path &argument)>;

    FaultPlatform();

    /// Called on every thread that makes calls, one call after the other. Until one is set, none
    /// fails.
    /// One that waits is called from several threads at once, any other by one after the other.
    void setFault(Fault fault, bool waits = false);

    /// The arguments of every call of one function so far, in order.
    std::vector<std::filesystem::path> argumentsOf(std::string_view name) const;
    std::size_t count(std::string_view name) const { return argumentsOf(name).size(); }

private:
    struct State;
    class Files;
    std::shared_ptr<State> m_state;
};

} // namespace brightsweep::test
