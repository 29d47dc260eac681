#pragma once

#include <cerrno>
#include <system_error>

namespace brightsweep {

/// What errno says of the system call that has just failed.
inline std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace brightsweep
