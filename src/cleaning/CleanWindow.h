#pragma once

#include <QLatin1String>

#include <functional>
#include <memory>

namespace brightsweep {

/// The quick clean is over, or has been stopped: its window is to go.
inline constexpr QLatin1String DSShouldCloseWindow("ShouldCloseWindow");

/// The quick clean window as AppDelegate needs it: made when the user asks for it, dropped when it
/// closes. One that still has an operation under way keeps what that needs alive by itself.
/// Main thread.
class CleanWindow {
public:
    virtual ~CleanWindow() = default;
    virtual void resetStatus() = 0;
    virtual void showWindow() = 0;
    virtual void close() = 0;
};

using CleanWindowFactory = std::function<std::unique_ptr<CleanWindow>()>;

} // namespace brightsweep
