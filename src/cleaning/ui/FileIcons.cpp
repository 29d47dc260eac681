#include "cleaning/ui/FileIcons.h"

#include "core/ui/ImageProvider.h"
#include "duplicates/FileClasses.h"
#include "foundation/Paths.h"

#include <array>

namespace brightsweep {

namespace {

// By the number of the file class.
constexpr std::array classImages = {
    "file.png",           "class_documents.png", "class_music.png", "class_videos.png",
    "class_archives.png", "class_pictures.png",  "file.png",
};

} // namespace

QIcon FileIcons::icon(const std::filesystem::path &path) {
    const QByteArray key = QByteArray::fromStdString(path.native());
    if (const QIcon *known = m_icons.object(key))
        return *known;
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    const QMimeType type =
        std::filesystem::is_directory(status)
            ? m_types.mimeTypeForName(QStringLiteral("inode/directory"))
            : m_types.mimeTypeForFile(paths::display(path), QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull()) {
        const char *const own =
            std::filesystem::is_directory(status)
                ? "folder.png"
                : classImages.at(std::size_t(fileTypeOfExtension(paths::extension(path))));
        icon = imageNamed(QLatin1String(own));
    }
    m_icons.insert(key, new QIcon(icon));
    return icon;
}

} // namespace brightsweep
