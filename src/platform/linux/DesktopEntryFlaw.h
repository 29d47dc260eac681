#pragma once

#include "platform/LoginItemSource.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace brightsweep {

/// What readers that are stricter than DesktopEntry make of a desktop entry's text.
struct DesktopEntryFlaw {
    LoginItemObstacle obstacle = LoginItemObstacle::None; ///< one that isFlaw()
    std::string detail{};                                 ///< the line, or the key
};

/// The keys that decide whether something starts, and what.
inline constexpr auto decisiveKeys = std::to_array<std::string_view>(
    {"Exec", "Hidden", "NotShowIn", "OnlyShowIn", "Path", "TryExec", "Type"});

/// Of the value of OnlyShowIn: that is no desktop to GLib, and all of them to systemd's generator.
bool namesNoDesktop(std::string_view list);
/// A line that not every reader takes, cut where it is long.
DesktopEntryFlaw badLineFlaw(std::string_view line);
/// The first flaw of the text, nothing where every reader takes it alike. Comments may hold any
/// bytes.
std::optional<DesktopEntryFlaw> flawOf(std::string_view text);

} // namespace brightsweep
