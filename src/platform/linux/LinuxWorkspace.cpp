#include "platform/linux/LinuxWorkspace.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "linux/ProcessStart.h"
#include "platform/linux/AbsentVolumes.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/SessionBus.h"

#include <QMimeDatabase>
#include <QStringList>

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <vector>

namespace brightsweep {

namespace {

constexpr std::array packageExtensions = {"app", "bundle", "framework", "plugin"};

bool isDirectory(const std::filesystem::path &path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isThere(const std::filesystem::path &path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

// The opener may last as long as what it opens, so that only its start is waited for.
bool startOpener(const std::filesystem::path &path) {
    const auto [process, error] = startProcess({.arguments = {"xdg-open", path.native()},
                                                .environment = environmentOfChildren(),
                                                .input = ProcessStart::inherited});
    if (error != 0)
        return false;
    try {
        std::thread([child = process, path] {
            if (waitForProcess(child) != 0)
                NSLog("cannot open %@", path);
        }).detach();
    } catch (const std::system_error &noThread) {
        NSLog("What opens %@ is not waited for: %@", path, noThread.code());
    }
    return true;
}

} // namespace

LinuxWorkspace::LinuxWorkspace(std::shared_ptr<SessionBus> bus) : m_bus(std::move(bus)) {}

QString LinuxWorkspace::displayName(const std::filesystem::path &path) {
    return paths::display(paths::lastComponent(path));
}

bool LinuxWorkspace::isPackage(const std::filesystem::path &path) {
    const std::string extension = paths::extension(path);
    const auto matches = [&](const char *candidate) {
        return ::strcasecmp(candidate, extension.c_str()) == 0;
    };
    return std::any_of(packageExtensions.begin(), packageExtensions.end(), matches) &&
           isDirectory(path);
}

QString LinuxWorkspace::typeOf(const std::filesystem::path &path) {
    if (isPackage(path))
        return QString::fromLatin1("application/x-bundle");
    if (isDirectory(path) || !isThere(path))
        return {};
    const QMimeDatabase database;
    return database
        .mimeTypeForFile(paths::text(paths::lastComponent(path)), QMimeDatabase::MatchExtension)
        .name();
}

Result<FileTime> LinuxWorkspace::created(const std::filesystem::path &path) {
    struct statx status;
    if (::statx(AT_FDCWD, path.c_str(), AT_STATX_DONT_SYNC | AT_SYMLINK_NOFOLLOW,
                STATX_BTIME | STATX_MTIME, &status) != 0)
        return std::error_code(errno, std::generic_category());
    const auto &time = status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_mtime;
    return FileTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

bool LinuxWorkspace::isMissing(const std::string &program) {
    if (!program.starts_with('/'))
        return !program.empty() && findProgram(program).empty();
    struct stat status;
    const std::filesystem::path path = systemPath(program);
    return ::stat(path.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR) &&
           !mayLieOnAbsentVolume(path);
}

bool LinuxWorkspace::mayLieOnAbsentVolume(const std::filesystem::path &path) {
    return brightsweep::mayLieOnAbsentVolume(path);
}

bool LinuxWorkspace::open(const std::filesystem::path &path) {
    // An absolute path never reads as an option of the opener.
    if (!path.is_absolute() || !isThere(path))
        return false;
    return startOpener(path);
}

bool LinuxWorkspace::reveal(const std::filesystem::path &path) {
    struct stat status;
    // A link that leads nowhere can be shown all the same.
    if (!path.is_absolute() || ::lstat(path.c_str(), &status) != 0)
        return false;
    const auto openFolder = [folder = paths::parent(path)] { startOpener(folder); };
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    message << QStringList(paths::toFileUrl(path)) << QString();
    m_bus->open();
    m_bus->whenSettled(this, [this, message, openFolder] {
        if (!m_bus->isConnected()) {
            openFolder();
            return;
        }
        m_bus->call(message, this, [openFolder](const QDBusMessage &reply) {
            if (reply.type() == QDBusMessage::ErrorMessage)
                openFolder();
        });
    });
    return true;
}

} // namespace brightsweep
