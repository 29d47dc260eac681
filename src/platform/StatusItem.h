#pragma once

#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace brightsweep {

/// A picture of the item: 32 bits a pixel, alpha first, not premultiplied, in network byte order,
/// row by row.
struct StatusImage {
    int width = 0;
    int height = 0;
    std::string argb;
    bool operator==(const StatusImage &) const = default;
};

/// How the user asked for the item.
struct StatusActivation {
    int x = 0; ///< of the click, on the screen
    int y = 0;
    bool hasPosition = false;
    std::string token; ///< lets a window come to the front; empty where the desktop gives none
};

/// The program's item in the desktop's tray. Main thread.
///
/// Whatever is set before there is a tray, or while it is away, is shown when one comes. Setting
/// what is set already tells the desktop nothing. No call waits; none fails visibly.
class StatusItem {
public:
    virtual ~StatusItem();
    virtual std::string unavailableReason() const { return {}; }

    /// True while somebody shows such items.
    virtual bool hostPresent() const = 0;
    virtual void setShown(bool shown) = 0;
    /// The same picture in several sizes.
    virtual void setImages(std::vector<StatusImage> images) = 0;
    virtual void setTitle(const QString &title) = 0;
    /// Both are plain text.
    virtual void setToolTip(const QString &title, const QString &text) = 0;
    /// Primary click, secondary click and the wish for a menu alike.
    virtual void setActivatedHandler(std::function<void(const StatusActivation &)> handler) = 0;
    /// Called when hostPresent() has changed.
    virtual void setHostHandler(std::function<void(bool present)> handler) = 0;
};

} // namespace brightsweep
