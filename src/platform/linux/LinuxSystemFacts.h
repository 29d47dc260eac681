#pragma once

#include "platform/SystemFacts.h"

namespace brightsweep {

/// Facts from `uname`, `/proc` and `/sys`, always those of the running machine.
class LinuxSystemFacts final : public SystemFacts {
public:
    Result<SystemVersion> version() override;
    Result<std::string> kernelValue(std::string_view name) override;

    /// The version for a kernel's release text, such as "6.1.0-18-amd64": 10.7.1.
    static Result<SystemVersion> versionOfRelease(std::string_view release);
};

} // namespace brightsweep
