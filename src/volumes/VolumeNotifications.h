#pragma once

#include <QLatin1String>

namespace brightsweep {

// User info "object": the volume's path, in the form of paths::toVariant().
inline constexpr QLatin1String openFinderWhenClickItemsNotification("openFinderWhenClickItems");
inline constexpr QLatin1String cleanMemoryClickActionNotification("cleanMemoryClickAction");
/// Asks for a new menu: after a mount, an unmount, an eject.
inline constexpr QLatin1String
    refMenuItemWhenDeleteAndAddNotification("refMenuItemWhenDeleteAndAdd");
// User info "object": true hides the status item.
inline constexpr QLatin1String setStatusBarHiddenNotification("setStatusBarHidden");
/// At the end of each refresh.
inline constexpr QLatin1String updateNewDiskSizeViewNotification("updateNewDiskSizeView");
/// After a mount or an unmount.
inline constexpr QLatin1String updateSizeViewNotification("updateSizeView");

} // namespace brightsweep
