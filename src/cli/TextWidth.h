#pragma once

#include <string>
#include <string_view>

namespace brightsweep::cli {

/// The columns that a text takes on a terminal: two for each character of East Asian scripts and
/// for most pictures, none for what is put upon the one before. The text is UTF-8 without control
/// characters.
std::size_t widthOf(std::string_view utf8);

/// The text, or as much of its beginning as fits into the columns with an ellipsis behind it.
std::string cutToWidth(std::string_view utf8, std::size_t columns);

} // namespace brightsweep::cli
