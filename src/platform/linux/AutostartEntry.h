#pragma once

#include "foundation/DesktopEntry.h"
#include "platform/LoginItemSource.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep {

// What a desktop entry of an autostart folder means, by the freedesktop documents "Desktop Entry"
// and "Desktop Application Autostart", as systemd's generator and gnome-session take them.

// Keys of this program's own.
inline constexpr char entryUrlKey[] = "X-Brightsweep-URL";     ///< what was added
inline constexpr char entryOrderKey[] = "X-Brightsweep-Order"; ///< counts what was added
/// Written by a switch: a checksum of the text as it wrote it, in hexadecimal.
inline constexpr char entryOverrideKey[] = "X-Brightsweep-Override";

/// What entries are judged by; read once for a listing.
struct AutostartSession {
    std::vector<std::string> desktops; ///< of XDG_CURRENT_DESKTOP
    std::vector<std::string> locales;

    static AutostartSession current();
};

/// `place` is the entry's own file; `fallback` is the system's entry of that name, which gives what
/// the entry does not have of its own to be shown by.
LoginItemEntry loginItemOf(const DesktopEntry &entry, const std::filesystem::path &place,
                           const AutostartSession &session, const DesktopEntry *fallback = nullptr);

/// How long the unit's name is for an entry of that name, without ".desktop". systemd's generator
/// calls it "app-NAME@autostart.service" and writes each byte that is no letter, digit, ":", "_" or
/// "." as four; see systemd-escape(1).
std::size_t unitNameLength(std::string_view name);
inline constexpr std::size_t longestUnitName = 255;

bool isHiddenEntry(const DesktopEntry &entry);
/// The place that this program gave it in its order of adding; nothing for entries of other origin.
std::optional<std::uint64_t> orderOfEntry(const DesktopEntry &entry);

/// The text of a new entry that starts the program, or opens the document or folder, at that path.
std::string newEntryText(const std::filesystem::path &path, const std::string &name,
                         const std::string &icon);
/// The text of an entry as a switch writes it over the system's. Nothing where it holds no entry.
std::optional<std::string> sealedOverride(const std::string &text);
/// True where nobody has changed such a text since.
bool isUntouchedOverride(const std::string &text);
/// The URL form that is kept in an entry.
std::string entryUrlOf(const std::filesystem::path &path);

} // namespace brightsweep
