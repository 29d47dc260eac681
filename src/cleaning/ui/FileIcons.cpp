#include "cleaning/ui/FileIcons.h"

#include "foundation/Paths.h"
#include "results/FileClasses.h"
#include "ui/IconTheme.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <array>
#include <utility>

namespace brightsweep {

namespace {

// By the number of the file class.
constexpr std::array classImages = {
    "file.png",           "class_documents.png", "class_music.png", "class_videos.png",
    "class_archives.png", "class_pictures.png",  "file.png",
};

} // namespace

QIcon FileIcons::icon(const std::filesystem::path &path, bool isDirectory) {
    // No name holds a slash, so that one stands for all directories.
    const std::string name = isDirectory ? "/" : paths::lastComponent(path);
    const QByteArray key = QByteArray::fromStdString(name);
    forgetOtherThemes();
    if (const QIcon *known = m_icons.object(key))
        return *known;
    QMimeType type =
        m_types.mimeTypeForName(isDirectory ? QStringLiteral("inode/directory")
                                            : QStringLiteral("application/octet-stream"));
    // Unlike the database's other ways, this one never looks for a file of that name.
    if (const auto types = m_types.mimeTypesForFileName(paths::text(name));
        !isDirectory && !types.isEmpty())
        type = types.first();
    const char *const own =
        isDirectory ? "folder.png"
                    : classImages.at(std::size_t(fileTypeOfExtension(paths::extension(path))));
    const QIcon icon = seen({type.iconName(), type.genericIconName()}, own);
    m_icons.insert(key, new QIcon(icon));
    return icon;
}

QIcon FileIcons::named(const QString &name, const char *own) {
    forgetOtherThemes();
    const QByteArray key = '/' + name.toUtf8() + '/' + own;
    if (const QIcon *known = m_icons.object(key))
        return *known;
    const QIcon icon = seen({name}, own);
    m_icons.insert(key, new QIcon(icon));
    return icon;
}

// The theme's first one that can be seen, else our own.
QIcon FileIcons::seen(const QStringList &names, const char *own) {
    for (const QString &name : names) {
        const QIcon icon = QIcon::fromTheme(name);
        if (!icon.isNull() && isSeenOnGround(icon))
            return icon;
    }
    return imageNamed(QLatin1String(own));
}

void FileIcons::forgetOtherThemes() {
    const QString look = QIcon::themeName() + theme::window().name();
    if (look != std::exchange(m_look, look))
        m_icons.clear();
}

} // namespace brightsweep
