#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brightsweep {

/// What readers that are stricter than DesktopEntry make of a desktop entry's text.
struct DesktopEntryFlaw {
    enum class Kind {
        NotUtf8,       ///< systemd's generator refuses the file
        ByteOrderMark, ///< GLib refuses it
        BadLine,       ///< no key, or a truth value in no common form: one of the two refuses it
        TwoValues,     ///< of a key; systemd's generator takes the first, GLib the last
    };
    Kind kind = Kind::NotUtf8;
    std::string detail; ///< the line, or the key that has two values
};

/// The first flaw of the text, nothing where every reader takes it alike. Comments may hold any
/// bytes.
std::optional<DesktopEntryFlaw> flawOf(std::string_view text);

} // namespace brightsweep
