#include "foundation/SmallFile.h"

#include "foundation/FileDescriptor.h"
#include "foundation/LastError.h"
#include "foundation/Paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <random>

namespace brightsweep {

namespace {

// What cannot be synchronised, such as a pipe in the place of a file, needs no synchronising.
std::error_code synchronise(int descriptor) {
    return ::fsync(descriptor) == 0 || errno == EINVAL ? std::error_code() : lastError();
}

// True where nothing stands at the path, and no link on the way to it leads nowhere.
bool isMissing(std::filesystem::path path) {
    struct stat status {};
    while (::lstat(path.c_str(), &status) != 0) {
        const std::filesystem::path parent = paths::parent(path);
        if (errno != ENOENT || parent == path)
            return false;
        path = parent;
    }
    return ::stat(path.c_str(), &status) == 0;
}

struct Target {
    std::filesystem::path path;
    std::optional<struct stat> existing;
};

// The place that a write goes to, once links are followed, and what it replaces.
Result<Target> replaceable(const std::filesystem::path &path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT ? Result<Target>(Target{path, {}}) : lastError();
    Target target{path, {}};
    if (S_ISLNK(status.st_mode)) {
        std::error_code error;
        target.path = std::filesystem::canonical(path, error);
        if (error)
            return error;
        const uid_t linksOwner = status.st_uid;
        if (::lstat(target.path.c_str(), &status) != 0)
            return lastError();
        if (linksOwner != ::geteuid() || status.st_uid != ::geteuid())
            return std::errc::operation_not_permitted;
    }
    if (S_ISDIR(status.st_mode))
        return std::errc::is_a_directory;
    if (!S_ISREG(status.st_mode))
        return std::errc::invalid_argument;
    target.existing = status;
    return target;
}

// As root, a user's own file stays the user's own.
std::error_code keepOwnerAndMode(int descriptor, const struct stat &existing) {
    struct stat made {};
    if (::fstat(descriptor, &made) != 0)
        return lastError();
    if (made.st_uid != existing.st_uid || made.st_gid != existing.st_gid) {
        if (::fchown(descriptor, existing.st_uid, existing.st_gid) != 0 && errno != EPERM)
            return lastError();
    }
    return ::fchmod(descriptor, existing.st_mode & 07777) == 0 ? std::error_code() : lastError();
}

// -- Temporary files. Each is locked by the process that writes it, for as long as it has that
// name.

constexpr char temporaryPrefix[] = ".com.norvmac.DeskSweeperPro.new-";
constexpr std::size_t temporaryRandom = 6;

bool lock(int descriptor) {
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

std::string randomName() {
    constexpr std::string_view letters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> letter(0, letters.size() - 1);
    std::string name(temporaryRandom, ' ');
    for (char &each : name)
        each = letters[letter(random)];
    return name;
}

// Its path goes behind `path`. Whoever clears leftovers may take a new one for one of them before
// it is locked.
FileDescriptor makeTemporary(std::string &path, NewFile readers) {
    const std::string beginning = path;
    const mode_t mode = readers == NewFile::ByUmask ? 0666 : 0600;
    for (;;) {
        path = beginning + randomName();
        FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        struct stat status {};
        if (!file && errno == EEXIST)
            continue;
        if (!file)
            return file;
        // A file system without locks is not cleared either.
        const bool isTaken = !lock(file.get()) && errno == EWOULDBLOCK;
        if (!isTaken && ::fstat(file.get(), &status) == 0 && status.st_nlink > 0)
            return file;
    }
}

bool isTemporaryName(std::string_view name) {
    return name.starts_with(temporaryPrefix) &&
           name.size() == std::strlen(temporaryPrefix) + temporaryRandom;
}

// Removes the temporary files of this user whose writer is gone.
void clearLeftovers(const std::filesystem::path &folder) {
    DIR *const entries = ::opendir(folder.c_str());
    if (!entries)
        return;
    while (const dirent *entry = ::readdir(entries)) {
        if (!isTemporaryName(entry->d_name))
            continue;
        const FileDescriptor file(::openat(::dirfd(entries), entry->d_name,
                                           O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat open {};
        struct stat named {};
        if (file && ::fstat(file.get(), &open) == 0 && S_ISREG(open.st_mode) &&
            open.st_uid == ::geteuid() && open.st_nlink == 1 && lock(file.get()) &&
            ::fstatat(::dirfd(entries), entry->d_name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
            named.st_dev == open.st_dev && named.st_ino == open.st_ino)
            ::unlinkat(::dirfd(entries), entry->d_name, 0);
    }
    ::closedir(entries);
}

// Writes beside the target; `place` gives the whole file its name.
template <typename Place>
std::error_code write(const Target &target, std::string_view text, NewFile readers, Place place) {
    clearLeftovers(paths::parent(target.path));
    std::string temporary = paths::join(paths::parent(target.path), temporaryPrefix).native();
    const FileDescriptor file = makeTemporary(temporary, readers);
    if (!file)
        return lastError();
    std::error_code error = writeAll(file.get(), text);
    if (!error)
        error = synchronise(file.get());
    if (!error && target.existing)
        error = keepOwnerAndMode(file.get(), *target.existing);
    // The lock is held until the name is gone, one way or the other.
    if (!error && !place(temporary))
        error = lastError();
    if (error)
        ::unlink(temporary.c_str());
    return error;
}

} // namespace

std::string wordsForFile(std::error_code error) {
    return error == std::errc::invalid_argument || error == std::errc::is_a_directory
               ? "It is not a regular file"
               : error.message();
}

std::error_code writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return lastError();
        text.remove_prefix(std::size_t(written));
    }
    return {};
}

Result<std::string> readSmallFile(const std::filesystem::path &path, std::size_t limit) {
    // Non-blocking, so that a FIFO in the place of the file holds nobody up.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::errc::invalid_argument;
    std::string text;
    char block[16 * 1024];
    while (text.size() < limit) {
        const ssize_t got = ::read(file.get(), block, std::min(sizeof block, limit - text.size()));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return lastError();
        if (got == 0)
            break;
        text.append(block, std::size_t(got));
    }
    return text;
}

Result<std::string> readWholeFile(const std::filesystem::path &path, std::size_t limit) {
    auto text = readSmallFile(path, limit + 1);
    if (!text && text.error() == std::errc::no_such_file_or_directory && !isMissing(path))
        return std::errc::no_link; // It is there, but leads nowhere.
    if (text && text->size() > limit)
        return std::errc::file_too_large;
    return text;
}

std::error_code writeSmallFile(const std::filesystem::path &path, std::string_view text,
                               NewFile readers) {
    const auto target = replaceable(path);
    if (!target)
        return target.error();
    return write(*target, text, readers, [&](const std::string &temporary) {
        return ::rename(temporary.c_str(), target->path.c_str()) == 0;
    });
}

std::error_code writeNewSmallFile(const std::filesystem::path &path, std::string_view text) {
    return write({path, {}}, text, NewFile::OwnersOnly, [&](const std::string &temporary) {
        if (::link(temporary.c_str(), path.c_str()) == 0) {
            ::unlink(temporary.c_str());
            return true;
        }
        struct stat status {};
        // A file system without hard links.
        if (errno != EPERM && errno != EOPNOTSUPP)
            return false;
        if (::lstat(path.c_str(), &status) == 0) {
            errno = EEXIST;
            return false;
        }
        return ::rename(temporary.c_str(), path.c_str()) == 0;
    });
}

} // namespace brightsweep
