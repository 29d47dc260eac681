#pragma once

#include <system_error>

namespace brightsweep {

/// Why a duplicate stays, where no error of the system and no RemovalError says it.
enum class DuplicateError {
    NoOther = 1,        ///< nothing else of its group is left to stay
    OtherChanged,       ///< what stays is no longer what was searched
    OtherUnreadable,    ///< what stays cannot be read
    SameFile,           ///< what stays is this very file by another path
    Differs,            ///< what stays has other contents
    BeingWritten,       ///< a program has it open for writing
    OtherBeingWritten,  ///< a program has what stays open for writing
    BehindLink,         ///< a link stands on the way to it, and no removal follows one
    CannotShare,        ///< its file system has no shared blocks
    OtherFileSystem,    ///< what stays lies on another file system: no common blocks
    NeverCopiedOnWrite, ///< one of the two is never copied on write, so that blocks stay its own
    InUseBySystem,      ///< as swap space or a running program
    ReadOnly,           ///< its volume is
    ShareRefused,       ///< by the file system, without a reason
};

/// Words for a row and for the command line, in the engine's English.
std::error_code make_error_code(DuplicateError error);

} // namespace brightsweep

template <>
struct std::is_error_code_enum<brightsweep::DuplicateError> : std::true_type {};
