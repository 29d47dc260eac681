#pragma once

#include <QCache>
#include <QIcon>
#include <QMimeDatabase>

#include <filesystem>

namespace brightsweep {

/// Icons of files by their type, from the desktop's icon theme; from the program's own images where
/// the theme has none. The last hundreds are kept; ask for visible rows only, since each new path
/// costs a look at the file. Main thread.
class FileIcons {
public:
    QIcon icon(const std::filesystem::path &path);

private:
    QMimeDatabase m_types;
    QCache<QByteArray, QIcon> m_icons{512};
};

} // namespace brightsweep
