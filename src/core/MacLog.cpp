#include "core/MacLog.h"

#include "core/UtilityFunction.h"
#include "foundation/FileDescriptor.h"
#include "foundation/Identity.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "platform/StandardDirectories.h"
#include "platform/SystemFacts.h"
#include "platform/VolumeSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace brightsweep {

namespace {

// The lines of the hardware, in the order of sysInfoNames.
constexpr const char *hardwareLines[] = {
    "machine: %s",  "model: %s",   "memsize: %llu GB", "cpu vendor: %s",
    "cpu type: %s", "os type: %s", "os version: %s",   "host name: %s",
};
static_assert(std::size(hardwareLines) == std::size(sysInfoNames));

constexpr std::uint64_t gibibytes(std::uint64_t bytes) {
    return bytes >> 30;
}

FileDescriptor openLog(const std::filesystem::path &path) {
    const std::string &bytes = path.native();
    const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                   [](char byte) { return static_cast<signed char>(byte) >= 0; });
    struct stat status {};
    // Opening a device node can have side effects.
    if (!ascii || (::lstat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)))
        return FileDescriptor();
    FileDescriptor file(
        ::open(path.c_str(),
               O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0666));
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return FileDescriptor();
    return file;
}

// Never destroyed: lines come from every thread, until the end.
std::string &pathInUse() {
    static auto *const path = new std::string;
    return *path;
}

// The new file has no head: what tells the facts of the machine may itself be waiting for the line
// that is being written.
void renewLog() {
    const FileDescriptor file = openLog(pathInUse());
    const int old = Log::descriptor();
    if (file)
        ::dup3(file.get(), old, old == STDERR_FILENO ? 0 : O_CLOEXEC);
}

void renewWhereRemoved(const std::filesystem::path &path) {
    pathInUse() = path.native();
    Log::setRenewal(renewLog);
}

void logVolume(const VolumeFacts &volume) {
    if (volume.totalBytes == 0)
        return;
    NSLog("volname=%@,totalSpace:%llu GB, freeSpace:%llu GB, root=%@", volume.name,
          gibibytes(volume.totalBytes), gibibytes(volume.freeBytes), volume.root);
    if (volume.root == "/")
        NSLog("default volume");
    if (volume.parametersKnown)
        NSLog("vMDeviceID:%s,Attrib:0x%x,ExtAttrib:0x%x,Server:0x%x", volume.deviceId,
              volume.attributes, volume.extendedAttributes, volume.serverAddress);
}

} // namespace

void MacLog::setLogFile(std::string_view fileName) {
    const auto path = paths::join(supportFolder(), fileName);
    deleteLog(path);
    FileDescriptor file = openLog(path);
    std::error_code ignored;
    if (std::filesystem::is_symlink(path, ignored))
        NSLog("Nothing is written to %@: it is a link", path);
    if (file && ::dup2(file.get(), STDERR_FILENO) >= 0)
        renewWhereRemoved(path);
    logSysInfo(path);
}

void MacLog::setLogFileForCommandLine(std::string_view fileName) {
    const auto path = paths::join(supportFolder(), fileName);
    deleteLog(path);
    static FileDescriptor file;
    file = openLog(path);
    Log::setDescriptor(file.get());
    if (!file)
        return;
    renewWhereRemoved(path);
    logSysInfo(path);
}

void MacLog::deleteLog(const std::filesystem::path &path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
        std::uint64_t(status.st_size) > Log::sizeLimit)
        ::unlink(path.c_str());
}

void MacLog::logSysInfo(const std::filesystem::path &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && status.st_size > 0)
        return;
    NSLog("Norvex Log file: %@", path);
    logComInfo();
}

void MacLog::logComInfo() {
    NSLog("hardware info");
    Platform &platform = Platform::current();
    for (std::size_t i = 0; i < std::size(sysInfoNames); ++i) {
        const auto value = platform.facts->kernelValue(sysInfoNames[i]);
        if (!value)
            continue;
        if (std::string_view(sysInfoNames[i]) == "hw.memsize") {
            std::uint64_t bytes = 0;
            std::memcpy(&bytes, value->data(), std::min(sizeof bytes, value->size()));
            NSLog(hardwareLines[i], gibibytes(bytes));
        } else {
            NSLog(hardwareLines[i], value->c_str());
        }
    }
    NSLog(" ");
    NSLog("volume list");
    for (const VolumeFacts &volume : platform.volumes->volumes())
        logVolume(volume);
    NSLog(" ");
}

std::filesystem::path MacLog::supportFolder() {
    StandardDirectories &directories = *Platform::current().directories;
    auto folder = directories.first(StandardDirectory::ApplicationSupport);
    if (folder.empty())
        folder = directories.first(StandardDirectory::Temporary);
    if (folder.empty())
        folder = "/tmp";
    return paths::join(folder, supportFolderName);
}

bool MacLog::createSupportFolder() {
    const auto folder = supportFolder();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        NSLog("The folder %@ could not be made: %@", folder, error);
    return !error;
}

} // namespace brightsweep
