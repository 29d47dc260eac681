#pragma once

#include <QCache>
#include <QPixmap>
#include <QString>

namespace brightsweep {

/// Icons of applications: by a name in the desktop's icon theme or by the path of a small image.
/// One that could hardly be seen on the program's ground stands on a light plate. The last hundreds
/// are kept. Main thread; asked for when a row is painted, so that only rows on show cost anything.
class ApplicationIcons {
public:
    /// `side` in logical pixels; the first letter of the name where there is no such icon.
    QPixmap pixmap(const QString &icon, const QString &name, int side, qreal devicePixelRatio);

private:
    QString m_look; ///< the pixmaps are kept for
    QCache<QString, QPixmap> m_pixmaps{400};
};

} // namespace brightsweep
