#pragma once

#include "foundation/Result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brightsweep {

struct SystemVersion {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t bugFix = 0;
};

/// What the running system says of itself. Safe from every thread.
class SystemFacts {
public:
    virtual ~SystemFacts();
    virtual std::string unavailableReason() const { return {}; }

    /// The system's version on the product's scale: 10.(kernel major + 1).(kernel minor).
    virtual Result<SystemVersion> version() = 0;
    /// The value of a kernel name as it lies in memory: a text without terminator, or for
    /// "hw.memsize" and "hw.pagesize" eight bytes in the machine's order. An errno for a name that
    /// cannot be read, ENOENT for an unknown one.
    virtual Result<std::string> kernelValue(std::string_view name) = 0;
};

} // namespace brightsweep
