#pragma once

#include <string_view>

namespace brightsweep {

/// The text without the ASCII white space at its ends. No Qt, any thread.
constexpr std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == text.npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

} // namespace brightsweep
