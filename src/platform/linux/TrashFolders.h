#pragma once

#include "foundation/FileDescriptor.h"
#include "foundation/Result.h"
#include "linux/RemovalWay.h"
#include "platform/FileOperations.h"

namespace brightsweep {

// The places of trashes by the freedesktop Trash document. Each is reached step by step from the
// top of its volume, through no link: whoever owns what lies above the user's own folder may
// exchange it at any time, and only what was looked at counts.

/// `$top/.Trash/$uid`, where the shared folder is a real one with the sticky bit and the user's own
/// is private. Empty where there is none; `make` makes the latter.
FileDescriptor sharedVolumeTrash(int top, bool make = false);
/// `$top/.Trash-$uid`, likewise.
FileDescriptor singleVolumeTrash(int top, bool make = false);
/// One of the folders in a trash, the user's own.
FileDescriptor folderOfTrash(int trash, const char *name, bool make = false);

/// See FileOperations::trashOf().
Result<TrashFolder> trashOfPlace(const HoldingPlace &place, bool make);

} // namespace brightsweep
