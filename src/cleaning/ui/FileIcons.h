#pragma once

#include <QCache>
#include <QIcon>
#include <QMimeDatabase>
#include <QStringList>

#include <filesystem>

namespace brightsweep {

/// Icons of files by their type, from the desktop's icon theme; from the program's own images where
/// the theme has none that can be seen on the program's ground. The type goes by the name alone, as
/// no file is looked at: one on a server that does not answer would hold the window up. The last
/// hundreds are kept. Main thread.
class FileIcons {
public:
    QIcon icon(const std::filesystem::path &path, bool isDirectory);

    /// The theme's icon of that name, else the program's own image.
    QIcon named(const QString &name, const char *own);

private:
    static QIcon seen(const QStringList &names, const char *own);
    void forgetOtherThemes();

    QString m_look; ///< the icons are kept for
    QMimeDatabase m_types;
    QCache<QByteArray, QIcon> m_icons{512};
};

} // namespace brightsweep
