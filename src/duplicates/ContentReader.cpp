#include "duplicates/ContentReader.h"

#include "duplicates/crc.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <new>

namespace brightsweep {

namespace {

// Stays within a processor's second-level cache; one that has to be fetched is better larger.
constexpr std::size_t cachedBlockSize = 256 * 1024;
constexpr std::size_t fetchedBlockSize = 1024 * 1024;
constexpr std::uint64_t pageSize = 4096;
constexpr std::size_t bufferSize = fetchedBlockSize + pageSize; // a byte more may be asked for
// The kernel copies several times faster to an aligned place.
constexpr std::align_val_t bufferAlignment{pageSize};

bool isAllZero(const unsigned char *bytes, std::size_t size) {
    return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0;
}

} // namespace

ContentReader::ContentReader(FileOperations &files, const std::atomic<bool> *stop)
    : m_files(files),
      m_stop(stop),
      m_buffer(static_cast<unsigned char *>(::operator new(bufferSize, bufferAlignment))) {}

void ContentReader::Release::operator()(unsigned char *buffer) const {
    ::operator delete(buffer, bufferAlignment);
}

Result<ContentReader::FirstBlock> ContentReader::firstBlock(const fileAttrbItem &item,
                                                            Reading *rest) {
    if (const auto error = open(item))
        return error;
    FirstBlock block;
    block.empty = m_now.size == 0;
    const auto size = std::size_t(std::min<std::uint64_t>(m_now.size, firstReadSize));
    if (const auto error = read(size, 0))
        return error;
    const std::size_t head = std::min(size, headSize);
    const std::uint64_t value = crc::fold(crc::start, m_buffer.get(), head);
    block.md5_1k = value;
    if (head < headSize) {
        static constexpr unsigned char zeros[headSize] = {};
        block.md5_1k = crc::fold(value, zeros, headSize - head);
    }
    m_now.value = crc::fold(value, m_buffer.get() + head, size - head);
    m_now.offset = size;
    if (!block.empty && size == m_now.size)
        block.md5 = m_now.value;
    else if (rest)
        *rest = std::move(m_now);
    return block;
}

Result<std::uint64_t> ContentReader::wholeFile(const fileAttrbItem &item) {
    if (const auto error = open(item))
        return error;
    return fold();
}

Result<std::uint64_t> ContentReader::wholeFile(Reading rest) {
    m_now = std::move(rest);
    return fold();
}

std::error_code ContentReader::open(const fileAttrbItem &item) {
    if (stopped())
        return std::make_error_code(std::errc::operation_canceled);
    m_now = {};
    if (item.kind == fileAttrbItem::Kind::Special)
        return std::make_error_code(std::errc::invalid_argument);
    if (item.kind == fileAttrbItem::Kind::Link) {
        const auto target = m_files.attributesFollowing(item.filePathName);
        if (target && target->type != EntryType::File)
            return std::make_error_code(std::errc::invalid_argument);
        auto path = m_files.canonicalPath(item.filePathName);
        if (!path)
            return path.error();
        auto file = m_files.openListedFile(path->native());
        if (!file)
            return file.error();
        const auto attributes = m_files.fileAttributes(*file);
        if (!attributes || attributes->type != EntryType::File)
            return std::make_error_code(std::errc::invalid_argument);
        m_now.file = std::move(*file);
        m_now.size = attributes->size;
        m_now.isChecked = true;
    } else {
        auto file = m_files.openListedFile(item.filePathName);
        if (!file)
            return file.error();
        m_now.file = std::move(*file);
        m_now.size = item.fileSize;
    }
    m_now.value = crc::start;
    m_now.blockSize = cachedBlockSize;
    return {};
}

// Before anything is read that might have to be waited for.
std::error_code ContentReader::check() {
    if (m_now.isChecked)
        return {};
    const auto attributes = m_files.fileAttributes(m_now.file);
    if (!attributes)
        return attributes.error();
    if (attributes->type != EntryType::File)
        return std::make_error_code(std::errc::invalid_argument);
    if (attributes->size != m_now.size)
        return std::make_error_code(std::errc::io_error);
    m_now.isChecked = true;
    return {};
}

Result<std::uint64_t> ContentReader::fold() {
    std::uint64_t value = m_now.value;
    for (std::uint64_t offset = m_now.offset; offset < m_now.size;) {
        const auto size =
            std::size_t(std::min<std::uint64_t>(m_now.size - offset, m_now.blockSize));
        if (const auto error = read(size, offset))
            return error;
        value = crc::fold(value, m_buffer.get(), size);
        offset += size;
        // A block of zeros may be the beginning of a hole, and a hole may be a terabyte long.
        if (offset < m_now.size && isAllZero(m_buffer.get(), size)) {
            if (const auto error = check())
                return error;
            const auto data = m_files.nextData(m_now.file, offset);
            if (data && *data > offset) {
                const std::uint64_t end = std::min(*data, m_now.size);
                value = crc::foldZeros(value, end - offset);
                offset = end;
            }
        }
    }
    return value;
}

// Fills the buffer with exactly that many bytes.
std::error_code ContentReader::read(std::size_t size, std::uint64_t offset) {
    if (stopped())
        return std::make_error_code(std::errc::operation_canceled);
    const bool isCounted = findMissing(size, offset);
    if (isCounted && m_missing.empty() && m_now.cacheTried && readCached(size, offset))
        return {};
    if (const auto error = check())
        return error;
    return isCounted ? readAndGiveUpMissing(size, offset) : readByTrial(size, offset);
}

// Most often all of it is there, and one call does. It asks for a byte behind the end too, which
// tells a file that has grown.
bool ContentReader::readCached(std::size_t size, std::uint64_t offset) {
    const bool isEnd = !m_now.isChecked && offset + size == m_now.size;
    const auto got =
        m_files.readCachedAt(m_now.file, m_buffer.get(), size + (isEnd ? 1 : 0), offset);
    if (!got && got.error() != std::errc::operation_would_block)
        m_now.cacheTried = false;
    return got && *got == size;
}

// Notes which pages of the range are not cached. False where the system does not count them.
bool ContentReader::findMissing(std::size_t size, std::uint64_t offset) {
    m_missing.clear();
    if (!m_now.cacheCounted || size == 0)
        return m_now.cacheCounted;
    const std::uint64_t first = offset - offset % pageSize;
    const std::uint64_t end = offset + size;
    const auto cached = m_files.cachedPages(m_now.file, first, end - first);
    m_now.cacheCounted = bool(cached);
    if (!cached || *cached >= (end - first + pageSize - 1) / pageSize)
        return m_now.cacheCounted;
    if (*cached == 0) {
        m_missing.emplace_back(first, end);
        return true;
    }
    for (std::uint64_t page = first; page < end; page += pageSize) {
        const auto one = m_files.cachedPages(m_now.file, page, pageSize);
        if (one && *one > 0)
            continue;
        const std::uint64_t next = std::min(page + pageSize, end);
        if (!m_missing.empty() && m_missing.back().second == page)
            m_missing.back().second = next;
        else
            m_missing.emplace_back(page, next);
    }
    return true;
}

std::error_code ContentReader::readAndGiveUpMissing(std::size_t size, std::uint64_t offset) {
    if (!m_missing.empty())
        willFetch();
    std::error_code error;
    for (std::size_t done = 0; done < size && !error;) {
        const std::size_t piece =
            m_missing.empty() ? size : std::min(size - done, m_pace.pieceSize());
        const auto got = readPiece(done, piece, offset);
        if (!got)
            error = got.error();
        else if (*got != piece)
            error = std::make_error_code(std::errc::io_error);
        done += piece;
    }
    for (const auto &[begin, end] : m_missing)
        m_files.dropCached(m_now.file, begin, end == m_now.size ? 0 : end - begin);
    return error;
}

// Reads to that place of the buffer, and notes how long it took.
Result<std::size_t> ContentReader::readPiece(std::size_t place, std::size_t size,
                                             std::uint64_t offset) {
    if (stopped())
        return std::errc::operation_canceled;
    const auto began = std::chrono::steady_clock::now();
    auto got = m_files.readAt(m_now.file, m_buffer.get() + place, size, offset + place);
    m_pace.fetched(size, std::chrono::steady_clock::now() - began);
    return got;
}

// Where nothing counts the pages, a read that does not wait tells what is cached.
std::error_code ContentReader::readByTrial(std::size_t size, std::uint64_t offset) {
    std::size_t done = 0;
    while (done < size) {
        Result<std::size_t> got = std::errc::operation_would_block;
        if (m_now.cacheTried) {
            got =
                m_files.readCachedAt(m_now.file, m_buffer.get() + done, size - done, offset + done);
            if (!got && got.error() != std::errc::operation_would_block)
                m_now.cacheTried = false;
        }
        if (!got)
            got = fetch(done, size, offset);
        if (!got)
            return got.error();
        if (*got == 0)
            return std::make_error_code(std::errc::io_error);
        done += *got;
    }
    return {};
}

// Read ahead, the next pages would look as if they had been cached before.
void ContentReader::willFetch() {
    if (m_now.blockSize == fetchedBlockSize)
        return;
    m_files.fetchOnlyWhatIsRead(m_now.file);
    m_now.blockSize = fetchedBlockSize;
}

// Reads what is not cached at that place, up to the next page that is, and gives it up again.
Result<std::size_t> ContentReader::fetch(std::size_t done, std::size_t size, std::uint64_t offset) {
    const std::uint64_t begin = offset + done;
    const std::size_t most = std::min(size - done, m_pace.pieceSize());
    if (!m_now.cacheTried)
        return readPiece(done, most, offset);
    willFetch();
    const std::uint64_t firstPage = begin - begin % pageSize;
    std::uint64_t end = firstPage + pageSize;
    while (end < begin + most && !isCached(end))
        end += pageSize;
    const bool nextIsCached = end < begin + most;
    end = std::min(end, begin + most);
    const auto got = readPiece(done, std::size_t(end - begin), offset);
    // A single page between cached ones is the mark where the system would read ahead: it is
    // cached and only does not say so.
    const bool isMark = done > 0 && nextIsCached && end - firstPage == pageSize;
    if (!isMark)
        m_files.dropCached(m_now.file, firstPage, end == m_now.size ? 0 : end - firstPage);
    return got;
}

bool ContentReader::isCached(std::uint64_t offset) {
    unsigned char byte;
    const auto got = m_files.readCachedAt(m_now.file, &byte, 1, offset);
    return bool(got);
}

} // namespace brightsweep
