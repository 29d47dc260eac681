#pragma once

#include <QString>

#include <functional>
#include <string>

namespace brightsweep {

struct DesktopNotification {
    QString summary; ///< plain text, as the body
    QString body;
    int closeAfterMilliseconds = 0; ///< 0 leaves it to the desktop
    QString actionLabel;            ///< empty for none
    /// Called at most once, with the activation token of the click, empty without one.
    std::function<void(const std::string &token)> action;
};

/// The desktop's notifications. Main thread. No call waits; one that cannot be shown is logged.
class DesktopNotifier {
public:
    virtual ~DesktopNotifier();
    virtual std::string unavailableReason() const { return {}; }

    /// True when somebody is known to show notifications; not yet so right after the start.
    virtual bool available() = 0;
    virtual void show(const DesktopNotification &notification) = 0;
};

} // namespace brightsweep
