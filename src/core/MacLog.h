#pragma once

#include <filesystem>
#include <string_view>

namespace brightsweep {

/// Points the program's one log at its file, "norvex.log" in the support folder, before any thread
/// starts. Nothing here can stop the program: while the folder does not exist, its path is not
/// plain ASCII, or something else than a regular file stands in the log's place, a link to one too,
/// there is no file and lines go where they went before. A file that is removed while the program
/// runs is made anew for the next line, within a second.
class MacLog {
public:
    /// Trims an overgrown file, puts the file in the place of standard error, and writes the facts
    /// of the machine to a new one.
    static void setLogFile(std::string_view fileName);
    /// The same for a process that keeps its standard error: through a descriptor of its own, and
    /// to nowhere where there is no file.
    static void setLogFileForCommandLine(std::string_view fileName);

    /// Removes the file if it is larger than Log::sizeLimit.
    static void deleteLog(const std::filesystem::path &path);
    /// Writes the head of a file that is missing or empty.
    static void logSysInfo(const std::filesystem::path &path);
    /// Writes the lines of the hardware and the volumes.
    static void logComInfo();

    /// The folder that the log lies in: in the user's application support folder, else in that for
    /// temporary files.
    static std::filesystem::path supportFolder();
    /// Makes that folder, so that every later launch has a log. False when it cannot be had.
    static bool createSupportFolder();
};

} // namespace brightsweep
