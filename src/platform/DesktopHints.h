#pragma once

#include <functional>
#include <string>

namespace brightsweep {

/// What the user asked the desktop for, beyond what Qt follows by itself.
struct Hints {
    bool highContrast = false;
    bool reducedMotion = false;
    double textScale = 1.0;
    bool operator==(const Hints &) const = default;
};

/// Follows the desktop's hints while the program runs. Main thread. No call waits: until the
/// desktop has answered, the hints are those of a desktop that says nothing.
class DesktopHints {
public:
    virtual ~DesktopHints();
    virtual std::string unavailableReason() const { return {}; }

    virtual Hints hints() const = 0;
    virtual void setChangedHandler(std::function<void()> handler) = 0;
};

} // namespace brightsweep
