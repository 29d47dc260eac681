#pragma once

#include "foundation/FileDescriptor.h"

#include <sys/types.h>

#include <filesystem>

namespace brightsweep::test {

/// A user file system that never answers, mounted as long as this object lives.
class SilentServer {
public:
    enum class Manner {
        NeverReads, ///< as if its program were stopped
        Swallows,   ///< greets, then takes every question and keeps silent: whoever has asked then
                    ///< waits beyond the reach of any signal
    };
    SilentServer(const std::filesystem::path &place, Manner manner);
    ~SilentServer();
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

private:
    const std::filesystem::path m_place;
    FileDescriptor m_device;
    pid_t m_server = -1;
};

} // namespace brightsweep::test
