#pragma once

#include <QSize>
#include <QString>

class QPainter;
class QRectF;

namespace brightsweep {

/// The families of numbered images, which are drawn by code:
/// - "42%.png", "42%-1.png": the gauge of the status item, used percentage, and its warning form;
/// - "42.png", "42-1.png": the bar of a volume's row, used percentage, and its warning form;
/// - "42_progress_bar.png": the bar of a category's row;
/// - "clean_1.png" to "clean_18.png": one turn of the sweep while files go;
/// - "loading_1.png" to "loading_12.png": one turn of the spinner.
/// Percentages go from 0 to 100. Main thread.

/// The size that such an image has by itself; empty where the name is in none of the families.
QSize drawnImageSize(const QString &name);

void paintDrawnImage(QPainter &painter, const QString &name, const QRectF &area);

} // namespace brightsweep
