#pragma once

namespace brightsweep {

/// Marks a key of resources/texts/ where Qt's own mark is not to be had.
inline constexpr const char *textKey(const char *key) {
    return key;
}

} // namespace brightsweep
