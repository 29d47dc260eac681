#pragma once

#include <string_view>

namespace brightsweep::desktopEntry {

/// What reading a desktop entry and changing one have in common.

inline constexpr std::string_view mainGroup = "[Desktop Entry]";
inline constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

/// Without the blanks around it, of which a carriage return is one.
constexpr std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == text.npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

} // namespace brightsweep::desktopEntry
