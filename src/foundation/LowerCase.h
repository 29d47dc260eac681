#pragma once

#include <string>
#include <string_view>

namespace brightsweep {

/// With the letters of ASCII in lower case; other bytes stay.
inline std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char &letter : result)
        letter = letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    return result;
}

} // namespace brightsweep
