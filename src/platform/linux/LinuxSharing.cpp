#include "platform/linux/LinuxFileOperations.h"

#include "foundation/LastError.h"

#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>

namespace brightsweep {

namespace {

// A request for one target, as the system call takes it; see ioctl_fideduperange(2).
struct ShareRequest {
    alignas(file_dedupe_range)
        std::array<std::byte, sizeof(file_dedupe_range) + sizeof(file_dedupe_range_info)> bytes{};

    file_dedupe_range &range() { return *reinterpret_cast<file_dedupe_range *>(bytes.data()); }
    file_dedupe_range_info &target() { return range().info[0]; }
};

std::error_code share(ShareRequest &request, int source, int file, std::uint64_t offset,
                      std::uint64_t length) {
    request.range().src_offset = offset;
    request.range().src_length = length;
    request.range().dest_count = 1;
    request.target().dest_fd = file;
    request.target().dest_offset = offset;
    if (::ioctl(source, FIDEDUPERANGE, &request.range()) != 0)
        return lastError();
    if (request.target().status < 0)
        return {-request.target().status, std::generic_category()};
    return {};
}

} // namespace

// A read lease: it is refused while anybody may write to the file, and who opens it for writing
// waits until it is given up. See fcntl(2).
std::error_code LinuxFileOperations::keepWritersOut(const FileDescriptor &file) {
    // The news that somebody waits is asked for; the signal that brings it would end the process.
    if (::fcntl(file.get(), F_SETSIG, SIGURG) == 0 && ::fcntl(file.get(), F_SETLEASE, F_RDLCK) == 0)
        return {};
    return errno == EAGAIN ? std::make_error_code(std::errc::text_file_busy) : lastError();
}

bool LinuxFileOperations::isWantedForWriting(const FileDescriptor &file) {
    return ::fcntl(file.get(), F_GETLEASE) == F_UNLCK;
}

Result<std::uint64_t> LinuxFileOperations::unsharedBytes(const FileDescriptor &file) {
    constexpr std::size_t extentsAtOnce = 128;
    struct stat status;
    if (::fstat(file.get(), &status) != 0)
        return lastError();
    std::uint64_t shared = 0;
    alignas(fiemap) std::array<std::byte, sizeof(fiemap) + extentsAtOnce * sizeof(fiemap_extent)>
        buffer;
    auto &map = *reinterpret_cast<fiemap *>(buffer.data());
    for (std::uint64_t offset = 0;;) {
        std::memset(buffer.data(), 0, sizeof(fiemap));
        map.fm_start = offset;
        map.fm_length = FIEMAP_MAX_OFFSET - offset;
        map.fm_extent_count = extentsAtOnce;
        // Without extents to look at, nothing is shared.
        if (::ioctl(file.get(), FS_IOC_FIEMAP, &map) != 0 || map.fm_mapped_extents == 0)
            break;
        for (std::uint32_t i = 0; i < map.fm_mapped_extents; ++i) {
            const fiemap_extent &extent = map.fm_extents[i];
            if (extent.fe_flags & FIEMAP_EXTENT_SHARED)
                shared += extent.fe_length;
        }
        const fiemap_extent &last = map.fm_extents[map.fm_mapped_extents - 1];
        offset = last.fe_logical + last.fe_length;
        if (last.fe_flags & FIEMAP_EXTENT_LAST)
            break;
    }
    const std::uint64_t stored = attributesOf(status).stored;
    return stored - std::min(shared, stored);
}

Result<SharedRange> LinuxFileOperations::shareRange(const FileDescriptor &source,
                                                    const FileDescriptor &file,
                                                    std::uint64_t offset, std::uint64_t length) {
    ShareRequest request;
    if (const auto error = share(request, source.get(), file.get(), offset, length))
        return error;
    if (request.target().status == FILE_DEDUPE_RANGE_DIFFERS)
        return SharedRange{0, false};
    return SharedRange{request.target().bytes_deduped, true};
}

// By asking for less than a block to be shared with itself, which no file system does, but only one
// that can share says why.
std::error_code LinuxFileOperations::sharingRefusal(const FileDescriptor &file) {
    ShareRequest request;
    const auto error = share(request, file.get(), file.get(), 0, 1);
    const bool cannot = error == std::errc::operation_not_supported ||
                        error == std::errc::not_supported ||
                        error == std::errc::inappropriate_io_control_operation;
    return cannot ? error : std::error_code();
}

bool LinuxFileOperations::isNeverCopiedOnWrite(const FileDescriptor &file) {
    int flags = 0;
    return ::ioctl(file.get(), FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_NOCOW_FL);
}

} // namespace brightsweep
