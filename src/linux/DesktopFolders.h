#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace brightsweep {

// clang-format off
/// What the desktops themselves, or many programs by turns, keep among the user's data and
/// settings; in lower case, sorted.
inline constexpr std::array<std::string_view, 115> desktopFolders = {
    "akonadi", "app-info", "applications", "aurorae", "autostart", "backgrounds", "baloo",
    "baloofile", "bash-completion", "budgie-desktop", "cinnamon", "cinnamon-session",
    "color-schemes", "containers", "dbus", "dbus-1", "dconf", "desktop", "desktop-directories",
    "documents", "downloads", "evolution", "flatpak", "folks", "fontconfig", "fonts", "gconf",
    "glib-2.0", "gnome", "gnome-session", "gnome-settings-daemon", "gnome-shell", "gnupg",
    "goa-1.0", "gstreamer-1.0", "gtk", "gtk-2.0", "gtk-3.0", "gtk-4.0", "gvfs", "gvfs-metadata",
    "ibus", "icc", "icons", "kactivitymanagerd", "kde", "kde.org", "kde4", "kded5", "kded6",
    "kdedefaults", "kdeglobals", "keyring", "keyrings", "kglobalshortcuts", "khotkeys",
    "knewstuff3", "kscreen", "kscreenlocker", "ksmserver", "ksycoca", "kwallet", "kwalletd",
    "kwin", "kxkb", "kxmlgui5", "locale", "lxqt", "mate", "menus", "mime", "mimeapps", "monitors",
    "music", "nautilus", "org.gnome.shell", "pictures", "pipewire", "pixmaps", "pki", "plasma",
    "plasma-workspace", "plasmashell", "polkit-1", "public", "pulse", "python", "recentdocuments",
    "recently-used", "session", "snap", "sounds", "systemd", "telepathy", "templates", "themes",
    "thumbnailers", "thumbnails", "tracker", "tracker3", "trash", "user-dirs", "user-places",
    "videos", "wallpapers", "wayland", "wayland-sessions", "wireplumber", "xdg",
    "xdg-desktop-portal", "xfce4", "xorg", "xsessions", "xsettingsd", "zeitgeist",
};
// clang-format on

inline bool isDesktopFolder(std::string_view lowerName) {
    return std::binary_search(desktopFolders.begin(), desktopFolders.end(), lowerName);
}
static_assert(std::is_sorted(desktopFolders.begin(), desktopFolders.end()));

} // namespace brightsweep
