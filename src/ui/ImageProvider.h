#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

class QPainter;

namespace brightsweep {

/// The program's images by name. "option_yes.png" finds images/option_yes.svg, with or without the
/// ending; families of numbered images ("42_progress_bar.png") are drawn by code. Main thread.
/// An image with an element "stretch" is a surface: it fills whatever area it is given.
/// Everything is drawn anew for each size and device pixel ratio, and kept in Qt's pixmap cache.

/// An icon that paints itself sharply at any size; a null icon where the name has no image.
QIcon imageNamed(const QString &name);

/// The image, whole and in its own proportions, in the middle of a pixmap of `logical` size. A null
/// pixmap where the name has no image or the size is empty.
QPixmap pixmapNamed(const QString &name, QSize logical, qreal devicePixelRatio);

bool imageExists(const QString &name);

/// The size that an image has by itself, in logical pixels; empty where the name has no image.
QSize imageSize(const QString &name);

/// Paints the image into `area`, whole, in its own proportions and in the middle. False where the
/// name has no image.
bool paintImage(QPainter &painter, const QString &name, const QRectF &area);

} // namespace brightsweep
