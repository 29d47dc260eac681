#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>

namespace brightsweep {

/// Which running program holds a file, or something in a folder. Looks at every process once, when
/// it is made: not for the main thread.
class HeldPrograms {
public:
    HeldPrograms();

    /// The name of one that holds it; empty where there is none. The path is absolute and has no
    /// links in it.
    std::string of(const std::filesystem::path &path) const;

private:
    std::unordered_map<std::string, std::string> m_programs; // by path
};

} // namespace brightsweep
