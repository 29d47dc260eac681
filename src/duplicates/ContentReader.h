#pragma once

#include "duplicates/ReadingPace.h"
#include "duplicates/fileAttrbItem.h"
#include "platform/FileOperations.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace brightsweep {

/// Reads files for their checksums and leaves the page cache as it was: what was cached stays, what
/// had to be fetched is given up again. Runs of zeros that the file system does not store are
/// skipped by arithmetic.
///
/// Belongs to one thread; the stop flag is looked at before every block, and several times a second
/// while one is fetched. A file that is no longer
/// what the record says, cannot be read to its end, or is not regular gives an error.
class ContentReader {
public:
    /// What md5_1k covers.
    static constexpr std::size_t headSize = 1024;
    /// What is read at once for it; the whole of a file up to that size is done with that.
    static constexpr std::size_t firstReadSize = 16 * 1024;

    struct FirstBlock {
        std::uint64_t md5_1k = 0;         ///< a shorter file is continued with zeros
        std::optional<std::uint64_t> md5; ///< where the first read was the whole file
        bool empty = false;               ///< only a link may lead to an empty file
    };

    /// A file that has been read in part and is kept open.
    struct Reading {
        FileDescriptor file;
        std::uint64_t size = 0;
        bool isChecked = false;   ///< the system has told that it is a regular file of that size
        std::uint64_t offset = 0; ///< read so far
        std::uint64_t value = 0;  ///< the checksum of that
        std::size_t blockSize = 0;
        bool cacheCounted = true; ///< the system tells how much of a range is cached
        bool cacheTried = true;   ///< a read can be confined to what is cached
    };

    explicit ContentReader(FileOperations &files, const std::atomic<bool> *stop = nullptr);

    /// Hands over in `rest`, where given, a file that is longer than the first read.
    Result<FirstBlock> firstBlock(const fileAttrbItem &item, Reading *rest = nullptr);
    Result<std::uint64_t> wholeFile(const fileAttrbItem &item);
    /// Reads on to the end; the checksum of the whole.
    Result<std::uint64_t> wholeFile(Reading rest);

private:
    std::error_code open(const fileAttrbItem &item);
    std::error_code check();
    Result<std::uint64_t> fold();
    std::error_code read(std::size_t size, std::uint64_t offset);
    bool readCached(std::size_t size, std::uint64_t offset);
    bool findMissing(std::size_t size, std::uint64_t offset);
    std::error_code readAndGiveUpMissing(std::size_t size, std::uint64_t offset);
    Result<std::size_t> readPiece(std::size_t place, std::size_t size, std::uint64_t offset);
    std::error_code readByTrial(std::size_t size, std::uint64_t offset);
    Result<std::size_t> fetch(std::size_t done, std::size_t size, std::uint64_t offset);
    bool isCached(std::uint64_t offset);
    void willFetch();
    bool stopped() const { return m_stop && m_stop->load(std::memory_order_relaxed); }

    struct Release {
        void operator()(unsigned char *buffer) const;
    };

    FileOperations &m_files;
    const std::atomic<bool> *m_stop;
    std::unique_ptr<unsigned char[], Release> m_buffer;
    Reading m_now;
    ReadingPace m_pace;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_missing; // pages to be given up again
};

} // namespace brightsweep
