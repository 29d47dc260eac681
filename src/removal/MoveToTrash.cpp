#include "removal/MoveToTrash.h"

#include "foundation/LastError.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "platform/DirectoryWalk.h"
#include "platform/FileIdentity.h"
#include "platform/Platform.h"
#include "removal/TrashRecord.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QByteArray>
#include <QDateTime>

#include <climits>
#include <set>

namespace brightsweep {

namespace {

constexpr std::string_view ending = ".trashinfo";
constexpr unsigned mostNames = 100'000;

FileOperations &files() {
    return *Platform::current().files;
}

// The name in the trash at the n-th attempt, with room for the ending of its record. It need not be
// the item's own: the record tells that.
std::string nameInTrash(const std::string &name, unsigned attempt) {
    const std::string number = attempt > 1 ? '.' + std::to_string(attempt) : std::string();
    std::size_t room = NAME_MAX - ending.size() - number.size();
    if (name.size() > room) {
        // Not within a character of UTF-8.
        while (room > 1 && (static_cast<unsigned char>(name[room]) & 0xC0) == 0x80)
            --room;
    }
    return name.substr(0, room) + number;
}

// What the directory takes with all below it, each file once; as du(1) counts.
class StoredSize final : public DirectoryWalk::Visitor {
public:
    std::uint64_t bytes = 0;
    bool isWhole = true;

    void entries(DirectoryWalk::Directory &directory, const DirectoryBlock &block) override {
        for (const DirectoryEntry &entry : block.entries()) {
            if (entry.hasAttributes && m_known.insert({entry.device, entry.inode}).second)
                bytes += entry.stored;
            if (entry.type == EntryType::Directory)
                walk->enter(directory, entry.nameView(), nullptr);
        }
    }
    void read(DirectoryWalk::Directory &, std::error_code error) override {
        isWhole = isWhole && !error;
    }

    DirectoryWalk *walk = nullptr;

private:
    std::set<FileIdentity> m_known;
};

// The path of the item, and when it was thrown away, in the user's own time.
std::string trashInfoText(const std::string &path, const std::string &date) {
    return "[Trash Info]\nPath=" + paths::percentEncoded(path) + "\nDeletionDate=" + date + '\n';
}

} // namespace

const Result<TrashFolder> &MoveToTrash::trashOf(const OpenItem &item, bool make) {
    if (m_folder != item.folder || make > m_made) {
        m_trash = files().trashOf(*item.folder, make);
        m_folder = item.folder;
        m_made = make;
    }
    return m_trash;
}

std::error_code MoveToTrash::check(const OpenItem &item) {
    if (const auto error = files().checkRemoval(item))
        return error;
    return trashOf(item, false).error();
}

std::error_code MoveToTrash::move(const OpenItem &item) {
    if (const auto error = files().checkRemoval(item))
        return error;
    const auto &trash = trashOf(item, true);
    if (!trash)
        return trash.error();
    unsigned &attempt = m_taken[item.name];
    while (attempt < mostNames) {
        const std::string name = nameInTrash(item.name, ++attempt);
        const auto error = moveAs(item, *trash, name);
        if (!error && item.attributes.type == EntryType::Directory)
            noteSize(*trash, name);
        if (error && error != std::errc::file_exists)
            --attempt;
        if (error != std::errc::file_exists)
            return error;
    }
    return std::make_error_code(std::errc::file_exists);
}

std::error_code MoveToTrash::moveAs(const OpenItem &item, const TrashFolder &trash,
                                    const std::string &name) {
    const std::string record = name + std::string(ending);
    const FileDescriptor file(::openat(trash.info.get(), record.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return lastError();
    std::string path = trash.original;
    if (!path.empty() && !path.ends_with('/'))
        path += '/';
    const auto date = QDateTime::currentDateTime().toString(Qt::ISODate).toStdString();
    auto error = writeAll(file.get(), trashInfoText(path + item.name, date));
    if (!error)
        error = files().moveItem(item, trash.files, name);
    if (error)
        ::unlinkat(trash.info.get(), record.c_str(), 0);
    return error;
}

void MoveToTrash::noteSize(const TrashFolder &trash, const std::string &name) {
    OpenDirectory folder;
    folder.descriptor = FileDescriptor(::fcntl(trash.files.get(), F_DUPFD_CLOEXEC, 0));
    const auto top = files().attributesAt(folder, name.c_str());
    auto directory = files().openDirectoryAt(folder, name.c_str());
    struct stat record;
    if (!top || !directory ||
        ::fstatat(trash.info.get(), (name + std::string(ending)).c_str(), &record,
                  AT_SYMLINK_NOFOLLOW) != 0)
        return;
    StoredSize size;
    DirectoryWalk walk(files(), size,
                       {.wanted = WantedAttributes::All, .threads = 1, .stop = m_stop});
    size.walk = &walk;
    walk.addRoot(std::make_shared<const OpenDirectory>(*std::move(directory)), nullptr);
    if (walk.run() && size.isWhole)
        noteDirectorySize(trash.trash, name, top->stored + size.bytes, record.st_mtim.tv_sec);
}

} // namespace brightsweep
