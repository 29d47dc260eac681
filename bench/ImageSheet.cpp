// Draws every image of the program on one sheet, for the eye: image_sheet FILE.png PIXEL_RATIO
// [NAME…].
#include "ui/ImageNames.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int columns = 8;
constexpr QSize cell(150, 92);

QStringList everyName() {
    QStringList names;
    for (const char *name : brightsweep::imageNames)
        names.append(QString::fromLatin1(name));
    for (const int number : {0, 7, 42, 93, 100})
        for (const auto *form :
             {"%1%.png", "%1%-1.png", "%1.png", "%1-1.png", "%1_progress_bar.png"})
            names.append(QString::fromLatin1(form).arg(number));
    for (const int frame : {1, 4, 7, 10, 13, 18})
        names.append(QStringLiteral("clean_%1.png").arg(frame));
    for (const int frame : {1, 5, 12})
        names.append(QStringLiteral("loading_%1.png").arg(frame));
    return names;
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    brightsweep::theme::apply(application);
    const qreal ratio = QByteArray(argv[2]).toDouble();
    QStringList names = everyName();
    if (argc > 3)
        names = application.arguments().mid(3);
    const int rows = static_cast<int>(names.size() + columns - 1) / columns;
    QImage sheet(QSize(columns * cell.width(), rows * cell.height()) * ratio,
                 QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(ratio);
    sheet.fill(brightsweep::theme::window());
    QPainter painter(&sheet);
    painter.setFont(brightsweep::theme::font(8));
    for (int index = 0; index < names.size(); ++index) {
        const QString &name = names[index];
        const QRect place(QPoint(index % columns * cell.width(), index / columns * cell.height()),
                          cell);
        QSize size = brightsweep::imageSize(name);
        size = size.isEmpty() ? QSize() : size.boundedTo(QSize(120, 70));
        // The gauge of the tray has to stand out on light as well.
        const bool onLight = name.contains(QLatin1Char('%'));
        if (onLight)
            painter.fillRect(QRect(place.center() + QPoint(20, -40), QSize(50, 50)),
                             QColor(240, 240, 240));
        const QPixmap pixmap = brightsweep::pixmapNamed(name, size, ratio);
        painter.drawPixmap(place.center() - QPoint(size.width(), size.height() + 16) / 2, pixmap);
        if (onLight)
            painter.drawPixmap(place.center() + QPoint(34, -size.height() / 2 - 8), pixmap);
        painter.setPen(brightsweep::theme::secondary());
        painter.drawText(place.adjusted(0, 74, 0, 0), Qt::AlignHCenter, name);
    }
    painter.end();
    return sheet.save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
