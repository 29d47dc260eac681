#include "foundation/SmallFile.h"

#include "foundation/FileDescriptor.h"
#include "foundation/Paths.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace brightsweep {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

// What cannot be synchronised, such as a pipe in the place of a file, needs no synchronising.
std::error_code synchronise(int descriptor) {
    return ::fsync(descriptor) == 0 || errno == EINVAL ? std::error_code() : lastError();
}

} // namespace

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

std::error_code writeSmallFile(const std::filesystem::path &path, std::string_view text) {
    std::filesystem::path target = path;
    if (char *resolved = ::realpath(path.c_str(), nullptr)) {
        target = resolved;
        ::free(resolved);
    }
    std::string temporary = target.native() + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return lastError();
    struct stat existing {};
    const bool exists = ::stat(target.c_str(), &existing) == 0;
    std::error_code error = writeAll(file.get(), text);
    if (!error)
        error = synchronise(file.get());
    if (!error && exists && ::fchmod(file.get(), existing.st_mode & 07777) != 0)
        error = lastError();
    file.reset();
    if (!error && ::rename(temporary.c_str(), target.c_str()) != 0)
        error = lastError();
    if (error)
        ::unlink(temporary.c_str());
    return error;
}

} // namespace brightsweep
