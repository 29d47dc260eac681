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

} // namespace brightsweep
