#include "uninstall/KeptFolders.h"

#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"
#include "platform/FileOperations.h"
#include "platform/Platform.h"

#include <QLatin1String>
#include <QStringList>

#include <optional>

namespace brightsweep {

namespace {

constexpr QLatin1String keptFoldersKey("UninstallKeptFolders");

// "INODE:PATH", the path percent-encoded, so that a space can stand between two. Nothing where the
// folder is not there.
std::optional<QString> wordOf(const std::filesystem::path &folder) {
    const auto found = Platform::current().files->attributes(folder);
    if (!found || found->type != EntryType::Directory)
        return {};
    return QString::number(found->inode) + u':' +
           QString::fromStdString(paths::percentEncoded(folder.native()));
}

std::filesystem::path folderOf(const QString &word) {
    return paths::percentDecoded(word.section(u':', 1).toStdString());
}

void store(const QStringList &words) {
    UserDefaults::standardUserDefaults().setObject(keptFoldersKey, words.join(u' '));
}

// What has gone is forgotten: a new folder may get its name and its number. One on a volume that is
// not mounted has not gone.
bool hasGone(const QString &word) {
    const std::filesystem::path folder = folderOf(word);
    return wordOf(folder) != word &&
           bool(Platform::current().files->attributes(paths::parent(folder)));
}

QStringList knownWords() {
    QStringList words = UserDefaults::standardUserDefaults()
                            .stringForKey(keptFoldersKey)
                            .split(u' ', Qt::SkipEmptyParts);
    if (words.removeIf(hasGone) > 0)
        store(words);
    return words;
}

} // namespace

std::vector<std::filesystem::path> keptFolders() {
    std::vector<std::filesystem::path> folders;
    for (const QString &word : knownWords())
        folders.push_back(folderOf(word));
    return folders;
}

void noteKeptFolder(const std::filesystem::path &folder) {
    QStringList words = knownWords();
    const auto word = wordOf(folder);
    if (!word || words.contains(*word))
        return;
    store(words += *word);
}

} // namespace brightsweep
