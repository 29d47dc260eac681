#include "uninstall/KeptFolders.h"

#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QLatin1String>
#include <QStringList>

#include <system_error>
#include <utility>

namespace brightsweep {

namespace {

constexpr QLatin1String keptFoldersKey("UninstallKeptFolders");

// A folder is kept as "INODE:TIME:PATH", the path percent-encoded, so that a space can stand
// between two.
KeptFolder folderOf(const QString &word) {
    return {paths::percentDecoded(word.section(u':', 2).toStdString()),
            word.section(u':', 1, 1).toLongLong()};
}

bool isIt(const QString &word, const FileAttributes &found) {
    return found.type == EntryType::Directory &&
           word.section(u':', 0, 0) == QString::number(found.inode);
}

// What cannot be looked at has not gone, and neither has what lies on a volume that is not mounted.
bool hasGone(const QString &word) {
    const std::filesystem::path folder = folderOf(word).path;
    FileOperations &files = *Platform::current().files;
    if (const auto found = files.attributes(folder)) {
        if (isIt(word, *found))
            return false;
    } else if (found.error() != std::errc::no_such_file_or_directory ||
               !files.attributesFollowing(paths::parent(folder))) {
        return false;
    }
    return !Platform::current().workspace->mayLieOnAbsentVolume(folder);
}

QStringList knownWords() {
    return UserDefaults::standardUserDefaults()
        .stringForKey(keptFoldersKey)
        .split(u' ', Qt::SkipEmptyParts);
}

void store(const QStringList &words) {
    UserDefaults::standardUserDefaults().setObject(keptFoldersKey, words.join(u' '));
}

} // namespace

std::vector<KeptFolder> keptFolders() {
    std::vector<KeptFolder> folders;
    for (const QString &word : knownWords()) {
        KeptFolder folder = folderOf(word);
        if (const auto found = Platform::current().files->attributes(folder.path);
            found && isIt(word, *found))
            folders.push_back(std::move(folder));
    }
    return folders;
}

void noteKeptFolder(const KeptFolder &folder) {
    QStringList words = knownWords();
    words.removeIf(
        [&](const QString &word) { return folderOf(word).path == folder.path || hasGone(word); });
    if (const auto found = Platform::current().files->attributes(folder.path);
        found && found->type == EntryType::Directory)
        words += QStringLiteral("%1:%2:%3")
                     .arg(found->inode)
                     .arg(folder.lastCame)
                     .arg(QString::fromStdString(paths::percentEncoded(folder.path.native())));
    store(words);
}

void forgetKeptFolder(const std::filesystem::path &folder) {
    QStringList words = knownWords();
    if (words.removeIf([&](const QString &word) { return folderOf(word).path == folder; }) > 0)
        store(words);
}

} // namespace brightsweep
