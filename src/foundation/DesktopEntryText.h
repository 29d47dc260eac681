#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brightsweep {

// Writing of desktop entries, where DesktopEntry reads them.

/// The text of an entry with that value of a key, as it is to stand in the file. Nothing else of it
/// changes: comments, order, other keys, translations, line ends and what is no key stay byte for
/// byte. A key that stands there, however often, gets the value in its places; a new one comes
/// behind the last key of the first main group. Nothing where there is no such group.
std::optional<std::string> withEntryValue(const std::string &text, std::string_view key,
                                          std::string_view value);

/// A text as a value of type string.
std::string entryString(std::string_view text);

/// An Exec value that runs a program, which is found as the shell does, with one word behind it
/// unless that is empty. The bytes of both reach the program unchanged.
std::string execOf(std::string_view program, std::string_view argument = {});

} // namespace brightsweep
