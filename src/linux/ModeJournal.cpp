#include "linux/ModeJournal.h"

#include "foundation/LastError.h"
#include "linux/LongPath.h"
#include "linux/Place.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <ctime>

namespace brightsweep {

namespace {

// The head: the mark, then the time of the last beat in nanoseconds since the epoch.
constexpr std::array<char, 8> mark = {'B', 'S', 'M', 'O', 'D', 'E', 'S', '1'};
constexpr std::size_t beatPlace = mark.size();
constexpr std::size_t headSize = 64;
constexpr off_t largestJournal = off_t(256) << 20;
// A change time may be that much later than the beat before the change: the kernel's clock for
// files ticks, and a slow disk takes its time.
constexpr std::int64_t tolerance = 1'000'000'000;
constexpr std::size_t keptOpen = 256;
constexpr std::uint32_t ownersBits = S_IRWXU;

std::int64_t nanoseconds(const statx_timestamp &time) {
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

std::int64_t now() {
    timespec time;
    ::clock_gettime(CLOCK_REALTIME, &time);
    return std::int64_t(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

struct Facts {
    Place place;
    std::uint32_t mode = 0;
    std::uint32_t owner = 0;
    std::int64_t birth = 0; ///< 0 where the file system does not tell
    std::int64_t changed = 0;
};

Result<Facts> factsOf(int directory) {
    struct statx status;
    const auto place = placeOf(directory);
    if (!place)
        return place.error();
    if (::statx(directory, "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return lastError();
    if (!S_ISDIR(status.stx_mode))
        return std::errc::not_a_directory;
    Facts facts{*place, std::uint32_t(status.stx_mode) & 07777u, status.stx_uid, 0,
                nanoseconds(status.stx_ctime)};
    if (status.stx_mask & STATX_BTIME)
        facts.birth = nanoseconds(status.stx_btime);
    return facts;
}

// fchmod() refuses an O_PATH descriptor; its link in /proc leads to that very directory.
bool setMode(int directory, std::uint32_t mode) {
    return ::fchmod(directory, mode) == 0 ||
           (errno == EBADF &&
            ::chmod(("/proc/self/fd/" + std::to_string(directory)).c_str(), mode) == 0);
}

bool writeWhole(int file, std::string_view text) {
    return ::write(file, text.data(), text.size()) == ssize_t(text.size());
}

// One line: the numbers in decimal, the path behind the last blank with line ends and backslashes
// as three octal digits behind a backslash.
std::string lineOf(const Facts &facts, std::uint32_t after, std::string_view path) {
    std::string line;
    for (const std::int64_t number :
         {std::int64_t(facts.place.device), std::int64_t(facts.place.inode), facts.birth,
          facts.changed, std::int64_t(facts.mode), std::int64_t(after)})
        line += std::to_string(number) + ' ';
    for (const char character : path) {
        if (character == '\n')
            line += "\\012";
        else if (character == '\\')
            line += "\\134";
        else
            line += character;
    }
    return line + '\n';
}

struct Line {
    Facts facts;
    std::uint32_t after = 0;
    std::string path;
};

bool parse(std::string_view text, Line &line) {
    std::array<std::int64_t, 6> numbers{};
    for (std::int64_t &number : numbers) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end == text.data() + text.size() || *end != ' ')
            return false;
        text.remove_prefix(std::size_t(end - text.data()) + 1);
    }
    line.facts = {{std::uint64_t(numbers[0]), std::uint64_t(numbers[1]), 0},
                  std::uint32_t(numbers[4]) & 07777u,
                  0,
                  numbers[2],
                  numbers[3]};
    line.after = std::uint32_t(numbers[5]);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '\\' && i + 3 < text.size();
        line.path += !escaped ? text[i] : text.substr(i, 4) == "\\012" ? '\n' : '\\';
        i += escaped ? 3 : 0;
    }
    return line.path.starts_with('/');
}

// What a killed process opened up, where it is still the same and nobody changed it afterwards.
void restoreAfter(const Line &line, std::int64_t beat) {
    const auto directory = openPlace(line.path);
    const auto found = directory ? factsOf(directory->get()) : Result<Facts>(directory.error());
    const bool isSame = found && found->place.isSameFile(line.facts.place) &&
                        found->birth == line.facts.birth && found->mode == line.after &&
                        found->changed >= line.facts.changed && found->changed <= beat + tolerance;
    if (isSame)
        setMode(directory->get(), line.facts.mode);
}

std::string readWhole(int file, off_t size) {
    std::string text(std::size_t(size), '\0');
    const ssize_t got = ::pread(file, text.data(), text.size(), 0);
    text.resize(got > 0 ? std::size_t(got) : 0);
    return text;
}

void restoreAll(std::string_view journal) {
    if (journal.size() < headSize || std::memcmp(journal.data(), mark.data(), mark.size()) != 0)
        return;
    std::int64_t beat;
    std::memcpy(&beat, journal.data() + beatPlace, sizeof beat);
    journal.remove_prefix(headSize);
    // Of a line that was cut short the mode was not changed.
    journal = journal.substr(0, journal.rfind('\n') + 1);
    // The last first: a directory opened up twice gets its first mode back in the end, and one
    // within another is reached before the way to it is closed.
    while (journal.ends_with('\n')) {
        journal.remove_suffix(1);
        const auto start = journal.rfind('\n') + 1;
        if (Line line; parse(journal.substr(start), line))
            restoreAfter(line, beat);
        journal = journal.substr(0, start);
    }
}

// A regular file of the user's, and its size.
Result<FileDescriptor> openJournal(const std::string &path, int flags, off_t &size) {
    const auto shortened = shortenPath(path);
    if (!shortened)
        return shortened.error();
    FileDescriptor file(::openat(shortened->base(), shortened->name.c_str(),
                                 O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_APPEND | flags,
                                 0600));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid() || status.st_size > largestJournal)
        return std::errc::operation_not_permitted;
    size = status.st_size;
    return file;
}

void removeFile(const std::string &path) {
    if (const auto shortened = shortenPath(path))
        ::unlinkat(shortened->base(), shortened->name.c_str(), 0);
}

} // namespace

ModeJournal::~ModeJournal() {
    close();
}

std::error_code ModeJournal::open(const std::string &path) {
    const std::lock_guard lock(m_mutex);
    closeFile();
    m_path = path;
    off_t size = 0;
    auto left = openJournal(path, 0, size);
    if (!left) {
        const bool isMissing = left.error() == std::errc::no_such_file_or_directory;
        return isMissing ? std::error_code() : left.error();
    }
    if (size > 0)
        restoreAll(readWhole(left->get(), size));
    removeFile(path);
    return {};
}

// Makes the file, with the mutex held.
std::error_code ModeJournal::begin() {
    if (m_path.empty())
        return std::make_error_code(std::errc::operation_not_permitted);
    makeFolders(m_path.substr(0, m_path.rfind('/')));
    off_t size = 0;
    auto file = openJournal(m_path, O_CREAT, size);
    // That its folder is missing must not be taken for the directory that was to be opened up.
    if (!file)
        return file.error() == std::errc::no_such_file_or_directory
                   ? std::make_error_code(std::errc::operation_not_permitted)
                   : file.error();
    std::array<char, headSize> head{};
    std::memcpy(head.data(), mark.data(), mark.size());
    if (::ftruncate(file->get(), 0) != 0 || !writeWhole(file->get(), {head.data(), head.size()}))
        return lastError();
    void *mapped = ::mmap(nullptr, headSize, PROT_READ | PROT_WRITE, MAP_SHARED, file->get(), 0);
    if (mapped == MAP_FAILED)
        return lastError();
    static_assert(std::atomic<std::int64_t>::is_always_lock_free);
    m_beat = reinterpret_cast<std::atomic<std::int64_t> *>(static_cast<char *>(mapped) + beatPlace);
    m_file = *std::move(file);
    return {};
}

void ModeJournal::closeFile() {
    if (m_beat)
        ::munmap(reinterpret_cast<char *>(m_beat.load()) - beatPlace, headSize);
    m_beat = nullptr;
    m_file.reset();
    m_path.clear();
}

void ModeJournal::close() {
    putAllBack();
    const std::lock_guard lock(m_mutex);
    if (m_file)
        removeFile(m_path);
    closeFile();
}

Result<std::uint64_t> ModeJournal::openUp(int directory,
                                          const std::function<std::string()> &pathOf) {
    const auto facts = factsOf(directory);
    if (!facts)
        return facts.error();
    // Root needs no bits, and nobody may change another's.
    const bool isNeeded =
        ::geteuid() != 0 && facts->owner == ::geteuid() && (facts->mode & ownersBits) != ownersBits;
    if (!isNeeded)
        return std::uint64_t(0);
    const std::lock_guard lock(m_mutex);
    if (!m_file) {
        if (const auto error = begin())
            return error;
    }
    const std::uint32_t after = facts->mode | ownersBits;
    const std::string path = pathOf();
    const std::string line = lineOf(*facts, after, path);
    const off_t end = ::lseek(m_file.get(), 0, SEEK_END);
    // A longer one would not be read again.
    if (end < 0 || end + off_t(line.size()) > largestJournal)
        return std::errc::file_too_large;
    if (!writeWhole(m_file.get(), line)) {
        const auto error = lastError();
        // No half line may stand before the next one.
        return ::ftruncate(m_file.get(), end) == 0 ? error : lastError();
    }
    m_beat.load()->store(now(), std::memory_order_relaxed);
    if (!setMode(directory, after))
        return lastError();
    Opened opened{{}, path, facts->place.device, facts->place.inode, facts->mode};
    if (m_opened.size() < keptOpen)
        opened.directory = FileDescriptor(::fcntl(directory, F_DUPFD_CLOEXEC, 0));
    m_opened.emplace(++m_last, std::move(opened));
    return m_last;
}

void ModeJournal::forget(std::uint64_t number) {
    const std::lock_guard lock(m_mutex);
    m_opened.erase(number);
    // Nothing is open: what the lines told of has gone or is put back.
    if (m_opened.empty() && m_file && ::ftruncate(m_file.get(), headSize) != 0)
        return;
}

void ModeJournal::putBack(std::uint64_t number) {
    {
        const std::lock_guard lock(m_mutex);
        if (const auto opened = m_opened.find(number); opened != m_opened.end())
            restore(opened->second);
    }
    forget(number);
}

void ModeJournal::putAllBack() {
    const std::lock_guard lock(m_mutex);
    // The deepest first, so that the way to them is still open.
    while (!m_opened.empty()) {
        restore(std::prev(m_opened.end())->second);
        m_opened.erase(std::prev(m_opened.end()));
    }
    if (m_file && ::ftruncate(m_file.get(), headSize) != 0)
        return;
}

void ModeJournal::beat() {
    if (auto *const time = m_beat.load(std::memory_order_acquire))
        time->store(now(), std::memory_order_relaxed);
}

void ModeJournal::restore(const Opened &opened) {
    if (opened.directory) {
        setMode(opened.directory.get(), opened.before);
        return;
    }
    const auto directory = openPlace(opened.path);
    const auto place = directory ? placeOf(directory->get()) : Result<Place>(directory.error());
    if (place && place->device == opened.device && place->inode == opened.inode)
        setMode(directory->get(), opened.before);
}

} // namespace brightsweep
