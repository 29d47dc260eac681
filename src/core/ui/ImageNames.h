#pragma once

namespace brightsweep {

/// Every image that the program asks for by name, families of numbered images aside.
inline constexpr const char *imageNames[] = {
    "Lock.png",
};

} // namespace brightsweep
