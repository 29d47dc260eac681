#include "duplicates/FileComparison.h"

#include "duplicates/DuplicateError.h"
#include "linux/RemovalError.h"
#include "platform/FileHolders.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cstring>

namespace brightsweep {

namespace {

// Both blocks stay in the processor's cache from reading to comparing.
constexpr std::size_t blockSize = 128 * 1024;

bool hasHoles(const FileAttributes &attributes) {
    return attributes.stored < attributes.size;
}

} // namespace

bool isUnchanged(const FileAttributes &one, const FileAttributes &other) {
    return one.device == other.device && one.inode == other.inode && one.kind == other.kind &&
           one.size == other.size && one.modified == other.modified && one.changed == other.changed;
}

FileComparison::FileComparison(FileOperations &files, const std::atomic<bool> *stop)
    : m_files(files),
      m_stop(stop),
      m_one(std::make_unique<char[]>(blockSize)),
      m_other(std::make_unique<char[]>(blockSize)) {}

Result<HeldCopy> FileComparison::hold(const std::filesystem::path &path) {
    auto file = m_files.openFile(path);
    if (!file)
        return file.error();
    // Before the look: what is written later makes somebody wait.
    const auto guard = m_files.keepWritersOut(*file);
    if (guard == std::errc::text_file_busy)
        return DuplicateError::BeingWritten;
    const auto attributes = m_files.fileAttributes(*file);
    if (!attributes)
        return attributes.error();
    return HeldCopy{path, *std::move(file), *attributes, !guard};
}

std::error_code FileComparison::wanted(const HeldCopy &file, const HeldCopy &other) {
    if (m_stop && m_stop->load(std::memory_order_relaxed))
        return std::make_error_code(std::errc::operation_canceled);
    if (file.isGuarded && m_files.isWantedForWriting(file.file))
        return DuplicateError::BeingWritten;
    if (other.isGuarded && m_files.isWantedForWriting(other.file))
        return DuplicateError::OtherBeingWritten;
    return {};
}

std::error_code FileComparison::compare(const HeldCopy &file, const HeldCopy &other) {
    const std::uint64_t size = file.attributes.size;
    if (size != other.attributes.size)
        return DuplicateError::Differs;
    const bool sparse = hasHoles(file.attributes) && hasHoles(other.attributes);
    for (std::uint64_t offset = 0; offset < size;) {
        if (const auto error = wanted(file, other))
            return error;
        if (sparse) {
            // What neither stores is zero in both.
            const auto one = m_files.nextData(file.file, offset);
            const auto second = m_files.nextData(other.file, offset);
            if (one && second)
                offset = std::min({size, std::max(offset, std::min(*one, *second))});
            if (offset == size)
                break;
        }
        const std::size_t wantedSize =
            std::size_t(std::min<std::uint64_t>(blockSize, size - offset));
        const auto one = m_files.readAt(file.file, m_one.get(), wantedSize, offset);
        if (!one)
            return one.error();
        const auto second = m_files.readAt(other.file, m_other.get(), wantedSize, offset);
        if (!second)
            return DuplicateError::OtherUnreadable;
        if (*one != wantedSize)
            return RemovalError::Changed;
        if (*second != wantedSize)
            return DuplicateError::OtherChanged;
        if (std::memcmp(m_one.get(), m_other.get(), wantedSize) != 0)
            return DuplicateError::Differs;
        offset += wantedSize;
    }
    return {};
}

std::error_code FileComparison::lookAgain(const HeldCopy &file, const HeldCopy &other) {
    if (const auto error = wanted(file, other))
        return error;
    const auto one = m_files.fileAttributes(file.file);
    if (!one || !isUnchanged(*one, file.attributes))
        return RemovalError::Changed;
    const auto second = m_files.fileAttributes(other.file);
    if (!second || !isUnchanged(*second, other.attributes))
        return DuplicateError::OtherChanged;
    return {};
}

std::error_code FileComparison::lookForWriters(const HeldCopy &file, const HeldCopy &other) {
    if (file.isGuarded && other.isGuarded)
        return {};
    const auto written = Platform::current().holders->writtenFiles();
    const auto isWritten = [&](const HeldCopy &copy) {
        return !copy.isGuarded &&
               std::binary_search(written.begin(), written.end(),
                                  FileIdentity{copy.attributes.device, copy.attributes.inode});
    };
    if (isWritten(file))
        return DuplicateError::BeingWritten;
    return isWritten(other) ? std::error_code(DuplicateError::OtherBeingWritten)
                            : std::error_code();
}

} // namespace brightsweep
