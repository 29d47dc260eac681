#include "removal/TrashRecord.h"

#include "foundation/LastError.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "linux/Place.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>

namespace brightsweep {

namespace {

constexpr char sizesFile[] = "directorysizes";
constexpr char newSizesFile[] = "directorysizes.brightsweep-new";
constexpr std::size_t batchSize = 5'000;
// A line has a thousand bytes at most. A file that is larger is nobody's computation, and stays.
constexpr off_t largestSizes = off_t(64) << 20;
constexpr int placeFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

bool isTrash(const std::filesystem::path &folder) {
    constexpr std::string_view ofUser = ".Trash-";
    const std::string name = paths::lastComponent(folder);
    return name == "Trash" ||
           (name.starts_with(ofUser) && isNumber(std::string_view(name).substr(ofUser.size()))) ||
           (isNumber(name) && paths::lastComponent(paths::parent(folder)) == ".Trash");
}

bool isSame(const struct stat &one, const struct stat &other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

Result<std::string> readAll(int descriptor) {
    std::string text;
    char block[16 * 1024];
    for (;;) {
        const ssize_t got = ::read(descriptor, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return lastError();
        if (got == 0)
            return text;
        text.append(block, std::size_t(got));
        if (off_t(text.size()) > largestSizes)
            return std::errc::file_too_large;
    }
}

bool writeAndSynchronise(int descriptor, std::string_view text) {
    return !writeAll(descriptor, text) && ::fsync(descriptor) == 0;
}

// The third field of a line, empty where there is none.
std::string_view encodedName(std::string_view line) {
    for (int field = 0; field < 2; ++field) {
        const auto blank = line.find(' ');
        if (blank == line.npos)
            return {};
        line.remove_prefix(blank + 1);
    }
    return line;
}

// One rewrite at a time: the new text replaces what was read.
std::mutex &rewriting() {
    static std::mutex mutex;
    return mutex;
}

using Lines = std::map<std::string, std::string>;

// The text of a `directorysizes` file without the lines for those names. A line is a size, a time
// and the percent-encoded name.
std::string withoutDirectorySizes(std::string_view text, const Lines &names) {
    std::string kept;
    while (!text.empty()) {
        const std::string_view line =
            text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
        text.remove_prefix(line.size());
        const std::string_view encoded = encodedName(line.substr(0, line.find('\n')));
        if (!names.contains(paths::percentDecoded(encoded)))
            kept += line;
    }
    return kept;
}

// Takes the old lines of those names out, and puts the new ones at the end.
std::error_code rewriteSizes(int trash, const Lines &byName) {
    std::string lines;
    for (const auto &[name, line] : byName)
        lines += line;
    const std::lock_guard lock(rewriting());
    const FileDescriptor old(
        ::openat(trash, sizesFile, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    status.st_uid = ::geteuid();
    status.st_gid = ::getegid();
    status.st_mode = 0600;
    std::string kept;
    if (!old && (errno != ENOENT || lines.empty()))
        return lastError();
    if (old) {
        if (::fstat(old.get(), &status) != 0)
            return lastError();
        if (!S_ISREG(status.st_mode))
            return std::make_error_code(std::errc::invalid_argument);
        if (status.st_size > largestSizes)
            return std::make_error_code(std::errc::file_too_large);
        const auto text = readAll(old.get());
        if (!text)
            return text.error();
        kept = withoutDirectorySizes(*text, byName);
        if (kept == *text && lines.empty())
            return {};
    }
    if (!kept.empty() && !kept.ends_with('\n') && !lines.empty())
        kept += '\n';
    kept += lines;
    // One that a crash has left behind is in nobody's use.
    ::unlinkat(trash, newSizesFile, 0);
    const FileDescriptor replacement(
        ::openat(trash, newSizesFile, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!replacement)
        return lastError();
    // The owner can be kept by root only; anybody else owns the trash.
    const bool owned = ::fchown(replacement.get(), status.st_uid, status.st_gid) == 0 ||
                       ::geteuid() == status.st_uid;
    if (!owned || ::fchmod(replacement.get(), status.st_mode & 07777) != 0 ||
        !writeAndSynchronise(replacement.get(), kept) ||
        ::renameat(trash, newSizesFile, trash, sizesFile) != 0) {
        const auto error = lastError();
        ::unlinkat(trash, newSizesFile, 0);
        return error;
    }
    return {};
}

// The one that gathers for this thread; null without.
thread_local TrashBatch *currentBatch = nullptr;

} // namespace

// The name's line from now on; empty for none.
void noteLine(const FileDescriptor &trash, const std::string &name, const std::string &line) {
    if (currentBatch)
        currentBatch->add(trash, name, line);
    else
        rewriteSizes(trash.get(), {{name, line}});
}

std::optional<TrashRecord> TrashRecord::of(const HoldingFolder &folder,
                                           const RemovalTarget &target) {
    const auto path = paths::parent(target.path());
    const bool isDirect = target.relative.native().find('/') == std::string::npos;
    const bool isNamedSo = paths::lastComponent(path) == "files" && isTrash(paths::parent(path));
    if (!(target.root.isTrash && isDirect) && !isNamedSo)
        return std::nullopt;
    const int files = folder.directory().descriptor.get();
    TrashRecord record;
    record.m_trash = FileDescriptor(::openat(files, "..", placeFlags));
    record.m_info = FileDescriptor(::openat(record.m_trash.get(), "info", placeFlags));
    struct stat own;
    struct stat named;
    if (!record.m_info || ::fstat(files, &own) != 0 ||
        ::fstatat(record.m_trash.get(), "files", &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !isSame(own, named) || !isOnSameMount(files, record.m_trash.get()) ||
        !isOnSameMount(files, record.m_info.get()))
        return std::nullopt;
    record.m_infoPath = paths::join(paths::parent(path), "info");
    return record;
}

bool TrashRecord::forget(const std::string &name) const {
    noteLine(m_trash, name, {});
    return ::unlinkat(m_info.get(), (name + ".trashinfo").c_str(), 0) == 0 || errno == ENOENT ||
           errno == ENAMETOOLONG; // a name with no room for the ending never had one
}

Result<RemovalTarget> TrashRecord::trashInfo(const std::string &name) const {
    struct stat status;
    if (::fstat(m_info.get(), &status) != 0)
        return lastError();
    return RemovalTarget{{m_infoPath, status.st_dev, status.st_ino}, name + ".trashinfo"};
}

void noteDirectorySize(const FileDescriptor &trash, const std::string &name, std::uint64_t bytes,
                       std::int64_t seconds) {
    noteLine(trash, name,
             std::to_string(bytes) + ' ' + std::to_string(seconds) + ' ' +
                 paths::percentEncoded(name) + '\n');
}

TrashBatch::TrashBatch() : m_outer(std::exchange(currentBatch, this)) {}

TrashBatch::~TrashBatch() {
    currentBatch = m_outer;
    for (auto &[identity, trash] : m_trashes)
        write(trash);
}

void TrashBatch::write(Trash &trash) {
    rewriteSizes(trash.folder.get(), trash.lines);
    trash.lines.clear();
}

void TrashBatch::add(const FileDescriptor &trash, const std::string &name,
                     const std::string &line) {
    struct stat status;
    if (::fstat(trash.get(), &status) != 0)
        return;
    Trash &gathered = m_trashes[{status.st_dev, status.st_ino}];
    if (!gathered.folder)
        gathered.folder = FileDescriptor(::fcntl(trash.get(), F_DUPFD_CLOEXEC, 0));
    gathered.lines[name] = line;
    if (gathered.lines.size() >= batchSize)
        write(gathered);
}

} // namespace brightsweep
