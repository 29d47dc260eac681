#include "core/RecentFolders.h"

#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"

#include <QStringList>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr std::size_t mostFolders = 5;

} // namespace

// Paths are bytes: each is kept percent-encoded, which leaves the space to stand between them.
std::vector<std::filesystem::path> recentFolders(QLatin1String key) {
    std::vector<std::filesystem::path> folders;
    const QString stored = UserDefaults::standardUserDefaults().stringForKey(key);
    for (const QString &word : stored.split(u' ', Qt::SkipEmptyParts)) {
        const std::string path = paths::percentDecoded(word.toStdString());
        if (path.front() == '/' && path.find('\0') == std::string::npos)
            folders.emplace_back(path);
    }
    folders.resize(std::min(folders.size(), mostFolders));
    return folders;
}

void rememberFolder(QLatin1String key, const std::filesystem::path &folder) {
    auto folders = recentFolders(key);
    folders.erase(std::remove(folders.begin(), folders.end(), folder), folders.end());
    folders.insert(folders.begin(), folder);
    folders.resize(std::min(folders.size(), mostFolders));
    QStringList words;
    for (const auto &each : folders)
        words += QString::fromStdString(paths::percentEncoded(each.native()));
    UserDefaults::standardUserDefaults().setObject(key, words.join(u' '));
}

} // namespace brightsweep
