#pragma once

namespace brightsweep {

/// Comes first in main(). In the place of a standard descriptor that is closed comes one that
/// fails as well, so that no file that is opened later gets what is printed. A write beyond the
/// limit for the size of files fails, and does not end the process.
void settleProcess();

} // namespace brightsweep
