#include "cleaning/ui/FileIcons.h"

#include "foundation/Paths.h"
#include "results/FileClasses.h"
#include "ui/ImageProvider.h"

#include <array>

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
    if (const QIcon *known = m_icons.object(key))
        return *known;
    QMimeType type =
        m_types.mimeTypeForName(isDirectory ? QStringLiteral("inode/directory")
                                            : QStringLiteral("application/octet-stream"));
    // Unlike the database's other ways, this one never looks for a file of that name.
    if (const auto types = m_types.mimeTypesForFileName(paths::text(name));
        !isDirectory && !types.isEmpty())
        type = types.first();
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull()) {
        const char *const own =
            isDirectory ? "folder.png"
                        : classImages.at(std::size_t(fileTypeOfExtension(paths::extension(path))));
        icon = imageNamed(QLatin1String(own));
    }
    m_icons.insert(key, new QIcon(icon));
    return icon;
}

} // namespace brightsweep
