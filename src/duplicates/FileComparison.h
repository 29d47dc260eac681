#pragma once

#include "platform/FileOperations.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace brightsweep {

/// An open file, and what it was when it was opened.
struct HeldCopy {
    std::filesystem::path path;
    FileDescriptor file;
    FileAttributes attributes;
    /// The system lets nobody open it for writing meanwhile.
    bool isGuarded = false;
};

/// True where nothing tells the two states of a file apart.
bool isUnchanged(const FileAttributes &one, const FileAttributes &other);

/// Compares files byte by byte. For one thread; keeps its buffers from call to call.
class FileComparison {
public:
    explicit FileComparison(FileOperations &files, const std::atomic<bool> *stop);

    /// Opens a regular file, through no link in the last place, and keeps writers out of it where
    /// the system can. DuplicateError::BeingWritten where one is at work.
    Result<HeldCopy> hold(const std::filesystem::path &path);
    /// Empty where both hold the same bytes; DuplicateError::Differs, or why that cannot be told:
    /// the errors of reading, `operation_canceled` after a stop, BeingWritten or OtherBeingWritten
    /// where a program waits to write to one of them.
    std::error_code compare(const HeldCopy &file, const HeldCopy &other);
    /// The same for a moment later: empty while neither has been touched since it was opened.
    std::error_code lookAgain(const HeldCopy &file, const HeldCopy &other);
    /// By what programs hold, where the system could not keep writers out.
    std::error_code lookForWriters(const HeldCopy &file, const HeldCopy &other);

private:
    std::error_code wanted(const HeldCopy &file, const HeldCopy &other);

    FileOperations &m_files;
    const std::atomic<bool> *m_stop;
    std::unique_ptr<char[]> m_one;
    std::unique_ptr<char[]> m_other;
};

} // namespace brightsweep
