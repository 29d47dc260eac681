#pragma once

class QWidget;

namespace brightsweep {

class FolderChoice;
class SameFileDeleteViewController;

/// Lets a folder reach the duplicates page from one of its panels, which owns the object. Main
/// thread; the page outlives it.
FolderChoice *takeFolders(SameFileDeleteViewController &page, QWidget *panel);

} // namespace brightsweep
