#pragma once

#include <QLatin1String>

namespace brightsweep {

// Posted by the operations of the quick clean, on their thread and without an object.
// User info: "FolderPath".
inline constexpr QLatin1String DSScanSingleFolder("ScanSingleFolder");
// User info: "FolderSize" and "FileCount", unsigned.
inline constexpr QLatin1String DSScanOperationFinish("ScanOperationFinish");
inline constexpr QLatin1String DSBeginFastClean("BeginFastClean");
// User info: "FilePath" and "FileSize".
inline constexpr QLatin1String DSDeleteFileSuccess("DeleteFileSuccess");
// User info: "FilePath", and "FileSize" when it is known.
inline constexpr QLatin1String DSDeleteFileFailed("DeleteFileFailed");
inline constexpr QLatin1String DSFastCleanFinish("FastCleanFinish");
// Posted at every cancel point that is reached, so possibly more than once.
inline constexpr QLatin1String DSCleanCanceled("FastCleanCanceled");

// Posted by the quick clean on the main thread once it has reported. User info "object": the
// number of items that went.
inline constexpr QLatin1String quickCleanEndedNotification("quickCleanEnded");

// Posted within the clean page, on the main thread.
// User info "object": whether something was ticked, or "clean"; may be left out.
inline constexpr QLatin1String cleanShowSelectNumInBottomNotification("cleanShowSelectNumInBottom");
// User info "object": a map with "rowNum", the category.
inline constexpr QLatin1String updateSelectNumberNotification("updateSelectNumber");
// The same, but on the scanner's thread.
inline constexpr QLatin1String refNewTableViewSizeLabelNotification("refNewTableViewSizeLabel");
// User info "object": the row. "isSelect" and "iconImage".
inline constexpr QLatin1String selectedRowInFastCleanNotification("selectedRowInFastClean");
// The scan button of a list was clicked.
inline constexpr QLatin1String scanItemGetScanBtnNotification("scanItemGetScanBtn");
// User info "object": a list of two texts, the startup volume's capacity and its free space.
inline constexpr QLatin1String FreeTotleArrNotification("FreeTotleArr");

} // namespace brightsweep
