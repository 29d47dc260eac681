#include "uninstall/KeptFolders.h"

#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QLatin1String>
#include <QStringList>

#include <optional>
#include <system_error>
#include <utility>

namespace brightsweep {

namespace {

constexpr QLatin1String keptFoldersKey("UninstallKeptFolders");

// "INODE:PATH", the path percent-encoded, so that a space can stand between two. Nothing for what
// is no folder.
std::optional<QString> wordOf(const std::filesystem::path &path, const FileAttributes &found) {
    if (found.type != EntryType::Directory)
        return {};
    return QString::number(found.inode) + u':' +
           QString::fromStdString(paths::percentEncoded(path.native()));
}

std::optional<QString> wordOf(const std::filesystem::path &folder) {
    const auto found = Platform::current().files->attributes(folder);
    return found ? wordOf(folder, *found) : std::nullopt;
}

std::filesystem::path folderOf(const QString &word) {
    return paths::percentDecoded(word.section(u':', 1).toStdString());
}

// What cannot be looked at has not gone, and neither has what lies on a volume that is not mounted.
bool hasGone(const QString &word) {
    const std::filesystem::path folder = folderOf(word);
    FileOperations &files = *Platform::current().files;
    if (const auto found = files.attributes(folder)) {
        if (wordOf(folder, *found) == word)
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

std::vector<std::filesystem::path> keptFolders() {
    std::vector<std::filesystem::path> folders;
    for (const QString &word : knownWords()) {
        if (std::filesystem::path folder = folderOf(word); wordOf(folder) == word)
            folders.push_back(std::move(folder));
    }
    return folders;
}

void noteKeptFolder(const std::filesystem::path &folder) {
    QStringList words = knownWords();
    words.removeIf(hasGone);
    if (const auto word = wordOf(folder); word && !words.contains(*word))
        words += *word;
    store(words);
}

void forgetKeptFolder(const std::filesystem::path &folder) {
    QStringList words = knownWords();
    if (words.removeIf([&](const QString &word) { return folderOf(word) == folder; }) > 0)
        store(words);
}

} // namespace brightsweep
