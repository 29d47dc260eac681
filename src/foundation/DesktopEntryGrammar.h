#pragma once

#include <string_view>

namespace brightsweep::desktopEntry {

/// What reading a desktop entry and changing one have in common.

inline constexpr std::string_view mainGroup = "[Desktop Entry]";
inline constexpr std::string_view fileEnding = ".desktop";
inline constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

} // namespace brightsweep::desktopEntry
