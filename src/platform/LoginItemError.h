#pragma once

#include <system_error>

namespace brightsweep {

/// Why a login item cannot be added, changed or removed, where no error of the system says it.
enum class LoginItemError {
    StandsForSystem = 1, ///< without it the system's own entry of that name would start again
    LinkElsewhere,       ///< a link to what is not a file of the user's own in the home
    NotAnEntry,          ///< what has that name is no file that an entry could be in
    NameNotText,         ///< the path is not UTF-8, which a desktop entry has to be
    NothingToStart,      ///< a desktop entry that names no program
    NoEntryInside,       ///< a file that holds no desktop entry
    NothingToOpen,       ///< neither a regular file nor a folder
    LoneReturns,         ///< a text whose lines no line feed ends: it is read, but not changed
    NotOurs,             ///< the user has an entry of another origin in its place
};

/// Words for a row and for the command line, in the engine's English: a key of the texts.
std::error_code make_error_code(LoginItemError error);

} // namespace brightsweep

template <>
struct std::is_error_code_enum<brightsweep::LoginItemError> : std::true_type {};
