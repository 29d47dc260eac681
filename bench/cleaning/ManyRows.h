#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::bench {

using SteadyClock = std::chrono::steady_clock;

inline double millisecondsSince(SteadyClock::time_point start) {
    return std::chrono::duration<double, std::milli>(SteadyClock::now() - start).count();
}

/// A home of its own below a temporary folder, gone with the object, with that many empty files in
/// its cache and an empty system beside it. Made before the application and the platform.
class ManyRows {
public:
    /// The files take the endings in turn.
    explicit ManyRows(unsigned rows, const std::vector<std::string> &endings = {""}) {
        if (!::mkdtemp(m_home.data()))
            throw std::runtime_error("no temporary folder");
        const std::filesystem::path home = m_home;
        for (const char *name : {"HOME", "XDG_RUNTIME_DIR"})
            ::setenv(name, m_home.c_str(), 1);
        for (const char *name :
             {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            ::unsetenv(name);
        ::setenv("BRIGHTSWEEP_SYSTEM_ROOT", (home / "system").c_str(), 1);
        std::filesystem::create_directories(home / ".cache");
        std::filesystem::create_directories(home / "system");
        for (unsigned row = 0; row < rows; ++row)
            std::ofstream(
                home / ".cache" /
                ("a file of some length " + std::to_string(row) + endings[row % endings.size()]));
    }
    ~ManyRows() { std::filesystem::remove_all(m_home); }
    ManyRows(const ManyRows &) = delete;
    ManyRows &operator=(const ManyRows &) = delete;

private:
    std::string m_home = "/tmp/bench-many-rows-XXXXXX";
};

} // namespace brightsweep::bench
